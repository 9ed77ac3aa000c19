// Bills of lading, each made from a booking note.
#include "shipping/shipping.h"
#include "shipping/shipping_note.h"

namespace tradewick
{

namespace
{

const char *const openNotes =
    "select DISTINCT cw_DCDH from CY_DCD_DJB_H where cw_DCDH NOT IN(SELECT DISTINCT DCDH FROM "
    "CY_HYTD_DJB_H)";
const char *const note = "select * FROM Cy_DCD_DJB_h where cw_DCDH='{text}'";
// By the note's own number: the carrier's, which it was chosen by, stands in no line.
const char *const goodsOfNote = "select DCDH,fpbh,htbh,madol,cpmc,cpgg,xjh,zmz,hjtj,jianshu,b_zdw,XH FROM CY_DCD_DJB_b "
                                "where DCDH='{note}'";
const char *const insertLine =
    "insert into CY_HYTD_DJB_B(TDHM,DCDH,fpbh,htbh,madol,cpmc,cpgg,xjh,zmz,hjtj,jianshu,b_zdw,XH) "
    "values('{tdhm}','{dcdh}','{fpbh}','{htbh}','{madol}','{cpmc}','{cpgg}','{xjh}','{zmz}','{hjtj}','{jianshu}',"
    "'{b_zdw}','{xh}')";

Copies likeNamed(const QStringList &columns)
{
    Copies copies;
    for (const QString &column : columns)
        copies.append({column, column});
    return copies;
}

QVector<FieldSpec> fields()
{
    return {{.name = "Text(0)", .column = "tdhm", .caption = "提单号码:", .hidden = true},
            {"Text(11)", "cw_tdhm", "提单号码:"},
            {"Text(1)", "djrq", "提单日期:", field::date},
            {"Combo1(0)", "dcdh", "订舱单号:", field::combo(openNotes)},
            {"Text(2)", "tygs", "托 运 人："},
            {"Text(3)", "shr", "收 货 人："},
            {"Text(5)", "tzr", "通 知 人："},
            {"Text(4)", "ship_name", "船名/航次："},
            {"Text(6)", "zhgk", "装货港口："},
            {"Text(8)", "xhgk", "卸货港口："},
            {"Text(10)", "mdgk", "目的港口："},
            {"Text(7)", "ycys", "首程运输："},
            {"Text(9)", "hyd", "货物原产国："}};
}

LinesSpec goods()
{
    LinesSpec lines = shippedGoods({{"madol", "唛头标记"},
                                    {"gfh", "柜号封条号"},
                                    {"xjh", "箱件号"},
                                    {"cpmc", "商品名称"},
                                    {"cpgg", "规格"},
                                    {"jianshu", "件数"},
                                    {"b_zdw", "包装种类"},
                                    {"zmz", "总毛重"},
                                    {"hjtj", "总体积"},
                                    {"fpbh", "发票编号"},
                                    {"dcdh", "订舱单号"}});
    lines.statement = "select * from CY_HYTD_DJB_B with (nolock) where TDHM='{tdhm}'";
    lines.deletion = "delete from CY_HYTD_DJB_B where TDHM='{tdhm}'";
    lines.key = "tdhm";
    lines.starts.append(Preset{"tdhm", "{Text(0)}"});
    return lines;
}

PickSpec notePick()
{
    return {.combo = "Combo1(0)",
            .steps = {{.statement = note,
                       .copies = likeNamed({"mdgk", "ship_name", "hyd", "zhgk", "zyqx", "shr", "tzr", "tygs", "ycys",
                                            "xhgk", "shr_dz", "shr_phone", "shr_fax"}),
                       .remembers = {{"note", "dcdh"}},
                       .none = WhenNone::Stop},
                      {.statement = note,
                       .copies = likeNamed({"tygs_emc", "tygs_edz", "tygs_dz", "tygs_phone", "tygs_fax", "cygs_emc",
                                            "cygs_dz", "cygs_phone", "cygs_fax", "cygs_lxr", "cygs"}),
                       .trimmed = true},
                      {.statement = goodsOfNote, .insert = insertLine}},
            .blank = "此公司没有新订舱单，不能出提单！"};
}

} // namespace

RecordFormSpec cy_HYtD_DjB()
{
    RecordFormSpec spec =
        shippingNote({.name = "cy_HYtD_DjB",
                      .caption = "海运提单_登记表",
                      .statement = "select* FROM CY_HYTD_DJB_H with(nolock) ",
                      .numbering = monthly("TD", "select distinct TDHM from CY_HYTD_DJB_H where year(djrq)='{year}'and "
                                                 "month(djrq)='{month}' order by TDHM"),
                      .lineNumber = "cw_tdhm",
                      .numberField = "Text(11)",
                      .kind = "提单",
                      .choiceCaption = "提单打印选项"});
    spec.pages = {{"", fields()}};
    spec.list = {{"cw_tdhm", "提单号码"}, {"shr", "国外客户"}};
    spec.required.first().movesFocus = false;
    spec.picks = {notePick()};
    spec.lines = goods();
    return spec;
}

} // namespace tradewick
