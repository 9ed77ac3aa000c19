// Shipping lines.
#include "masterdata/carriers.h"
#include "masterdata/masterdata.h"

namespace tradewick
{

RecordFormSpec Sys_CwGs_ZL()
{
    return carrierRegister("Sys_CwGs_ZL", "船务公司资料录入", "select * FROM SYS_CWGS", "船",
                           "select GSBH from SYS_CWGS order by GSBH ");
}

} // namespace tradewick
