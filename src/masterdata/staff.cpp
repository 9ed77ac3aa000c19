// Staff, each under a department.
#include "common/branch_tree.h"
#include "common/record_form.h"
#include "masterdata/departments.h"
#include "masterdata/masterdata.h"

namespace tradewick
{

namespace
{

const char *const person = "name"; // tag of a branch

// A new member belongs to the department that was chosen in the tree.
void joinDepartment(RecordForm &form)
{
    const BranchSpec *branch = form.tree()->chosenBranch();
    if (!branch || branch->tag == QLatin1String(person))
        return;
    const QString &department = form.tree()->chosenText();
    form.setText("Text(0)", department.chopped(qMin(department.size(), departmentKeyLength + 1)));
    form.records().Fields("bmbh").setValue(department.right(departmentKeyLength));
}

} // namespace

RecordFormSpec sys_gzry()
{
    // Under a department by its key: one that gets another name keeps its staff.
    const BranchSpec staff{
        person, "select distinct name,zgbh from sys_gzry where bmbh='{bmbh}'", {"name", "zgbh"}, "zgbh"};
    RecordFormSpec spec{
        .name = "sys_gzry",
        .caption = "系统操作员设置",
        .statement = "select * FROM sys_gzry order by zgbh",
        .pages = {{"",
                   {{"Text(0)", "bmmc", "部门名称:"},
                    {"Text(3)", "ZGBH", "人员编号:"},
                    {"Text(1)", "name", "姓    名:"},
                    {"Text(2)", "zhwu", "职    务:"}}}},
        .list = {{"ZGBH", "人员编号"}, {"name", "姓名"}},
        .required = {{"Text(1)", "姓名不能为空"}, {"Text(2)", "职务不能为空"}},
        .requiredTitle = "系统提示",
        .tree = departmentTree("部门图示", "", {staff}),
        .onAdd = joinDepartment,
    };
    spec.tree.chosen = "Text1";
    spec.tree.defaults = {
        {"Combo1", "职    务:", "select DISTINCT zhwu from sys_gzry where not zhwu is null", "Text(2)"}};
    return spec;
}

} // namespace tradewick
