// Payment methods.
#include "masterdata/masterdata.h"

namespace tradewick
{

RecordFormSpec sys_zffs()
{
    return {
        .name = "sys_zffs",
        .caption = "付款方式设置窗口",
        .statement = "select * FROM SYS_zffs",
        .pages = {{"",
                   {{"Text(0)", "fkbh", "编    号:"},
                    {"Text(1)", "zffs", "*付款方式:"},
                    {"Text(2)", "beizhu", "备    注:"}}}},
        .list = {{"fkbh", "付款编号"}, {"zffs", "付款方式"}},
        .numbering = running("F", 3, "select fkbh from sys_zffs order by fkbh"),
        .required = codeWithoutAWordAndName(),
        .navigationWhileBusy = true,
    };
}

} // namespace tradewick
