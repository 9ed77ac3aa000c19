// Users, their passwords and their rights.
#pragma once

#include "common/record_form.h"

namespace tradewick
{

class sys_QXSZ : public RecordForm
{
    Q_OBJECT

public:
    explicit sys_QXSZ(QWidget *mainWindow = nullptr);

protected:
    void afterAdd() override;
    // At once and without a question, unlike everywhere else.
    void deleteRecord() override;
};

} // namespace tradewick
