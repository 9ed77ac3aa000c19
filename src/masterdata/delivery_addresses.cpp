#include "masterdata/delivery_addresses.h"

#include "common/numbering.h"

namespace tradewick
{

namespace
{

const char *const classes = "select DISTINCT sslb from sys_SSDz";

const RecordFormSpec addressSpec = {
    .name = "sys_SSDZ",
    .caption = "收货地点、送货地点设置",
    .statement = "select * FROM sys_SSDZ order by dzbh",
    .fields = {{"Text(0)", "dzbh", "地址编号:"}, {"Text(1)", "sslb", "收送类别:"}, {"Text(2)", "ssdz", "收送地址:"}},
    .list = {{"dzbh", "地址编号"}, {"ssdz", "收送地址"}},
    .numberedAs = "sys_SSDZ",
    .required = {{"Text(0)", "编号或名称不能为空"}, {"Text(1)", "编号或名称不能为空"}},
    .tree = {.root = "收送地址",
             .branches = {{"sslb",
                           classes,
                           {"sslb"},
                           "sslb",
                           0,
                           {{"ssdz", "select distinct ssdz from sys_SSDz where sslb='{sslb}'", {"ssdz"}, "ssdz"}}}},
             .notFound = "没找到符合项目",
             .notFoundTitle = "查询",
             .notFoundIcon = MessageIcon::Exclamation,
             .firstWhenNotFound = true,
             .defaults = {{"Combo(0)", "收送类别:", classes, "Text(1)"}}},
};

} // namespace

sys_SSDZ::sys_SSDZ(QWidget *mainWindow) : RecordForm(addressSpec, mainWindow) {}

// From the last row that the form shows, whatever order its statement gives.
QString sys_SSDZ::proposedKey()
{
    const int rows = records().RecordCount();
    const QVariant last = rows > 0 ? records().valueAt(rows - 1, records().columnIndex("dzbh")) : QVariant();
    return proposeCode("sys_SSDZ", last, rows == 0);
}

} // namespace tradewick
