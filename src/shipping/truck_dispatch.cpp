// Truck dispatch notes: which containers a trucking company brings, where and when they are loaded, and who pays.
#include "common/record_form.h"
#include "papers/papers.h"
#include "shipping/shipping.h"

namespace tradewick
{

namespace
{

constexpr int digitsRead = 3; // of four: the number behind 1000 is 0001 again

const char *const companies = "select DISTINCT gsmc from sys_gsmc";
const char *const truckers = "select DISTINCT gsmc from sys_tcgs";
const char *const invoices =
    "select DISTINCT fpbh from yy_mxb_h where fpbh not in(select distinct fpbh from cy_pcd_rpt)";

const char *const invoicesOfCompany = "select DISTINCT FPbh from YY_MXB_H where gsmc='{pcgs}' and FPbh NOT IN(SELECT "
                                      "DISTINCT FPBH FROM CY_pcd_rpt)";
const char *const company = "select * from sys_gsMC where gsmc='{pcgs}' and not gsmc is null";
const char *const trucker = "select * from sys_tcgs where gsmc='{tcgs}' and not gsmc is null";
const char *const invoice = "select * from yy_mxb_h where fpbh='{fpbh}' and not fpbh is null";

QVector<FieldSpec> fields()
{
    const QString containers = "所需货柜型号数量";
    return {{"Text(0)", "pcdh", "派车单号:"},
            {"Text(1)", "djrq", "派车日期:", field::date},
            {"Combo1(0)", "pcgs", "派车公司:", field::combo(companies)},
            {"Combo1(1)", "tcgs", "拖车公司:", field::combo(truckers)},
            {"Combo1(3)", "fpbh", "发票编号:", field::combo(invoices)},
            {"Combo1(2)", "sjb", "是否需要司机本:", field::combo(QStringList{"是", "否"})},
            {"Text(2)", "ghfth", "柜号/封条号组：", field::text, 3},
            {.name = "Text(3)", .column = "escg", .caption = "20’柜型：", .group = containers},
            {.name = "Text(4)", .column = "sscgg", .caption = "40’HQ：", .group = containers},
            {.name = "Text(5)", .column = "sscg", .caption = "40’柜型：", .group = containers},
            {.name = "Text(6)", .column = "sswcg", .caption = "45’柜型：", .group = containers},
            {"Text(7)", "zhdz", "装货地址：", field::text, 2},
            {"Text(8)", "zgdz", "转关地点："},
            {"Text(9)", "zhsj", "装货时间：", field::date},
            {"Text(10)", "zgzjf", "重柜纸交付："},
            {"Text(11)", "zhdh", "装货地电话："},
            {"Text(12)", "jfrdh", "交付人电话："},
            {"Text(13)", "jflxr", "交付联系人："},
            {"Text(14)", "zhlxr", "装货联系人："},
            {.name = "Text(15)", .column = "pcfy", .caption = "拖车运费：", .unit = "元人民币"},
            {"Text(16)", "beizhu", "备         注：", field::text, 2}};
}

} // namespace

RecordFormSpec CY_Pcd_Djb()
{
    return {
        .name = "CY_Pcd_Djb",
        .caption = "派车单录入表",
        .statement = "select * FROM cy_pcd_rpt",
        .pages = {{"", fields()}},
        .pairsInRow = 3,
        .list = {{"pcdh", "派车单号"}, {"tcgs", "拖车公司"}},
        .buttons = {{.name = "Cmdprint",
                     .caption = "打印",
                     .shortcut = "Ctrl+P",
                     .press = [](RecordForm &form) { printRecord("派车单", form.text("Text(0)"), &form); },
                     .ofStored = true}},
        .numbering = running("PC", digitsRead, "select pcdh from cy_pcd_rpt order by pcdh"),
        .defaults = {today("djrq")},
        .required = codeAndName(),
        // A company without open invoices leaves the note open: an invoice number can still be typed.
        .picks = {{"Combo1(0)",
                   {{.statement = invoicesOfCompany,
                     .offers = "Combo1(3)",
                     .none = WhenNone::Stop,
                     .message = "此公司没有要派车的新发票，不能派车！"},
                    {.statement = company,
                     .copies = {{"e_gsmc", "e_gsmc"},
                                {"gs_dizh", "gsdz"},
                                {"egs_dz", "e_gsdz"},
                                {"gs_phone", "gs_phone"},
                                {"gs_fax", "gs_fax"}}}}},
                  {"Combo1(1)",
                   {{.statement = trucker,
                     .copies = {{"e_tcgs", "ywmc"},
                                {"tcgs_dz", "dizhi"},
                                {"tcgs_phone", "phone"},
                                {"tcgs_fax", "fax"},
                                {"tcgs_lxr", "lxr"}}}}},
                  {"Combo1(3)",
                   {{.statement = invoice, .copies = {{"htbh", "htbh"}, {"ghfth", "jzxh"}}}},
                   "Combo1(0)",
                   "请先选择派车公司"}},
    };
}

} // namespace tradewick
