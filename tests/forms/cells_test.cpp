// What a spreadsheet does with the cells of lines, in documents by their controls: blocks that are pasted, values that
// are repeated, and edits that are taken back, in lines and in fields.
#include "every_form.h"

#include <QClipboard>

namespace tradewick
{

using namespace test;

namespace
{

class Sheet : public EveryForm
{
protected:
    explicit Sheet(TestDatabase::Content content = TestDatabase::Demonstration) : EveryForm(content) {}

    Grid *grid(int at = 0) { return form->findChild<Grid *>(spec.lines.grids[at].name); }
    QString cell(int row, const QString &column)
    {
        return Recordset::text(form->lines().valueAt(row, form->lines().columnIndex(column)),
                               form->lines().columnKind(form->lines().columnIndex(column)));
    }
    void press(int key, Qt::KeyboardModifiers with = Qt::ControlModifier)
    {
        QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), with);
        QApplication::processEvents();
    }
    void goTo(int row, const QString &column)
    {
        form->showLines();
        grid()->setFocus();
        grid()->goToCell(row, column);
    }
    void paste(int row, const QString &column, const QString &block)
    {
        QApplication::clipboard()->setText(block);
        goTo(row, column);
        press(Qt::Key_V);
    }
    // Everything the clerk sees of the record and its lines, sums included.
    QStringList shown(const FormDriver &drive)
    {
        QStringList all;
        for (const FieldSpec &field : fields)
            all.append(drive.text(field.name));
        for (qsizetype at = 0; at < spec.lines.grids.size(); ++at)
            for (int row = 0; row < grid(static_cast<int>(at))->model()->rowCount(); ++row)
                for (int i = 0; i < grid(static_cast<int>(at))->model()->columnCount(); ++i)
                    all.append(grid(static_cast<int>(at))->model()->index(row, i).data().toString());
        return all;
    }
};

// A column of prices from which amounts follow, and fields of the head: one that fills in others, and a plain one.
const struct Document {
    const char *form, *price, *choice, *field;
} documents[] = {{"YY_WXHT", "jkdj", "Combo1(1)", "Text1(20)"},
                 {"YY_CGHT", "dj", "Combo1(2)", "Text1(10)"},
                 {"YY_DZ_MXB", "dj", "Combo1(16)", "Text1(10)"}};

QVector<WalkedForm> namedDocuments()
{
    QVector<WalkedForm> forms;
    for (const Document &one : documents)
        for (const WalkedForm &form : walkedForms())
            if (form.window == one.form)
                forms.append(form);
    return forms;
}
QVector<WalkedForm> formsWithLines()
{
    QVector<WalkedForm> forms = walkedForms();
    forms.removeIf([](const WalkedForm &form) { return !form.spec.lines.statement; });
    return forms;
}

class Documents : public Sheet
{
protected:
    const Document &document() const
    {
        return *std::find_if(std::begin(documents), std::end(documents),
                             [](const Document &one) { return GetParam().window == one.form; });
    }
};

class EveryFormsLines : public Sheet
{
protected:
    EveryFormsLines() : Sheet(TestDatabase::Empty) {}
};

} // namespace

