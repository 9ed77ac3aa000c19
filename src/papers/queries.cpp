// Statistics over a period, and what the query screens print of one record.
#include "papers/queries.h"

#include "common/number_text.h"
#include "data/date_text.h"
#include "papers/areas.h"

namespace tradewick
{

namespace criteria
{

QVector<Criterion> exportContracts()
{
    return {{"Combo2", "签约公司：", "select DISTINCT gsmc from yy_gw_wxht_h where not gsmc is null order by gsmc",
             "AND gsmc like '%{Combo2}%'"},
            {"Combo3", "国外买方：", "select DISTINCT khmc from yy_gw_wxht_h where not khmc is null order by khmc",
             "AND khmc like'%{Combo3}%'"}};
}

QVector<Criterion> purchases()
{
    return {{"Combo2", "签约公司：", "select DISTINCT gsmc from yy_gn_cght_h where not gsmc is null order by gsmc",
             "AND gsmc like '%{Combo2}%'"},
            {"Combo3", "国内厂商：", "select DISTINCT csmc from yy_gn_cght_h where not csmc is null order by csmc",
             "AND csmc like'%{Combo3}%'"}};
}

QVector<Criterion> credits()
{
    return {{"Combo2", "受益公司：", "select DISTINCT syr from yy_xyz_nh where not syr is null order by syr",
             "AND syr like '%{Combo2}%'", "AND yy_XyZ_NH.syr like '%{Combo2}%'"},
            {"Combo3", "国外客户：", "select DISTINCT khmc from yy_xyz_nh where not khmc is null order by khmc",
             "AND khmc like'%{Combo3}%'", "AND yy_XyZ_NH.khmc like'%{Combo3}%'"}};
}

QVector<Criterion> sheets()
{
    return {{"Combo2", "签约公司：", "select DISTINCT gsmc from yy_mxb_h where not gsmc is null order by gsmc",
             "AND gsmc ='{Combo2}'"},
            {"Combo3", "国外客户：", "select DISTINCT khmc from yy_mxb_h where not khmc is null order by khmc",
             "AND khmc ='{Combo3}'"},
            {"Combo4", "合同编号：", "select DISTINCT htbh from yy_mxb_h where not htbh is null order by htbh",
             "AND htbh ='{Combo4}'"}};
}

QVector<Criterion> taxes()
{
    return {
        {"Combo1", "签约公司名称：", "select DISTINCT gsmc from yy_sstjb_rpt where not gsmc is null order by gsmc",
         "AND gsmc like '%{Combo1}%'"},
        {"Combo5", "国内厂家名称：", "select DISTINCT csmc from yy_sstjb_rpt where not csmc is null order by csmc",
         "AND csmc like'%{Combo5}%'"},
        {"Combo4", "外销合同号：", "select DISTINCT htbh from yy_sstjb_rpt where not htbh is null order by htbh",
         "AND htbh ='{Combo4}'"},
        {"Combo2", "报关单号：", "select DISTINCT bgdbh from yy_sstjb_rpt where not bgdbh is null order by bgdbh",
         "AND  bgdbh ='{Combo2}'"},
        {"Combo3", "核销单号：", "select DISTINCT hxdh from yy_sstjb_rpt where not hxdh is null order by hxdh",
         "AND hxdh ='{Combo3}'"},
    };
}

QVector<Criterion> verifications()
{
    return {
        {"Combo1", "签约公司名称：", "select DISTINCT gsmc from yy_sstjb_rpt where not gsmc is null order by gsmc",
         "AND gsmc like '%{Combo1}%'"},
        {"Combo2", "外销合同号：", "select DISTINCT htbh from yy_sstjb_rpt where not htbh is null order by htbh",
         "AND htbh ='{Combo2}'"},
        {"Combo3", "报关单号：", "select DISTINCT bgdbh from yy_sstjb_rpt where not bgdbh is null order by bgdbh",
         "AND  bgdh ='{Combo3}'"},
        {"Combo4", "销售发票号：", "select DISTINCT fpbh from yy_sstjb_rpt where not fpbh is null order by fpbh",
         "AND fpbh ='{Combo4}'"},
        {"Combo5", "核销单号：", "select DISTINCT hxdh from yy_sstjb_rpt where not hxdh is null order by hxdh",
         "AND hxdh ='{Combo5}'"},
    };
}

QVector<Criterion> monthOfReturns()
{
    Criterion company = verifications().first();
    return {company,
            {.name = "Text1", .caption = "年度：", .fragment = "AND year(djrq) = {Text1}"},
            {.name = "Text2", .caption = "月份：", .fragment = "AND month(djrq) = {Text2}"}};
}

QVector<Criterion> dispatches()
{
    return {{"Combo1", "派车公司：", "select DISTINCT pcgs from cy_pcd_rpt where not pcgs is null order by pcgs",
             "AND pcgs like '%{Combo1}%'"},
            {"Combo2", "拖车公司：", "select DISTINCT tcgs from cy_pcd_rpt where not tcgs is null order by tcgs",
             "AND tcgs like'%{Combo2}%'"}};
}

QVector<Criterion> bookings()
{
    return {
        {"Combo4", "托运公司：", "select DISTINCT GSMC from SYS_GSMC  where not gsmc is null ORDER BY GSMC",
         "AND tygs ='{Combo4}'"},
        {"Combo5", "承运公司：", "select DISTINCT GSMC from SYS_CWGS where not gsmc is null ORDER BY GSMC ",
         "AND cygs ='{Combo5}'"},
        {"Combo2", "合同编号：", "select DISTINCT htbh from cy_dcd_djb_h where not htbh is null ORDER BY htbh",
         "AND htbh ='{Combo2}'"},
        {"Combo3", "发票编号：", "select DISTINCT FPbh from cy_dcd_djb_h where not fpbh is null",
         "AND fpbh ='{Combo3}'"},
        {"Combo6", "国外客户：", "select DISTINCT shr from cy_dcd_djb_h where not shr is null ORDER BY shr ",
         "AND shr ='{Combo6}'"},
    };
}

QVector<Criterion> products()
{
    return {
        {"Combo1", "商品编号：", "select DISTINCT cpbh from yy_bzdj_rpt where not cpbh is null order by cpbh",
         "AND cpbh like '%{Combo1}%'"},
        {"Combo2", "商品名称：", "select DISTINCT cpmc from yy_bzdj_rpt where not cpmc is null order by cpmc",
         "AND cpmc like'%{Combo2}%'"},
        {"Combo3", "商品类别：", "select DISTINCT cplb from yy_bzdj_rpt where not cplb is null order by cplb",
         "AND cplb='{Combo3}'"},
        {"Combo4", "厂家编号：", "select DISTINCT gfbh from yy_gyszl where not gfbh is null order by gfbh",
         "AND gysbh='{Combo4}'"},
        {"Combo5", "厂家名称：", "select DISTINCT zwmc from yy_gyszl where not zwmc is null order by zwmc",
         "AND gys_mc like '%{Combo5}%'"},
    };
}

} // namespace criteria

namespace
{

// ---- labels ----

QString from(const DocumentValues &values)
{
    return values.text(fromDate);
}

QString to(const DocumentValues &values)
{
    return values.text(toDate);
}

QString inChinese(const QString &text)
{
    const QDate date = dateFromText(text);
    return date.isValid() ? date.toString(QStringLiteral("yyyy年M月d日")) : QString();
}

QString fromInChinese(const DocumentValues &values)
{
    return inChinese(from(values));
}

QString toInChinese(const DocumentValues &values)
{
    return inChinese(to(values));
}

QString count(const DocumentValues &values)
{
    return numberText(values.number("count"));
}

QString copies(const DocumentValues &values)
{
    return count(values) + QStringLiteral("份");
}

QString times(const DocumentValues &values)
{
    return count(values) + QStringLiteral(" 次");
}

template <const char *box> QString textOfBox(const DocumentValues &values)
{
    return values.text(QString::fromUtf8(box));
}
constexpr char combo2[] = "Combo2", combo3[] = "Combo3";

QString titleOfMonth(const DocumentValues &values)
{
    return values.trimmed("Text1") + QStringLiteral("年度") + values.trimmed("Text2") + QStringLiteral("月份") +
           QStringLiteral("出口情况定期统计报表");
}

// ---- documents ----

const QVector<DocumentLabel> period{{"L_QsRq", from}, {"L_JzRq", to}};

#define EXPORTS "select * from yy_wxht_rpt where htbh<>''"
#define PURCHASES "select * from yy_cght_rpt where htbh<>''"
#define DATES "and djrq>='{DTPicker1}' and djrq<='{DTPicker2}'"
#define VALIDITY "and yxjzrq>='{DTPicker3}' and yxjzrq<='{DTPicker4}'"

Document exportContracts(const QString &name, const QString &report, const QString &order)
{
    return {.name = name,
            .report = report,
            .record = {.rows = EXPORTS DATES},
            .order = order,
            .labels = period + QVector<DocumentLabel>{{"L_CS", copies}},
            .statistic = {criteria::exportContracts(), EXPORTS " " DATES VALIDITY,
                          "select count(*) as n from yy_gw_wxht_h where htbh<>'' " DATES, VALIDITY}};
}

Document purchases(const QString &name, const QString &report, const QString &order)
{
    return {.name = name,
            .report = report,
            .record = {.rows = PURCHASES DATES},
            .order = order,
            .labels = period + QVector<DocumentLabel>{{"L_CS", copies}},
            .statistic = {criteria::purchases(), PURCHASES " " DATES VALIDITY,
                          "select count(*) as n from yy_gn_cght_h where htbh<>'' " DATES, VALIDITY}};
}

// One kind of goods in one currency is a row. criteria: what the goods are narrowed by.
// missing: what is said without the first.
Document goods(const QString &name, const QString &report, const QVector<Criterion> &criteria,
               const QVector<DocumentLabel> &further = {}, const QString &missing = {})
{
    return {.name = name,
            .report = report,
            .record = {.rows = "select cpmc,gg,yanse,dw,bizh,sum(isnull(sl,0)) as sl,sum(isnull(je,0)) as "
                               "je,sum(isnull(je,0)*isnull(hl,0)) as bzje from yy_wxht_rpt where "
                               "djrq>='{DTPicker1}' and djrq<='{DTPicker2}'"},
            .order = "group by cpmc,gg,yanse,dw,bizh",
            .labels = period + further,
            .statistic = {.criteria = criteria, .missing = missing}};
}

#define CREDITS                                                                                                        \
    "SELECT yy_XyZ_NH.xyzh, yy_XyZ_NH.djrq, yy_XyZ_NH.kzrq,yy_XyZ_NH.kzyh, yy_XyZ_NH.tzyh, "                           \
    "yy_XyZ_NH.xyzlb,yy_XyZ_NH.xyzyxq, yy_XyZ_NH.yfyh, yy_XyZ_NH.khmc,yy_XyZ_NH.syr, yy_XyZ_NH.fpzy, "                 \
    "yy_XyZ_NH.zhuanchuan,yy_XyZ_NH.kzje, yy_XyZ_NH.bizh, yy_XyZ_NH.hl,yy_XyZ_NH.yfdz, yy_XyZ_NH.kzhbm, "              \
    "yy_XyZ_NH.kzr,yy_Xyz_NB.qydd,yy_Xyz_NB.htrq,yy_Xyz_NB.dw,yy_Xyz_NB.htbh , yy_Xyz_NB.sl, yy_Xyz_NB.je FROM "       \
    "yy_Xyz_NB INNER JOIN yy_XyZ_NH ON yy_Xyz_NB.xyzh = yy_XyZ_NH.xyzh where yy_XyZ_NH.xyzh<>''"                       \
    "and yy_XyZ_NH.kzrq>='{DTPicker1}'and yy_XyZ_NH.kzrq<='{DTPicker2}'"

// The group's count is one of rows, of which a credit has one for each unit of each contract, unlike the head's.
const QString noteOfCredits =
    QStringLiteral("注：份数按合同行计；合同金额为各行数字之和，未按币种折算，旁列的币种取自末行。");

Document credits(const QString &name, const QString &report, const QString &order)
{
    return {.name = name,
            .report = report,
            .record = {.rows = CREDITS},
            .order = order,
            .labels = period + QVector<DocumentLabel>{{"L_CS", copies}, {"L_Note", noteOfCredits}},
            .statistic = {criteria::credits(),
                          CREDITS "and yy_XyZ_NH.xyzyxq>='{DTPicker3}' and yy_XyZ_NH.xyzyxq<='{DTPicker4}'",
                          "select count(*) as n from yy_xyz_nh where xyzh<>'' and kzrq>='{DTPicker1}' and "
                          "kzrq<='{DTPicker2}'",
                          "and xyzyxq>='{DTPicker3}' and xyzyxq<='{DTPicker4}'"}};
}

Document sheets(const QString &name, const QString &report, const QString &order)
{
    return {.name = name,
            .report = report,
            .record = {.rows = "select * from yy_mxb_rpt where fpbh<>'' " DATES},
            .order = order,
            .labels = period,
            .statistic = {criteria::sheets()}};
}

Document taxes(const QString &name, const QString &report)
{
    return {.name = name,
            .report = report,
            .record = {.rows = "select * from yy_sstjb_rpt where htbh<>'' " DATES},
            .order = "\norder by htbh,fpbh",
            .labels = period,
            .statistic = {.criteria = criteria::taxes(),
                          .counted = "select count(*) as n from yy_sstjb_rpt where htbh<>'' " DATES,
                          .needsRows = true}};
}

Document verifications(const QString &name, const QString &report, const QString &table, const QString &order)
{
    return {.name = name,
            .report = report,
            .record = {.rows = "select *" + table + DATES},
            .order = order,
            .labels = {{"L_QsRq", fromInChinese}, {"L_jZrq", toInChinese}, {"L_Fs", count}},
            .statistic = {criteria::verifications(), {}, "select count(*) as n" + table + DATES}};
}

Document dispatches(const QString &name, const QString &report)
{
    return {.name = name,
            .report = report,
            .record = {.rows = "select * from cy_pcd_rpt where pcdh<>'' " DATES},
            .order = "\norder by pcgs",
            .labels = period + QVector<DocumentLabel>{{"L_pCCs", times}},
            .statistic = {.criteria = criteria::dispatches(),
                          .counted = "select count(*) as n from cy_pcd_rpt where pcdh<>'' " DATES,
                          .needsRows = true}};
}

Document bookings(const QString &name, const QString &report, const QString &order)
{
    return {.name = name,
            .report = report,
            .record = {.rows = "select * from cy_dcd_djb_h where djrq>='{DTPicker1}' and djrq<='{DTPicker2}'"},
            .order = order,
            .statistic = {criteria::bookings()}};
}

// The record of a number as the query screens print it, in their own words.
Document contract(const QString &name, const QString &report, const QString &record, const QString &head,
                  const QString &view, const QString &label)
{
    return {.name = name,
            .report = report,
            .record = {.name = record,
                       .key = "htbh",
                       .head = head,
                       .rows = "select * from " + view + " where HTBH='{htbh}'"},
            .totals = "select sum(isnull(je,0)) as zjje from " + view + " where htbh='{htbh}'",
            .labels = {{label, contractTotalInWords}}};
}

} // namespace

QVector<Document> queryDocuments()
{
    const QVector<Criterion> contractParties = criteria::exportContracts();
    Document confirmation = contract("销售确认书", "YY_wxHt_Rpt", "外销合同",
                                     "select bizh,logo from yy_gw_wxht_h where htbh='{htbh}'", "yy_wxht_rpt", "L_ZjjE");
    confirmation.logo = "Image1";
    return {
        exportContracts("外销合同统计表（按签约公司）", "YY_WxHt_TjB_rPT", "order by gsmc,htbh"),
        exportContracts("外销合同统计表（按国外客户）", "yy_whht_Tjb_rptB", "order by khmc,htbh"),
        goods("外销合同商品统计表（按签约公司）", "YY_WXHT_Cptj_RPT", {contractParties[0]},
              {{"L_gsmc", textOfBox<combo2>}}, "请选择公司名称"),
        goods("外销合同商品统计表（按国外客户）", "YY_WxHt_CPtj_B", {contractParties[1]},
              {{"L_gsmc", textOfBox<combo3>}}, "请选择国外客户名称"),
        goods("外销合同商品统计表（按商品名称）", "YY_wxht_Cptj_CP", contractParties),
        confirmation,
        purchases("采购合同统计表（按签约公司）", "yy_GNcG_CxTJB_rpt", "order by gsmc,htbh"),
        purchases("采购合同统计表（按国内厂商）", "YY_GnCg_CXTJB_RPTB", "order by csmc,htbh"),
        contract("采购合同书（英文金额）", "yy_CgHt_RPT", "采购合同",
                 "select bizh from yy_gn_cght_h where htbh='{htbh}'", "yy_cght_rpt", "L_Zjje"),
        credits("信用证查询统计表（按受益人）", "YY_xyz_cxtj_RpT", "order by yy_XyZ_NH.syr,yy_XyZ_NH.xyzh"),
        credits("信用证查询统计表（按收货人）", "YY_xyz_CxTj_RptB", "order by yy_XyZ_NH.khmc,yy_XyZ_NH.xyzh"),
        sheets("出口销售合同结案情况统计表（按销货单位）", "YY_Mxb_CxTj_RpT", "order by gsmc,HTBH,fpbh"),
        sheets("出口销售合同结案情况统计表（按国外客户）", "YY_Mxb_CxTj_RptB", "order by KHmc,HTBH,fpbh"),
        taxes("外销合同缴税情况统计表（按签约公司）", "YY_ZsQk_TjB_Rpt"),
        taxes("外销合同缴税情况统计表（按国内厂家）", "YY_ZsQk_TjB_RptB"),
        verifications("出口收汇核销结算表", "CY_HXD_cxtj_rpt", " from cy_hxd_gsly where htbh<>'' ",
                      "order by htbh,hxdh"),
        verifications("企业核销单领用情况统计表", "CY_hxD_LY_TJB", " from cy_hxd_gshs where hxdh_st<>'' ",
                      "order by gsmc,djrq"),
        {.name = "出口情况定期统计报表",
         .report = "CY_hxd_yueFen_Rpt",
         .record = {.rows = "select * from cy_hxd_gsly where hxdh<>''"},
         .order = "order by gsmc,myfs,hxdh",
         .labels = {{"L_Fs", count}, {"L_bT", titleOfMonth}},
         .statistic = {criteria::monthOfReturns(), {}, "select count(*) as n from cy_hxd_gsly where hxdh<>''"}},
        // What is called grouping by the trucking company is headed by the dispatching one, and the reverse.
        dispatches("派车费用统计表（按拖车公司）", "CY_pcd_cxtj_RpT"),
        dispatches("派车费用统计表（按派车公司）", "Cy_Pcd_Cxtj_rptB"),
        bookings("订舱费用情况统计表（按订舱公司）", "CY_Dcd_Cxtj_Rpt", "order by tygs,fpbh"),
        bookings("订舱费用情况统计表（按船务公司）", "Cy_DCd_CXTJ_RptB", "order by cygs,htbh,fpbh"),
    };
}

} // namespace tradewick
