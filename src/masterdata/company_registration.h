// The trading company itself: registration, letterhead and bank; the first row is the one that start-up reads.
#pragma once

#include "common/record_form.h"

namespace tradewick
{

class sys_gssz : public RecordForm
{
    Q_OBJECT

public:
    explicit sys_gssz(QWidget *mainWindow = nullptr);

protected:
    void afterAdd() override;
};

} // namespace tradewick
