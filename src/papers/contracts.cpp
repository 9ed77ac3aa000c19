// The proforma invoice of an export contract, in both its forms, and the purchase contract.
#include "common/amount_words.h"
#include "common/number_text.h"
#include "papers/areas.h"

namespace tradewick
{

namespace
{

QString amountInFiguresAndChinese(const DocumentValues &values)
{
    double amount = values.total("zjje");
    const QString start = values.trimmed("bizh") + QStringLiteral("  ") + numberText(amount) + QStringLiteral("  ");
    return start + AmountInChinese(amount);
}

QString furtherClauses(const DocumentValues &values)
{
    return values.text("fstk");
}

Document proforma(const QString &name, const QString &report)
{
    return {.name = name,
            .report = report,
            .record = {.name = "外销合同",
                       .key = "htbh",
                       .head = "select bizh,fstk,logo from yy_gw_wxht_h where htbh='{htbh}'",
                       .rows = "select * from yy_wxht_rpt where HTBH='{htbh}'",
                       .goesOn = true},
            .totals = "select sum(isnull(je,0)) as zjje from yy_wxht_rpt where htbh='{htbh}'",
            .logo = "Image1",
            .labels = {{"L_ZjjE", contractTotalInWords}, {"L_FSTK", furtherClauses}}};
}

} // namespace

QString contractTotalInWords(const DocumentValues &values)
{
    return values.trimmed("bizh") + u' ' + values.inEnglish(values.total("zjje"));
}

QVector<Document> contractDocuments()
{
    return {proforma("形式发票", "YY_Xsfp_Rpt"),
            proforma("形式发票2", "yy_XsFp_dJRPT"),
            {.name = "采购合同书",
             .report = "yy_CgHt_RPT",
             .record = {.name = "采购合同",
                        .key = "htbh",
                        .head = "select bizh from yy_gn_cght_h where htbh='{htbh}'",
                        .rows = "select * from yy_cght_rpt where htbh='{htbh}'"},
             .totals = "select sum(isnull(je,0)) as zjje from yy_cght_rpt where htbh='{htbh}'",
             .labels = {{"L_Zjje", amountInFiguresAndChinese}}}};
}

} // namespace tradewick
