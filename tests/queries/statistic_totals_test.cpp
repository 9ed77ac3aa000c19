// The totals of every statistic over the demonstration, worked out again from rows of the tables behind its view.
#include "papers/papers.h"
#include "support/test_database.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tradewick::test
{

namespace
{

// Each joins or selects by itself what the statistic takes from a view, in the statistic's order.
struct Case {
    const char *document;
    const char *from, *groups; // columns by which the rows are grouped, from the outside
    const char *order;
    const char *box = nullptr; // that has to be filled, with what stands in the outermost group of the first row
};

const char contracts[] = "yy_gw_wxht_h h left join yy_gw_wxht_b b on b.htbh=h.htbh",
           purchases[] = "yy_gn_cght_h h left join yy_gn_cght_b b on b.htbh=h.htbh",
           credits[] = "yy_xyz_nh h inner join yy_xyz_nb b on b.xyzh=h.xyzh",
           sheets[] = "yy_mxb_h h inner join yy_mxb_b b on b.fpbh=h.fpbh",
           taxes[] = "yy_ssdj_h h inner join yy_ssdj_b b on b.fpbh=h.fpbh", returns[] = "cy_hxd_gsly h",
           settled[] = "cy_hxd_gsly h where h.htbh<>''", issues[] = "cy_hxd_gshs h", dispatches[] = "cy_pcd_rpt h",
           bookings[] = "cy_dcd_djb_h h";

const Case cases[] = {
    {"外销合同统计表（按签约公司）", contracts, "h.gsmc,h.htbh", "h.gsmc,h.htbh"},
    {"外销合同统计表（按国外客户）", contracts, "h.khmc,h.htbh", "h.khmc,h.htbh"},
    {"外销合同商品统计表（按签约公司）", contracts, "h.gsmc", "h.gsmc", "Combo2"},
    {"外销合同商品统计表（按国外客户）", contracts, "h.khmc", "h.khmc", "Combo3"},
    {"外销合同商品统计表（按商品名称）", contracts, "", "h.htbh"},
    {"采购合同统计表（按签约公司）", purchases, "h.gsmc,h.htbh", "h.gsmc,h.htbh"},
    {"采购合同统计表（按国内厂商）", purchases, "h.csmc,h.htbh", "h.csmc,h.htbh"},
    {"信用证查询统计表（按受益人）", credits, "h.syr,h.xyzh", "h.syr,h.xyzh"},
    {"信用证查询统计表（按收货人）", credits, "h.khmc,h.xyzh", "h.khmc,h.xyzh"},
    {"出口销售合同结案情况统计表（按销货单位）", sheets, "h.gsmc,h.htbh", "h.gsmc,h.htbh,h.fpbh"},
    {"出口销售合同结案情况统计表（按国外客户）", sheets, "h.khmc,h.htbh", "h.khmc,h.htbh,h.fpbh"},
    {"外销合同缴税情况统计表（按签约公司）", taxes, "h.gsmc,h.htbh,h.fpbh", "h.htbh,h.fpbh"},
    {"外销合同缴税情况统计表（按国内厂家）", taxes, "h.csmc,h.htbh,h.fpbh", "h.htbh,h.fpbh"},
    {"出口收汇核销结算表", settled, "h.gsmc,h.shfs", "h.htbh,h.hxdh"},
    {"企业核销单领用情况统计表", issues, "h.gsmc", "h.gsmc,h.djrq"},
    {"出口情况定期统计报表", returns, "h.gsmc,h.myfs", "h.gsmc,h.myfs,h.hxdh"},
    {"派车费用统计表（按拖车公司）", dispatches, "h.pcgs", "h.pcgs"},
    {"派车费用统计表（按派车公司）", dispatches, "h.tcgs", "h.pcgs"},
    {"订舱费用情况统计表（按订舱公司）", bookings, "h.tygs,h.htbh", "h.tygs,h.fpbh"},
    {"订舱费用情况统计表（按船务公司）", bookings, "h.cygs,h.htbh", "h.cygs,h.htbh,h.fpbh"},
};

// A column of the tables; amounts in the base currency are of the views alone.
QString expression(const Case &of, const QString &column)
{
    if (column == u"bzje")
        return QStringLiteral("b.je*h.hl");
    const bool isLine = QByteArray(of.from).contains(" b on ");
    return (isLine ? "b." : "h.") + column;
}

class StatisticTotals : public testing::TestWithParam<Case>
{
protected:
    // The totals of a column in the groups of a level, or their numbers of rows, one behind the other.
    QVector<qint64> workedOut(const ReportObject &total, const QString &outermost)
    {
        const Case &of = GetParam();
        const QStringList groups = QString(of.groups).split(',', Qt::SkipEmptyParts);
        const bool counts = total.summary == Summary::Count;
        const QString value = counts ? QStringLiteral("1") : expression(of, total.dataField.toLower());
        QStringList columns{value + " as amount"};
        for (const QString &group : groups)
            columns.append(group + " as g" + QString::number(columns.size()));
        const QString narrowed = of.box ? " where " + groups.first() + "='{outermost}'" : QString();
        QVector<double> totals;
        QVariantList before;
        for (const Row &row : database.connection().rows("select " + columns.join(',') + " from " + of.from + narrowed +
                                                             " order by " + of.order,
                                                         {{"outermost", outermost}})) {
            QVariantList group{0};
            for (qsizetype i = 1; i <= std::min<qsizetype>(total.summaryLevel, groups.size()); ++i)
                group.append(row.value("g" + QString::number(i)));
            if (group != before)
                totals.append(0);
            before = group;
            totals.last() += row.value("amount").toDouble();
        }
        return rounded(totals);
    }

    static QVector<qint64> rounded(const QVector<double> &numbers)
    {
        QVector<qint64> all;
        for (const double number : numbers)
            all.append(std::isnan(number) ? 0 : std::llround(number * 10000));
        return all;
    }

    // The statistics of dispatches print no zero.
    static QVector<qint64> shown(QVector<qint64> totals)
    {
        if (GetParam().from == dispatches)
            totals.removeAll(0);
        return totals;
    }

    TestDatabase database{TestDatabase::Demonstration};
};

} // namespace

TEST_P(StatisticTotals, AreThoseOfTheTablesRows)
{
    const Case &of = GetParam();
    const Document &statistic = document(of.document);
    Criteria criteria{{{fromDate, "1990-01-01"}, {toDate, "2099-12-31"}}};
    QString outermost;
    if (of.box) {
        const QString group = QString(of.groups).section(',', 0, 0);
        outermost = database.connection()
                        .rows("select " + group + " as g from " + of.from + " order by " + of.order)
                        .first()
                        .value("g")
                        .toString();
        criteria.values.insert(of.box, outermost);
    }
    const auto pages = fill(statistic, database.connection(), criteria).report->layout()->all();
    QHash<const ReportObject *, QVector<double>> printed;
    for (const PagePtr &page : pages)
        for (const PageItem &item : page->items)
            if (item.object->summary != Summary::None)
                printed[item.object].append(item.number);
    ASSERT_FALSE(printed.isEmpty());
    bool anyMoves = false;
    for (auto total = printed.cbegin(); total != printed.cend(); ++total) {
        const QVector<qint64> expected = workedOut(*total.key(), outermost);
        anyMoves = anyMoves || expected.count(0) < expected.size();
        EXPECT_EQ(shown(rounded(total.value())), shown(expected))
            << total.key()->dataField.toStdString() << " of level " << total.key()->summaryLevel;
    }
    EXPECT_TRUE(anyMoves); // some of them are not 0
}

INSTANTIATE_TEST_SUITE_P(Demonstration, StatisticTotals, testing::ValuesIn(cases),
                         [](const auto &one) { return "Number" + std::to_string(one.index); });

} // namespace tradewick::test
