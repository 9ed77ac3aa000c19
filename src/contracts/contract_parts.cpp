#include "contracts/letterhead.h"

namespace tradewick
{

namespace
{

#define COMPANY(MAIL)                                                                                                  \
    "select isnull(gsmc,'') as gsmc," MAIL "isnull(e_gsmc,'') as e_gsmc,isnull(gsdz,'') as "                           \
    "gsdz,isnull(e_gsdz,'') as e_gsdz,isnull(gs_phone,'') as gs_phone,isnull(gs_fax,'') as gs_fax,isnull(fpzt,'') as " \
    "fpzt,isnull(logo,'') as logo,isnull(bgbm,'') as bgbm,isnull(sjzch,'') as sjzch,isnull(bank_en,'') as "            \
    "bank_en,isnull(bank_name,'') as bank_name,isnull(bank_code,'') as bank_code,isnull(swdjh,'') as swdjh from "      \
    "sys_gsMC where gsmc='{text}' and not gsmc is null"

const char *const company = COMPANY("");
const char *const companyWithMail = COMPANY("isnull(gs_email,'') as gs_email,");
#undef COMPANY

} // namespace

PickSpec companyPick(const QString &combo, bool withMail)
{
    Copies copies{{"gsmc", "gsmc"}, {"e_gsmc", "e_gsmc"}, {"gsdz", "gsdz"}, {"e_gsdz", "e_gsdz"},
                  {"gs_phone", "gs_phone"}};
    if (withMail)
        copies += Copies{{"gs_email", "gs_email"}};
    copies += Copies{{"gs_fax", "gs_fax"},       {"fpzt", "fpzt"},           {"logo", "logo"},
                     {"bgbm", "bgbm"},           {"sjzch", "sjzch"},         {"bank_en", "bank_en"},
                     {"bank_code", "bank_code"}, {"bank_name", "bank_name"}, {"swdjh", "swdjh"}};
    return {combo, {{withMail ? companyWithMail : company, copies}}};
}

} // namespace tradewick
