// Units of quantities and packages.
#include "masterdata/masterdata.h"

namespace tradewick
{

RecordFormSpec sys_JLDW()
{
    return {
        .name = "sys_JLDW",
        .caption = "计量单位设置",
        .statement = "select * FROM SYS_JLDW",
        .pages = {{"",
                   {{"Text(0)", "JLBH", "编    号:"},
                    {"Text(1)", "JLDW", "计量单位:"},
                    {"Text(2)", "beizhu", "备    注:"}}}},
        .list = {{"JLBH", "计量编号"}, {"JLDW", "计量单位"}},
        .notes = {"注:一般名称为英文公制，请注意填写。"},
        .numbering = running("J", 3, "select JLBH from SYS_JLDW order by JLBH"),
        .required = codeWithoutAWordAndName(),
        .navigationWhileBusy = true,
    };
}

} // namespace tradewick
