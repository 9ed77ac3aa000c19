// The register of tax documents: for one export invoice the supplier's invoice of value-added tax, the certificate of
// the tax paid, and the verification form. All money in the lines is in the base currency.
#include "common/amount_words.h"
#include "common/number_text.h"
#include "common/record_form.h"
#include "papers/papers.h"
#include "settlement/settlement.h"

namespace tradewick
{

namespace
{

const char *const openInvoices = "select DISTINCT FPBH from YY_MXB_H where not FPBH is null and FPBH NOT IN(SELECT "
                                 "DISTINCT FPBH FROM YY_SSDJ_H) order by FPBH";
const char *const kindsUsed = "select DISTINCT sj_zclx from YY_ssdj_H where not sj_zclx is null order by sj_zclx";
const char *const invoicesRegistered = "select DISTINCT fpbh from YY_ssdj_H where not fpbh is null order by fpbh";
const char *const formsRegistered = "select DISTINCT hxdh from YY_ssdj_H where not hxdh is null order by hxdh";

// ---- what an invoice fills in ----

const char *const sheet = "select * from yy_MXB_h where FPBH='{text}'";
const char *const sums = "select FPBH,sum(isnull(je,0)) as zje,SUM(ISNULL(JIANSHU,0)) AS JIANSHU,SUM(ISNULL(SL,0)) AS "
                         "ZSL from YY_MXB_B where FPBH='{text}' group by FPBH ";
const char *const taxedGoods =
    "SELECT XH,FPBH, HTBH,djbh,CPMC, GG, DW, yanse, B_ZDW, isnull(zzs,0) as zzs,isnull(zsl,0) as "
    "zsl,isnull(dj,0)*isnull(hl,0) as dj, sl, isnull(JIANSHU,0) as jianshu,isnull(JE,0)*isnull(hl,0) as "
    "je,isnull(JE,0)*isnull(hl,0)*isnull(ZZS, 0) /100 as suie, isnull(JE,0)*isnull(hl,0)*isnull(zsl,0)/100 as sjJe, "
    "(isnull(JE,0)*isnull(hl,0)*isnull(ZZS, 0) /100 )+(isnull(je,0) * isnull(hl,0))as sjze From dbo.YY_MXB_RPT WHERE "
    "FPBH='{text}' ORDER BY FPBH,XH,CPMC";
const char *const insertGoods =
    "insert into YY_SSDJ_B(XH,FPBH,HTBH,cpmc,gg,YANSE,DW,B_ZDW,DJ,JE,SL,ZSL,ZZS,SUIE,SJJE,SJZE,djbh,jianshu) "
    "values('{xh}','{fpbh}','{htbh}','{cpmc}','{gg}','{yanse}','{dw}','{b_zdw}','{dj}','{je}','{sl}','{zsl}','{zzs}',"
    "'{suie}','{sjje}','{sjze}',\n'{djbh}','{jianshu}')";

PickSpec invoicePick()
{
    return {"Combo1(0)",
            {{.statement = sheet, .copies = {{"fpbh", "fpbh"}}, .trimmed = true},
             {.statement = sheet,
              .copies = {{"htbh", "htbh"},           {"djbh", "djbh"},         {"gsmc", "gsmc"},
                         {"gs_babm", "babm"},        {"gs_dz", "gsdz"},        {"gs_khh", "bank_name"},
                         {"gs_yhzh", "bank_code"},   {"gs_phone", "gs_phone"}, {"gs_swdjh", "swdjh"},
                         {"fprq", "djrq"},           {"csmc", "cg_csmc"},      {"cs_dz", "cg_csdz"},
                         {"cs_khh", "cg_cskhh"},     {"cs_yhzh", "cg_csyhzh"}, {"cs_swdjh", "cg_csswdjh"},
                         {"cs_phone", "cg_csphone"}, {"bizh", "bizh"},         {"hl", "hl"},
                         {"bgdbh", "hgbm"},          {"hxdh", "hxdh"},         {"spmc", "cpmc"},
                         {"hsbm", "cpbm"},           {"bzlx", "b_zdw"}}},
             {.statement = sums,
              .copies = {{"jianshu", "jianshu"}},
              .also =
                  [](RecordForm &form, const Row *first) {
                      if (!first)
                          return;
                      const double sum =
                          (*first)["zje"].toDouble(); // a text, in which a number has the place of its sign
                      form.records().Fields("hx_zjje").setValue((sum < 0 ? "" : " ") + numberText(sum));
                  }},
             {.statement = taxedGoods, .insert = insertGoods}}};
}

// ---- the lines ----

std::optional<double> amount(const LineNumbers &line)
{
    return line["dj"] * line["sl"];
}
std::optional<double> valueAddedTax(const LineNumbers &line)
{
    return line["dj"] * line["zzs"] * line["sl"] / 100;
}
std::optional<double> taxPaid(const LineNumbers &line)
{
    return line["sl"] * line["zsl"] * line["dj"] / 100;
}

LinesSpec goods()
{
    const QStringList ofInvoice{"sl", "dj", "je", "zzs", "suie"}, ofCertificate{"sl", "dj", "je", "zsl", "sjje"};
    // Enter passes over what follows from the other columns, and over the invoice.
    return {
        .statement = "select * from yy_SSDJ_B with (nolock) where FPBH='{fpbh}'",
        .deletion = "delete from YY_SSDJ_B where FPBH='{fpbh}'",
        .key = "fpbh",
        .grids = {{.columns = {{"cpmc", "货物或应税劳务名称"},
                               {"gg", "规格型号"},
                               {"dw", "单位"},
                               {"sl", "数量"},
                               {"dj", "单价"},
                               {"je", "金额"},
                               {"zzs", "税率"},
                               {"suie", "税额"},
                               {"fpbh", "发票编号"},
                               {"zzsfph", "增值税发票号"}},
                   .enterColumns = {"cpmc", "gg", "dw", "sl", "dj", "zzs", "zzsfph"},
                   .rules = {{ofInvoice, "je", amount}, {ofInvoice, "suie", valueAddedTax}},
                   .page = 0,
                   .above = "Text1(10)"},
                  {.name = "TDBGrid3",
                   .columns = {{"cpmc", "货物名称"},
                               {"sl", "课税数量"},
                               {"dw", "单位"},
                               {"dj", "单价"},
                               {"je", "计税金额"},
                               {"zzs", "法定税率"},
                               {"zsl", "征税率"},
                               {"sjje", "实缴税额"},
                               {"fpbh", "发票编号"},
                               {"sj_jksh", "缴款单号"}},
                   .enterColumns = {"cpmc", "sl", "dw", "dj", "zzs", "zsl", "sj_jksh"},
                   .rules = {{ofCertificate, "je", amount}, {ofCertificate, "sjje", taxPaid}},
                   .page = 1,
                   .above = "Text1(40)",
                   .whileAdding = false}},
        .followsChoices = true,
    };
}

// ---- the papers ----

const QString fullName = "名       称：", name = "名     称：", addressAndPhone = "地 址、电 话：",
              bankAndAccount = "开户行及账号：", taxNumber = "税务登记号：", inFigures = "（小写）";

PageSpec valueAddedTaxInvoice()
{
    const QString buyer = "购 货 单 位", cipher = " 密  码  区", seller = "  销 货 单 位", payer = "纳税人识别号：";
    return {"增值税发票",
            {{.name = "FP_id", .column = "fpbh", .caption = "销货发票号码：", .hidden = true},
             {"Combo1(0)", "fpbh", "销货发票号码：", field::combo(openInvoices)},
             {"Text1(2)", "djbh", "统一发票号码："},
             {"Text1(0)", "zzsfph", "发票编号：№"},
             {"Text1(1)", "zzs_kprq", "开票日期：", field::date},
             {"Text1(3)", "gsmc", fullName, field::text, 2, buyer},
             {"Text1(4)", "gs_swdjh", payer, field::text, 2, buyer},
             {"Text1(5)", "gs_dz", addressAndPhone, field::text, 2, buyer},
             {.name = "Text1(6)", .column = "gs_phone", .joined = true},
             {"Text1(7)", "gs_khh", bankAndAccount, field::text, 2, buyer},
             {.name = "Text1(8)", .column = "gs_yhzh", .joined = true},
             {.name = "Text1(9)",
              .column = "zzs_mmb",
              .caption = "加密版本号：",
              .span = 2,
              .group = cipher,
              .starts = FrameStart::Beside},
             {"Text1(10)", "jshj_dx", "价税合计（大写）", field::text, 2},
             {.name = "Text1(11)", .column = "jshj_xx", .caption = inFigures, .joined = true},
             {"Text1(12)", "csmc", fullName, field::text, 2, seller},
             {"Text1(13)", "cs_swdjh", payer, field::text, 2, seller},
             {"Text1(14)", "cs_dz", addressAndPhone, field::text, 2, seller},
             {.name = "Text1(15)", .column = "cs_phone", .joined = true},
             {"Text1(16)", "cs_khh", bankAndAccount, field::text, 2, seller},
             {.name = "Text1(17)", .column = "cs_yhzh", .joined = true},
             {.name = "Text1(18)",
              .column = "zzs_beizhu",
              .caption = "    备       注",
              .type = field::longText,
              .span = 2,
              .starts = FrameStart::Beside},
             {.name = "Text1(19)", .column = "skr", .caption = "收款人：", .span = 2, .starts = FrameStart::Below},
             {.name = "Text1(20)", .column = "fhr", .caption = "复核人：", .joined = true},
             {.name = "Text1(21)", .column = "kpr", .caption = "开票人：", .joined = true}}};
}

PageSpec taxCertificate()
{
    const QString title = "税收(出口货物专用)缴款书", payer = " 缴 款 单 位", budget = " 预算科目", buyer = " 购货企业";
    return {
        "税收缴款书",
        {{"Text1(22)", "sj_jksh", "№", field::text, 1, title},
         {"Combo1(1)", "sj_zclx", "注册类型：", field::used(kindsUsed), 1, title},
         {"Text1(23)", "sj_tfrq", "填发日期：", field::date, 1, title},
         {"Text1(24)", "sj_zsjg", "征收机关：", field::text, 1, title},
         {"Text1(25)", "csmc", name, field::text, 2, payer},
         {"Text1(26)", "cs_swdjh", taxNumber, field::text, 2, payer},
         {"Text1(27)", "cs_khh", bankAndAccount, field::text, 2, payer},
         {.name = "Text1(28)", .column = "cs_yhzh", .joined = true},
         {.name = "Text1(29)",
          .column = "sj_ysbm",
          .caption = "编码",
          .span = 2,
          .group = budget,
          .starts = FrameStart::Beside},
         {"Text1(30)", "sj_ysmc", "名称", field::text, 2, budget},
         {"Text1(31)", "sj_ysjc", "级次", field::text, 2, budget},
         {"Text1(32)", "gsmc", name, field::text, 2, buyer},
         {"Text1(33)", "gs_swdjh", taxNumber, field::text, 2, buyer},
         {"Text1(34)", "gs_babm", "海 关代 码：", field::text, 2, buyer},
         {.name = "Text1(35)", .column = "sj_skgk", .caption = "收款国库：", .span = 2, .starts = FrameStart::Beside},
         {"Text1(36)", "fpbh", "销货发票号码：", field::text, 2},
         {.name = "Text1(37)",
          .column = "sj_qsrq",
          .caption = "税款所属时期：",
          .type = field::date,
          .starts = FrameStart::Below},
         {.name = "Text1(38)", .column = "sj_jzrq", .caption = "至", .type = field::date, .joined = true},
         {"Text1(39)", "sj_xjrq", "税款限缴日期：", field::date},
         {"Text1(40)", "sj_sjjedx", "金额合计（大写）", field::text, 2},
         {.name = "Text1(41)", .column = "sj_sjjexx", .caption = inFigures, .joined = true},
         {"Text1(42)", "sj_beizhu", "备    注：", field::text, 2}}};
}

PageSpec verificationForm()
{
    const QString title = "出 口 收 汇 核 销 单";
    return {"收汇核销单",
            {{"Text1(43)", "hxdh", "编号：№", field::text, 2, title, "出口退税专用"},
             {"Text1(44)", "gsmc", "出口单位：", field::text, 2, title},
             {"Text1(45)", "gs_wgdm", "单位代码：", field::text, 2, title},
             {"Text1(46)", "spmc", "货物名称", field::text, 2, title},
             {"Text1(47)", "jianshu", "（箱件）数量", field::text, 1, title},
             {.name = "Text1(48)", .column = "bzlx", .joined = true},
             {"Text1(49)", "bizh", "币种总价", field::text, 1, title},
             {.name = "Text1(50)", .column = "hx_zjje", .joined = true},
             {"Text1(51)", "bgdbh", "报关单编号：", field::text, 2, title},
             {"Text1(52)", "wgjpz", "外管局签注：", field::text, 2, title},
             {"Text1(53)", "hx_qsrq", "外管局签署日期：", field::date, 1, title}}};
}

// ---- what OK adds up ----

// Of the lines as they stand in the database: what is typed into them now counts from the next OK on.
const char *const storedTotals =
    "select sum(isnull(je,0)) as zjje,sum(isnull(jianshu,0)) as zJs,sum(isnull(sl,0)) as zsl,sum(isnull(suie,0))as "
    "suie,sum(isnull(sjje,0)) as sjje from yy_ssdj_b where fpbh='{fpbh}' group by fpbh";

void addUp(RecordForm &form)
{
    const auto totals = form.firstRow(storedTotals, {{"fpbh", form.text("FP_id")}});
    if (!totals)
        return;
    const auto set = [&form](const char *words, const char *figures, double sum) {
        form.records().Fields(figures).setValue(sum);
        form.records().Fields(words).setValue(AmountInChinese(sum)); // which rounds it
    };
    set("jshj_dx", "jshj_xx", (*totals)["zjje"].toDouble() + (*totals)["suie"].toDouble());
    set("sj_sjjedx", "sj_sjjexx", (*totals)["sjje"].toDouble());
}

} // namespace

RecordFormSpec YY_SsPj_DJB()
{
    const auto print = [](const char *document) {
        return [document](RecordForm &form) { printRecord(document, form.text("FP_id"), &form); };
    };
    return {
        .name = "YY_SsPj_DJB",
        .caption = "税收票据登记表",
        .statement = "select* FROM yy_SSDJ_H with(nolock) ",
        .pages = {valueAddedTaxInvoice(), taxCertificate(), verificationForm()},
        .pairsInRow = 2,
        .list = {{"fpbh", "销货发票号"}, {"fprq", "发票日期"}},
        .listName = "TDBGrid2",
        .buttons = {{"Fp_Rpt", "商业发票", "Ctrl+P", print("税收票据商业发票")},
                    {"Bgd_rpt", "报关单", "Ctrl+Shift+P", print("税收票据报关单")}},
        .defaults = {today("djrq"), {"fpbh", ""}}, // beside a record without any (Null) no invoice would be offered
        .required = {{"Text1(0)", "所有名称不能为空"}},
        .picks = {invoicePick()},
        .lines = goods(),
        .filters = {{.name = "Combo4",
                     .caption = "销货发票",
                     .statement = "select * from yy_ssdj_h where fpbh='{text}'order by fpbh,djrq",
                     .trimmed = false,
                     .offers = invoicesRegistered,
                     .whileTyping = "select * from yy_ssdj_h where fpbh like '%{text}%'order by fpbh,djrq"},
                    {.name = "Combo5",
                     .caption = "核销单号",
                     .statement = "select * from yy_ssdj_h where hxdh='{text}'order by fpbh,djrq",
                     .trimmed = false,
                     .offers = formsRegistered,
                     .whileTyping = "select * from yy_ssdj_h where hxdh like '%{text}%'order by fpbh,djrq"}},
        .failures = failuresOfDocuments,
        .startsOnLast = true,
        .firstFocus = "Combo1(0)",
        .adding = Adding::UntilCancel,
        .cancelDropsLines = true,
        .cancelReturns = true,
        .afterDelete = AfterDelete::Last,
        .refilled = {"Combo1(0)", "Combo1(1)"},
        .beforeStore = addUp,
    };
}

} // namespace tradewick
