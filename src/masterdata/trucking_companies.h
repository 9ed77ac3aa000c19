// Trucking firms.
#pragma once

#include "masterdata/carrier_company.h"

namespace tradewick
{

class Sys_TcGs_Set : public CarrierCompanyForm
{
    Q_OBJECT

public:
    explicit Sys_TcGs_Set(QWidget *mainWindow = nullptr);
};

} // namespace tradewick
