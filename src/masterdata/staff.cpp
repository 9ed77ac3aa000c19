#include "masterdata/staff.h"

#include "masterdata/departments.h"

namespace tradewick
{

namespace
{

constexpr int keyLength = 5;

// Under a department by its key: one that gets another name keeps its staff.
const BranchSpec staffBranch{
    "name", "select distinct name,zgbh from sys_gzry where bmbh='{bmbh}'", {"name", "zgbh"}, "zgbh"};

const RecordFormSpec staffSpec = {
    .name = "sys_gzry",
    .caption = "系统操作员设置",
    .statement = "select * FROM sys_gzry order by zgbh",
    .fields = {{"Text(0)", "bmmc", "部门名称:"},
               {"Text(3)", "ZGBH", "人员编号:"},
               {"Text(1)", "name", "姓    名:"},
               {"Text(2)", "zhwu", "职    务:"}},
    .list = {{"ZGBH", "人员编号"}, {"name", "姓名"}},
    .required = {{"Text(1)", "姓名不能为空"}, {"Text(2)", "职务不能为空"}},
    .requiredTitle = "系统提示",
    .tree = {.root = "部门图示",
             .count = countDepartments,
             .branches = {{"sjbm",
                           topDepartments,
                           {"bmmc", "bmbh"},
                           "",
                           0,
                           {{"bmmc", departmentsBelow, {"bmmc", "bmbh"}, "", 0, {staffBranch}}, staffBranch}}},
             .notFound = "没有查询到相应的记录。",
             .notFoundTitle = "系统提示",
             .chosen = "Text1",
             .defaults = {{"Combo1", "职    务:", "select DISTINCT zhwu from sys_gzry where not zhwu is null",
                           "Text(2)"}}},
};

} // namespace

sys_gzry::sys_gzry(QWidget *mainWindow) : RecordForm(staffSpec, mainWindow) {}

void sys_gzry::afterAdd()
{
    const BranchSpec *branch = tree()->chosenBranch();
    if (!branch || branch->tag == staffBranch.tag)
        return;
    const QString &department = tree()->chosenText();
    setFieldText("Text(0)", department.chopped(qMin(department.size(), keyLength + 1)));
    records().Fields("bmbh").setValue(department.right(keyLength));
}

} // namespace tradewick
