#include "contracts/export_contract.h"

#include "common/dialogs.h"
#include "common/globals.h"
#include "common/number_text.h"
#include "data/date_text.h"
#include "papers/papers.h"

namespace tradewick
{

namespace
{

const RecordFormSpec contractSpec = {
    .name = "YY_WXHT",
    .caption = "外销合同录入窗口",
    .statement = "select* FROM YY_gw_wxHT_H with(nolock)",
    .control = "AdoprimaryRs",
    .fields = {{"Text1(0)", "htbh", "合同编号："},
               {"Combo1(0)", "khbh", "客户编号：", FieldKind::Combo, 0, 1,
                "select DISTINCT khbh from yy_gwkh_zl where not khbh is null order by khbh"},
               {"Text1(1)", "gb", "客户国别："},
               {"Text1(2)", "djrq", "签订日期：", FieldKind::Date},
               {"Text1(3)", "khmc", "客户名称：", FieldKind::Text, 0, 2},
               {"Text1(4)", "phone", "电话号码："},
               {"Text1(5)", "dizh", "客户地址：", FieldKind::Text, 0, 2},
               {"Text1(6)", "fax", "传真号码："},
               {"Text1(7)", "e_mail", "E_Mail：", FieldKind::Text, 0, 2},
               {"Combo1(1)", "gsmc", "签约公司：", FieldKind::Combo, 0, 1,
                "select DISTINCT gsmc from sys_gsmc where not gsmc is null order by gsmc"},
               {"Combo1(2)", "bmmc", "签约部门：", FieldKind::Combo, 0, 1,
                "select DISTINCT bmmc from sys_bmsz where not bmmc is null"},
               {"Combo1(3)", "qyr", "签 约 人：", FieldKind::Combo, 0, 1,
                "select DISTINCT name from sys_gzry where not name is null order by name"},
               {"Text1(8)", "bizh", "客户币制："},
               {"Text1(9)", "hl", "汇    率："},
               {"Text1(10)", "qydz", "签约地点："},
               {"Text1(11)", "yxqsrq", "有效期：自", FieldKind::Date},
               {"Text1(12)", "yxjzrq", "至：", FieldKind::Date},
               {"Text1(13)", "ysbz", "验收标准：", FieldKind::Text, 1},
               {"Text1(14)", "ydz", "溢短装：", FieldKind::Text, 1},
               {"Text1(15)", "yyqx", "提出异议期限：", FieldKind::Text, 1},
               {"Text1(16)", "jgtk", "价格条款：", FieldKind::Text, 1},
               {"Text1(17)", "wyj", "违约金：按合约总价的", FieldKind::Text, 1},
               {"Combo1(4)", "zygk", "装运港口：", FieldKind::Combo, 1, 1,
                "select DISTINCT gkmc from sys_gksz where not gkmc is null order by gkmc"},
               {"Combo1(5)", "mdgk", "目的港口：", FieldKind::Combo, 1, 1,
                "select DISTINCT gkmc from sys_gksz where not gkmc is null order by gkmc"},
               {"Text1(18)", "qttk", "其它条款：", FieldKind::LongText, 1, 2},
               {"Text1(19)", "madol", "唛头：", FieldKind::LongText, 1},
               {"Text1(20)", "jsfs", "结算方式：", FieldKind::Text, 1},
               {"Text1(21)", "bzyq", "包装要求：", FieldKind::Text, 1},
               {"Text1(22)", "jhdz", "装运期限及交货地点：", FieldKind::Text, 1},
               {"Text1(23)", "fstk", "", FieldKind::LongText, 2, 3}},
    .pages = {"合同概况", "合同条款", "附属条款"},
    .pairsInRow = 3,
    .list = {{"htbh", "合同编号"}, {"khmc", "客户名称"}},
    .numberedAs = "YY_WXHT",
    .required = {{"Text1(0)", "所有名称不能为空"}},
    .captions = {"前端", "向前", "向后", "后端", "添加", "删除", "编辑", "确认", "取消", "返回"},
    .failures = {.next = Failure::None},
    .body = {.statement = "select * from YY_gw_wxHT_B with (nolock) where HTBH='{htbh}'",
             .deletion = "delete from YY_gw_wxHT_B where HTBH='{htbh}'",
             .key = "htbh",
             .columns = {{"cpbh", "商品编号"}, {"cpmc", "商品名称"}, {"gg", "规格"},          {"yanse", "颜色"},
                         {"dw", "单位"},       {"sl", "数量"},       {"jkdj", "画框单价"},    {"jmdj", "镜/画单价"},
                         {"dj", "单价"},       {"jhrq", "交货日期"}, {"khlh", "客户件号"},    {"beizhu", "备注"},
                         {"je", "金额"},       {"htbh", "合同编号"}, {"khbh", "客户编号"},    {"gsmc", "公司名称"},
                         {"cplb", "商品类别"}, {"bacp", "H.S编码"},  {"yw_cpmc", "英文名称"}, {"zzs", "增值税"},
                         {"zsl", "征税率"}},
             .enterColumns = {"cpbh", "sl"},
             .picker = {{"cpbh", "商品编号"},
                        {"cpmc", "商品名称"},
                        {"cpgg", "规格"},
                        {"yanse", "颜色"},
                        {"dw", "单位"},
                        {"jkdj", "画框单价"},
                        {"jmdj", "镜/画单价"},
                        {"gys_dj", "单价"},
                        {"bizh", "币种"},
                        {"khbh", "客户编号"},
                        {"cplb", "商品类别"}}},
    .printButtons = {{"Cmdprint(1)", "形式发票", "Ctrl+P"}, {"Cmdprint(0)", "形式发票2", "Ctrl+Shift+P"}},
    .dateFilterCaption = "日期查询",
    .dateFilterStatement = "select* FROM YY_gw_wxHT_H with(nolock) where djrq='{date}'",
};

constexpr int daysOfValidity = 90;

const char *const customerStatement =
    "select isnull(bizh,'')as bizh,isnull(zwdz,'')as zwdz,isnull(fax,'')as fax,isnull(phone,'')as phone "
    ",isnull(dzyx,'')as dzyx,isnull(zffs,'')as zffs,isnull(fkfs,'')as fkfs,isnull(hl,0)as hl,isnull(khmc,'')as "
    "khmc,isnull(shi,'')as shi,isnull(DZYX,'')as DZYX,isnull(gb,'')as gb from yy_gwkh_zl where khbh='{khbh}' and not "
    "khmc is null";

// Head column and the customer's column that it takes, in the order they are written.
const QVector<std::pair<QString, QString>> customerColumns{{"khmc", "khmc"}, {"dizh", "zwdz"}, {"phone", "phone"},
                                                           {"fax", "fax"},   {"gb", "gb"},     {"e_mail", "dzyx"},
                                                           {"bizh", "bizh"}, {"hl", "hl"},     {"jsfs", "zffs"}};

#define QUOTE                                                                                                          \
    "SELECT dbo.yy_BzDj.cpbh,isnull(dbo.yy_BzDj.zzs,0) as zzs,isnull(dbo.yy_BzDj.zsl,0) as "                           \
    "zsl,isnull(dbo.yy_BzDj.cplb,'') as cplb,isnull(dbo.yy_BzDj.cpmc,'') as cpmc,isnull(dbo.yy_BzDj.dw,'') as "        \
    "dw,isnull(dbo.yy_BzDj.YW_CPMC,'') as yw_cpmc,isnull(dbo.yy_BzDj.yanse,'') as "                                    \
    "yanse,isnull(dbo.yy_BzDj_b.gg,'') as cpgg,isnull(dbo.yy_BzDj.bacp,'') as bacp,isnull(dbo.YY_BZDJ_B.GYS_DJ,0) "    \
    "as gys_dj,isnull(dbo.YY_BZDJ_B.GYS_DIZHI,'') as gys_dizhi,isnull(dbo.YY_BZDJ_B.jmdj ,0) as "                      \
    "jmdj,isnull(dbo.YY_BZDJ_B.jkdj ,0) as jkdj ,dbo.yy_bzdj_b.khbh FROM dbo.yy_BzDj left JOIN dbo.YY_BZDJ_B ON "      \
    "dbo.yy_BzDj.cpbh = dbo.YY_BZDJ_B.CPBH where "

const char *const quoteOfCustomer = QUOTE "dbo.yy_bzdj_b.khbh='{khbh}'";
const char *const quoteByCode = QUOTE "dbo.yy_bzdj.cpbh like '%{typed}%'";
const char *const quoteBySize = QUOTE "dbo.yy_bzdj.cpbh ='{cpbh}' and dbo.yy_bzdj_b.gg like '%{gg}%' and "
                                      "dbo.yy_bzdj_b.khbh='{khbh}'";
#undef QUOTE

const char *const removeLines = "DELETE FROM YY_gw_WXHT_B WHERE HTBH='{htbh}'";
const char *const insertLine =
    "insert into yy_gw_wxht_b(htbh,xc,cplb,cpmc,bacp,gg,yanse,cpbh,jkdj,jmdj,dj,sl,dw) "
    "values('{htbh}','{i}','{cplb}','{cpmc}','{bacp}','{cpgg}','{yanse}','{cpbh}','{jkdj}','{jmdj}','{gys_dj}',0,"
    "'{dw}')";

const char *const companyStatement =
    "select isnull(gsmc,'') as gsmc,isnull(gs_email,'') as gs_email,isnull(e_gsmc,'') as e_gsmc,isnull(gsdz,'') as "
    "gsdz,isnull(e_gsdz,'') as e_gsdz,isnull(gs_phone,'') as gs_phone,isnull(gs_fax,'') as gs_fax,isnull(fpzt,'') as "
    "fpzt,isnull(logo,'') as logo,isnull(bgbm,'') as bgbm,isnull(sjzch,'') as sjzch,isnull(bank_en,'') as "
    "bank_en,isnull(bank_name,'') as bank_name,isnull(bank_code,'') as bank_code,isnull(swdjh,'') as swdjh from "
    "sys_gsMC where gsmc='{gsmc}' and not gsmc is null";
const QStringList companyColumns{"gsmc", "e_gsmc", "gsdz",  "e_gsdz",  "gs_phone",  "gs_email",  "gs_fax", "fpzt",
                                 "logo", "bgbm",   "sjzch", "bank_en", "bank_code", "bank_name", "swdjh"};

// Line column and the quote's column that it takes when a row of the picker is chosen.
const QVector<std::pair<QString, QString>> pickedColumns{
    {"cpbh", "cpbh"}, {"cpmc", "cpmc"},       {"gg", "cpgg"},   {"yanse", "yanse"}, {"bacp", "bacp"},
    {"dw", "dw"},     {"jkdj", "jkdj"},       {"jmdj", "jmdj"}, {"dj", "gys_dj"},   {"cplb", "cplb"},
    {"zzs", "zzs"},   {"yw_cpmc", "yw_cpmc"}, {"zsl", "zsl"}};

} // namespace

LineAmounts lineAmounts(double framePrice, double mirrorPrice, double quantity)
{
    return {framePrice + mirrorPrice, (framePrice + mirrorPrice) * quantity};
}

bool takeCustomer(Connection &connection, Recordset &head, const QString &customer, const QString &contract)
{
    const QVector<Values> found = connection.rows(customerStatement, {{"khbh", customer}});
    if (found.isEmpty())
        return false;
    for (const auto &[column, source] : customerColumns)
        head.Fields(column).setValue(found.first()[source]);

    // A count of rows is never negative: the message that there is no quote, told for a count below zero, never comes,
    // and a customer without prices leaves the contract without lines.
    const QVector<Values> quote = connection.rows(quoteOfCustomer, {{"khbh", customer}});
    connection.transaction([&] {
        connection.Execute(removeLines, {{"htbh", contract}});
        int number = 0;
        for (Values line : quote) {
            line["htbh"] = contract;
            line["i"] = QString::number(++number);
            connection.Execute(insertLine, line);
        }
    });
    return true;
}

void takeCompany(Connection &connection, Recordset &head, const QString &company)
{
    const QVector<Values> found = connection.rows(companyStatement, {{"gsmc", company}});
    if (found.isEmpty())
        return;
    for (const QString &column : companyColumns)
        head.Fields(column).setValue(found.first()[column]);
}

YY_WXHT::YY_WXHT(QWidget *mainWindow) : RecordForm(contractSpec, mainWindow) {}

void YY_WXHT::afterAdd()
{
    const QDate today = QDate::currentDate();
    setFieldText("Text1(2)", dateText(today));
    setFieldText("Text1(11)", dateText(today));
    setFieldText("Text1(12)", dateText(today.addDays(daysOfValidity)));
}

void YY_WXHT::comboChosen(const QString &name)
{
    run(Failure::Report, {[this, name] {
            if (name == "Combo1(0)") {
                if (takeCustomer(*gConn, records(), fieldText(name), fieldText("Text1(0)")))
                    refreshBody();
            } else if (name == "Combo1(1)") {
                takeCompany(*gConn, records(), fieldText(name));
            }
        }});
}

void YY_WXHT::setLineOwner()
{
    body().Fields("htbh").setValue(fieldText("Text1(0)").trimmed());
    body().Fields("gsmc").setValue(fieldText("Combo1(1)").trimmed());
    body().Fields("khbh").setValue(fieldText("Combo1(0)").trimmed());
}

void YY_WXHT::bodyRowStarted()
{
    setLineOwner();
    for (const char *column : {"jkdj", "je", "sl", "jmdj", "dj"})
        body().Fields(column).setValue(0);
    body().Fields("sxh").setValue(QString::number(body().RecordCount()));
}

void YY_WXHT::bodyCellEdited(const QString &column)
{
    const auto number = [this](const char *name) { return numberFromText(body().Fields(name).text()); };
    const LineAmounts amounts = lineAmounts(number("jkdj"), number("jmdj"), number("sl"));
    // What was typed over a derived value is derived again at once.
    if (column == "sl" || column == "jkdj" || column == "jmdj" || column == "je")
        body().Fields("je").setValue(amounts.amount);
    if (column == "jkdj" || column == "jmdj" || column == "dj")
        body().Fields("dj").setValue(amounts.unitPrice);
}

void YY_WXHT::bodyTyped(const QString &column, const QString &text)
{
    showPicker();
    if (column == "cpbh") {
        openPicker(quoteByCode, {{"typed", text}});
        return;
    }
    const bool hasLine = bodyGrid()->currentIndex().row() < body().RecordCount();
    const QString product = hasLine ? body().Fields("cpbh").text().trimmed() : QString();
    if (column != "gg" || product.isEmpty())
        return;
    if (body().Fields("htbh").text().trimmed() != fieldText("Text1(0)")) {
        dialogs().message(this, QStringLiteral("请双击此行表格，再录入数据！"), QStringLiteral("系统提示"),
                          MessageIcon::Question);
        return;
    }
    openPicker(quoteBySize, {{"cpbh", product}, {"gg", text}, {"khbh", fieldText("Combo1(0)")}});
}

void YY_WXHT::picked()
{
    for (const auto &[column, source] : pickedColumns)
        body().Fields(column).setValue(picker().Fields(source).value());
    setLineOwner();
    bodyCellEdited("sl"); // a quantity that stands already counts at the new prices
}

void YY_WXHT::print(const QString &button)
{
    const QString number = fieldText("Text1(0)").trimmed();
    if (number.isEmpty()) {
        dialogs().message(this, QStringLiteral("没有当前记录，不能打印！"), QStringLiteral("系统提示"),
                          MessageIcon::Critical);
        return;
    }
    const QString name = button == "Cmdprint(1)" ? "形式发票" : "形式发票2";
    run(Failure::Report, {[&] { showDocument(name, *gConn, number, this); }});
}

} // namespace tradewick
