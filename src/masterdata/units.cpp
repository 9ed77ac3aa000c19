#include "masterdata/units.h"

namespace tradewick
{

const RecordFormSpec Sys_JLDW = {
    .name = "sys_JLDW",
    .caption = "计量单位设置",
    .statement = "select * FROM SYS_JLDW",
    .fields = {{"Text(0)", "JLBH", "编    号:"}, {"Text(1)", "JLDW", "计量单位:"}, {"Text(2)", "beizhu", "备    注:"}},
    .list = {{"JLBH", "计量编号"}, {"JLDW", "计量单位"}},
    .numberedAs = "sys_JLDW",
    .required = {{"Text(0)", ""}, {"Text(1)", "编号或名称不能为空"}},
    .notes = {"注:一般名称为英文公制，请注意填写。"},
    .navigationWhileBusy = true,
};

} // namespace tradewick
