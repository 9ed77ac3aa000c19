// The documents of a shipment, all of them printed of one detail sheet.
#include "common/amount_words.h"
#include "data/date_text.h"
#include "papers/areas.h"

namespace tradewick
{

namespace
{

constexpr const char *packingTotals =
    "select sum(isnull(je,0)) as zjje,sum(isnull(jianshu,0)) as zJs,sum(isnull(sl,0)) as zsl,"
    "sum(isnull(zjz,0))as ZJZ,sum(isnull(zmz,0)) as zmz from yy_mxb_rpt where fpbh='{fpbh}' group by fpbh";
constexpr const char *volumeTotals =
    "select sum(isnull(je,0)) as zjje,sum(isnull(jianshu,0)) as zJs,sum(isnull(sl,0)) as zsl,"
    "sum(isnull(zjz,0))as ZJZ,sum(isnull(zmz,0)) as zmz,sum(isnull(hjtj,0)) as hjtj from yy_mxb_rpt "
    "where fpbh='{fpbh}' group by fpbh";
constexpr const char *amountTotal =
    "select sum(isnull(je,0)) as zjje from yy_mxb_rpt where fpbh='{fpbh}' group by fpbh";

DocumentRecord sheet()
{
    return {.name = "单证明细表",
            .key = "fpbh",
            .head = "select fpbh,djrq,htbh,gsmc,e_gsmc,logo,bizh,dw,b_zdw,yjl,tstk,xsfp,xszxd,xsforma from yy_mxb_h "
                    "where fpbh='{fpbh}'",
            .rows = "select * from yy_mxb_rpt where fpbh='{fpbh}'",
            .clause = "tstk"};
}

// A figure as it is: 1234.5 stands as 1234.5.
QString figure(double number)
{
    return printedText(number, {});
}

QString quantity(const DocumentValues &values)
{
    return figure(values.total("zsl"));
}

QString packages(const DocumentValues &values)
{
    return figure(values.total("zjs"));
}

QString netWeight(const DocumentValues &values)
{
    return figure(values.total("zjz"));
}

QString grossWeight(const DocumentValues &values)
{
    return figure(values.total("zmz"));
}

QString amount(const DocumentValues &values)
{
    return figure(values.total("zjje"));
}

double commission(const DocumentValues &values)
{
    return values.total("zjje") * values.number("yjl") / 100;
}

double net(const DocumentValues &values)
{
    return values.total("zjje") - commission(values);
}

QString commissionAmount(const DocumentValues &values)
{
    return figure(commission(values));
}

QString netAmount(const DocumentValues &values)
{
    return figure(net(values));
}

QString amountInChinese(const DocumentValues &values)
{
    double total = values.total("zjje");
    return AmountInChinese(total);
}

QString dateInChinese(const QDate &date)
{
    return date.isValid() ? date.toString(QStringLiteral("yyyy年M月d日")) : QStringLiteral("年月日");
}

QString today(const DocumentValues &)
{
    return dateInChinese(reportClock().date());
}

QString dateOfSheet(const DocumentValues &values)
{
    return dateInChinese(dateFromText(dateText(values.head("djrq"))));
}

// Invoices and the packing list spell kilograms in their own way, and take the units as they were typed.
QString packing(const DocumentValues &values)
{
    return QStringLiteral("%1%2  IN%3%4  N.W:%5KgS  G.W:%6KgS")
        .arg(quantity(values), values.text("dw"), packages(values), values.text("b_zdw"), netWeight(values),
             grossWeight(values));
}

QString packingAndVolume(const DocumentValues &values)
{
    return packing(values) + QStringLiteral("  Volume:") + figure(values.total("hjtj"));
}

QString sayNetAmount(const DocumentValues &values)
{
    return QStringLiteral("SAY ") + values.text("bizh") + QStringLiteral("  ") + values.inEnglish(net(values));
}

QString currencyAndAmount(const DocumentValues &values)
{
    return values.trimmed("bizh") + u' ' + amount(values);
}

QString quantityAndWeights(const DocumentValues &values)
{
    return QStringLiteral("%1%2 G.W:%3 Kgs  N.W:%4 Kgs")
        .arg(quantity(values), values.trimmed("dw"), grossWeight(values), netWeight(values));
}

// The tax office's invoice is made out for goods still to be entered too.
template <LabelText text> QString orBlank(const DocumentValues &values)
{
    return values.hasTotals() ? text(values) : QStringLiteral(" ");
}

QString amountInEnglish(const DocumentValues &values)
{
    return values.inEnglish(values.total("zjje"));
}

QString netWeightInKgs(const DocumentValues &values)
{
    return netWeight(values) + QStringLiteral(" Kgs");
}

QString grossWeightInKgs(const DocumentValues &values)
{
    return grossWeight(values) + QStringLiteral(" Kgs");
}

QString packagesAndUnit(const DocumentValues &values)
{
    return packages(values) + QStringLiteral("   ") + values.trimmed("b_zdw");
}

QString currencyAndNet(const DocumentValues &values)
{
    return values.trimmed("bizh") + netAmount(values);
}

QString currencyAndNetInEnglish(const DocumentValues &values)
{
    return values.trimmed("bizh") + QStringLiteral("  ") + values.inEnglish(net(values));
}

QString company(const DocumentValues &values)
{
    return values.trimmed("gsmc");
}

QString companyInEnglish(const DocumentValues &values)
{
    return values.trimmed("e_gsmc");
}

QString invoiceNumber(const DocumentValues &values)
{
    return QStringLiteral("Invoice No.") + values.trimmed("fpbh");
}

QString invoiceDate(const DocumentValues &values)
{
    return QStringLiteral("Date:") + dateText(values.head("djrq"));
}

Document invoice(const QString &name, const QString &report, const QString &order = {})
{
    return {.name = name,
            .report = report,
            .record = sheet(),
            .order = order,
            .totals = packingTotals,
            .clause = {"xsfp", "L_TsTK"},
            .logo = "Image1",
            .labels = {{"L_TalAu", packing}, {"L_TalAM", sayNetAmount}}};
}

Document certificate(const QString &name, const QString &report)
{
    return {.name = name, .report = report, .record = sheet(), .clause = {"xsforma", "L_Tstk"}};
}

Document draft(const QString &name, const QString &report)
{
    return {.name = name,
            .report = report,
            .record = sheet(),
            .totals = volumeTotals,
            .labels = {{"L_ZJje", currencyAndNet}, {"L_Ywje", currencyAndNetInEnglish}}};
}

Document application(const QString &name, const QString &report)
{
    return {.name = name,
            .report = report,
            .record = sheet(),
            .totals = volumeTotals,
            .labels = {{"L_Djrq", dateOfSheet}, {"L_SlzJ", quantityAndWeights}, {"L_ZjjE", currencyAndAmount}}};
}

Document taxInvoice(const QString &name, const QString &report, const QVector<DocumentLabel> &further = {})
{
    return {.name = name,
            .report = report,
            .record = sheet(),
            .needed = "htbh",
            .totals = amountTotal,
            .labels =
                QVector<DocumentLabel>{{"L_YwJe", orBlank<amountInEnglish>}, {"L_ZwJe", orBlank<amountInChinese>}} +
                further};
}

Document declarationForRefund(const QString &name)
{
    return {.name = name,
            .report = "YY_BGD_TsZy_RpT",
            .record = sheet(),
            .needed = "htbh",
            .totals = volumeTotals,
            .labels = {{"L_ZjZ", netWeight}, {"L_ZMZ", grossWeight}, {"L_Zjs", packages}, {"L_hzje", amountInChinese}}};
}

// The tax office's papers come along with a registered invoice, whatever has become of its sheet.
Document registered(Document paper)
{
    paper.record = {.name = "税收票据", .key = "fpbh", .rows = paper.record.rows};
    paper.needed.clear();
    return paper;
}

// What the certificate says until the clerk writes it anew; the two lines of the signature bear each other's name.
Document mailingCertificate()
{
    DocumentRecord headAlone = sheet();
    headAlone.rows.clear();
    return {.name = "寄单证明",
            .report = "YY_ZDZM_PRINT",
            .record = headAlone,
            .logo = "Image1",
            .labels = {
                {"LzM_GsMc", company},
                {"LzM_eGSMC", companyInEnglish},
                {"L_FpBh", invoiceNumber},
                {"L_DjRq", invoiceDate},
                {"L_EGSMC2", company},
                {"L_gSMC2", companyInEnglish},
                {"L_TItLE", "CERTIFICATE"},
                {"L_nR", "WE HEREBY CERTIFY THAT ONE SET OF ORIGINAL SHIPPING DUCUMENTS INCLUDING 1/3 ORIGINAL B/L HAS "
                         "BEEN AIRMAILED TP APPLICANT BY EMS WITHIN TWO DAYS AFTER B/L DATE ADN SHIPPING ADVICE HAS "
                         "BEEN PREFORMED BY FACSIMILE TO APPLICATE WITHIN TWO DAYS AFTER B/L DATE."},
                {"L_LUOKUAN", "THANKS FOR YOUR KIND COOPERATION ,REGARDS."},
            }};
}

} // namespace

QVector<Document> sheetDocuments()
{
    return {
        invoice("单价格发票", "yy_DjFp_Rpt", " ORDER BY CPLB,CPMC"),
        invoice("发票", "YY_ENfp_Rpt"),
        {.name = "装箱单", .report = "YY_BzZx_Rpt", .record = sheet(), .clause = {"xszxd", "L_TsTK"}, .logo = "Image1"},
        {.name = "报关单",
         .report = "yy_BgD_rPt",
         .record = sheet(),
         .totals = volumeTotals,
         .labels = {{"L_ZjZ", netWeight},
                    {"L_ZMZ", grossWeight},
                    {"L_Zjs", packages},
                    {"L_LEss", commissionAmount},
                    {"L_SYF", netAmount}}},
        certificate("产地证", "YY_Original_rpt"),
        certificate("FormA", "YY_FormA_rpt"),
        {.name = "装船通知",
         .report = "YY_SPAD_RPt",
         .record = sheet(),
         .totals = volumeTotals,
         .labels = {{"L_ZJZ", netWeightInKgs},
                    {"L_ZMZ", grossWeightInKgs},
                    {"L_ZJJE", currencyAndAmount},
                    {"L_ZJs", packagesAndUnit}}},
        mailingCertificate(),
        draft("汇票", "YY_Hp_rPT"),
        application("产地证申请书", "YY_cdZ_SqB"),
        application("FormA申请书", "YY_FormA_sqb"),
        {.name = "报检单", .report = "yy_BjD_rpT", .record = sheet(), .labels = {{"L_BjRq", today}}},
        {.name = "报关委托书",
         .report = "YY_BG_WTS_rpt",
         .record = sheet(),
         .totals = volumeTotals,
         .labels = {{"L_zsl", quantity}, {"L_zmz", grossWeight}, {"L_zje", amount}}},
        invoice("英文发票", "YY_ENfp_Rpt"),
        {.name = "英文装箱单",
         .report = "YY_EnZxD_Rpt",
         .record = sheet(),
         .totals = volumeTotals,
         .clause = {"xszxd", "L_TsTK"},
         .logo = "Image1",
         .labels = {{"L_TalAu", packingAndVolume}}},
        draft("英文汇票", "YY_EnHp_Rpt"),
        taxInvoice("出口专用发票", "YY_Sp_CkZy_Rpt"),
        taxInvoice("出口专用发票套打", "YY_sp_CkZy_rptB", {{"L_zjje", orBlank<amount>}}),
        declarationForRefund("退税专用报关单"),
        {.name = "明细单",
         .report = "YY_MXD_rpt",
         .record = sheet(),
         .totals = volumeTotals,
         .logo = "Image1",
         .labels = {{"L_LEss", commissionAmount}, {"L_SYF", netAmount}, {"L_NYR", today}}},
        registered(taxInvoice("税收票据商业发票", "YY_Sp_CkZy_Rpt")),
        registered(declarationForRefund("税收票据报关单")),
    };
}

} // namespace tradewick
