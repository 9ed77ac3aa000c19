// Regions in three levels, by which suppliers are told apart.
#include "common/record_form.h"
#include "masterdata/masterdata.h"

namespace tradewick
{

namespace
{

const char *const countries = "select DISTINCT sheng from sys_qysz";

} // namespace

RecordFormSpec sys_qysz()
{
    // Cities follow the region's name alone: one that two countries have shows the same cities under both.
    const BranchSpec cities{"zheng", "select distinct zheng from sys_qysz where shi='{shi}'", {"zheng"}, "zheng"};
    const BranchSpec provinces{"shi",   "select distinct shi from sys_qysz where sheng='{sheng}'", {"shi"}, "shi", 0,
                               {cities}};
    return {
        .name = "sys_qysz",
        .caption = "区域设置",
        .statement = "select * FROM sys_qysz order by sheng,shi,zheng",
        .pages =
            {{"",
              {{"Text(0)", "sheng", "国别设置:"}, {"Text(1)", "shi", "州省/地区:"}, {"Text(2)", "zheng", "市/县:"}}}},
        .list = {{"sheng", "国别"}, {"shi", "州省/地区"}, {"zheng", "市/县"}},
        .notes = {"注：区域设置，是对国内供应厂家按区域分类而设，分三层管理。"},
        // No command of the menus opens the addresses; they are reached from here.
        .buttons = {{.name = "Cmd_ssdz",
                     .caption = "收送地址",
                     .shortcut = "Ctrl+G",
                     .press = [](RecordForm &form) { form.openBeside(sys_SSDZ()); },
                     .ofStored = false}},
        .required = {{"Text(0)", "所有名称不能为空"}, {"Text(1)", "所有名称不能为空"}, {"Text(2)", "所有名称不能为空"}},
        .tree = {.root = "区域图示",
                 .count = "select count(*) as [CCC] from sys_qysz",
                 .branches = {{"sheng", countries, {"sheng"}, "sheng", 0, {provinces}}},
                 .notFound = "没找到符合项目",
                 .notFoundTitle = "查询",
                 .notFoundIcon = MessageIcon::Exclamation,
                 .firstWhenNotFound = true,
                 .defaults = {{"Combo1", "国别设置:", countries, "Text(0)"},
                              {"Combo2", "州省/地区:", "select DISTINCT shi from sys_qysz", "Text(1)"}}},
    };
}

} // namespace tradewick
