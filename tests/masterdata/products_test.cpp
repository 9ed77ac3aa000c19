// Products and their price rows.
#include "common/globals.h"
#include "masterdata/masterdata.h"
#include "support/form_driver.h"
#include "support/scripted_dialogs.h"
#include "support/test_database.h"

#include <QCompleter>

namespace tradewick
{

using namespace test;

namespace
{

class Products : public testing::Test
{
protected:
    Products()
    {
        run("insert into sys_jldw(jlbh,jldw) values('J0001','PCS')");
        run("insert into yy_gwkh_zl(khbh,khmc) values('K1','First Customer')");
        run("insert into yy_bzdj(cpbh,cplb,cpmc,dw,bacp,beizhu) values('A1','mirror','Mirror','PCS','7009','note')");
        for (const char *size : {"10x10", "20x20", "30x30"})
            database.connection().Execute("insert into yy_bzdj_b(cpbh,gg,gys_bizh,jkdj,jmdj,gys_dj,khbh,khmc) "
                                          "values('A1','{gg}','EUR','1.25','2.5','3.75','K1','First Customer')",
                                          {{"gg", size}});
        run("insert into yy_bzdj(cpbh,cplb,cpmc) values('B1','frame','Frame')");
    }

    void run(const QString &statement) { database.connection().Execute(statement); }
    int prices(const QString &code)
    {
        return database.value("select count(*) from yy_bzdj_b where cpbh='{c}'", {{"c", code}}).toInt();
    }
    FormDriver open()
    {
        form = std::make_unique<RecordForm>(yy_cpbj());
        return FormDriver(*form);
    }
    static QString cell(const Grid &grid, int row, const QString &column)
    {
        for (int i = 0; i < grid.recordsetModel()->columns().size(); ++i)
            if (grid.recordsetModel()->columns()[i].column == column)
                return grid.model()->index(row, i).data().toString();
        return {};
    }

