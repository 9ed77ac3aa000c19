#include "masterdata/payment_methods.h"

namespace tradewick
{

const RecordFormSpec Sys_zffs = {
    .name = "sys_zffs",
    .caption = "付款方式设置窗口",
    .statement = "select * FROM SYS_zffs",
    .fields = {{"Text(0)", "fkbh", "编    号:"}, {"Text(1)", "zffs", "*付款方式:"}, {"Text(2)", "beizhu", "备    注:"}},
    .list = {{"fkbh", "付款编号"}, {"zffs", "付款方式"}},
    .numberedAs = "sys_zffs",
    .required = {{"Text(0)", ""}, {"Text(1)", "编号或名称不能为空"}},
    .navigationWhileBusy = true,
};

} // namespace tradewick
