#include "masterdata/regions.h"

#include "masterdata/delivery_addresses.h"

namespace tradewick
{

namespace
{

const char *const countries = "select DISTINCT sheng from sys_qysz";

const RecordFormSpec regionSpec = {
    .name = "sys_qysz",
    .caption = "区域设置",
    .statement = "select * FROM sys_qysz order by sheng,shi,zheng",
    .fields = {{"Text(0)", "sheng", "国别设置:"}, {"Text(1)", "shi", "州省/地区:"}, {"Text(2)", "zheng", "市/县:"}},
    .list = {{"sheng", "国别"}, {"shi", "州省/地区"}, {"zheng", "市/县"}},
    .required = {{"Text(0)", "所有名称不能为空"}, {"Text(1)", "所有名称不能为空"}, {"Text(2)", "所有名称不能为空"}},
    .notes = {"注：区域设置，是对国内供应厂家按区域分类而设，分三层管理。"},
    .actions = {{"Cmd_ssdz", "收送地址", "Ctrl+G"}},
    .tree =
        {.root = "区域图示",
         .count = "select count(*) as [CCC] from sys_qysz",
         // Cities follow the region's name alone: one that two countries have shows the same cities under both.
         .branches = {{"sheng",
                       countries,
                       {"sheng"},
                       "sheng",
                       0,
                       {{"shi",
                         "select distinct shi from sys_qysz where sheng='{sheng}'",
                         {"shi"},
                         "shi",
                         0,
                         {{"zheng", "select distinct zheng from sys_qysz where shi='{shi}'", {"zheng"}, "zheng"}}}}}},
         .notFound = "没找到符合项目",
         .notFoundTitle = "查询",
         .notFoundIcon = MessageIcon::Exclamation,
         .firstWhenNotFound = true,
         .defaults = {{"Combo1", "国别设置:", countries, "Text(0)"},
                      {"Combo2", "州省/地区:", "select DISTINCT shi from sys_qysz", "Text(1)"}}},
};

} // namespace

sys_qysz::sys_qysz(QWidget *mainWindow) : RecordForm(regionSpec, mainWindow) {}

// No command of the menus opens the addresses; they are reached from here.
void sys_qysz::action(const QString &)
{
    run(Failure::Report, {[this] {
            QWidget *owner = parentWidget() ? parentWidget() : this;
            auto *addresses = owner->findChild<sys_SSDZ *>();
            if (!addresses || !addresses->isVisible()) {
                addresses = new sys_SSDZ(owner);
                addresses->setAttribute(Qt::WA_DeleteOnClose);
                addresses->setGeometry(geometry());
            }
            addresses->show();
            addresses->raise();
            addresses->activateWindow();
        }});
}

} // namespace tradewick
