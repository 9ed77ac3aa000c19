// Departments, in two levels.
#include "masterdata/departments.h"

#include "masterdata/masterdata.h"

namespace tradewick
{

namespace
{

const char *const topDepartments = "select DISTINCT bmmc,bmbh from sys_bmsz where sjbm='无'";
const char *const departmentsBelow = "select distinct bmmc,bmbh from sys_bmsz where sjbm='{bmmc}'";

} // namespace

TreeSpec departmentTree(const QString &root, const QString &find, const std::vector<BranchSpec> &below)
{
    const int length = find.isEmpty() ? 0 : departmentKeyLength;
    std::vector<BranchSpec> underTop{{"bmmc", departmentsBelow, {"bmmc", "bmbh"}, find, length, below}};
    underTop.insert(underTop.end(), below.begin(), below.end());
    return {.root = root,
            .count = "select count(*) as [CCC] from sys_bmsz",
            .branches = {{"sjbm", topDepartments, {"bmmc", "bmbh"}, find, length, underTop}},
            .notFound = "没有查询到相应的记录。",
            .notFoundTitle = "系统提示"};
}

RecordFormSpec sys_bmsz()
{
    RecordFormSpec spec{
        .name = "sys_bmsz",
        .caption = "部门名称设置",
        .statement = "select * FROM sys_bmsz order by bmbh",
        .pages = {{"",
                   {{"Text(0)", "bmbh", "部门编号："},
                    {"Text(1)", "bmmc", "部门名称:"},
                    {"Text(2)", "sjbm", "上级部门："}}}},
        .list = {{"bmbh", "部门编号"}, {"bmmc", "部门名称"}},
        .notes = {"注：部门设置，是公司相应的基本资料，分两层管理。"},
        .numbering = running("B", 4, "select bmbh from sys_BMSZ order by BMbh"),
        .required = {{"Text(0)", "部门编号不能为空"},
                     {"Text(0)", "部门编号约定5位", departmentKeyLength},
                     {"Text(1)", "部门名称不能为空."}},
        .requiredTitle = "系统提示",
        .whenEmpty = {{"Text(2)", "无"}},
        .tree = departmentTree("部门结构", "bmbh"),
    };
    spec.tree.defaults = {{"Combo1", "上级部门:", topDepartments, "Text(2)"}};
    return spec;
}

} // namespace tradewick