    TestDatabase database;
    ScriptedDialogs dialogs;
    std::unique_ptr<RecordForm> form;
};

} // namespace

TEST_F(Products, APriceIsTheSumOfItsPartsAndBelongsToTheProduct)
{
    const FormDriver drive = open();
    auto *grid = drive.find<Grid>("TDBGrid1");
    EXPECT_FALSE(grid->isEditing());
    EXPECT_EQ(grid->model()->rowCount(), 3);
    drive.click("Cmdadd");
    drive.type("Text(0)", "C1");
    drive.typeCell(grid, 0, "gg", "40x40");
    const struct {
        const char *column, *typed, *sum;
    } cases[] = {{"jkdj", "12.5", "12.5"}, {"jmdj", "7.5", "20"}, {"gys_dj", "99", "20"}, {"jkdj", "2", "9.5"}};
    EXPECT_EQ(cell(*grid, 0, "gys_dj"), "0");
    for (const auto &c : cases) {
        drive.typeCell(grid, 0, c.column, c.typed);
        EXPECT_EQ(cell(*grid, 0, "gys_dj"), c.sum) << c.column << c.typed;
    }
    EXPECT_EQ(cell(*grid, 0, "gys_bizh"), "USD");
    drive.typeCell(grid, 0, "gys_bizh", "CNY");
    drive.typeCell(grid, 0, "khbh", "k1");
    EXPECT_EQ(cell(*grid, 0, "khmc"), "First Customer");
    drive.typeCell(grid, 0, "khbh", "nobody");
    EXPECT_EQ(cell(*grid, 0, "khmc"), "First Customer");
    EXPECT_TRUE(dialogs.shown.isEmpty());
    drive.type("Combo1(0)", "easel");
    drive.click("CmdOK");
    EXPECT_EQ(drive.text("Combo1(0)"), "easel"); // and is offered from now on
    EXPECT_GE(drive.find<QComboBox>("Combo1(0)")->findText("easel"), 0);
    EXPECT_EQ(database.value("select gys_dj from yy_bzdj_b where cpbh='C1' and gg='40x40' and gys_bizh='CNY'"), 9.5);
    EXPECT_FALSE(grid->isEditing());
    EXPECT_EQ(drive.text("Text(0)"), "C1");
}

TEST_F(Products, CustomersDropDownBelowTheirCell)
{
    const FormDriver drive = open();
    auto *grid = drive.find<Grid>("TDBGrid1");
    drive.click("Cmdedit");
    grid->setFocus();
    grid->editCell(0, "khbh");
    const QPersistentModelIndex cell = grid->currentIndex();
    QLineEdit *editor = grid->cellEditor();
    ASSERT_NE(editor, nullptr);
    ASSERT_NE(editor->completer(), nullptr);
    QTest::keyClick(editor, Qt::Key_Down);
    QAbstractItemView *list = editor->completer()->popup();
    EXPECT_EQ(list->objectName(), "T_down");
    EXPECT_TRUE(list->isVisible());
    EXPECT_EQ(list->model()->index(0, 0).data(), "K1");
    for (const bool chosen : {true, false}) { // the first key opens the list, Enter takes the only one that begins so
        SCOPED_TRACE(chosen);
        drive.typeCell(grid, 0, "khbh", "");
        grid->setCurrentIndex(cell);
        QTest::keyClick(grid, Qt::Key_K);
        ASSERT_NE(grid->cellEditor(), nullptr);
        list = grid->cellEditor()->completer()->popup();
        EXPECT_TRUE(list->isVisible());
        if (chosen)
            QTest::keyClick(list, Qt::Key_Down);
        QTest::keyClick(list, Qt::Key_Return);
        QApplication::processEvents();
        EXPECT_FALSE(list->isVisible());
        EXPECT_EQ(cell.data(), "K1");
        EXPECT_NE(grid->currentColumn(), "khbh");
    }
}

TEST_F(Products, ARefusedOkLocksGridAndCombosUntilOneIsTaken)
{
    const FormDriver drive = open();
    auto *grid = drive.find<Grid>("TDBGrid1");
    drive.click("Cmdadd");
    drive.click("CmdOK");
    EXPECT_EQ(dialogs.take(), (Shown{"编号不能为空", "提示", MessageIcon::Exclamation}));
    EXPECT_TRUE(form->isBusy());
    EXPECT_EQ(drive.focused(), "Text(0)");
    EXPECT_FALSE(grid->isEditing());
    for (const char *combo : {"Combo1(0)", "Combo1(1)"})
        EXPECT_TRUE(drive.control(combo)->property("readOnly").toBool()) << combo;
    EXPECT_FALSE(drive.control("Text(0)")->property("readOnly").toBool());
    drive.type("Text(0)", "C1");
    drive.click("CmdOK");
    EXPECT_FALSE(form->isBusy());
    EXPECT_EQ(database.count("yy_bzdj"), 3);
    drive.click("Cmdedit");
    EXPECT_TRUE(grid->isEditing());
    EXPECT_FALSE(drive.control("Combo1(0)")->property("readOnly").toBool());
    // Copied prices stand under the empty code: what locks the grid leaves them there.
    drive.click("Cmdcancel");
    drive.click("CMd_LC");
    drive.click("CmdOK");
    dialogs.take();
    QTest::keyClick(grid, Qt::Key_Delete);
    EXPECT_EQ(prices(""), 3);
}

// The prices under a code that is taken are another product's.
TEST_F(Products, CancelBeforeATakenCodeIsLeftTakesNoPrices)
{
    const FormDriver drive = open();
    drive.click("Cmdadd");
    drive.type("Text(0)", "A1");
    drive.click("Cmdcancel");
    EXPECT_EQ(prices("A1"), 3);
}

TEST_F(Products, SaveAsCopiesTheGeneralPricesUnderTheNewCode)
{
    const FormDriver drive = open();
    auto *grid = drive.find<Grid>("TDBGrid1");
    drive.click("CMd_LC");
    EXPECT_TRUE(form->isBusy());
    EXPECT_EQ(drive.text("Text(0)"), "");
    const QStringList fields{"Combo1(0)", "Combo1(1)", "Text(1)", "Text(2)", "Text(3)"};
    const QStringList values{"mirror", "PCS", "Mirror", "7009", "note"};
    for (int i = 0; i < fields.size(); ++i)
        EXPECT_EQ(drive.text(fields[i]), values[i]);
    EXPECT_EQ(cell(*grid, 2, "gg"), "30x30"); // under the empty code the copies are seen
    EXPECT_EQ(prices(""), 3);
    EXPECT_TRUE(drive.enabled("CMd_LC"));
    drive.click("CMd_LC");
    EXPECT_EQ(prices(""), 3);
    drive.typeCell(grid, 0, "jkdj", "5"); // a copy that is changed goes along
    for (const char *typed : {"A", "A2"})
        drive.type("Text(0)", typed);
    drive.click("CmdOK");
    EXPECT_FALSE(form->isBusy());
    EXPECT_EQ(prices(""), 0);
    EXPECT_EQ(prices("A1"), 3);
    EXPECT_EQ(database.value("select count(*) from yy_bzdj_b where cpbh='A2' and gys_bizh='EUR' and khbh is null and "
                             "khmc is null"),
              3);
    EXPECT_EQ(database.value("select gys_dj from yy_bzdj_b where cpbh='A2' and gg='10x10'"), 7.5);
    EXPECT_EQ(database.value("select cpmc from yy_bzdj where cpbh='A2' and bacp='7009' and beizhu='note'"), "Mirror");
    EXPECT_EQ(grid->model()->rowCount(), 3);
    drive.click("Cmdedit");
    EXPECT_FALSE(drive.enabled("CMd_LC"));
}

// Nothing is copied of prices that the database has refused, and nothing of its own words is shown.
TEST_F(Products, SaveAsWaitsForWhatIsNotStored)
{
    database.refuse("yy_bzdj_b", "gg", "never");
    const FormDriver drive = open();
    drive.click("Cmdedit");
    drive.typeCell(drive.find<Grid>("TDBGrid1"), 0, "gg", "never");
    drive.click("CmdOK");
    dialogs.shown.clear();
    drive.click("CMd_LC");
    EXPECT_EQ(dialogs.take().text, "尚有未保存的记录，请先保存或取消。");
    EXPECT_FALSE(form->isBusy());
    EXPECT_EQ(prices(""), 0);
}

TEST_F(Products, CancelTakesTheCopiesAway)
{
    const FormDriver drive = open();
    for (const char *typed : {"", "A2"}) { // the code typed already or not
        drive.click("cmdqd");
        drive.click("CMd_LC");
        EXPECT_EQ(prices(""), 3);
        drive.type("Text(0)", typed);
        drive.click("Cmdcancel");
        EXPECT_EQ(prices(""), 0) << typed;
        EXPECT_EQ(prices("A1"), 3);
        EXPECT_EQ(drive.text("Text(0)"), "A1");
    }
    // Without price rows only the head is copied.
    drive.click("cmdmd");
    drive.click("CMd_LC");
    EXPECT_EQ(prices(""), 0);
    EXPECT_EQ(drive.text("Text(1)"), "Frame");
    drive.click("Cmdcancel");
    // An edit that is cancelled keeps every row.
    drive.click("Cmdedit");
    drive.click("Cmdcancel");
    EXPECT_EQ(prices("A1"), 3);
}

// A refused OK ends the adding: what is cancelled then leaves its copies, and the next product stored takes them.
TEST_F(Products, CopiesLeftByARefusedOkGoToTheNextProduct)
{
    const FormDriver drive = open();
    drive.click("CMd_LC");
    drive.click("CmdOK");
    EXPECT_EQ(dialogs.take().text, "编号不能为空");
    drive.click("Cmdcancel");
    EXPECT_EQ(prices(""), 3);
    drive.click("cmdmd");
    drive.click("Cmdedit");
    drive.click("CmdOK");
    EXPECT_EQ(prices(""), 0);
    EXPECT_EQ(prices("B1"), 3);
    EXPECT_EQ(drive.find<Grid>("TDBGrid1")->model()->rowCount(), 3);
    // That OK has ended the copying: rows without a code stay what they are.
    run("insert into yy_bzdj_b(cpbh,gg) values('','left over')");
    drive.click("Cmdedit");
    drive.click("CmdOK");
    EXPECT_EQ(prices(""), 1);
}

TEST_F(Products, DeleteTakesThePricesAlongAndTheFilterNarrows)
{
    const FormDriver drive = open();
    auto *list = drive.find<Grid>("TDBGrid3");
    const struct {
        const char *typed;
        int found;
    } filters[] = {{"a", 1}, {" 1 ", 2}, {"%", 0}, {"", 2}};
    for (const auto &f : filters) {
        drive.type("Text1", f.typed);
        EXPECT_EQ(list->model()->rowCount(), f.found) << f.typed;
    }
    drive.click("Cmdadd");
    EXPECT_FALSE(drive.enabled("Text1"));
    drive.click("Cmdcancel");
    drive.click("Cmddelete");
    EXPECT_EQ(dialogs.take(), (Shown{"是否真的删除当前记录 ？", "系统提示", MessageIcon::Question}));
    EXPECT_EQ(prices("A1"), 0);
    EXPECT_EQ(drive.text("Text(0)"), "B1");
    drive.click("Cmddelete");
    EXPECT_EQ(database.count("yy_bzdj"), 0);
    EXPECT_EQ(drive.text("Text(0)"), "");
}

TEST_F(Products, ATextInAPriceIsToldAndStaysUntilItIsMended)
{
    const Shown told{"数值输入有误，请重新核对！", "系统提示", MessageIcon::Critical};
    const FormDriver drive = open();
    auto *grid = drive.find<Grid>("TDBGrid1");
    drive.click("Cmdedit");
    drive.type("Text(1)", "changed");
    drive.typeCell(grid, 0, "jkdj", "about 3");
    QApplication::processEvents();
    EXPECT_EQ(dialogs.take(), told);
    ASSERT_NE(grid->cellEditor(), nullptr); // there it is mended
    EXPECT_EQ(grid->cellEditor()->text(), "about 3");
    EXPECT_EQ(grid->currentColumn(), "jkdj");
    QTest::keyClick(form.get(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(dialogs.take(), told);
    EXPECT_TRUE(form->isBusy());
    EXPECT_EQ(database.value("select cpmc from yy_bzdj where cpbh='A1'"), "Mirror");
    drive.typeCell(grid, 0, "jkdj", "１,003.５"); // as people write it
    EXPECT_EQ(cell(*grid, 0, "gys_dj"), "1006");
    drive.click("CmdOK");
    EXPECT_EQ(dialogs.shown, QVector<Shown>());
    EXPECT_EQ(database.value("select cpmc from yy_bzdj where cpbh='A1'"), "changed");
    EXPECT_EQ(database.value("select gys_dj from yy_bzdj_b where cpbh='A1' and gg='10x10'"), 1006);
}

} // namespace tradewick
