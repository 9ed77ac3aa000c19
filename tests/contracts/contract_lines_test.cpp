// The lines of a contract: what follows from an edit, what waits, what Del takes, and the list of products.
#include "common/line_totals.h"
#include "contract.h"

namespace tradewick
{

using namespace test;

// Del leaves the cursor where it stands, takes all lines that are selected, and stores what was typed beside them.
TEST_F(Contract, DelKeepsItsPlace)
{
    const FormDriver drive = open();
    const QString number = drive.text("Text1(0)");
    drive.click("Cmdedit");
    drive.typeCell(lines(), 0, "beizhu", "typed before");
    const int before = storedLines(number);
    const auto codeAt = [&](int row) { return cell(row, "cpmc") + cell(row, "gg"); };
    const QString behind = codeAt(10), further = codeAt(14);
    lines()->setFocus();
    lines()->setCurrentIndex(lines()->model()->index(9, 2));
    QTest::keyClick(lines(), Qt::Key_Delete);
    EXPECT_EQ(lines()->currentIndex(), lines()->model()->index(9, 2));
    EXPECT_EQ(codeAt(9), behind);
    for (int i = 0; i < 2; ++i)
        QTest::keyClick(lines(), Qt::Key_Down, Qt::ShiftModifier);
    QTest::keyClick(lines(), Qt::Key_Delete);
    EXPECT_EQ(storedLines(number), before - 4);
    EXPECT_EQ(lines()->currentIndex().row(), 9);
    EXPECT_EQ(codeAt(10), further);
    lines()->setCurrentIndex(lines()->model()->index(before - 5, 2)); // the last
    QTest::keyClick(lines(), Qt::Key_Delete);
    EXPECT_EQ(lines()->currentIndex().row(), before - 5); // where the next line is typed
    drive.click("Cmdcancel");
    EXPECT_EQ(
        database.value("select count(*) from yy_gw_wxht_b where htbh='{h}' and beizhu='typed before'", {{"h", number}}),
        1);
}

// Behind a quantity comes the next one, where a line stands already: what is typed on is no code.
TEST_F(Contract, QuantitiesAreTypedDownTheirColumn)
{
    const FormDriver drive = open();
    drive.click("Cmdedit");
    const QString code = cell(1, "cpbh");
    drive.typeCell(lines(), 0, "sl", "11");
    QTest::keyClick(lines(), Qt::Key_1);
    QTest::keyClick(lines()->cellEditor(), Qt::Key_2);
    QTest::keyClick(lines()->cellEditor(), Qt::Key_Return);
    EXPECT_EQ(cell(1, "cpbh"), code);
    EXPECT_EQ(cell(0, "sl") + ' ' + cell(1, "sl"), "11 12");
    drive.typeCell(lines(), newRow() - 1, "sl", "13"); // the last: the next line begins with its code
    EXPECT_EQ(lines()->currentIndex(), lines()->model()->index(newRow(), 0));
}

// A stored contract that is given another number takes its lines along, or leaves them, as the clerk says.
TEST_F(Contract, ARenamedContractsLinesAreAskedFor)
{
    const FormDriver drive = open();
    for (const bool along : {true, false}) {
        dialogs.answer = along;
        const QString before = drive.text("Text1(0)"), now = along ? "MINE-1" : "MINE-2";
        const int count = storedLines(before);
        ASSERT_GT(count, 0);
        drive.click("Cmdedit");
        drive.type("Text1(0)", now);
        drive.typeCell(lines(), newRow(), "cpmc", "new");
        drive.click("CmdOK");
        const QString question = dialogs.take().text;
        for (const QString &part : {before, now, QString::number(count)})
            EXPECT_TRUE(question.contains(part)) << question.toStdString();
        EXPECT_EQ(storedLines(now), along ? count + 1 : 1);
        EXPECT_EQ(storedLines(before), along ? 0 : count);
        EXPECT_EQ(lines()->model()->rowCount(), storedLines(now)) << "what is shown";
        drive.click("Cmdedit");
        drive.click("CmdOK");
        EXPECT_TRUE(dialogs.shown.isEmpty()) << "once";
        drive.click("cmdmd");
    }
}

// A document that the database refuses waits whole, wherever the clerk goes and whatever is stored there.
TEST_F(Contract, LinesWaitWithTheirHead)
{
    database.refuse("yy_gw_wxht_b", "cpmc", "never");
    const FormDriver drive = open();
    const int heads = database.count("yy_gw_wxht_h");
    const auto addRefused = [&](const QString &number) {
        drive.click("Cmdadd");
        drive.type("Text1(0)", number);
        drive.typeCell(lines(), lines()->model()->rowCount() - 1, "cpmc", "never");
        dialogs.shown.clear();
        drive.click("CmdOK");
        const Shown told = dialogs.take();
        EXPECT_TRUE(told.text.contains("第1行") && told.text.contains(number)) << told.text.toStdString();
    };
    addRefused("W-1");
    EXPECT_EQ(drive.text("state"), "未保存");
    drive.click("cmdqd");
    drive.click("Cmdedit");
    drive.type("Text1(10)", "Hongkong");
    drive.click("CmdOK");
    EXPECT_EQ(dialogs.shown, QVector<Shown>());
    EXPECT_EQ(database.count("yy_gw_wxht_h"), heads);
    EXPECT_EQ(storedLines("W-1"), 0);
    drive.click("cmdmd");
    EXPECT_EQ(drive.text("Text1(0)"), "W-1");
    EXPECT_EQ(cell(0, "cpmc"), "never");
    drive.click("Cmdedit");
    drive.typeCell(lines(), 0, "cpmc", "mended");
    drive.click("CmdOK");
    EXPECT_EQ(database.count("yy_gw_wxht_h"), heads + 1);
    EXPECT_EQ(storedLines("W-1"), 1);
    // A stored head's change waits with a refused line, too; deleting takes both.
    drive.click("Cmdedit");
    drive.type("Text1(10)", "Macao");
    drive.typeCell(lines(), 1, "cpmc", "never");
    drive.click("CmdOK");
    dialogs.shown.clear();
    drive.click("cmdxq");
    drive.click("Cmdedit");
    drive.click("CmdOK");
    EXPECT_EQ(database.value("select qydz from yy_gw_wxht_h where htbh='W-1'").toString(), "");
    drive.click("cmdmd");
    EXPECT_EQ(cell(1, "cpmc"), "never");
    drive.click("Cmddelete");
    EXPECT_EQ(database.count("yy_gw_wxht_h"), heads);
    EXPECT_EQ(storedLines("W-1"), 0);
    addRefused("W-2");
    drive.click("Cmdedit");
    drive.click("Cmdcancel");
    EXPECT_FALSE(form->records().hasPendingChanges());
    dialogs.shown.clear();
    form->close();
    EXPECT_EQ(dialogs.shown, QVector<Shown>()); // nothing waits that would be lost
}

// A cell that is still open is taken along at OK, and closed with what stands in it at Cancel.
TEST_F(Contract, AnOpenCellIsTakenAtOkAndGivenUpAtCancel)
{
    const FormDriver drive = open();
    const QString number = drive.text("Text1(0)");
    const auto typed = [&](const char *text) {
        return database
            .value("select count(*) from yy_gw_wxht_b where htbh='{h}' and beizhu='{t}'", {{"h", number}, {"t", text}})
            .toInt();
    };
    for (const char *key : {"Alt+C", "Ctrl+S"}) {
        drive.click("Cmdedit");
        lines()->setFocus();
        lines()->editCell(1, "beizhu");
        ASSERT_NE(lines()->cellEditor(), nullptr);
        lines()->cellEditor()->selectAll();
        FormDriver::commit(lines()->cellEditor(), key);
        const QKeySequence sequence{QString(key)};
        QTest::keyClick(lines()->cellEditor(), sequence[0].key(), sequence[0].keyboardModifiers());
        EXPECT_EQ(lines()->cellEditor(), nullptr);
        EXPECT_FALSE(form->isBusy());
        EXPECT_FALSE(form->lines().hasPendingChanges());
        drive.click("cmdqd");
    }
    EXPECT_EQ(typed("Alt+C"), 0);
    EXPECT_EQ(typed("Ctrl+S"), 1);
}

// A number that is another contract's is told when it is left, and nothing touches that one's lines.
TEST_F(Contract, AnotherContractsNumberIsToldAndItsLinesStay)
{
    const FormDriver drive = open();
    const QString taken = drive.text("Text1(0)");
    const int before = storedLines(taken);
    drive.click("Cmdadd");
    EXPECT_EQ(drive.find<QLineEdit>("Text1(0)")->selectedText(), drive.text("Text1(0)")); // to be typed over
    drive.type("Text1(0)", taken.toLower());
    drive.leave("Text1(0)");
    const Shown told = dialogs.take();
    EXPECT_TRUE(told.text.contains(taken, Qt::CaseInsensitive)) << told.text.toStdString();
    EXPECT_EQ(drive.focused(), "Text1(0)");
    drive.choose("Combo1(0)", "K002");
    lines()->setFocus();
    lines()->setCurrentIndex(lines()->model()->index(0, 0));
    QTest::keyClick(lines(), Qt::Key_Delete);
    drive.click("Cmdcancel");
    EXPECT_EQ(storedLines(taken), before);
}

// The list lies over the form; Enter takes the row that typing has highlighted, the contract's own customer's first;
// in a cell that searches nothing it is in nobody's way.
TEST_F(Contract, TypingHighlightsARowThatEnterTakes)
{
    const FormDriver drive = open();
    form->resize(1366, 740);
    drive.click("cmdnext");
    const QString customer = drive.text("Combo1(0)");
    drive.click("Cmdedit");
    lines()->setFocus();
    const QRect place = lines()->geometry();
    const int row = lines()->model()->rowCount() - 1;
    lines()->editCell(row, "cpbh");
    QTest::keyClicks(lines()->cellEditor(), "M");
    ASSERT_TRUE(pickerGrid()->isVisible());
    EXPECT_EQ(lines()->geometry(), place);
    EXPECT_EQ(pickerGrid()->currentIndex().row(), 0);
    const auto owner = [&](int at) { return pickerGrid()->model()->index(at, 9).data().toString(); };
    EXPECT_EQ(owner(0), customer);
    bool others = false; // behind the own ones
    for (int at = 0; at < pickerGrid()->model()->rowCount(); ++at) {
        others = others || owner(at) != customer;
        EXPECT_EQ(owner(at) != customer, others);
    }
    const QString product = pickerGrid()->model()->index(0, 0).data().toString();
    QTest::keyClick(lines()->cellEditor(), Qt::Key_Return);
    EXPECT_FALSE(pickerGrid()->isVisible());
    EXPECT_EQ(cell(row, "cpbh"), product);
    ASSERT_EQ(lines()->currentColumn(), "sl");
    QTest::keyClicks(lines()->cellEditor(), "55");
    EXPECT_TRUE(pickerGrid()->isVisible()); // shown at each key, and left alone
    QTest::keyClick(lines()->cellEditor(), Qt::Key_Down);
    EXPECT_EQ(cell(row, "sl"), "55");
    EXPECT_EQ(lines()->currentIndex().row(), row + 1);
    EXPECT_EQ(cell(row, "cpbh"), product);
    lines()->editCell(row, "cpbh"); // what is typed stands once the list is closed
    lines()->cellEditor()->selectAll();
    QTest::keyClicks(lines()->cellEditor(), "M");
    QTest::keyClick(lines()->cellEditor(), Qt::Key_Escape);
    EXPECT_FALSE(pickerGrid()->isVisible());
    QTest::keyClick(lines()->cellEditor(), Qt::Key_Return);
    EXPECT_EQ(cell(row, "cpbh"), "M");
    drive.click("Cmdcancel");
}

TEST_F(Contract, LineRulesDeriveWhatWasTypedOver)
{
    const FormDriver drive = open();
    drive.click("Cmdadd");
    const int row = lines()->model()->rowCount() - 1;
    drive.typeCell(lines(), row, "cpmc", "手工商品");
    EXPECT_EQ(cell(row, "htbh"), drive.text("Text1(0)"));
    EXPECT_EQ(cell(row, "sl"), "0");
    drive.typeCell(lines(), row, "jkdj", "2");
    drive.typeCell(lines(), row, "jmdj", "3");
    drive.typeCell(lines(), row, "sl", "5");
    EXPECT_EQ(cell(row, "je"), "25");
    EXPECT_EQ(cell(row, "dj"), "5");
    drive.typeCell(lines(), row, "je", "100");
    EXPECT_EQ(cell(row, "je"), "25");
    drive.typeCell(lines(), row, "dj", "9");
    EXPECT_EQ(cell(row, "dj"), "5");
    drive.typeCell(lines(), row, "jkdj", "1.005");
    EXPECT_EQ(cell(row, "je"), "20.025");
    double sum = 0;
    for (int line = 0; line < form->lines().RecordCount(); ++line)
        sum += cell(line, "je").toDouble();
    EXPECT_DOUBLE_EQ(drive.find<LineTotals>("TDBGrid1_totals")->text("je").toDouble(), sum);
    // A line whose contract number was blanked is not the contract's own until it is chosen again.
    drive.typeCell(lines(), row, "cpbh", "A");
    drive.typeCell(lines(), row, "htbh", "");
    drive.typeCell(lines(), row, "gg", "50");
    ASSERT_FALSE(dialogs.shown.isEmpty());
    EXPECT_EQ(dialogs.shown.last(), (Shown{"请双击此行表格，再录入数据！", "系统提示", MessageIcon::Question}));
}

TEST_F(Contract, ADeletedLineStaysDeletedAfterCancel)
{
    const FormDriver drive = open();
    const QString number = drive.text("Text1(0)");
    const int before = storedLines(number);
    ASSERT_GT(before, 1);
    QTest::keyClick(lines(), Qt::Key_Delete);
    EXPECT_EQ(storedLines(number), before) << "not in Browse";
    drive.click("Cmdedit");
    lines()->setCurrentIndex(lines()->model()->index(1, 0));
    QTest::keyClick(lines(), Qt::Key_Delete);
    EXPECT_EQ(storedLines(number), before - 1);
    drive.click("Cmdcancel");
    EXPECT_EQ(storedLines(number), before - 1);
}

} // namespace tradewick
