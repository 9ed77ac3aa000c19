// Every form over the demonstration's records, walked by keyboard as a clerk does.
#include "common/combo_field.h"
#include "every_form.h"

namespace tradewick
{

using namespace test;

namespace
{

class EveryFormByKeyboard : public EveryForm
{
protected:
    EveryFormByKeyboard() : EveryForm(TestDatabase::Demonstration) {}

    // All rows of the form's tables, each as one text; what a blank is stored for stands as nothing.
    QStringList content()
    {
        QStringList rows;
        // A number that came back is told when it is passed, and emptied.
        const QStringList rewritten = spec.onLeft ? QStringList{"hxdh"} : QStringList();
        for (const char *statement : {spec.statement, spec.lines.statement}) {
            if (!statement)
                continue;
            const QString from = plainTableOf(statement);
            for (const auto &row : database.connection().rows("select * from " + from)) {
                QString text = from;
                for (const QString &column : row.columns())
                    if (!rewritten.contains(column))
                        text += u'|' + column + u'=' + row[column].toString().trimmed();
                rows.append(text);
            }
        }
        rows.sort();
        return rows;
    }

    // Enter from the first field on until OK has the focus; the lines are left with Tab.
    void enterToOk(const FormDriver &drive)
    {
        for (int steps = 0; drive.focused() != "CmdOK" && steps < 120; ++steps) {
            QWidget *at = form->focusWidget();
            ASSERT_NE(at, nullptr);
            QTest::keyClick(at, drive.focused().startsWith("TDBGrid") ? Qt::Key_Tab : Qt::Key_Return);
            QApplication::processEvents();
        }
        ASSERT_EQ(drive.focused(), "CmdOK");
        QTest::keyClick(form->focusWidget(), Qt::Key_Return);
    }
};

} // namespace

// A field that is merely passed acts upon nothing: not a price, not a rate, not a line changes.
TEST_P(EveryFormByKeyboard, EnterThroughEveryFieldOfARecordChangesNothing)
{
    const FormDriver drive = open();
    const QStringList before = content();
    int choices = 0;
    for (const ComboField *combo : form->findChildren<ComboField *>())
        QObject::connect(combo, &ComboField::chosen, form, [&choices] { ++choices; });
    drive.click("cmdqd");
    const int records = qMin(form->records().RecordCount(), 4);
    for (int record = 0; record < records; ++record) {
        SCOPED_TRACE(drive.text(key()).toStdString());
        drive.click("Cmdedit");
        enterToOk(drive);
        EXPECT_FALSE(form->isBusy());
        EXPECT_EQ(dialogs.shown.size(), key() == "Text1(4)" ? 1 : 0);
        dialogs.shown.clear();
        EXPECT_EQ(choices, 0);
        const QStringList after = content();
        ASSERT_EQ(after.size(), before.size());
        for (int row = 0; row < before.size(); ++row)
            ASSERT_EQ(after[row], before[row]);
        drive.click("cmdnext");
    }
}

// What is no number is told where it was typed and stays there; numbers come in as people write them.
TEST_P(EveryFormByKeyboard, ATextInANumberIsToldAndStays)
{
    const FormDriver drive = open();
    for (const FieldSpec &field : fields) {
        if (field.column.isEmpty() || field.hidden || kindOf(field) != ColumnKind::Number)
            continue;
        SCOPED_TRACE(field.name.toStdString());
        drive.click("cmdqd");
        const QStringList before = content();
        drive.click(form->records().RecordCount() > 0 ? "Cmdedit" : "Cmdadd");
        const Shown told{"数值输入有误，请重新核对！", "系统提示", MessageIcon::Critical};
        drive.control(field.name)->setFocus();
        QApplication::processEvents();
        drive.type(field.name, "12abc");
        drive.leave(field.name);
        EXPECT_EQ(dialogs.take(), told);
        const auto check = std::find_if(spec.checks.cbegin(), spec.checks.cend(),
                                        [&](const FieldCheck &one) { return one.field == field.name; });
        const bool clears = check != spec.checks.cend() && check->clears;
        EXPECT_EQ(drive.text(field.name), clears ? "" : "12abc");
        EXPECT_EQ(drive.focused(), field.name);
        drive.type(field.name, "12abc");
        drive.click("CmdOK");
        EXPECT_EQ(dialogs.take(), told);
        EXPECT_TRUE(form->isBusy());
        EXPECT_EQ(content(), before);
        drive.type(field.name, " 1,234.５0 ");
        drive.leave(field.name);
        const bool isCounted = spec.onLeft && field.column == "ly_fenshu"; // from the range that stands beside it
        EXPECT_EQ(drive.text(field.name), isCounted ? "10" : "1234.5");
        drive.click("Cmdcancel");
        EXPECT_EQ(content(), before);
    }
}

// What the declaration copies, offers, derives and prints from is there: a column misspelt is a Null in a document.
TEST_P(EveryFormByKeyboard, EveryColumnOfItsTablesIsThere)
{
    const FormDriver drive = open();
    Connection &connection = database.connection();
    const QStringList head = connection.columnsOf(table);
    const QStringList lines =
        spec.lines.statement ? connection.columnsOf(plainTableOf(spec.lines.statement)) : QStringList();
    const auto expectIn = [](const QStringList &columns, const QString &column) {
        EXPECT_TRUE(columns.contains(column, Qt::CaseInsensitive)) << column.toStdString();
    };
    const auto resultOf = [&](const char *statement) {
        // Whatever a placeholder is called; a text that fits nothing gives the columns of no row.
        Values values = RecordForm::valuesOf(form->records());
        for (const char *name : {"text", "typed", "cpbh", "gg", "khbh", "i"})
            values.insert(name, QString("#"));
        for (const QString &column : lines + head)
            if (!values.contains(column))
                values.insert(column, QString("#"));
        QStringList columns;
        EXPECT_NO_THROW(connection.read(
            QString::fromUtf8(statement), values, [&](const QStringList &names) { columns = names; },
            [](const QVariantList &) { return true; }))
            << statement;
        return columns;
    };
    const auto expectPairs = [&](const Copies &copies, const char *statement, const QStringList &into) {
        const QStringList from = copies.isEmpty() ? QStringList() : resultOf(statement);
        for (const ColumnPair &pair : copies) {
            expectIn(from, pair.from);
            expectIn(into, pair.to);
        }
    };
    for (const FieldSpec &field : fields)
        if (!field.column.isEmpty())
            expectIn(head, field.column);
    for (const Preset &preset : spec.defaults)
        expectIn(head, preset.column);
    if (!spec.alsoNumbered.isEmpty())
        expectIn(head, spec.alsoNumbered);
    for (const PickSpec &pick : spec.picks)
        for (const PickStep &step : pick.steps) {
            expectPairs(step.copies, step.statement, head);
            EXPECT_NO_THROW(drive.control(pick.combo));
        }
    for (const LineGridSpec &grid : spec.lines.grids) {
        for (const GridColumn &column : grid.columns)
            expectIn(lines, column.column);
        for (const LineRule &rule : grid.rules) {
            for (const QString &edited : rule.edited)
                expectIn(lines, edited);
            if (!rule.column.isEmpty())
                expectIn(lines, rule.column);
            for (const Preset &preset : rule.presets)
                expectIn(lines, preset.column);
            expectPairs(rule.copies, rule.statement, lines);
        }
    }
    for (const QVector<Preset> &presets : {spec.lines.starts, spec.lines.lookup.presets})
        for (const Preset &preset : presets)
            expectIn(lines, preset.column);
    for (const LookupSearch &search : spec.lines.lookup.searches)
        expectPairs(spec.lines.lookup.copies, search.statement, lines);
    for (const FilterSpec &filter : spec.filters)
        resultOf(filter.via ? filter.via : filter.statement);
}

INSTANTIATE_TEST_SUITE_P(All, EveryFormByKeyboard, testing::ValuesIn(walkedForms()), nameOf);

} // namespace tradewick
