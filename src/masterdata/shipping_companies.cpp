#include "masterdata/shipping_companies.h"

namespace tradewick
{

Sys_CwGs_ZL::Sys_CwGs_ZL(QWidget *mainWindow)
    : CarrierCompanyForm(carrierSpec("Sys_CwGs_ZL", "船务公司资料录入", "select * FROM SYS_CWGS", "船"), mainWindow)
{
}

} // namespace tradewick
