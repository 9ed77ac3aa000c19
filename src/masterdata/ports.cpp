#include "masterdata/ports.h"

namespace tradewick
{

const RecordFormSpec Sys_GKSZ = {
    .name = "Sys_GKSZ",
    .caption = "常用港口设置",
    .statement = "select * FROM sys_gksz",
    .fields = {{"Text(0)", "gkbh", "港口编号:"},
               {"Text(1)", "gkmc", "*港口名称:"},
               {"Text(2)", "Gkmc_En", "*英文名称:"},
               {"Text(3)", "GkXz", "港口性质:"},
               {"Text(4)", "BeiZhu", "备注说明:"}},
    .list = {{"gkbh", "港口编号"}, {"gkmc", "港口名称"}},
    .numberedAs = "Sys_GKSZ",
    .required = {{"Text(0)", "编号或名称不能为空"}, {"Text(1)", "编号或名称不能为空"}},
    .whenEmpty = {{"Text(2)"}, {"Text(3)"}, {"Text(4)"}},
    .notes = {"说明:*港口名称，显示于单证，一般为英文。"},
    .navigationWhileBusy = true,
    .failures = {.ok = Failure::Skip},
};

} // namespace tradewick
