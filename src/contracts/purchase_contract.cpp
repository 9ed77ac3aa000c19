// Purchase contracts with domestic suppliers. Each may name the export contract that it serves, of which it takes
// nothing.
#include "contracts/contract_parts.h"
#include "contracts/contracts.h"

namespace tradewick
{

namespace
{

constexpr int daysOfValidity = 30;

const char *const suppliers = "select DISTINCT gfbh from yy_gyszl where not gfbh is null order by gfbh";

const char *const supplierNames = "select gfbh,zwmc from yy_gyszl where not gfbh is null";

const char *const supplier =
    "select isnull(tysh,'') as tysh,isnull(khh,'') as khh,isnull(yhzh,'') as yhzh,isnull(bizh,'')as "
    "bizh,isnull(zwdz,'')as zwdz,isnull(fax,'')as fax,isnull(phone,'')as phone ,isnull(dzyx,'')as "
    "dzyx,isnull(zffs,'')as zffs,isnull(fkfs,'')as fkfs,isnull(hl,0)as hl,isnull(zwmc,'')as zwmc,isnull(shi,'')as "
    "shi,isnull(zheng,'')as zheng from yy_gyszl where gfbh='{text}' and not zwmc is null";

QVector<PageSpec> pages()
{
    return {
        {"合同概况",
         {{"Text1(0)", "htbh", "合同编号："},
          {"Combo1(0)", "wxht", "外销合同：", field::combo(offers::openContracts)},
          {"Text1(8)", "djrq", "签订日期：", field::date},
          {"Combo1(1)", "csbh", "厂商编号：", field::combo(suppliers, supplierNames)},
          {"Text1(1)", "csmc", "厂商名称：", field::text, 2},
          {"Text1(6)", "shi", "厂商地址：", field::text, 3},
          {.name = "Text1(7)", .column = "zheng", .joined = true},
          {.name = "Text1(2)", .column = "dizh", .joined = true},
          {"Text1(3)", "phone", "电话号码："},
          {"Text1(4)", "fax", "传真号码："},
          {"Text1(5)", "e_mail", "E_Mail："},
          {"Combo1(2)", "gsmc", "签约公司：", field::combo(offers::companies)},
          {"Combo1(3)", "bmmc", "签约部门：", field::combo(offers::departments)},
          {"Combo1(4)", "qyr", "签 约 人：", field::combo(offers::signers)},
          {"Text1(9)", "qydz", "签约地点："},
          {"Text1(22)", "yxqsrq", "有效期：自", field::date},
          {"Text1(23)", "yxjzrq", "至：", field::date},
          {"Text1(10)", "bizh", "厂商币制："},
          {"Text1(11)", "hl", "汇    率："}}},
        {"合同条款",
         {{"Text1(12)", "jgtk", "价格条款："},
          {"Text1(15)", "ydz", "溢短装："},
          {"Text1(16)", "ysbz", "验收标准："},
          {"Text1(17)", "jsfs", "结算方式："},
          {"Text1(18)", "bzyq", "包装要求："},
          {"Text1(19)", "yyqx", "提出异议期限："},
          {"Text1(20)", "wyj", "违约金：按合约总价的"},
          {"Combo1(5)", "zygk", "装运港口：", field::combo(offers::ports, offers::portNames)},
          {"Combo1(6)", "mdgk", "目的港口：", field::combo(offers::ports, offers::portNames)},
          {"Text1(21)", "jhdz", "交货时间地点：", field::text, 3},
          {"Text1(13)", "qttk", "其它条款：", field::longText, 2},
          {"Text1(14)", "madol", "唛头：", field::longText}}},
    };
}

LinesSpec goods()
{
    return {
        .statement = "select * from YY_GN_CGHT_B with (nolock) where HTBH='{htbh}'",
        .deletion = "delete from YY_GN_CGHT_B where HTBH='{htbh}'",
        .key = "htbh",
        .grids = {{.columns = {{"cpbh", "商品编号"},
                               {"cpmc", "商品名称"},
                               {"gg", "规格"},
                               {"yanse", "颜色"},
                               {"dw", "单位"},
                               {"dj", "单价"},
                               {"sl", "数量"},
                               {"jhrq", "交货日期"},
                               {"je", "金额"},
                               {"beizhu", "备注"},
                               {"cslh", "厂家件号"},
                               {"htbh", "合同编号"},
                               {"csbh", "厂家编号"},
                               {"gsmc", "公司名称"},
                               {"cplb", "商品类别"},
                               {"yw_cpmc", "英文名称"},
                               {"zzs", "增值税"},
                               {"zsl", "征税率"}},
                   .enterColumns = {"cpbh", "sl"},
                   .rules = {amountOfOnePrice()}}},
        // Nothing here ever marks a line as done; other programs do.
        .starts = {{"htbh", "{Text1(0)}"},
                   {"csbh", "{Combo1(1)}"},
                   {"gsmc", "{Combo1(2)}"},
                   {"sl", "0"},
                   {"je", "0"},
                   {"dj", "0"},
                   {"wanch", "未完成"}},
        .lookup = {.columns = {{"cpbh", "商品编号"},
                               {"cpmc", "商品名称"},
                               {"cpgg", "规格"},
                               {"yanse", "颜色"},
                               {"dw", "单位"},
                               {"gys_dj", "单价"},
                               {"gys_lh", "厂家件号"},
                               {"cplb", "商品类别"},
                               {"yw_cpmc", "英文名称"},
                               {"zzs", "增值税"},
                               {"zsl", "征税率"}},
                   .searches = {{"cpbh", prices::ofPurchase}},
                   .copies = {{"cpbh", "cpbh"},
                              {"cpmc", "cpmc"},
                              {"gg", "cpgg"},
                              {"yanse", "yanse"},
                              {"dw", "dw"},
                              {"dj", "gys_dj"},
                              {"cslh", "gys_lh"},
                              {"cplb", "cplb"},
                              {"yw_cpmc", "yw_cpmc"},
                              {"zzs", "zzs"},
                              {"zsl", "zsl"}}},
    };
}

} // namespace

RecordFormSpec YY_CGHT()
{
    return {
        .name = "YY_CGHT",
        .caption = "国内采购合同（订单）",
        .statement = "select* FROM YY_GN_CGHT_H with(nolock) order by djrq,csmc",
        .control = "AdoprimaryRs",
        .pages = pages(),
        .pairsInRow = 3,
        .list = {{"htbh", "合同编号"}, {"csmc", "厂商名称"}},
        .captions = documentCaptions(),
        .buttons = {printing("Cmdprint", "打印", "采购合同书")},
        .numbering = monthly("C", "select distinct HTBH from YY_GN_CGHT_H where year(djrq)='{year}'and "
                                  "month(djrq)='{month}' order by HTBH"),
        .defaults = {today("djrq"), today("yxqsrq"), today("yxjzrq", daysOfValidity)},
        .required = {{"Text1(0)", "合同号不能为空"}},
        .picks = {{"Combo1(1)",
                   {{supplier,
                     {{"csmc", "zwmc"},
                      {"dizh", "zwdz"},
                      {"phone", "phone"},
                      {"fax", "fax"},
                      {"e_mail", "dzyx"},
                      {"shi", "shi"},
                      {"zheng", "zheng"},
                      {"bizh", "bizh"},
                      {"hl", "hl"},
                      {"jsfs", "zffs"},
                      {"cs_bank", "khh"},
                      {"cs_bcode", "yhzh"},
                      {"cs_swdjh", "tysh"}}}}},
                  companyPick("Combo1(2)", false)},
        .lines = goods(),
        .dateFilter = {"DTPicker3", "日期查询", "select* FROM YY_GN_CGHT_H with(nolock) where djrq='{date}'"},
        .failures = failuresOfDocuments,
        .afterDelete = AfterDelete::LastBehindLast,
    };
}

} // namespace tradewick
