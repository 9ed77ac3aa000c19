#include "shell/dispatch.h"

#include "shell/about.h"
#include "shell/connection_settings.h"
#include "shell/splash.h"

#include <QHash>

namespace tradewick
{

namespace
{

template <class Form> QWidget *make(QWidget *mainWindow)
{
    return new Form(mainWindow);
}

const QHash<QString, FormEntry> &forms()
{
    static const QHash<QString, FormEntry> entries{
        {"frmAbout", {make<frmAbout>, Placement::Centre}},
        {"frmODBCLogon", {make<frmODBCLogon>, Placement::Centre}},
        {"frmSplash", {make<frmSplash>, Placement::Centre}},
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