TEST_P(Documents, TakeABlockAndGiveItBack)
{
    const FormDriver drive = open();
    drive.click("Cmdedit");
    const QString price = document().price;
    Recordset &lines = form->lines();
    const int last = lines.RecordCount() - 1;
    QVector<QStringList> states{shown(drive)};
    const auto pasted = [&](int row, const QString &column, const QString &block) {
        paste(row, column, block);
        states.append(shown(drive));
    };
    // Over the last line, and into three that are added; a blank row makes none.
    pasted(last, "cpbh", "A\t\"two\nlines \"\"x\"\"\"\r\nB\t19\" wide\r\n\r\n\"C\" grade\tc\r\nD\td\r\n");
    ASSERT_EQ(lines.RecordCount(), last + 4);
    const char *const expected[][2] = {{"A", "two\nlines \"x\""}, {"B", "19\" wide"}, {"\"C\" grade", "c"}, {"D", "d"}};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(cell(last + i, "cpbh"), expected[i][0]);
        EXPECT_EQ(cell(last + i, "cpmc"), expected[i][1]);
        EXPECT_EQ(cell(last + i, spec.lines.key), drive.text(key()));
    }
    pasted(last + 1, price, "3\n3\n3");
    // Numbers as people write them; one is none, and one has no column.
    pasted(last + 1, "sl", QStringLiteral("1,200.5\n１２\nabc"));
    EXPECT_TRUE(dialogs.take().text.contains("有1个"));
    EXPECT_EQ(cell(last + 1, "je").toDouble(), 3 * 1200.5);
    EXPECT_EQ(cell(last + 2, "je").toDouble(), 3 * 12.0);
    EXPECT_EQ(cell(last + 3, "sl"), "abc");
    const QModelIndex bad = grid()->currentIndex();
    EXPECT_EQ(bad.row(), last + 3);
    EXPECT_EQ(bad.data(Qt::ToolTipRole).toString(), RecordForm::badNumber());
    EXPECT_EQ(bad.siblingAtRow(last + 2).data(Qt::ToolTipRole).toString(), "");
    grid()->goTo(bad.siblingAtColumn(bad.column() - 1));
    const auto ground = [&](int row) { // of rows alike but for the mark
        return grid()->viewport()->grab(grid()->visualRect(bad.siblingAtRow(row))).toImage().pixelColor(2, 2);
    };
    EXPECT_NE(ground(last + 3), ground(last + 1));
    pasted(0, spec.lines.grids[0].columns.last().column, "1\t\t3");
    EXPECT_TRUE(dialogs.take().text.contains("有1个"));
    drive.click("CmdOK");
    EXPECT_EQ(dialogs.take().text, RecordForm::badNumber());
    // Each block is one step, the rows that it added included.
    for (qsizetype at = states.size() - 2; at >= 0; --at) {
        press(Qt::Key_Z);
        EXPECT_EQ(shown(drive), states[at]) << at;
    }
    // In an open cell a text is a text; a block is pasted over it.
    for (const auto &[text, inCell] : {std::pair("one value", "one value"), {"wide\tcell", nullptr}}) {
        QApplication::clipboard()->setText(text);
        goTo(0, "cpmc");
        grid()->editCell(0, "cpmc");
        press(Qt::Key_V);
        EXPECT_EQ(grid()->cellEditor() ? grid()->cellEditor()->text() : QString(), inCell);
    }
    EXPECT_EQ(cell(0, "cpmc"), "wide");
    // Whole lines of one document go into another, whose number they bear then.
    QStringList whole;
    for (const GridColumn &column : spec.lines.grids[0].columns)
        whole.append(column.column == spec.lines.key ? "elsewhere" : cell(0, column.column));
    paste(last + 1, "cpbh", whole.join('\t'));
    EXPECT_EQ(cell(last + 1, spec.lines.key) + cell(last + 1, "cpmc"), drive.text(key()) + "wide");
    // What is stored stays, and nothing is pasted in Browse.
    drive.click("CmdOK");
    const QStringList stored = shown(drive);
    paste(0, "cpmc", "a\tb");
    press(Qt::Key_Z);
    EXPECT_EQ(shown(drive), stored);
    drive.click("Cmdedit");
    press(Qt::Key_Z);
    EXPECT_FALSE(form->lines().hasPendingChanges());
    EXPECT_EQ(dialogs.shown, QVector<Shown>());
}

