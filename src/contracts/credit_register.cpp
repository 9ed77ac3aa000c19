// Letters of credit and the export contracts that they cover. A contract stands on one credit only.
#include "common/record_form.h"
#include "contracts/contract_parts.h"
#include "contracts/contracts.h"
#include "contracts/credits.h"

namespace tradewick
{

namespace
{

const char *const customers = "select DISTINCT khmc from yy_gwkh_zl where not khmc is null order by khmc";

const char *const customer = "select isnull(bizh,'')as bizh,isnull(hl,0)as hl,khmc from yy_gwkh_zl where "
                             "khmc='{text}' and not khmc is null";

// Contracts of this beneficiary and this customer that no stored credit covers, a row for each unit of their goods.
const char *const freeContracts =
    "SELECT Yy_Gw_wxHt_H.HTBH, Yy_Gw_wxHt_H.DJRQ, Yy_Gw_wxHt_H.khBH,Yy_Gw_wxHt_H.khMC, "
    "Yy_Gw_wxHt_H.GSMC,Yy_Gw_wxHt_H.BIZH,sum(isnull(Yy_Gw_wxHt_B.SL,0)) as sl,sum(isnull(Yy_Gw_wxHt_B.JE,0)) as "
    "je,Yy_Gw_wxHt_B.DW,Yy_Gw_wxHt_H.QYDZ, Yy_Gw_wxHt_H.YXQSRQ,Yy_Gw_wxHt_H.YXJZRQ FROM Yy_Gw_wxHt_B INNER JOIN "
    "Yy_Gw_wxHt_H ON Yy_Gw_wxHt_B.HTBH = Yy_Gw_wxHt_H.HTBH where yy_gw_wxht_h.gsmc='{syr}' and "
    "yy_gw_wxht_h.khmc='{khmc}' and yy_gw_wxht_h.htbh like '%{typed}%' and yy_gw_wxht_h.htbh not in (select distinct "
    "htbh from yy_xyz_nb) group by Yy_Gw_wxHt_H.HTBH, Yy_Gw_wxHt_H.DJRQ, Yy_Gw_wxHt_H.khBH, "
    "Yy_Gw_wxHt_H.khMC,Yy_Gw_wxHt_H.GSMC,Yy_Gw_wxHt_H.QYDZ, Yy_Gw_wxHt_H.YXQSRQ,Yy_Gw_wxHt_H.YXJZRQ , "
    "Yy_Gw_wxHt_B.dw,Yy_Gw_wxHt_H.BIZH";

QVector<FieldSpec> fields()
{
    return {{"Text1(0)", "xyzh", "信用证号："},
            {"Text1(1)", "kzrq", "开证日期：", field::date},
            {"Text1(5)", "xyzyxq", "该证有效期：", field::date},
            {"Combo1(0)", "syr", "受 益 人：", field::combo(offers::companies)},
            {"Combo1(4)", "khmc", "收 货 人：", field::combo(customers)},
            {"Text1(2)", "kzr", "开 证 人："},
            {"Combo1(1)", "xyzlb", "信用证类别：", field::combo()},
            {"Text1(8)", "kzje", "开证金额："},
            {"Text1(9)", "bizh", "币    种："},
            {"Text1(3)", "kzhbm", "开证行编码："},
            {"Combo1(2)", "fpzy", "分批装运：", allowance()},
            {"Combo1(3)", "zhuanchuan", "允许转船：", allowance()},
            {"Text1(4)", "kzyh", "开证银行："},
            {"Text1(6)", "tzyh", "通知银行："},
            {"Text1(7)", "yfyh", "议付银行："},
            {"Text1(11)", "yfdz", "议付单证：", field::longText, 2},
            {"Text1(10)", "beizhu", "备   注：", field::longText}};
}

LinesSpec contracts()
{
    return {
        .statement = "select * from yy_xyz_NB where xyzh='{xyzh}'",
        .deletion = "delete from yy_xyz_NB where xyzh='{xyzh}'",
        .key = "xyzh",
        .grids = {{.columns = {{"htbh", "合同编号"},
                               {"htrq", "合同日期"},
                               {"qydd", "签约地点"},
                               {"sl", "商品数量"},
                               {"dw", "单位"},
                               {"je", "总金额"},
                               {"yxqsrq", "有效初限"},
                               {"yxjzrq", "有效终期"},
                               {"xyzh", "信用证号"},
                               {"beizhu", "备注"}},
                   .enterColumns = {"htbh", "beizhu"},
                   .title = "合同明细"}},
        .starts = {{"xyzh", "{Text1(0)}"}, {"sl", "0"}, {"je", "0"}},
        .lookup = {.columns = {{"htbh", "合同编号"},
                               {"djrq", "签订日期"},
                               {"je", "商品金额"},
                               {"sl", "总计件数"},
                               {"dw", "单位"},
                               {"qydz", "签约地点"},
                               {"yxqsrq", "有效初期"},
                               {"yxjzrq", "有效终期"},
                               {"bizh", "币种"}},
                   .searches = {{"htbh", freeContracts}},
                   .copies = {{"htbh", "htbh"},
                              {"htrq", "djrq"},
                              {"qydd", "qydz"},
                              {"sl", "sl"},
                              {"dw", "dw"},
                              {"je", "je"},
                              {"yxqsrq", "yxqsrq"},
                              {"yxjzrq", "yxjzrq"}},
                   .presets = {{"xyzh", "{Text1(0)}"}},
                   .title = "合同选择"},
    };
}

} // namespace

RecordFormSpec YY_XyZ_New_Rpt()
{
    RecordFormSpec form = creditRegister("select distinct xyzh from yy_xyz_Nh where year(djrq)='{year}'and "
                                         "month(djrq)='{month}' order by xyzh");
    form.name = "YY_XyZ_New_Rpt";
    form.caption = "信用证登记窗口";
    form.statement = "select* FROM yy_xyz_Nh with(nolock) ";
    form.pages = {{"", fields()}};
    form.list = {{"xyzh", "信用证号"}, {"khmc", "客户名称"}};
    // Nothing is printed of a credit. No command of the menus opens the older register; it is reached from here.
    form.buttons = {{"Cmdprint", "打印", "Ctrl+P", [](RecordForm &) {}},
                    {.name = "Cmd_Yh_XYZ",
                     .caption = "按商品登记",
                     .shortcut = "Ctrl+G",
                     .press = [](RecordForm &one) { one.openBeside(YY_Yh_XYZ()); },
                     .ofStored = false}};
    form.picks = {{"Combo1(4)", {{customer, {{"bizh", "bizh"}, {"hl", "hl"}, {"kzr", "khmc"}}}}}};
    form.lines = contracts();
    form.filterCaption = "快捷查询";
    form.filters = {{.name = "Text2",
                     .caption = "合同编号：",
                     .statement = "select* FROM yy_xyz_Nh where xyzh='{xyzh}'",
                     .via = "select distinct htbh,xyzh from yy_xyz_nb where htbh like '%{text}%'",
                     .trimmed = false},
                    {.name = "Text3",
                     .caption = "信用证号：",
                     .statement = "select* FROM yy_xyz_Nh where xyzh like '%{text}%'",
                     .trimmed = false}};
    return form;
}

} // namespace tradewick
