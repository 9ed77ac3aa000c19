// The truck dispatch, and the booking note and bill of lading on each shipping line's own paper.
#include "data/date_text.h"
#include "papers/areas.h"

namespace tradewick
{

namespace
{

// A number keeps a place in front for its sign.
QString dispatchDate(const DocumentValues &values)
{
    const QDate date = dateFromText(dateText(values.head("djrq")));
    if (!date.isValid())
        return {};
    return QStringLiteral(" %1 年 %2月 %3日").arg(date.year()).arg(date.month()).arg(date.day());
}

Document booking(const QString &choice, const QString &report)
{
    return {.name = choice,
            .report = report,
            .record = {.name = "订舱单",
                       .key = "dcdh",
                       .head = "select dcdh from cy_dcd_djb_h where dcdh='{dcdh}'",
                       .rows = "select * from cy_dcddj_rpt where dcdh='{dcdh}'",
                       .printsWithout = true},
            .choice = choice};
}

Document bill(const QString &choice, const QString &report, const QVector<DocumentLabel> &labels = {})
{
    return {.name = choice,
            .report = report,
            .record = {.name = "提单",
                       .key = "tdhm",
                       .head = "select tdhm from cy_hytd_djb_h where tdhm='{tdhm}'",
                       .rows = "select * from cy_hytd_rpt where tdhm='{tdhm}'"},
            .labels = labels,
            .choice = choice};
}

// The bill that most lines share shows who the line is. What a line does not list here stays as the last one left it,
// which is something else than an empty text.
Document sharedBill(const QString &choice, const QVector<DocumentLabel> &labels)
{
    return bill(choice, "CY_HYTD_WanNe_Rpt", labels);
}

DocumentLabel above(const QString &company)
{
    return {"L_cwgs", company};
}
DocumentLabel below(const QString &company)
{
    return {"L_yWmC", company};
}
DocumentLabel fax(const QString &numbers)
{
    return {"L_FAx", numbers};
}
DocumentLabel phone(const QString &numbers)
{
    return {"L_teL", numbers};
}

QVector<Document> bookings()
{
    return {
        booking("铁行渣华", "cy_thzH_DCD_Rpt"),
        booking("APL订舱单", "CY_Dcd_dj_Rpt"),
        booking("CMA（ANL）订舱单", "CY_HZ_DCD_Rpt"),
        booking("通用订舱单", "CY_ty_DCD_Rpt"),
        booking("马士基订舱单", "CY_MSJ_DCD_Rpt"),
        booking("广州海运", "CY_GH_dcd_Rpt"),
        booking("深圳中远", "CY_DCD_szzy_RPT"),
        booking("韩进订舱单", "CY_DCd_HanJin_Rpt"),
        booking("川崎订舱单", "CY_dCd_ChuanQi_Rpt"),
        booking("MOL订舱单", "CY_DCD_MOL_RPT"),
        booking("Norasia订舱单", "CY_DCD_Norasia_Rpt"),
        booking("YangMing订舱单", "CY_DcD_YANGMING_rpt"),
        booking("以星订舱单", "CY_dcd_YIXING_rpt"),
        booking("OOCL订舱单", "CY_DcD_OOcL_Rpt"),
        booking("MSC订舱单", "CY_DcD_MSC_Rpt"),
        booking("NYK订舱单", "CY_DCD_Nyk_Rpt"),
        booking("中国外运订舱单", "CY_DcD_ZGWY_Rpt"),
        booking("万海订舱单", "CY_Dcd_WanHai_Rpt"),
        booking("HAPAG_LIOYD订舱单", "Cy_DcD_HaPaG_lioyd"),
        booking("", "CY_ty_DCD_Rpt"),
    };
}

QVector<Document> bills()
{
    return {
        sharedBill("铁行渣华", {above("铁行渣华(中国)船务公司深圳分公司"), fax("Fax:86-755-25153320/3303"),
                                phone("Tel:86-755-25153042/43/46/47")}),
        bill("APL提单", "CY_HYTD_RPT"),
        sharedBill("CMA（ANL）提单", {below("CMA CGM(CHINA) SHIPPING CO.,LTD SHENZHEN BRANCH"),
                                      fax("Fax:86-755-25833501/3502/3503"), phone("Tel:86-755-25833500")}),
        bill("通用提单", "CY_HYTD_RPT"),
        bill("马士基提单", "CY_HYTD_mSj_Rpt"),
        bill("广州海运提单", "CY_hytd_GH_rpt"),
        sharedBill("深圳中远提单",
                   {above("深圳市中远国际货运有限公司"), below("COSCO SHENZHEN INTERNATIONAL FREIGHT CO.,LTD"),
                    fax("Fax:86-755-25839269"), phone("Tel:86-755-25839167")}),
        sharedBill("韩进提单",
                   {above("ATLANTA SHIPPING AGENT CO.,LTD"), below("AS AGENT HANJIN SHIPPING SHENZHEN OFFICE"),
                    fax("Fax:86-755-82478809/82461503"), phone("Tel:86-755-82463366/82478770")}),
        sharedBill("川崎提单", {above("川崎汽船（中国）有限公司"), below(" K LINE（CHINA）CO.,LTD SHENZHEN BRANCH"),
                                fax("Fax:86-755-82934158"), phone("Tel:86-755-82934156/82934157")}),
        sharedBill("MOL提单", {above("商船三井船舶有限公司"), below("MOL （CHINA） CO., LTD"),
                               fax("Fax:86-755-82462037"), phone("Tel:86-755-82462031/82462032")}),
        sharedBill("Norasia提单", {above("ＮＯＲＡＳＩＡ"), below(""), fax("Fax:86-755-26815400/421"),
                                   phone("Tel:86-755-26815401（总机）")}),
        sharedBill("YangMinG提单",
                   {above(""), below("YANG MING LINE"), fax("Fax:86-769-2486895"), phone("Tel:86-769-2500205")}),
        sharedBill("以星提单", {above("以星轮船（中国）船务有限公司 深圳分公司"),
                                below("ZIM ISREAL NAVIGATION（CHINA）CO.,LTD SHENZHEN BRANCH"),
                                fax("Fax:86-755-25980153"), phone("Tel:86-755-25980172")}),
        sharedBill("OOCL提单", {above("ＯＯＣＬ　ＣＯＭＰＡＮＹ"), below(""),
                                fax("Fax:852-25318272(香港) 86-20-87520384（广州）86-755-25832301-3（深圳）"),
                                phone("Tel:852-25066666(香港) 86-20-88771688（广州）86-755-25831022（深圳）")}),
        sharedBill("MSC提单", {above("MEDITERRANEAN SHIPPING COMPANY S.A.GENNVA"),
                               below("MEDITERRANEAN SHIPPING COMPANY(HONGKONG) LIMITED"),
                               fax("Fax:852-29078882/3/7(香港) 86-755-26815561/7（深圳）"), phone("")}),
        sharedBill("NYK提单", {above("日本邮船（中国）有限公司 深圳分公司"), below("NIPPON YUSEN KAISHA"),
                               fax("Fax:86-755-83463226"), phone("Tel:86-755-83463227/83463229")}),
        bill("中国外运提单", "CY_HYTD_ZgWy_Rpt"),
        sharedBill("万海提单", {above("中国外运广东东莞分公司"), below("万海航运服务有限公司"),
                                fax("Fax:86-769-2494889"), phone("Tel:86-769-2494883/2494886")}),
        bill("HAPAG_LIOYD提单", "Cy_HytD_Hapag_Rpt"),
        sharedBill("", {}),
    };
}

} // namespace

QVector<Document> shippingDocuments()
{
    const Document dispatch{.name = "派车单",
                            .report = "SC_Pcd_Rpt",
                            .record = {.name = "派车单",
                                       .key = "pcdh",
                                       .head = "select djrq from cy_pcd_rpt where pcdh='{pcdh}'",
                                       .rows = "select * from cy_pcd_rpt where pcdh='{pcdh}'"},
                            .labels = {{"L_DcRq", dispatchDate}}};
    // The query of dispatches asks with a blank behind the number, which counts for nothing.
    Document found = dispatch;
    found.name = "当前派车单";
    found.record.rows = "select * from cy_pcd_rpt where pcdh='{pcdh} '";
    QVector<Document> all = bookings() + bills();
    // A booking and a bill that are chosen by the same text are told apart by what they are.
    for (Document &one : all)
        for (const Document &other : std::as_const(all))
            if (one.choice == other.choice && one.report != other.report)
                one.name = one.record.name + *one.choice;
    return QVector<Document>{dispatch, found} + all;
}

} // namespace tradewick
