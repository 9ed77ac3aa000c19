// Shipping lines.
#pragma once

#include "masterdata/carrier_company.h"

namespace tradewick
{

class Sys_CwGs_ZL : public CarrierCompanyForm
{
    Q_OBJECT

public:
    explicit Sys_CwGs_ZL(QWidget *mainWindow = nullptr);
};

} // namespace tradewick
