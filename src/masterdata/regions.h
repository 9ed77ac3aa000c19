// Regions that domestic suppliers are classed by: country, province, city.
#pragma once

#include "common/record_form.h"

namespace tradewick
{

class sys_qysz : public RecordForm
{
    Q_OBJECT

public:
    explicit sys_qysz(QWidget *mainWindow = nullptr);

protected:
    void action(const QString &button) override;
};

} // namespace tradewick
