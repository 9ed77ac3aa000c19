// Staff, each under a department.
#pragma once

#include "common/record_form.h"

namespace tradewick
{

class sys_gzry : public RecordForm
{
    Q_OBJECT

public:
    explicit sys_gzry(QWidget *mainWindow = nullptr);

protected:
    void afterAdd() override;
};

} // namespace tradewick
