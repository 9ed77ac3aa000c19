#include "masterdata/trucking_companies.h"

namespace tradewick
{

Sys_TcGs_Set::Sys_TcGs_Set(QWidget *mainWindow)
    : CarrierCompanyForm(carrierSpec("Sys_TcGs_Set", "拖车公司资料设置", "select * FROM sys_tcgs", "拖车"), mainWindow)
{
}

} // namespace tradewick
