// Settlement terms: trading rules agreed with a customer.
#include "masterdata/masterdata.h"

namespace tradewick
{

RecordFormSpec sys_fkfs()
{
    return {
        .name = "sys_fkfs",
        .caption = "结算方式设置",
        .statement = "select * FROM SYS_fkfs",
        .pages = {{"",
                   {{"Text(0)", "fkbh", "编       号:"},
                    {"Text(1)", "fkfs", "结算方式:"},
                    {"Text(2)", "BeiZhu", "备       注:"}}}},
        .list = {{"fkbh", "编   号"}, {"fkfs", "结算方式"}},
        .notes = {"注:是指与客户间的交易规则，诸如“月结60天”等条款。"},
        .numbering = running("F", 3, "select fkbh from sys_fkfs order by fkbh"),
        .required = codeAndName(),
        .failures = {.ok = Failure::Skip},
        .navigationWhileBusy = true,
        .afterDelete = AfterDelete::Last,
    };
}

} // namespace tradewick
