// The older register of letters of credit: each over one export contract, with the contract's goods under it. It has
// tables of its own, which nothing else reads.
#include "common/record_form.h"
#include "contracts/contract_parts.h"
#include "contracts/contracts.h"
#include "contracts/credits.h"

namespace tradewick
{

namespace
{

const char *const head =
    "select isnull(dizh,'')as dizh,isnull(bizh,'')as bizh,isnull(khbh,'') as khbh,isnull(khmc,'')as "
    "khmc,isnull(gb,'')as gb,isnull(sheng,'')as sheng ,isnull(shi,'')as shi,isnull(jgtk,'')as jgtk,isnull(qttk,'')as "
    "qttk,isnull(gsmc,'')as gsmc,isnull(zygk,'')as zygk,isnull(mdgk,'')as mdgk from yy_gw_wxht_h where htbh='{text}' "
    "and not khmc is null";

const char *const total = "select htbh,sum(isnull(je,0)) as zje from yy_gw_wxht_b where htbh='{text}' group by htbh ";

// An empty mark counts as open here, but not in the list of contracts.
const char *const openLines =
    "select isnull(cpbh,'') as cpbh,isnull(cpmc,'') as cpmc,isnull(cplb,'') as cplb,isnull(khlh,'') as "
    "khlh,isnull(gg,'') as gg ,isnull(dj,0) as dj,isnull(dw,'') as dw,isnull(htbh,'') as htbh,isnull(gsmc,'') as "
    "gsmc,jhrq,isnull(sl,0) as sl,isnull(je,0) as je,isnull(bacp,'') as bacp,isnull(yanse,'') as yanse,isnull(zzs,0) "
    "as zzs,isnull(zsl,0) as zsl,isnull(yw_cpmc,'') as yw_cpmc FROM yy_gw_wxht_b where htbh='{text}'and (wanch is "
    "null or wanch='' OR WANCH='未完成')";

const char *const insertLine =
    "insert into yy_xyz_b(xyzh,cpbh,cpmc,cplb,khlh,gg,dj,dw,htbh,gsmc,jhrq,sl,je,bacp,yanse,zzs,zsl,yw_cpmc) "
    "values('{xyzh}','{cpbh}','{cpmc}','{cplb}','{khlh}','{gg}','{dj}','{dw}','{htbh}','{gsmc}','{jhrq}','{sl}',"
    "'{je}','{bacp}','{yanse}','{zzs}','{zsl}','{yw_cpmc}')";

QVector<FieldSpec> fields()
{
    return {{"Text1(0)", "xyzh", "信用证号："},
            {"Combo1(0)", "htbh", "合同编号：", field::combo(offers::openContracts)},
            {"Text1(16)", "djrq", "登记日期：", field::date},
            {"Text1(1)", "kzrq", "开证日期：", field::date},
            {"Text1(4)", "xyzyxq", "该证有效期：", field::date},
            {"Text1(10)", "zyqx", "装运期限：", field::date},
            {"Text1(7)", "khmc", "开 证 人："},
            {"Text1(9)", "syr", "受 益 人："},
            {"Text1(13)", "kzje", "开证金额："},
            {.name = "Text1(14)", .column = "bizh", .joined = true},
            {"Combo1(1)", "xyzlb", "信用证类别：", field::combo()},
            {"Combo1(2)", "fpzy", "分批装运：", allowance()},
            {"Combo1(3)", "zhuanchuan", "允许转船：", allowance()},
            {"Text1(17)", "kzhbm", "开证行编码："},
            {"Text1(11)", "zygk", "装运港口："},
            {"Text1(12)", "mdgk", "目的港口："},
            {"Text1(2)", "kzyh", "开证银行："},
            {"Text1(3)", "tzyh", "通知银行："},
            {"Text1(5)", "yfyh", "议付银行："},
            {"Text1(6)", "jgtk", "价格条款："},
            {"Text1(8)", "qttk", "其它条款：", field::longText},
            {"Text1(15)", "yfdz", "议付单证：", field::longText}};
}

LinesSpec goods()
{
    return {
        .statement = "select * from yy_xyz_b where xyzh='{xyzh}'",
        .deletion = "delete from yy_xyz_b where xyzh='{xyzh}'",
        .key = "xyzh",
        .grids = {{.columns = {{"cpbh", "商品编码"}, {"cpmc", "商品名称"},   {"gg", "规格"},
                               {"yanse", "颜色"},    {"dw", "单位"},         {"dj", "单价"},
                               {"sl", "数量"},       {"jhrq", "交货日期"},   {"khlh", "客户件号"},
                               {"beizhu", "备注"},   {"je", "金额"},         {"htbh", "合同编号"},
                               {"khbh", "客户编号"}, {"gsmc", "公司名称"},   {"cplb", "产品类别"},
                               {"bacp", "H.S.编码"}, {"xyzh", "信用证号"},   {"zzs", "增值税"},
                               {"zsl", "征税率"},    {"yw_cpmc", "英文名称"}},
                   .enterColumns = {"cpbh", "dj", "sl"}, // a product brings no price along
                   .rules = {amountOfOnePrice()}}},
        .starts = {{"sl", "0"}, {"je", "0"}, {"dj", "0"}, {"sxh", "{#}"}},
        .lookup = {.columns = {{"cpbh", "商品编号"},
                               {"cpmc", "商品名称"},
                               {"cpgg", "规格"},
                               {"yanse", "颜色"},
                               {"dw", "单位"},
                               {"gys_dj", "采购价"},
                               {"bacp", "H.S.编码"},
                               {"cplb", "商品类别"},
                               {"yw_cpmc", "英文名称"},
                               {"bizh", "币种"},
                               {"zzs", "增值税"},
                               {"zsl", "征税率"}},
                   .searches = {{"cpbh", prices::byCode}},
                   .copies = {{"cpbh", "cpbh"},
                              {"cpmc", "cpmc"},
                              {"gg", "cpgg"},
                              {"yanse", "yanse"},
                              {"dw", "dw"},
                              {"cplb", "cplb"},
                              {"bacp", "bacp"},
                              {"zzs", "zzs"},
                              {"zsl", "zsl"},
                              {"yw_cpmc", "yw_cpmc"}},
                   .presets = {{"xyzh", "{Text1(0)}"}, {"htbh", "{Combo1(0)}"}}},
    };
}

} // namespace

RecordFormSpec YY_Yh_XYZ()
{
    RecordFormSpec form = creditRegister("select distinct xyzh from yy_xyz_H where year(djrq)='{year}'and "
                                         "month(djrq)='{month}' order by xyzh");
    form.name = "YY_Yh_XYZ";
    form.caption = "外销合同信用证登记";
    form.statement = "select* FROM yy_xyz_H with(nolock) ";
    form.pages = {{"", fields()}};
    form.list = {{"xyzh", "信用证号"}, {"khmc", "客户名称"}};
    // The lines that are there stay: a contract that is chosen twice stands twice.
    form.picks = {{"Combo1(0)",
                   {{head,
                     {{"khmc", "khmc"},
                      {"khdz", "dizh"},
                      {"syr", "gsmc"},
                      {"mdgk", "mdgk"},
                      {"zygk", "zygk"},
                      {"jgtk", "jgtk"},
                      {"bizh", "bizh"},
                      {"qttk", "qttk"},
                      {"khbh", "khbh"}}},
                    {.statement = total,
                     .copies = {{"kzje", "zje"}},
                     .also =
                         [](RecordForm &one, const Row *found) {
                             if (!found)
                                 one.setText("Text1(13)", {});
                         }},
                    {.statement = openLines, .insert = insertLine}}}};
    form.lines = goods();
    form.dateFilter = {"DTPicker1", "开证日期", "select* FROM yy_xyz_H with(nolock) where kzrq='{date}'"};
    return form;
}

} // namespace tradewick
