#include "shell/dispatch.h"

#include "contracts/export_contract.h"
#include "masterdata/currencies.h"
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

// A form that is nothing but its declaration.
FormEntry declared(const RecordFormSpec &spec)
{
    return {[&spec](QWidget *mainWindow) { return new RecordForm(spec, mainWindow); }, Placement::FreeArea};
}

const QHash<QString, FormEntry> &forms()
{
    static const QHash<QString, FormEntry> entries{
        {"frmAbout", {make<frmAbout>, Placement::Centre}},   {"frmODBCLogon", {make<frmODBCLogon>, Placement::Centre}},
        {"frmSplash", {make<frmSplash>, Placement::Centre}}, {"sys_bzsz", declared(Sys_bzsz)},
        {"sys_QXSZ", {make<sys_QXSZ>, Placement::FreeArea}}, {"YY_WXHT", {make<YY_WXHT>, Placement::ScreenWidth}},
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
