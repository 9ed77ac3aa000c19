#include "papers/report_table.h"

#include "data/data_error.h"
#include "papers/report_rules.h"

#include <algorithm>
#include <map>
#include <memory>

namespace tradewick
{

const QVector<ReportEntry> &reportEntries()
{
    static const QVector<ReportEntry> entries{
        {"YY_Xsfp_Rpt", reportFamilyB()},
        {"yy_XsFp_dJRPT", reportFamilyB()},
        {"khzl_rpt", reportFamilyC()},
        {"YY_KhZl_XX_Rpt", reportFamilyD()},
        {"YY_Gys_JMZL", reportFamilyC()},
        {"Yy_Gys_xxZl", reportFamilyD()},
        {"Sys_Cpzlb_rpt", priceListFamily()},
        {"YY_FormA_rpt", formAFamily()},
        {"yy_BgD_rPt", reportFamilyA()},
        {"yy_CgHt_RPT", reportFamilyA()},
        {"yy_DjFp_Rpt", reportFamilyB()},
        {"YY_ENfp_Rpt", reportFamilyB()},
        {"YY_PTFP_rPt", reportFamilyA()},
        {"YY_BzZx_Rpt", reportFamilyB()},
        {"YY_EnZxD_Rpt", reportFamilyA()},
        {"YY_MXD_rpt", reportFamilyA()},
        {"YY_Original_rpt", certificateFamily()},
        {"YY_cdZ_SqB", reportFamilyA()},
        {"YY_FormA_sqb", formAApplicationFamily()},
        {"YY_SPAD_RPt", shippingAdviceFamily()},
        {"YY_ZDZM_PRINT", reportFamilyA()},
        {"YY_BGD_TsZy_RpT", reportFamilyA()},
        {"YY_BG_WTS_rpt", reportFamilyA()},
        {"yy_BjD_rpT", reportFamilyA()},
        {"YY_Hp_rPT", reportFamilyA()},
        {"YY_EnHp_Rpt", reportFamilyA()},
        {"YY_Sp_CkZy_Rpt", reportFamilyA()},
        {"YY_sp_CkZy_rptB", taxInvoiceOverlayFamily()},
        {"SC_Pcd_Rpt", reportFamilyA()},
        {"cy_thzH_DCD_Rpt", {false}},
        {"CY_Dcd_dj_Rpt", reportFamilyA()},
        {"CY_HZ_DCD_Rpt", reportFamilyA()},
        {"CY_ty_DCD_Rpt", reportFamilyA()},
        {"CY_MSJ_DCD_Rpt", reportFamilyA()},
        {"CY_GH_dcd_Rpt", reportFamilyA()},
        {"CY_DCD_szzy_RPT", reportFamilyA()},
        {"CY_DCd_HanJin_Rpt", reportFamilyA()},
        {"CY_dCd_ChuanQi_Rpt", reportFamilyA()},
        {"CY_DCD_MOL_RPT", reportFamilyA()},
        {"CY_DCD_Norasia_Rpt", reportFamilyA()},
        {"CY_DcD_YANGMING_rpt", reportFamilyA()},
        {"CY_dcd_YIXING_rpt", reportFamilyA()},
        {"CY_DcD_OOcL_Rpt", reportFamilyA()},
        {"CY_DcD_MSC_Rpt", {false}},
        {"CY_DCD_Nyk_Rpt", {false}},
        {"CY_DcD_ZGWY_Rpt", reportFamilyA()},
        {"CY_Dcd_WanHai_Rpt", {false}},
        {"Cy_DcD_HaPaG_lioyd", {false}},
        {"CY_HYTD_RPT", generalBillFamily()},
        {"CY_hytd_GH_rpt", reportFamilyA()},
        {"CY_HYTD_mSj_Rpt", reportFamilyA()},
        {"CY_HYTD_ZgWy_Rpt", reportFamilyA()},
        {"Cy_HytD_Hapag_Rpt", reportFamilyA()},
        {"CY_HYTD_WanNe_Rpt", reportFamilyA()},
        {"YY_wxHt_Rpt", reportFamilyA()},
        {"YY_WxHt_TjB_rPT", reportFamilyA()},
        {"yy_whht_Tjb_rptB", reportFamilyA()},
        {"yy_GNcG_CxTJB_rpt", reportFamilyA()},
        {"YY_GnCg_CXTJB_RPTB", reportFamilyA()},
        {"YY_WXHT_Cptj_RPT", {false, {&stampFooter}}},
        {"YY_WxHt_CPtj_B", reportFamilyC()},
        {"YY_wxht_Cptj_CP", reportFamilyC()},
        {"YY_xyz_cxtj_RpT", reportFamilyC()},
        {"YY_xyz_CxTj_RptB", reportFamilyC()},
        {"YY_Mxb_CxTj_RpT", reportFamilyC()},
        {"YY_Mxb_CxTj_RptB", reportFamilyC()},
        {"YY_ZsQk_TjB_Rpt", reportFamilyC()},
        {"YY_ZsQk_TjB_RptB", reportFamilyC()},
        {"CY_HXD_cxtj_rpt", reportFamilyC()},
        {"CY_hxd_yueFen_Rpt", reportFamilyC()},
        {"CY_hxD_LY_TJB", reportFamilyC()},
        {"CY_pcd_cxtj_RpT", {true, dispatchTotals()}},
        {"Cy_Pcd_Cxtj_rptB", {false, dispatchTotals()}},
        {"CY_Dcd_Cxtj_Rpt", reportFamilyC()},
        {"Cy_DCd_CXTJ_RptB", {false, {&stampFooter}}},
    };
    return entries;
}

const ReportEntry *reportEntry(const QString &name)
{
    const QVector<ReportEntry> &all = reportEntries();
    const auto found =
        std::find_if(all.cbegin(), all.cend(), [&name](const ReportEntry &one) { return one.name == name; });
    return found == all.cend() ? nullptr : &*found;
}

QStringList reportNames()
{
    QStringList names;
    for (const ReportEntry &entry : reportEntries())
        names.append(entry.name);
    return names;
}

Report &report(const QString &name)
{
    static std::map<QString, std::unique_ptr<Report>> reports;
    std::unique_ptr<Report> &found = reports[name];
    if (!found) {
        const ReportEntry *entry = reportEntry(name);
        if (!entry)
            throw DataError(0, QStringLiteral("没有名为“%1”的报表").arg(name));
        QString error;
        auto model = loadTemplate(QStringLiteral(":/templates/%1.xml").arg(name), &error);
        if (!model)
            throw DataError(0, error);
        for (const QString &family : missingFamilies())
            qWarning("reports: the font family %s is not installed", qUtf8Printable(family));
        found = std::make_unique<Report>(entry->family, std::move(model));
    }
    return *found;
}

} // namespace tradewick