TEST_P(Documents, TakeBackStepByStep)
{
    const FormDriver drive = open();
    const QString stored = drive.text(key()), price = document().price;
    drive.click("Cmdadd");
    const QString number = drive.text(key());
    QVector<QStringList> states{shown(drive)};
    const auto after = [&](const std::function<void()> &edit) {
        edit();
        QApplication::processEvents();
        states.append(shown(drive));
        EXPECT_NE(states.last(), states[states.size() - 2]);
    };
    after([&] { drive.choose(document().choice, drive.find<QComboBox>(document().choice)->itemText(0)); });
    after([&] { paste(0, "cpbh", "A\tone\nB\ttwo"); });
    after([&] {
        form->showLines();
        drive.typeCell(grid(), 0, price, "7");
    });
    after([&] { drive.typeCell(grid(), 0, "sl", "5"); });
    EXPECT_EQ(cell(0, "je").toDouble(), 35);
    after([&] {
        goTo(1, price);
        press(Qt::Key_D);
    });
    after([&] { // over what is typed
        grid()->editCell(1, "sl");
        QTest::keyClicks(grid()->cellEditor(), "9");
        press(Qt::Key_D);
    });
    EXPECT_EQ(cell(1, "je").toDouble(), 35);
    after([&] {
        goTo(0, "cpbh");
        press(Qt::Key_Delete, Qt::NoModifier);
    });
    after([&] { // lines that wait go over to the number
        drive.type(key(), stored);
        drive.leave(key());
    });
    dialogs.shown.clear();
    after([&] { drive.type(document().field, "typed and on"); });
    drive.leave(document().field);
    for (qsizetype at = states.size() - 2; at >= 0; --at) {
        press(Qt::Key_Z);
        EXPECT_EQ(shown(drive), states[at]) << at;
        if (at == 2) { // an open cell takes its own letters back first
            QTest::keyClick(grid(), Qt::Key_X);
            press(Qt::Key_Z);
            EXPECT_NE(grid()->cellEditor(), nullptr);
            grid()->editCell(0, "cpbh");
        }
    }
    EXPECT_EQ(drive.focused(), document().choice) << "where the edit was made";
    paste(0, "cpmc", "x");
    drive.click("CmdOK");
    EXPECT_EQ(cell(0, "cpmc"), "x");
    EXPECT_EQ(database.value("select count(*) from " + plainTableOf(spec.lines.statement) + " where " + spec.lines.key +
                                 "='{n}'",
                             {{"n", number}}),
              1);
}

TEST_P(EveryFormsLines, ABlockOfTwoRowsComesAndGoes)
{
    insert("A0001");
    const FormDriver drive = open();
    for (const char *begin : {"Cmdadd", "Cmdedit"}) {
        drive.click(begin);
        QApplication::processEvents();
        const QStringList before = shown(drive);
        for (qsizetype at = 0; at < spec.lines.grids.size(); ++at) {
            const LineGridSpec &one = spec.lines.grids[at];
            if (begin == QByteArray("Cmdadd") && !one.whileAdding)
                continue;
            QString row;
            for (qsizetype i = 0; i < one.columns.size(); ++i)
                row += (i ? "\t" : "") + QString::number(i + 11);
            form->showLines(static_cast<int>(at));
            grid(static_cast<int>(at))->setFocus();
            grid(static_cast<int>(at))->goToCell(form->lines().RecordCount(), one.columns.first().column);
            QApplication::clipboard()->setText(row + "\n" + row + "\n");
            press(Qt::Key_V);
            EXPECT_EQ(form->lines().RecordCount(), 2);
            EXPECT_NE(shown(drive), before);
            press(Qt::Key_Z);
            EXPECT_EQ(shown(drive), before) << one.name.toStdString();
        }
        drive.click("Cmdcancel");
    }
}

INSTANTIATE_TEST_SUITE_P(All, Documents, testing::ValuesIn(namedDocuments()), nameOf);
INSTANTIATE_TEST_SUITE_P(All, EveryFormsLines, testing::ValuesIn(formsWithLines()), nameOf);

} // namespace tradewick
