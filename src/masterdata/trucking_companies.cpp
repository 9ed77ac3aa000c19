// Trucking firms.
#include "masterdata/carriers.h"
#include "masterdata/masterdata.h"

namespace tradewick
{

RecordFormSpec Sys_TcGs_Set()
{
    return carrierRegister("Sys_TcGs_Set", "拖车公司资料设置", "select * FROM sys_tcgs", "拖车",
                           "select GSBH from sys_tcgs order by GSBH ");
}

} // namespace tradewick
