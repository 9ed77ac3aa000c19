#include "masterdata/master_reports.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

namespace tradewick
{

namespace
{

struct MasterReport {
    QStringView name;
    const char *source, *keyColumn; // of the one record shown; nullptr: the report shows all
    QStringView record;
};

constexpr MasterReport masterReports[] = {
    {u"YY_KhZl_XX_Rpt", "select * from YY_GWKH_ZL where khbh='{khbh}'", "khbh", u"国外客户"},
    {u"khzl_rpt", "select * from YY_GWKH_ZL order by khbh ", nullptr, {}},
    {u"Yy_Gys_xxZl", "select * from YY_GyszL where gfbh='{gfbh}'", "gfbh", u"国内厂家"},
    {u"YY_Gys_JMZL", "select * from YY_GysZL order by gfbh ", nullptr, {}},
    {u"Sys_Cpzlb_rpt", "select* from yy_bzdj_rpt order BY gysbh,cplb,cpbh,cpmc", nullptr, {}},
};

} // namespace

Report &masterReport(const QString &reportName, Connection &connection, const QString &key)
{
    const auto *found = std::find_if(std::begin(masterReports), std::end(masterReports),
                                     [&](const MasterReport &one) { return one.name == reportName; });
    if (found == std::end(masterReports))
        throw std::invalid_argument("no report of master data: " + reportName.toStdString());
    Values values;
    if (found->keyColumn) {
        values.insert(found->keyColumn, key);
        if (connection.rows(found->source, values).isEmpty())
            throw DataError(0, QStringLiteral("没有编号为“%1”的%2").arg(key, found->record));
    }
    Report &filled = report(reportName);
    filled.DataControl1 = {connection.connectionString(), found->source, values};
    return filled;
}

} // namespace tradewick
