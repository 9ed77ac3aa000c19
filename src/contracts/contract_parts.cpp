#include "contracts/contract_parts.h"

#include "common/record_form.h"
#include "papers/papers.h"

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

namespace prices
{

#define PRICES(SIZE, FURTHER)                                                                                          \
    "SELECT dbo.yy_BzDj.cpbh,isnull(dbo.yy_BzDj.zzs,0) as zzs,isnull(dbo.yy_BzDj.zsl,0) as "                           \
    "zsl,isnull(dbo.yy_BzDj.cplb,'') as cplb,isnull(dbo.yy_BzDj.cpmc,'') as cpmc,isnull(dbo.yy_BzDj.dw,'') as "        \
    "dw,isnull(dbo.yy_BzDj.YW_CPMC,'') as yw_cpmc,isnull(dbo.yy_BzDj.yanse,'') as yanse,isnull(" SIZE                  \
    ",'') as cpgg,isnull(dbo.yy_BzDj.bacp,'') as bacp,isnull(dbo.YY_BZDJ_B.GYS_DJ,0) as gys_dj," FURTHER               \
    " FROM dbo.yy_BzDj left JOIN dbo.YY_BZDJ_B ON dbo.yy_BzDj.cpbh = dbo.YY_BZDJ_B.CPBH where "
#define QUOTE                                                                                                          \
    PRICES("dbo.yy_BzDj_b.gg", "isnull(dbo.YY_BZDJ_B.GYS_DIZHI,'') as gys_dizhi,isnull(dbo.YY_BZDJ_B.jmdj ,0) as "     \
                               "jmdj,isnull(dbo.YY_BZDJ_B.jkdj ,0) as jkdj ,dbo.yy_bzdj_b.khbh")

const char *const ofCustomer = QUOTE "dbo.yy_bzdj_b.khbh='{text}'";
const char *const byCode = QUOTE "dbo.yy_bzdj.cpbh like '%{typed}%'";
const char *const bySize = QUOTE "dbo.yy_bzdj.cpbh ='{cpbh}' and dbo.yy_bzdj_b.gg like '%{gg}%' and "
                                 "dbo.yy_bzdj_b.khbh='{khbh}'";
const char *const ofPurchase =
    PRICES("dbo.yy_BzDj.cpgg", "isnull(dbo.YY_BZDJ_B.gys_lh,'') as gys_lh") "dbo.yy_bzdj.cpbh like '%{typed}%'";
#undef QUOTE
#undef PRICES

} // namespace prices

QStringList documentCaptions()
{
    return {"前端", "向前", "向后", "后端", "添加", "删除", "编辑", "确认", "取消", "返回"};
}

PickSpec companyPick(const QString &combo, bool withMail)
{
    Copies copies{
        {"gsmc", "gsmc"}, {"e_gsmc", "e_gsmc"}, {"gsdz", "gsdz"}, {"e_gsdz", "e_gsdz"}, {"gs_phone", "gs_phone"}};
    if (withMail)
        copies += Copies{{"gs_email", "gs_email"}};
    copies += Copies{{"gs_fax", "gs_fax"},       {"fpzt", "fpzt"},           {"logo", "logo"},
                     {"bgbm", "bgbm"},           {"sjzch", "sjzch"},         {"bank_en", "bank_en"},
                     {"bank_code", "bank_code"}, {"bank_name", "bank_name"}, {"swdjh", "swdjh"}};
    return {combo, {{withMail ? companyWithMail : company, copies}}};
}

LineRule amountOfOnePrice()
{
    return {{"sl", "dj", "je"}, "je", [](const LineNumbers &line) -> std::optional<double> {
                return line["sl"] * line["dj"];
            }};
}

ButtonSpec printing(const QString &name, const QString &caption, const QString &document, const QString &shortcut)
{
    return {.name = name,
            .caption = caption,
            .shortcut = shortcut,
            .press = [document](RecordForm &form) { printRecord(document, form.text("Text1(0)"), &form); },
            .ofStored = true};
}

} // namespace tradewick
