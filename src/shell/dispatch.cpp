#include "shell/dispatch.h"

#include "contracts/export_contract.h"
#include "masterdata/company_registration.h"
#include "masterdata/currencies.h"
#include "masterdata/customers.h"
#include "masterdata/departments.h"
#include "masterdata/payment_methods.h"
#include "masterdata/ports.h"
#include "masterdata/products.h"
#include "masterdata/regions.h"
#include "masterdata/settlement_terms.h"
#include "masterdata/shipping_companies.h"
#include "masterdata/staff.h"
#include "masterdata/suppliers.h"
#include "masterdata/trucking_companies.h"
#include "masterdata/units.h"
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
        {"frmAbout", {make<frmAbout>, Placement::Centre}},
        {"frmODBCLogon", {make<frmODBCLogon>, Placement::Centre}},
        {"frmSplash", {make<frmSplash>, Placement::Centre}},
        {"sys_bzsz", declared(Sys_bzsz)},
        {"sys_QXSZ", {make<sys_QXSZ>, Placement::FreeArea}},
        {"YY_WXHT", {make<YY_WXHT>, Placement::ScreenWidth}},
        {"Sys_CwGs_ZL", {make<Sys_CwGs_ZL>, Placement::ScreenWidth}},
        {"Sys_GKSZ", declared(Sys_GKSZ)},
        {"sys_JLDW", declared(Sys_JLDW)},
        {"Sys_TcGs_Set", {make<Sys_TcGs_Set>, Placement::ScreenWidth}},
        {"sys_bmsz", declared(Sys_bmsz)},
        {"sys_fkfs", {make<sys_fkfs>, Placement::FreeArea}},
        {"sys_gssz", {make<sys_gssz>, Placement::ScreenWidth}},
        {"sys_gzry", {make<sys_gzry>, Placement::FreeArea}},
        {"sys_qysz", {make<sys_qysz>, Placement::FreeArea}},
        {"sys_zffs", declared(Sys_zffs)},
        {"YY_GWKH_ZL", {make<YY_GWKH_ZL>, Placement::FreeArea}},
        {"yy_GYszl", {make<yy_GYszl>, Placement::FreeArea}},
        {"yy_cpbj", {make<yy_cpbj>, Placement::FreeArea}},
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
