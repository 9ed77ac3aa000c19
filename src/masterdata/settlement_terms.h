// Settlement terms: trading rules with the customers, such as "月结60天".
#pragma once

#include "common/record_form.h"

namespace tradewick
{

class sys_fkfs : public RecordForm
{
    Q_OBJECT

public:
    explicit sys_fkfs(QWidget *mainWindow = nullptr);

protected:
    void recordsChanged(Change change) override;
};

} // namespace tradewick
