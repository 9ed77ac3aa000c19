// Places where goods are fetched and delivered.
#include "masterdata/masterdata.h"

namespace tradewick
{

RecordFormSpec sys_SSDZ()
{
    const char *const classes = "select DISTINCT sslb from sys_SSDz";
    const BranchSpec addresses{"ssdz", "select distinct ssdz from sys_SSDz where sslb='{sslb}'", {"ssdz"}, "ssdz"};
    return {
        .name = "sys_SSDZ",
        .caption = "收货地点、送货地点设置",
        .statement = "select * FROM sys_SSDZ order by dzbh",
        .pages =
            {{"",
              {{"Text(0)", "dzbh", "地址编号:"}, {"Text(1)", "sslb", "收送类别:"}, {"Text(2)", "ssdz", "收送地址:"}}}},
        .list = {{"dzbh", "地址编号"}, {"ssdz", "收送地址"}},
        .numbering = running("S", 3, nullptr), // from the last row that the form shows
        .required = codeAndName(),
        .tree = {.root = "收送地址",
                 .branches = {{"sslb", classes, {"sslb"}, "sslb", 0, {addresses}}},
                 .notFound = "没找到符合项目",
                 .notFoundTitle = "查询",
                 .notFoundIcon = MessageIcon::Exclamation,
                 .firstWhenNotFound = true,
                 .defaults = {{"Combo(0)", "收送类别:", classes, "Text(1)"}}},
    };
}

} // namespace tradewick
