// What is the purchase contract's own.
#include "contracts/contracts.h"
#include "document_form.h"
#include "reporting/report.h"

#include <QDateEdit>

namespace tradewick
{

using namespace test;

class PurchaseContract : public DocumentForm
{
};

TEST_F(PurchaseContract, TakesOverSupplierAndCompanyAndLeavesTheLines)
{
    const FormDriver drive = open(YY_CGHT());
    drive.click("Cmdadd");
    drive.typeCell(lines(), 0, "cpmc", "by hand");
    const int before = lines()->model()->rowCount();
    drive.choose("Combo1(1)", "C004");
    expectCopied(row("select * from yy_gyszl where gfbh='C004'"),
                 {"csmc zwmc", "dizh zwdz", "phone", "fax", "e_mail dzyx", "shi", "zheng", "bizh", "hl", "jsfs zffs",
                  "cs_bank khh", "cs_bcode yhzh", "cs_swdjh tysh"});
    EXPECT_EQ(drive.text("Text1(7)"), row("select zheng from yy_gyszl where gfbh='C004'")["zheng"].toString());
    database.elsewhere("update sys_gsmc set gs_fax='fax', fpzt='head', bgbm='code', bank_en='BANK'");
    drive.choose("Combo1(2)", drive.find<QComboBox>("Combo1(2)")->itemText(0));
    expectCopied(row("select * from sys_gsmc"),
                 {"gsmc", "e_gsmc", "gsdz", "e_gsdz", "gs_phone", "gs_fax", "fpzt", "logo", "bgbm", "sjzch", "bank_en",
                  "bank_code", "bank_name", "swdjh"});
    EXPECT_EQ(lines()->model()->rowCount(), before);
}

TEST_F(PurchaseContract, ServesAnExportContractOrAnyNumberOrNone)
{
    database.elsewhere("insert into yy_gw_wxht_h(htbh,khmc) values('X-EMPTY','K')");
    for (const auto &[contract, mark] : {std::pair("X-DONE", "完成"), {"X-BLANK", ""}, {"X-OPEN", "未完成"}})
        database.elsewhere("insert into yy_gw_wxht_b(htbh,wanch) values('{h}','{w}')", {{"h", contract}, {"w", mark}});
    const FormDriver drive = open(YY_CGHT());
    const auto *offered = drive.find<QComboBox>("Combo1(0)");
    for (const auto &[contract, isOffered] :
         {std::pair("X260800001", true), {"X-OPEN", true}, {"X-DONE", false}, {"X-BLANK", false}, {"X-EMPTY", false}})
        EXPECT_EQ(offered->findText(contract) >= 0, isOffered) << contract;
    const QDate day = QDate::currentDate();
    const QString month = "C" + day.toString("yyMM");
    database.elsewhere("delete from yy_gn_cght_h where htbh like '%{m}%'", {{"m", month}});
    for (const QString typed : {"X260800001", "X260800001", "elsewhere 7", ""}) {
        drive.click("Cmdadd");
        EXPECT_EQ(drive.text("Text1(8)"), day.toString(Qt::ISODate));
        EXPECT_EQ(drive.text("Text1(22)"), day.toString(Qt::ISODate));
        EXPECT_EQ(drive.text("Text1(23)"), day.addDays(30).toString(Qt::ISODate));
        const QString before = drive.text("Text1(10)") + drive.text("Text1(1)");
        drive.choose("Combo1(0)", typed);
        EXPECT_EQ(drive.text("Text1(10)") + drive.text("Text1(1)"), before);
        const QString number = drive.text("Text1(0)");
        drive.click("CmdOK");
        EXPECT_EQ(database.value("select wxht from yy_gn_cght_h where htbh='{h}'", {{"h", number}}).toString(), typed);
    }
    EXPECT_EQ(drive.text("Text1(0)"), month + "00004");
}

TEST_F(PurchaseContract, ALineTakesTheProductAtItsOwnSizeAndStaysUnfinished)
{
    database.elsewhere("update yy_bzdj set cpgg='as registered' where cpbh='JM-1010'");
    database.elsewhere("delete from yy_bzdj_b where cpbh='JM-1010' and khbh<>'K001'");
    const FormDriver drive = open(YY_CGHT());
    drive.click("Cmdedit");
    const int at = newRow();
    const Row product = row("select * from yy_bzdj where cpbh='JM-1010'"),
              price = row("select * from yy_bzdj_b where cpbh='JM-1010'");
    EXPECT_EQ(search(at, "m-1010"), 1);
    takeFirst();
    for (const char *column : {"cpbh", "cpmc", "yanse", "dw", "cplb", "yw_cpmc", "zzs", "zsl"})
        EXPECT_EQ(cell(at, column), product[column].toString()) << column;
    EXPECT_EQ(cell(at, "gg"), "as registered");
    EXPECT_EQ(cell(at, "dj"), price["gys_dj"].toString());
    EXPECT_EQ(cell(at, "cslh"), "C007-JM1010");
    for (const auto &[column, field] : {std::pair("htbh", "Text1(0)"), {"csbh", "Combo1(1)"}, {"gsmc", "Combo1(2)"}})
        EXPECT_EQ(cell(at, column), drive.text(field));
    const struct {
        const char *column, *typed, *amount;
    } cases[] = {{"dj", "3.5", "0"}, {"sl", "4", "14"}, {"je", "100", "14"}, {"sl", "", "0"}, {"sl", "4", "14"}};
    for (const auto &c : cases) {
        drive.typeCell(lines(), at, c.column, c.typed);
        EXPECT_EQ(cell(at, "je"), c.amount) << c.column;
    }
    drive.click("CmdOK");
    EXPECT_EQ(dialogs.shown, QVector<Shown>());
    EXPECT_EQ(row("select * from yy_gn_cght_b where cpbh='JM-1010' and je=14")["wanch"].toString(), "未完成");
}

TEST_F(PurchaseContract, PrintsItsAmountInFiguresAndChinese)
{
    QString amount;
    setReportViewer([&](Report &report, QWidget *) {
        amount = report.name() + '|' + report.DataControl1.values["htbh"].toString() + '|' + report.label("L_Zjje");
    });
    database.elsewhere("update yy_gn_cght_b set je=0 where htbh='C260800001'");
    for (const auto &[product, each] : {std::pair("JM-1002", 1000.0), {"JM-1007", 2.75}})
        database.elsewhere("update yy_gn_cght_b set je={a} where htbh='C260800001' and cpbh='{p}'",
                           {{"a", each}, {"p", product}});
    const FormDriver drive = open(YY_CGHT());
    drive.click("Cmdprint");
    const std::string printed = "yy_CgHt_RPT|C260800001|CNY  1005.5  壹仟零伍圆伍角";
    EXPECT_EQ(amount.toStdString(), printed);
    // One that the database refused: under its number stands that of another desktop.
    drive.click("Cmdadd");
    database.elsewhere("insert into yy_gn_cght_h(htbh) values('{h}')", {{"h", drive.text("Text1(0)")}});
    drive.click("CmdOK");
    dialogs.shown.clear();
    drive.click("Cmdprint");
    EXPECT_EQ(dialogs.take(), (Shown{"尚有未保存的记录，请先保存或取消。", "系统提示", MessageIcon::Exclamation}));
    EXPECT_EQ(amount.toStdString(), printed);
    setReportViewer({});
}

} // namespace tradewick
