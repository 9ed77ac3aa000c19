#include "shell/dispatch.h"

#include "common/query_screen.h"
#include "common/tabbed_form.h"
#include "contracts/contracts.h"
#include "documents/documents.h"
#include "masterdata/masterdata.h"
#include "queries/queries.h"
#include "settlement/settlement.h"
#include "shell/about.h"
#include "shell/connection_settings.h"
#include "shell/splash.h"
#include "shell/users.h"
#include "shipping/shipping.h"

#include <QHash>

namespace tradewick
{

namespace
{

template <class Form> QWidget *make(QWidget *mainWindow, const OpenRecord &)
{
    return new Form(mainWindow);
}

const QHash<QString, FormEntry> &forms()
{
    static const QHash<QString, FormEntry> entries = [] {
        QHash<QString, FormEntry> all{
            {"frmAbout", {make<frmAbout>, Placement::Centre}},
            {"frmODBCLogon", {make<frmODBCLogon>, Placement::Centre}},
            {"frmSplash", {make<frmSplash>, Placement::Centre}},
        };
        for (const DeclaredForm &form : declaredForms())
            all.insert(form.name,
                       {[&form](QWidget *mainWindow, const OpenRecord &) { return makeForm(form.spec(), mainWindow); },
                        form.placement});
        for (const DeclaredQuery &query : declaredQueries())
            all.insert(query.name, {[&query](QWidget *mainWindow, const OpenRecord &openRecord) {
                                        return new QueryScreen(query.spec(), mainWindow, openRecord);
                                    },
                                    Placement::ScreenWidth});
        return all;
    }();
    return entries;
}

} // namespace

const QVector<DeclaredForm> &declaredForms()
{
    static const QVector<DeclaredForm> all{
        {"sys_bzsz", sys_bzsz, Placement::FreeArea},
        {"sys_QXSZ", sys_QXSZ, Placement::FreeArea},
        {"YY_WXHT", YY_WXHT, Placement::ScreenWidth},
        {"YY_CGHT", YY_CGHT, Placement::ScreenWidth},
        {"YY_XyZ_New_Rpt", YY_XyZ_New_Rpt, Placement::ScreenWidth},
        {"YY_Yh_XYZ", YY_Yh_XYZ, Placement::ScreenWidth},
        {"YY_DZ_MXB", YY_DZ_MXB, Placement::ScreenWidth},
        {"YY_SsPj_DJB", YY_SsPj_DJB, Placement::ScreenWidth},
        {"Sys_CwGs_ZL", Sys_CwGs_ZL, Placement::ScreenWidth},
        {"Sys_GKSZ", Sys_GKSZ, Placement::FreeArea},
        {"sys_JLDW", sys_JLDW, Placement::FreeArea},
        {"Sys_TcGs_Set", Sys_TcGs_Set, Placement::ScreenWidth},
        {"CY_Dcd_Rpt", CY_Dcd_Rpt, Placement::ScreenWidth},
        {"CY_Pcd_Djb", CY_Pcd_Djb, Placement::ScreenWidth},
        {"CY_HXD_Djb", CY_HXD_Djb, Placement::ScreenWidth},
        {"cy_HYtD_DjB", cy_HYtD_DjB, Placement::ScreenWidth},
        {"sys_bmsz", sys_bmsz, Placement::FreeArea},
        {"sys_fkfs", sys_fkfs, Placement::FreeArea},
        {"sys_gssz", sys_gssz, Placement::ScreenWidth},
        {"sys_gzry", sys_gzry, Placement::FreeArea},
        {"sys_qysz", sys_qysz, Placement::FreeArea},
        {"sys_SSDZ", sys_SSDZ, Placement::FreeArea},
        {"sys_zffs", sys_zffs, Placement::FreeArea},
        {"YY_GWKH_ZL", YY_GWKH_ZL, Placement::FreeArea},
        {"yy_GYszl", yy_GYszl, Placement::FreeArea},
        {"yy_cpbj", yy_cpbj, Placement::FreeArea},
    };
    return all;
}

const QVector<DeclaredQuery> &declaredQueries()
{
    static const QVector<DeclaredQuery> all{
        {"YY_WXHt_cxTjB", YY_WXHt_cxTjB}, {"YY_cgHt_CXtjb", YY_cgHt_CXtjb}, {"YY_XYz_CxTj", YY_XYz_CxTj},
        {"YY_mxd_CxTj", YY_mxd_CxTj},     {"YY_ZsQk_TJB", YY_ZsQk_TJB},     {"YY_HxD_LyHs_TJB", YY_HxD_LyHs_TJB},
        {"CY_Pcd_CxTj", CY_Pcd_CxTj},     {"YY_DcD_CxTj", YY_DcD_CxTj},     {"YY_spZl_CXTjB", YY_spZl_CXTjB},
    };
    return all;
}

const FormEntry *formEntry(const QString &form)
{
    const auto entry = forms().find(form);
    return entry == forms().end() ? nullptr : &*entry;
}

} // namespace tradewick
