#include "shell/dispatch.h"

#include "common/record_form.h"
#include "contracts/contracts.h"
#include "masterdata/masterdata.h"
#include "shell/about.h"
#include "shell/connection_settings.h"
#include "shell/splash.h"
#include "shell/users.h"

#include <QHash>

namespace tradewick
{

namespace
{

template <class Form> QWidget *make(QWidget *mainWindow)
{
    return new Form(mainWindow);
}

FormEntry form(RecordFormSpec (*spec)(), Placement placement)
{
    return {[spec](QWidget *mainWindow) { return new RecordForm(spec(), mainWindow); }, placement};
}

const QHash<QString, FormEntry> &forms()
{
    static const QHash<QString, FormEntry> entries{
        {"frmAbout", {make<frmAbout>, Placement::Centre}},
        {"frmODBCLogon", {make<frmODBCLogon>, Placement::Centre}},
        {"frmSplash", {make<frmSplash>, Placement::Centre}},
        {"sys_bzsz", form(sys_bzsz, Placement::FreeArea)},
        {"sys_QXSZ", form(sys_QXSZ, Placement::FreeArea)},
        {"YY_WXHT", form(YY_WXHT, Placement::ScreenWidth)},
        {"Sys_CwGs_ZL", form(Sys_CwGs_ZL, Placement::ScreenWidth)},
        {"Sys_GKSZ", form(Sys_GKSZ, Placement::FreeArea)},
        {"sys_JLDW", form(sys_JLDW, Placement::FreeArea)},
        {"Sys_TcGs_Set", form(Sys_TcGs_Set, Placement::ScreenWidth)},
        {"sys_bmsz", form(sys_bmsz, Placement::FreeArea)},
        {"sys_fkfs", form(sys_fkfs, Placement::FreeArea)},
        {"sys_gssz", form(sys_gssz, Placement::ScreenWidth)},
        {"sys_gzry", form(sys_gzry, Placement::FreeArea)},
        {"sys_qysz", form(sys_qysz, Placement::FreeArea)},
        {"sys_zffs", form(sys_zffs, Placement::FreeArea)},
        {"YY_GWKH_ZL", form(YY_GWKH_ZL, Placement::FreeArea)},
        {"yy_GYszl", form(yy_GYszl, Placement::FreeArea)},
        {"yy_cpbj", form(yy_cpbj, Placement::FreeArea)},
    };
    return entries;
}

} // namespace

const FormEntry *formEntry(const QString &form)
{
    const auto entry = forms().find(form);
    return entry == forms().end() ? nullptr : &*entry;
}

} // namespace tradewick
