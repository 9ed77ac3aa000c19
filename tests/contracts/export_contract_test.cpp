// The export contract by its controls, over demonstration data.
#include "contract.h"
#include "reporting/report.h"

#include <QDateEdit>

namespace tradewick
{

using namespace test;

TEST_F(Contract, AddProposesTheNextNumberOfTheMonth)
{
    clearMonth();
    const struct {
        const char *stored;
        const char *proposed;
    } cases[] = {{nullptr, "00001"}, {"00012", "00013"}, {"ZZZZZ", "00001"}, {"99999", "100000"}};
    for (const auto &c : cases) {
        if (c.stored)
            database.connection().Execute("insert into yy_gw_wxht_h(htbh,djrq) values('{h}','{d}')",
                                          {{"h", thisMonth() + c.stored}, {"d", QDate::currentDate()}});
        const FormDriver drive = open();
        drive.click("Cmdadd");
        // A hand-typed key that sorts last steers the series: "…ZZZZZ" reads as 0.
        EXPECT_EQ(drive.text("Text1(0)"), thisMonth() + c.proposed);
        drive.click("Cmdcancel");
        if (c.stored && QString(c.stored).startsWith(u'Z'))
            database.connection().Execute("delete from yy_gw_wxht_h where htbh='{h}'", {{"h", thisMonth() + c.stored}});
    }
    const FormDriver drive = open();
    drive.click("Cmdadd");
    const QDate today = QDate::currentDate();
    EXPECT_EQ(drive.text("Text1(2)"), today.toString(Qt::ISODate));
    EXPECT_EQ(drive.text("Text1(11)"), today.toString(Qt::ISODate));
    EXPECT_EQ(drive.text("Text1(12)"), today.addDays(90).toString(Qt::ISODate));
    EXPECT_EQ(drive.focused(), "Text1(0)");
}

TEST_F(Contract, TenLinesAreEnteredByKeyboardAlone)
{
    clearMonth();
    const QVector<Row> products = database.connection().rows(
        "select cpbh, khbh, jkdj, jmdj from yy_bzdj_b where khbh='{k}' order by cpbh", {{"k", "K001"}});
    ASSERT_GE(products.size(), 10);
    const FormDriver drive = open();
    QTest::keyClick(form.get(), Qt::Key_N, Qt::ControlModifier);
    ASSERT_TRUE(form->isBusy());
    const QString number = drive.text("Text1(0)");
    drive.press("Text1(0)", Qt::Key_Return);
    ASSERT_EQ(drive.focused(), "Combo1(0)");
    database.connection().Execute("delete from yy_bzdj_b where khbh='K001' and cpbh<>'{c}'",
                                  {{"c", products[0]["cpbh"]}});
    // The customer's code typed in full counts as chosen: its columns and its prices come in.
    QWidget *customer = drive.find<QComboBox>("Combo1(0)")->lineEdit();
    customer->setFocus();
    QTest::keyClicks(customer, "k001");
    QTest::keyClick(customer, Qt::Key_Return);
    EXPECT_EQ(drive.text("Text1(3)"), database.value("select khmc from yy_gwkh_zl where khbh='K001'").toString());
    EXPECT_EQ(storedLines(number), lines()->model()->rowCount() - 1);

    lines()->setFocus();
    for (int i = lines()->model()->rowCount() - 1; i < 10; ++i) {
        lines()->setCurrentIndex(lines()->model()->index(i, 0));
        const QString code = database.value("select cpbh from yy_bzdj where cpbh<>'' order by cpbh").toString();
        QTest::keyClick(lines()->viewport(), Qt::Key(code[0].toUpper().unicode()));
        QLineEdit *editor = lines()->cellEditor();
        ASSERT_NE(editor, nullptr);
        FormDriver::commit(editor, code.mid(1));
        ASSERT_TRUE(pickerGrid()->isVisible());
        ASSERT_GT(pickerGrid()->model()->rowCount(), 0);
        QTest::keyClick(editor, Qt::Key_Down);
        EXPECT_EQ(drive.focused(), "TDBGrid2");
        QTest::keyClick(pickerGrid(), Qt::Key_Return);
        EXPECT_FALSE(pickerGrid()->isVisible());
        editor = lines()->cellEditor();
        ASSERT_NE(editor, nullptr) << "the quantity is what comes next";
        QTest::keyClicks(editor, QString::number(i + 1));
        QTest::keyClick(editor, Qt::Key_Return);
        EXPECT_EQ(cell(i, "sl"), QString::number(i + 1));
        EXPECT_EQ(cell(i, "htbh"), number);
        EXPECT_EQ(cell(i, "khbh"), "K001");
        EXPECT_DOUBLE_EQ(cell(i, "je").toDouble(), (cell(i, "jkdj").toDouble() + cell(i, "jmdj").toDouble()) * (i + 1));
        EXPECT_EQ(lines()->currentIndex(), lines()->model()->index(i + 1, 0));
    }
    QTest::keyClick(form.get(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_FALSE(form->isBusy());
    EXPECT_TRUE(dialogs.shown.isEmpty());
    EXPECT_EQ(storedLines(number), 10);
    EXPECT_EQ(drive.text("Text1(0)"), number);
}

TEST_F(Contract, KeysOfTheButtonsWorkFromWithinAField)
{
    const FormDriver drive = open();
    QWidget *field = drive.control("Text1(3)");
    const struct {
        Qt::Key key;
        Qt::KeyboardModifier modifier;
        const char *shown; // in the number field then
        bool busy;
    } cases[] = {{Qt::Key_End, Qt::AltModifier, "X261100003", false},
                 {Qt::Key_PageUp, Qt::AltModifier, "X261100002", false},
                 {Qt::Key_PageDown, Qt::AltModifier, "X261100003", false},
                 {Qt::Key_Home, Qt::AltModifier, "X260800001", false},
                 {Qt::Key_E, Qt::AltModifier, "X260800001", true},
                 {Qt::Key_C, Qt::AltModifier, "X260800001", false},
                 {Qt::Key_E, Qt::AltModifier, "X260800001", true},
                 {Qt::Key_S, Qt::ControlModifier, "X260800001", false},
                 {Qt::Key_D, Qt::AltModifier, "X260800002", false}};
    for (const auto &c : cases) {
        field->setFocus();
        QTest::keyClick(field, c.key, c.modifier);
        EXPECT_EQ(drive.text("Text1(0)").toStdString(), c.shown);
        EXPECT_EQ(form->isBusy(), c.busy);
    }
    drive.click("Cmdreturn");
}

TEST_F(Contract, ATabsKeyLeadsToItsFields)
{
    const FormDriver drive = open();
    form->resize(1360, 580);
    drive.click("Cmdedit");
    for (const auto &[key, field] :
         {std::pair(Qt::Key_2, "Text1(13)"), {Qt::Key_3, "Text1(23)"}, {Qt::Key_1, "Text1(0)"}}) {
        lines()->setFocus();
        QTest::keyClick(lines(), key, Qt::AltModifier);
        EXPECT_EQ(drive.focused(), field); // what is typed next would go into the lines
    }
    // Long texts take the height that their tab has.
    const int tab = drive.control("SSTab1")->height();
    const auto heightOf = [&](Qt::Key key, const char *field) {
        QTest::keyClick(form.get(), key, Qt::AltModifier);
        QApplication::processEvents();
        return drive.control(field)->height();
    };
    EXPECT_GT(heightOf(Qt::Key_3, "Text1(23)"), tab / 2);
    EXPECT_GT(heightOf(Qt::Key_2, "Text1(19)"), form->fontMetrics().lineSpacing() * 3);
}

TEST_F(Contract, LinesAndPickerShareASmallScreen)
{
    const FormDriver drive = open();
    form->resize(1360, 580);
    drive.click("Cmdedit");
    lines()->setFocus();
    lines()->editCell(lines()->model()->rowCount() - 1, "cpbh");
    QTest::keyClick(lines()->cellEditor(), Qt::Key_M);
    QApplication::processEvents();
    ASSERT_TRUE(pickerGrid()->isVisible());
    EXPECT_EQ(pickerGrid()->visibleRegion().boundingRect(), pickerGrid()->rect());
    EXPECT_TRUE(lines()->viewport()->rect().contains(lines()->cellEditor()->geometry().center()));
    lines()->commitEditor();
    lines()->setFocus();
    drive.press("TDBGrid1", Qt::Key_Tab);
    EXPECT_EQ(drive.focused(), "CmdOK"); // Enter there picks no row
    drive.click("Cmdcancel");
}

TEST_F(Contract, WhatIsTypedIsInSightOnAScreenAtTwiceTheScale)
{
    const FormDriver drive = open();
    form->resize(680, 230);
    drive.click("Cmdedit");
    QTest::keyClick(form.get(), Qt::Key_3, Qt::AltModifier);
    drive.press("Text1(23)", Qt::Key_Return);
    ASSERT_EQ(drive.focused(), "TDBGrid1");
    const auto inSight = [](const Grid *grid) {
        QApplication::processEvents();
        const QPoint at = grid->visualRect(grid->currentIndex()).center();
        return grid->viewport()->visibleRegion().contains(at);
    };
    for (int row : {0, 3, 5, 29}) {
        lines()->setCurrentIndex(lines()->model()->index(row, 0));
        EXPECT_TRUE(inSight(lines())) << row;
    }
    lines()->editCell(lines()->currentIndex().row(), "cpbh");
    QTest::keyClick(lines()->cellEditor(), Qt::Key_M);
    EXPECT_TRUE(inSight(lines()));
    QTest::keyClick(lines()->cellEditor(), Qt::Key_Down);
    EXPECT_TRUE(pickerGrid()->hasFocus() && inSight(pickerGrid()));
    drive.click("Cmdcancel");
    QTest::keyClick(form.get(), Qt::Key_2, Qt::AltModifier);
    EXPECT_GE(drive.control("Text1(20)")->width(), form->fontMetrics().averageCharWidth() * 12);
}

TEST_F(Contract, TheLinesLeaveAnInputMethodItsKeys)
{
    const FormDriver drive = open();
    drive.expectAccessibleNames();
    drive.click("Cmdedit");
    lines()->setFocus();
    lines()->editCell(0, "cpbh");
    QLineEdit *editor = lines()->cellEditor();
    ASSERT_NE(editor, nullptr);
    editor->selectAll();
    FormDriver::compose(editor, "jingkuang");
    for (Qt::Key key : {Qt::Key_Return, Qt::Key_Down, Qt::Key_Up}) {
        QTest::keyClick(editor, key);
        EXPECT_EQ(lines()->cellEditor(), editor) << "the cell stays open while text is composed";
        EXPECT_NE(drive.focused(), "TDBGrid2");
    }
    EXPECT_FALSE(pickerGrid()->isVisible()) << "what is composed is not searched for";
    FormDriver::commit(editor, "镜框");
    EXPECT_TRUE(pickerGrid()->isVisible());
    QTest::keyClick(editor, Qt::Key_Return);
    EXPECT_EQ(cell(0, "cpbh"), "镜框");
}

TEST_F(Contract, ChoosingACustomerReplacesTheLinesAtOnce)
{
    const QString number = database.value("select htbh from yy_gw_wxht_h order by htbh").toString();
    const QString other = database
                              .value("select DISTINCT khbh from yy_bzdj_b where khbh not in (select khbh from "
                                     "yy_gw_wxht_h where htbh='{h}') order by khbh",
                                     {{"h", number}})
                              .toString();
    const int prices =
        database
            .value("SELECT count(*) FROM dbo.yy_BzDj left JOIN dbo.YY_BZDJ_B ON dbo.yy_BzDj.cpbh = dbo.YY_BZDJ_B.CPBH "
                   "where dbo.yy_bzdj_b.khbh='{k}'",
                   {{"k", other}})
            .toInt();
    ASSERT_GT(prices, 0);
    FormDriver drive = open();
    drive.click("Cmdedit");
    const QString contract = drive.text("Text1(0)");
    drive.choose("Combo1(0)", other);
    EXPECT_EQ(drive.text("Text1(8)"), database.value("select bizh from yy_gwkh_zl where khbh='{k}'", {{"k", other}}));
    EXPECT_EQ(drive.text("Text1(20)"), database.value("select zffs from yy_gwkh_zl where khbh='{k}'", {{"k", other}}));
    EXPECT_EQ(storedLines(contract), prices);
    EXPECT_EQ(cell(0, "sl"), "0");
    EXPECT_EQ(cell(0, "je"), "");
    EXPECT_EQ(cell(0, "xc"), "no column");
    drive.click("Cmdcancel");
    EXPECT_EQ(storedLines(contract), prices) << "what went to the server at once, Cancel does not take back";
    EXPECT_NE(database.value("select khbh from yy_gw_wxht_h where htbh='{h}'", {{"h", contract}}), other);

    // No prices: the lines go, and nothing is said.
    database.connection().Execute("delete from yy_bzdj_b where khbh='{k}'", {{"k", other}});
    drive.click("Cmdedit");
    drive.choose("Combo1(0)", other);
    EXPECT_EQ(storedLines(contract), 0);
    EXPECT_TRUE(dialogs.shown.isEmpty());
}

TEST_F(Contract, ChoosingACompanyCopiesItsLetterhead)
{
    const FormDriver drive = open();
    drive.click("Cmdadd");
    auto *combo = drive.find<QComboBox>("Combo1(1)");
    ASSERT_GT(combo->count(), 0);
    drive.choose("Combo1(1)", combo->itemText(0));
    const auto company = database.connection().rows("select * from sys_gsmc order by gsmc").first();
    for (const char *column : {"e_gsmc", "gsdz", "e_gsdz", "gs_phone", "gs_email", "gs_fax", "fpzt", "logo", "bgbm",
                               "sjzch", "bank_en", "bank_code", "bank_name", "swdjh"})
        EXPECT_EQ(form->records().Fields(column).text(), company[column].toString()) << column;
    // Erased and typed again it is chosen again; a slip that is mended is no choice.
    const QString name = combo->itemText(0);
    for (const bool erased : {false, true}) {
        form->records().Fields("e_gsdz").setValue("typed");
        drive.type("Combo1(1)", erased ? "" : name + "x");
        drive.choose("Combo1(1)", name);
        EXPECT_EQ(form->records().Fields("e_gsdz").text(), erased ? company["e_gsdz"].toString() : "typed");
    }
}

TEST_F(Contract, AnOverTypedNumberTakesItsLinesAlong)
{
    clearMonth();
    const FormDriver drive = open();
    drive.click("Cmdadd");
    drive.typeCell(lines(), lines()->model()->rowCount() - 1, "cpmc", "first");
    drive.type("Text1(0)", "HAND-1");
    EXPECT_EQ(cell(0, "cpmc"), "first");
    drive.click("CmdOK");
    EXPECT_EQ(storedLines("HAND-1"), 1);
}

TEST_F(Contract, RefusedSavesKeepWhatWasTyped)
{
    const FormDriver drive = open();
    const QString first = drive.text("Text1(0)");
    drive.click("Cmdadd");
    drive.type("Text1(3)", "O'Neill & Söhne");
    drive.type("Text1(0)", "");
    drive.click("CmdOK");
    EXPECT_EQ(dialogs.take(), (Shown{"所有名称不能为空", "提示", MessageIcon::Exclamation}));
    EXPECT_TRUE(form->isBusy());
    EXPECT_EQ(drive.focused(), "Text1(0)");
    EXPECT_FALSE(lines()->isEditing()) << "the lines stay locked until Cancel";
    EXPECT_EQ(drive.text("Text1(3)"), "O'Neill & Söhne");

    drive.type("Text1(0)", first); // a twin
    const int before = database.count("yy_gw_wxht_h");
    drive.click("CmdOK");
    ASSERT_EQ(dialogs.shown.size(), 1);
    EXPECT_TRUE(dialogs.take().text.contains("编号重复"));
    EXPECT_FALSE(form->isBusy());
    EXPECT_EQ(database.count("yy_gw_wxht_h"), before);
    EXPECT_EQ(drive.text("Text1(3)"), "O'Neill & Söhne");
    drive.click("Cmdedit");
    drive.type("Text1(0)", "X-OTHER");
    drive.click("CmdOK");
    EXPECT_EQ(database.value("select khmc from yy_gw_wxht_h where htbh='X-OTHER'"), "O'Neill & Söhne");
}

TEST_F(Contract, ABadDateIsToldAndStaysForCorrection)
{
    const FormDriver drive = open();
    drive.click("Cmdadd");
    const struct {
        const char *field, *typed, *shown;
        bool refused;
    } cases[] = {{"Text1(2)", "2026-2-30", "2026-2-30", true},
                 {"Text1(2)", "2026/3/5", "2026-03-05", false},
                 {"Text1(11)", "soon", "soon", true},
                 {"Text1(11)", "", "", false},
                 {"Text1(12)", "20261124", "2026-11-24", false}};
    for (const auto &c : cases) {
        drive.type(c.field, c.typed);
        drive.press(c.field, Qt::Key_Return);
        QApplication::processEvents();
        EXPECT_EQ(drive.text(c.field), c.shown);
        ASSERT_EQ(dialogs.shown.size(), c.refused ? 1 : 0) << c.field << c.typed;
        if (c.refused) {
            EXPECT_EQ(dialogs.take(), (Shown{"日期输入有误，请重新核对！", "系统提示", MessageIcon::Critical}));
            EXPECT_EQ(drive.focused(), c.field);
        }
    }
    drive.type("Text1(11)", "soon");
    drive.click("CmdOK");
    EXPECT_TRUE(form->isBusy());
    EXPECT_EQ(dialogs.shown.size(), 1);
}

TEST_F(Contract, TheDatePickerFiltersTheList)
{
    const FormDriver drive = open();
    const int all = form->records().RecordCount();
    const QDate day = form->records().Fields("djrq").value().toDate();
    drive.find<QDateEdit>("DTPicker3")->setDate(day);
    EXPECT_LT(form->records().RecordCount(), all);
    EXPECT_EQ(drive.text("Text1(2)"), day.toString(Qt::ISODate));
    drive.control("Cmd_all")->setFocus();
    drive.press("Cmd_all", Qt::Key_Return);
    EXPECT_EQ(form->records().RecordCount(), all);
}

TEST_F(Contract, EachPrintButtonShowsItsInvoiceOfTheRecordShown)
{
    QStringList shown;
    setReportViewer([&](Report &report, QWidget *) {
        shown.append(report.name() + ' ' + report.DataControl1.values["htbh"].toString());
    });
    const FormDriver drive = open();
    drive.click("cmdnext");
    const QString number = drive.text("Text1(0)");
    drive.click("Cmdprint(1)");
    drive.click("Cmdprint(0)");
    EXPECT_EQ(shown, (QStringList{"YY_Xsfp_Rpt " + number, "yy_XsFp_dJRPT " + number}));
    database.connection().Execute("delete from yy_gw_wxht_h");
    const FormDriver empty = open();
    empty.click("Cmdprint(1)");
    EXPECT_EQ(dialogs.take(), (Shown{"没有当前记录，不能打印！", "系统提示", MessageIcon::Critical}));
    EXPECT_EQ(shown.size(), 2);
    setReportViewer({});
}

} // namespace tradewick
