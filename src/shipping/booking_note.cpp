// Booking notes: one invoice's goods ask a shipping line for space on a vessel.
#include "shipping/shipping.h"
#include "shipping/shipping_note.h"

namespace tradewick
{

namespace
{

const char *const companies = "select DISTINCT GSMC from SYS_GSMC ORDER BY GSMC";
const char *const carriers = "select DISTINCT GSMC from SYS_CWGS ORDER BY GSMC";

const char *const invoicesOfCompany = "select DISTINCT FPbh from YY_MXB_H where gsmc='{tygs}' and FPbh NOT IN(SELECT "
                                      "DISTINCT FPBH FROM CY_DCD_DJB_b)";
const char *const company = "select * from SYS_GSMC where GSMC='{tygs}'";
const char *const carrier = "select DISTINCT * from SYS_CWGS where GSMC='{cygs}'";
const char *const invoice = "select htbh,fpbh,isnull(zygk,' ') as zygk,isnull(mdgk,' ') as mdgk, isnull(hyd,'') as "
                            "hyd,zyqx,khmc,khdz,phone,fax,ship_name from yy_mxb_h where fpbh='{text}'";
// Goods of one mark, customs name, code and package are one line, whatever their sizes and colours.
const char *const goodsOfInvoice =
    "select isnull(madol,'') as madol,isnull(bg_cpmc,'') as cpmc,isnull(fpbh,'') as fpbh,sum(isnull(zmz,0)) as "
    "zmz,sum(isnull(hjtj,0)) as hjtj,isnull(cpbm,'') as bacp,ISNULL(HTBH,'') AS HTBH,sum(ISNULL(JIANSHU,0)) AS "
    "JIANSHU,ISNULL(bzzl,' ') AS B_ZDW FROM yy_mxb_rpt where fpbh='{text}' group by "
    "htbh,fpbh,madol,cpbm,bg_cpmc,bzzl";
const char *const insertLine =
    "insert into CY_DCD_DJB_B(dcdh,fpbh,htbh,madol,cpmc,zmz,hjtj,jianshu,b_zdw,XH) "
    "values('{dcdh}','{fpbh}','{htbh}','{madol}','{cpmc}','{zmz}','{hjtj}','{jianshu}','{b_zdw}','{n}')";

QVector<PageSpec> pages()
{
    const FieldType yesOrNo = field::combo(QStringList{"是", "否"}),
                    paidWhen = field::combo(QStringList{"预付", "到付"}),
                    paidBy = field::combo(QStringList{"工厂", "托运者"});
    return {
        {"基本资料",
         {{.name = "Text(0)", .column = "dcdh", .caption = "订舱单号:", .hidden = true},
          {"Text(22)", "cw_dcdh", "订舱单号:"},
          {"Text(1)", "djrq", "订舱日期:", field::date},
          {"Combo1(0)", "tygs", "托运公司:", field::combo(companies)},
          {"Combo1(1)", "", "导入发票:", field::combo()},
          {"Combo1(2)", "cygs", "承运公司:", field::combo(carriers)},
          {"Text(3)", "shr", "收 货 人："},
          {"Text(5)", "tzr", "通 知 人："},
          {"Text(2)", "ship_name", "船名/航次："},
          {"Text(4)", "zhgk", "装货港口："},
          {"Text(6)", "xhgk", "卸货港口："},
          {"Text(8)", "mdgk", "目的港口："},
          {"Text(7)", "ycys", "首程运输："},
          {"Text(20)", "zyqx", "装运期限："},
          {"Combo1(3)", "sfzt", "是否自拖:", yesOrNo},
          {"Combo1(4)", "sfzb", "是否自报:", yesOrNo},
          {"Combo1(5)", "hyf", "海运费：", paidWhen},
          {"Combo1(6)", "mtf", "码头费：", paidWhen},
          {"Text(13)", "sc_code", "Scac Code："},
          {"Text(11)", "ffdd", "付费地点："},
          {"Combo1(8)", "zjsb", "舱单是否自己申报:", yesOrNo},
          {"Combo1(9)", "zgxzf", "重柜是否需要熏蒸:", yesOrNo},
          {"Text(9)", "beizhu", "拖车公司："},
          {.name = "Text(23)", .column = "escg", .caption = "柜型柜数：", .span = 2, .unit = "X20'柜"},
          {.name = "Text(24)", .column = "sscg", .unit = "X40'柜", .joined = true},
          {.name = "Text(25)", .column = "sschg", .unit = "X40'高柜", .joined = true},
          {.name = "Text(26)", .column = "sswcg", .unit = "X45'柜", .joined = true}}},
        {"附加资料",
         {{"Combo1(7)", "tcfzfz", "拖车费支付者：", paidBy},
          {"Text(10)", "jfr", "支付者姓名："},
          {"Text(12)", "jfr_phone", "支付者电话："},
          {"Text(14)", "jfr_fax", "支付者传真："},
          {"Text(15)", "tdlqdd", "提单领取地点："},
          {"Text(17)", "tygs_phone", "托运人联系电话："},
          {"Text(16)", "gxgs", "预订特殊柜型："},
          {"Text(18)", "zgxxdd", "做柜详细时间、地点：", field::text, 2},
          {"Text(19)", "bgdz", "报关时间地点、电话：", field::text, 2},
          {.name = "Text(21)", .column = "fyzj", .caption = "费用总计：", .unit = "基准币/元"}}},
    };
}

LinesSpec goods()
{
    LinesSpec lines = shippedGoods({{"madol", "唛头标记"},
                                    {"gfh", "柜号封条号"},
                                    {"xjh", "箱件号"},
                                    {"cpmc", "商品名称"},
                                    {"jianshu", "件数"},
                                    {"b_zdw", "包装种类"},
                                    {"zmz", "总毛重"},
                                    {"hjtj", "总体积"},
                                    {"cw_dcdh", "船务_订舱单号"},
                                    {"dcdh", "订舱单号"}});
    lines.statement = "select * from CY_DCD_DJB_B with (nolock) where DCDH='{dcdh}'";
    lines.deletion = "delete from CY_DCD_DJB_B where DCDH='{dcdh}'";
    lines.key = "dcdh";
    lines.followsChoices = true;
    lines.starts += QVector<Preset>{{"dcdh", "{Text(0)}"}, {"sxh", "{#}"}};
    return lines;
}

QVector<PickSpec> picks()
{
    return {{"Combo1(0)",
             {{.statement = invoicesOfCompany,
               .offers = "Combo1(1)",
               .none = WhenNone::Cancel,
               .message = "此公司没有要订舱的新发票，不能订舱！"},
              {.statement = company,
               .copies = {{"tygs_emc", "e_gsmc"},
                          {"tygs_edz", "e_gsdz"},
                          {"tygs_dz", "gsdz"},
                          {"tygs_phone", "gs_phone"},
                          {"tygs_fax", "gs_fax"}},
               .trimmed = true}}},
            {"Combo1(1)",
             {{.statement = invoice,
               .copies = {{"mdgk", "mdgk"},
                          {"ship_name", "ship_name"},
                          {"hyd", "hyd"},
                          {"zhgk", "zygk"},
                          {"zyqx", "zyqx"},
                          {"shr", "khmc"},
                          {"shr_dz", "khdz"},
                          {"shr_phone", "phone"},
                          {"shr_fax", "fax"},
                          {"htbh", "htbh"}}},
              {.statement = goodsOfInvoice, .insert = insertLine}},
             "Combo1(0)",
             "请先选择派车公司"},
            {"Combo1(2)",
             {{.statement = carrier,
               .copies = {{"cygs_emc", "ywmc"},
                          {"cygs_dz", "dizhi"},
                          {"cygs_phone", "phone"},
                          {"cygs_fax", "fax"},
                          {"cygs_logo", "logo"},
                          {"cygs_lxr", "lxr"}},
               .trimmed = true}}}};
}

} // namespace

RecordFormSpec CY_Dcd_Rpt()
{
    RecordFormSpec spec =
        shippingNote({.name = "CY_Dcd_Rpt",
                      .caption = "订舱单录入表",
                      .statement = "select* FROM CY_DCD_DJB_H with(nolock) ",
                      .numbering = monthly("DC", "select distinct DCDH from CY_DCD_DJB_H where year(djrq)='{year}'and "
                                                 "month(djrq)='{month}' order by DCDH"),
                      .lineNumber = "cw_dcdh",
                      .numberField = "Text(22)",
                      .kind = "订舱单",
                      .choiceCaption = "订舱打印选项"});
    spec.pages = pages();
    spec.list = {{"cw_dcdh", "订舱单号"}, {"cygs", "船务公司"}};
    spec.checks = {{.field = "Text(20)", .kind = FieldCheck::Date},
                   {.field = "Text(21)", .kind = FieldCheck::Number, .clears = true}};
    spec.picks = picks();
    spec.lines = goods();
    return spec;
}

} // namespace tradewick
