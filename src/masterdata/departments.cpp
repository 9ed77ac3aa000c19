#include "masterdata/departments.h"

namespace tradewick
{

const char *const countDepartments = "select count(*) as [CCC] from sys_bmsz";
const char *const topDepartments = "select DISTINCT bmmc,bmbh from sys_bmsz where sjbm='无'";
const char *const departmentsBelow = "select distinct bmmc,bmbh from sys_bmsz where sjbm='{bmmc}'";

namespace
{

constexpr int keyLength = 5;

} // namespace

const RecordFormSpec Sys_bmsz = {
    .name = "sys_bmsz",
    .caption = "部门名称设置",
    .statement = "select * FROM sys_bmsz order by bmbh",
    .fields = {{"Text(0)", "bmbh", "部门编号："}, {"Text(1)", "bmmc", "部门名称:"}, {"Text(2)", "sjbm", "上级部门："}},
    .list = {{"bmbh", "部门编号"}, {"bmmc", "部门名称"}},
    .numberedAs = "sys_bmsz",
    .required = {{"Text(0)", "部门编号不能为空"},
                 {"Text(0)", "部门编号约定5位", keyLength},
                 {"Text(1)", "部门名称不能为空."}},
    .requiredTitle = "系统提示",
    .whenEmpty = {{"Text(2)", "无"}},
    .notes = {"注：部门设置，是公司相应的基本资料，分两层管理。"},
    .tree = {.root = "部门结构",
             .count = countDepartments,
             // A third level stands in the table alone.
             .branches = {{"sjbm",
                           topDepartments,
                           {"bmmc", "bmbh"},
                           "bmbh",
                           keyLength,
                           {{"bmmc", departmentsBelow, {"bmmc", "bmbh"}, "bmbh", keyLength}}}},
             .notFound = "没有查询到相应的记录。",
             .notFoundTitle = "系统提示",
             .defaults = {{"Combo1", "上级部门:", topDepartments, "Text(2)"}}},
};

} // namespace tradewick
