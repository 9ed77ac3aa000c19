#include "masterdata/settlement_terms.h"

namespace tradewick
{

namespace
{

const RecordFormSpec termsSpec = {
    .name = "sys_fkfs",
    .caption = "结算方式设置",
    .statement = "select * FROM SYS_fkfs",
    .fields = {{"Text(0)", "fkbh", "编       号:"},
               {"Text(1)", "fkfs", "结算方式:"},
               {"Text(2)", "BeiZhu", "备       注:"}},
    .list = {{"fkbh", "编   号"}, {"fkfs", "结算方式"}},
    .numberedAs = "sys_fkfs",
    .required = {{"Text(0)", "编号或名称不能为空"}, {"Text(1)", "编号或名称不能为空"}},
    .notes = {"注:是指与客户间的交易规则，诸如“月结60天”等条款。"},
    .navigationWhileBusy = true,
    .failures = {.ok = Failure::Skip},
};

} // namespace

sys_fkfs::sys_fkfs(QWidget *mainWindow) : RecordForm(termsSpec, mainWindow) {}

// Alone of the code forms this one ends on the last row, not on the one behind the row that went.
void sys_fkfs::recordsChanged(Change change)
{
    if (change == Change::Deleted && records().RecordCount() > 0)
        records().MoveLast();
}

} // namespace tradewick
