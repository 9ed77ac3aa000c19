// Ports: where goods are loaded and discharged; the names stand on the export documents.
#include "masterdata/masterdata.h"

namespace tradewick
{

RecordFormSpec Sys_GKSZ()
{
    return {
        .name = "Sys_GKSZ",
        .caption = "常用港口设置",
        .statement = "select * FROM sys_gksz",
        .pages = {{"",
                   {{"Text(0)", "gkbh", "港口编号:"},
                    {"Text(1)", "gkmc", "*港口名称:"},
                    {"Text(2)", "Gkmc_En", "*英文名称:"},
                    {"Text(3)", "GkXz", "港口性质:"},
                    {"Text(4)", "BeiZhu", "备注说明:"}}}},
        .list = {{"gkbh", "港口编号"}, {"gkmc", "港口名称"}},
        .notes = {"说明:*港口名称，显示于单证，一般为英文。"},
        .numbering = running("P", 4, "select gkbh from sys_gksz order by gkbh ", TooLong::IsDropped),
        .required = codeAndName(),
        .whenEmpty = {{"Text(2)"}, {"Text(3)"}, {"Text(4)"}},
        .failures = {.ok = Failure::Skip},
        .navigationWhileBusy = true,
    };
}

} // namespace tradewick
