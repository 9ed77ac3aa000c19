// Export sales contracts: the head of the document chain.
#include "contracts/contract_parts.h"
#include "contracts/contracts.h"

namespace tradewick
{

namespace
{

constexpr int daysOfValidity = 90;

const char *const customers = "select DISTINCT khbh from yy_gwkh_zl where not khbh is null order by khbh";

const char *const customerNames = "select khbh,khmc from yy_gwkh_zl where not khbh is null";

const char *const customer =
    "select isnull(bizh,'')as bizh,isnull(zwdz,'')as zwdz,isnull(fax,'')as fax,isnull(phone,'')as phone "
    ",isnull(dzyx,'')as dzyx,isnull(zffs,'')as zffs,isnull(fkfs,'')as fkfs,isnull(hl,0)as hl,isnull(khmc,'')as "
    "khmc,isnull(shi,'')as shi,isnull(DZYX,'')as DZYX,isnull(gb,'')as gb from yy_gwkh_zl where khbh='{text}' and not "
    "khmc is null";

const char *const removeLines = "DELETE FROM YY_gw_WXHT_B WHERE HTBH='{htbh}'";
const char *const insertLine =
    "insert into yy_gw_wxht_b(htbh,xc,cplb,cpmc,bacp,gg,yanse,cpbh,jkdj,jmdj,dj,sl,dw) "
    "values('{htbh}','{i}','{cplb}','{cpmc}','{bacp}','{cpgg}','{yanse}','{cpbh}','{jkdj}','{jmdj}','{gys_dj}',0,"
    "'{dw}')";

std::optional<double> unitPrice(const LineNumbers &line)
{
    return line["jkdj"] + line["jmdj"];
}

std::optional<double> amount(const LineNumbers &line)
{
    return (line["jkdj"] + line["jmdj"]) * line["sl"];
}

QVector<PageSpec> pages()
{
    return {
        {"合同概况",
         {{"Text1(0)", "htbh", "合同编号："},
          {"Combo1(0)", "khbh", "客户编号：", field::combo(customers, customerNames)},
          {"Text1(1)", "gb", "客户国别："},
          {"Text1(2)", "djrq", "签订日期：", field::date},
          {"Text1(3)", "khmc", "客户名称：", field::text, 2},
          {"Text1(4)", "phone", "电话号码："},
          {"Text1(5)", "dizh", "客户地址：", field::text, 2},
          {"Text1(6)", "fax", "传真号码："},
          {"Text1(7)", "e_mail", "E_Mail：", field::text, 2},
          {"Combo1(1)", "gsmc", "签约公司：", field::combo(offers::companies)},
          {"Combo1(2)", "bmmc", "签约部门：", field::combo(offers::departments)},
          {"Combo1(3)", "qyr", "签 约 人：", field::combo(offers::signers)},
          {"Text1(8)", "bizh", "客户币制："},
          {"Text1(9)", "hl", "汇    率："},
          {"Text1(10)", "qydz", "签约地点："},
          {"Text1(11)", "yxqsrq", "有效期：自", field::date},
          {"Text1(12)", "yxjzrq", "至：", field::date}}},
        {"合同条款",
         {{"Text1(13)", "ysbz", "验收标准："},
          {"Text1(14)", "ydz", "溢短装："},
          {"Text1(15)", "yyqx", "提出异议期限："},
          {"Text1(16)", "jgtk", "价格条款："},
          {"Text1(17)", "wyj", "违约金：按合约总价的"},
          {"Combo1(4)", "zygk", "装运港口：", field::combo(offers::ports, offers::portNames)},
          {"Combo1(5)", "mdgk", "目的港口：", field::combo(offers::ports, offers::portNames)},
          {"Text1(18)", "qttk", "其它条款：", field::longText, 2},
          {"Text1(19)", "madol", "唛头：", field::longText},
          {"Text1(20)", "jsfs", "结算方式："},
          {"Text1(21)", "bzyq", "包装要求：", field::longText},
          {"Text1(22)", "jhdz", "装运期限及交货地点：", field::text, 3}}},
        {"附属条款", {{"Text1(23)", "fstk", "", field::longText, 3}}},
    };
}

LinesSpec goods()
{
    const QVector<Preset> owner{{"htbh", "{Text1(0)}"}, {"gsmc", "{Combo1(1)}"}, {"khbh", "{Combo1(0)}"}};
    return {
        .statement = "select * from YY_gw_wxHT_B with (nolock) where HTBH='{htbh}'",
        .deletion = "delete from YY_gw_wxHT_B where HTBH='{htbh}'",
        .key = "htbh",
        .grids = {{.columns = {{"cpbh", "商品编号"},    {"cpmc", "商品名称"},  {"gg", "规格"},
                               {"yanse", "颜色"},       {"dw", "单位"},        {"sl", "数量"},
                               {"jkdj", "画框单价"},    {"jmdj", "镜/画单价"}, {"dj", "单价"},
                               {"jhrq", "交货日期"},    {"khlh", "客户件号"},  {"beizhu", "备注"},
                               {"je", "金额"},          {"htbh", "合同编号"},  {"khbh", "客户编号"},
                               {"gsmc", "公司名称"},    {"cplb", "商品类别"},  {"bacp", "H.S编码"},
                               {"yw_cpmc", "英文名称"}, {"zzs", "增值税"},     {"zsl", "征税率"}},
                   .enterColumns = {"cpbh", "sl"},
                   // What was typed over a derived value is derived again at once.
                   .rules = {{{"sl", "jkdj", "jmdj", "je"}, "je", amount}, {{"jkdj", "jmdj", "dj"}, "dj", unitPrice}}}},
        .starts = owner +
                  QVector<Preset>{{"jkdj", "0"}, {"je", "0"}, {"sl", "0"}, {"jmdj", "0"}, {"dj", "0"}, {"sxh", "{#}"}},
        .lookup = {.columns = {{"cpbh", "商品编号"},
                               {"cpmc", "商品名称"},
                               {"cpgg", "规格"},
                               {"yanse", "颜色"},
                               {"dw", "单位"},
                               {"jkdj", "画框单价"},
                               {"jmdj", "镜/画单价"},
                               {"gys_dj", "单价"},
                               {"bizh", "币种"},
                               {"khbh", "客户编号"},
                               {"cplb", "商品类别"}},
                   .searches = {{"cpbh", prices::byCode},
                                {.column = "gg",
                                 .statement = prices::bySize,
                                 .needs = "cpbh",
                                 .ownColumn = "htbh",
                                 .notOwn = "请双击此行表格，再录入数据！"}},
                   .copies = {{"cpbh", "cpbh"},
                              {"cpmc", "cpmc"},
                              {"gg", "cpgg"},
                              {"yanse", "yanse"},
                              {"bacp", "bacp"},
                              {"dw", "dw"},
                              {"jkdj", "jkdj"},
                              {"jmdj", "jmdj"},
                              {"dj", "gys_dj"},
                              {"cplb", "cplb"},
                              {"zzs", "zzs"},
                              {"yw_cpmc", "yw_cpmc"},
                              {"zsl", "zsl"}},
                   .presets = owner,
                   .asEdited = "sl",
                   .firstColumn = "khbh",
                   .first = "khbh"},
    };
}

} // namespace

RecordFormSpec YY_WXHT()
{
    return {
        .name = "YY_WXHT",
        .caption = "外销合同录入窗口",
        .statement = "select* FROM YY_gw_wxHT_H with(nolock)",
        .control = "AdoprimaryRs",
        .pages = pages(),
        .pairsInRow = 3,
        .list = {{"htbh", "合同编号"}, {"khmc", "客户名称"}},
        .captions = documentCaptions(),
        .buttons = {printing("Cmdprint(1)", "形式发票", "形式发票"),
                    printing("Cmdprint(0)", "形式发票2", "形式发票2", "Ctrl+Shift+P")},
        .numbering = monthly("X", "select distinct HTBH from YY_gw_wxHT_H where year(djrq)='{year}'and "
                                  "month(djrq)='{month}' order by HTBH"),
        .defaults = {today("djrq"), today("yxqsrq"), today("yxjzrq", daysOfValidity)},
        .required = {{"Text1(0)", "所有名称不能为空"}},
        // A count of rows is never negative: the message that there is no quote, told for a count below zero, never
        // comes, and a customer without prices leaves the contract without lines.
        .picks = {{"Combo1(0)",
                   {{.statement = customer,
                     .copies = {{"khmc", "khmc"},
                                {"dizh", "zwdz"},
                                {"phone", "phone"},
                                {"fax", "fax"},
                                {"gb", "gb"},
                                {"e_mail", "dzyx"},
                                {"bizh", "bizh"},
                                {"hl", "hl"},
                                {"jsfs", "zffs"}},
                     .none = WhenNone::Stop},
                    {.statement = prices::ofCustomer, .clear = removeLines, .insert = insertLine}}},
                  companyPick("Combo1(1)", true)},
        .lines = goods(),
        .dateFilter = {"DTPicker3", "日期查询", "select* FROM YY_gw_wxHT_H with(nolock) where djrq='{date}'"},
        .failures = failuresOfDocuments,
        .afterDelete = AfterDelete::LastBehindLast,
    };
}

} // namespace tradewick
