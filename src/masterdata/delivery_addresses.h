// Places where goods are collected or delivered, in classes.
#pragma once

#include "common/record_form.h"

namespace tradewick
{

class sys_SSDZ : public RecordForm
{
    Q_OBJECT

public:
    explicit sys_SSDZ(QWidget *mainWindow = nullptr);

protected:
    QString proposedKey() override;
};

} // namespace tradewick
