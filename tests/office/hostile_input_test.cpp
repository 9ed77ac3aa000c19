// Text that would be a statement if it were ever read as one, typed into every field of every form: it is stored and
// found again to the character, and nothing else in the database moves.
#include "common/record_form.h"
#include "common/tabbed_form.h"
#include "database/description.h"
#include "hostile_texts.h"
#include "shell/commands.h"
#include "shell/dispatch.h"
#include "support/form_driver.h"
#include "support/scripted_dialogs.h"
#include "support/test_database.h"

#include <QTreeView>

#include <algorithm>

namespace tradewick
{

using namespace test;

namespace
{

struct FormName {
    QString name;
    int tab = -1; // of the window; -1: the window is the form
    QString text() const { return tab < 0 ? name : QStringLiteral("%1_%2").arg(name).arg(tab); }
    friend void PrintTo(const FormName &form, std::ostream *out) { *out << form.text().toStdString(); }
};

// Every form that a command opens, and those that another form opens.
QVector<FormName> formNames()
{
    QVector<FormName> names{{"sys_SSDZ"}, {"YY_Yh_XYZ"}};
    std::vector<Band> bands = menuBands();
    bands.insert(bands.end(), sideBands().begin(), sideBands().end());
    bands.push_back(toolBand());
    for (const Band &band : bands)
        for (const Tool &tool : band.tools) {
            const bool known = std::any_of(names.cbegin(), names.cend(),
                                           [&](const FormName &other) { return other.name == tool.opens; });
            const auto declared = std::find_if(declaredForms().cbegin(), declaredForms().cend(),
                                               [&](const DeclaredForm &form) { return form.name == tool.opens; });
            if (known || declared == declaredForms().cend())
                continue;
            const int tabs = static_cast<int>(declared->spec().tabs.size());
            for (int tab = tabs ? 0 : -1; tab < tabs; ++tab)
                names.append({tool.opens, tab});
        }
    return names;
}

std::unique_ptr<QWidget> make(const QString &form)
{
    return std::unique_ptr<QWidget>(formEntry(form)->make(nullptr, {}));
}

RecordForm *formOf(QWidget &window, int tab)
{
    auto *tabs = qobject_cast<TabbedForm *>(&window);
    return tabs ? &tabs->tab(tab) : qobject_cast<RecordForm *>(&window);
}

Grid *linesOf(const RecordForm &form)
{
    return form.spec().lines.statement ? form.findChild<Grid *>("TDBGrid1") : nullptr;
}

// What `of` has beyond `other`.
QStringList beyond(const Content &of, const Content &other)
{
    QStringList rows;
    for (auto table = of.cbegin(); table != of.cend(); ++table) {
        const QStringList &there = other[table.key()];
        std::set_difference(table->cbegin(), table->cend(), there.cbegin(), there.cend(), std::back_inserter(rows));
    }
    return rows;
}

ColumnKind kindOf(const QVector<GridColumn> &lines, const QString &column)
{
    const auto shared = [&](const TableDescription &table) {
        return std::count_if(lines.cbegin(), lines.cend(), [&](const GridColumn &line) {
            return std::any_of(table.columns.cbegin(), table.columns.cend(),
                               [&](const ColumnDescription &other) { return other.name == line.column; });
        });
    };
    const auto table =
        std::max_element(tableDescriptions().cbegin(), tableDescriptions().cend(),
                         [&](const TableDescription &a, const TableDescription &b) { return shared(a) < shared(b); });
    for (const ColumnDescription &described : table->columns)
        if (described.name == column)
            return described.kind;
    return ColumnKind::Unknown;
}

bool takesDates(const RecordFormSpec &spec, const QString &name)
{
    bool takes = std::any_of(spec.checks.cbegin(), spec.checks.cend(), [&](const FieldCheck &check) {
        return check.field == name && check.kind == FieldCheck::Date;
    });
    for (const PageSpec &page : spec.pages)
        for (const FieldSpec &field : page.fields)
            takes = takes || (field.name == name && field.type.kind == FieldKind::Date);
    return takes;
}

// A box whose text is stored nowhere and searches nothing.
bool isChooser(const RecordFormSpec &spec, const QString &name)
{
    for (const ChoiceSpec &choice : spec.choices)
        if (choice.name == name)
            return true;
    for (const PageSpec &page : spec.pages)
        for (const FieldSpec &field : page.fields)
            if (field.name == name && field.column.isEmpty())
                return true;
    return false;
}

// The fields that show what one before them holds.
QStringList repeated(const RecordFormSpec &spec)
{
    QStringList columns, names;
    for (const PageSpec &page : spec.pages)
        for (const FieldSpec &field : page.fields)
            if (!field.hidden)
                columns.contains(field.column) ? names.append(field.name) : columns.append(field.column);
    return names;
}

QString valid(ColumnKind kind)
{
    return kind == ColumnKind::Date ? QStringLiteral("2026-03-05") : QStringLiteral("7");
}

class HostileInput : public testing::TestWithParam<FormName>
{
protected:
    // Departments of two levels and somebody below, whose names lead the trees from branch to branch.
    HostileInput()
    {
        const Values values{{"top", hostile[0]}, {"below", hostile[2]}, {"key", "';--a"}, {"other", "';--z"}};
        for (const char *statement : {"insert into sys_bmsz(bmbh,bmmc,sjbm) values('{key}','{top}','无')",
                                      "insert into sys_bmsz(bmbh,bmmc,sjbm) values('{other}','{below}','{top}')",
                                      "insert into sys_gzry(bmbh,zgbh,name) values('{other}','{below}','{below}')"})
            database.connection().Execute(statement, values);
    }

    TestDatabase database{TestDatabase::Demonstration};
    ScriptedDialogs dialogs;

    // Names of the controls that take text: those of a record, locked in Browse, and the boxes that are not.
    static QStringList controls(const RecordForm &form, bool ofRecord)
    {
        QStringList names;
        for (const QWidget *widget : form.findChildren<QWidget *>()) {
            const QString name = widget->objectName();
            const bool takesText = widget->inherits("QLineEdit") || widget->inherits("QPlainTextEdit") ||
                                   widget->inherits("tradewick::ComboField");
            if (takesText && (name.startsWith("Text") || name.startsWith("Combo")) &&
                widget->property("readOnly").toBool() == ofRecord && widget->focusPolicy() != Qt::ClickFocus &&
                !isChooser(form.spec(), name) && !repeated(form.spec()).contains(name))
                names.append(name);
        }
        return names;
    }

    // Types into every field of the record and into a line, number and date fields first as all others, then validly.
    // Gives what the database has to hold after OK.
    QStringList fill(RecordForm &form, const QStringList &fields, int round, int line)
    {
        const FormDriver drive(form);
        QStringList expected;
        QVector<QPair<QString, ColumnKind>> wanted;
        const QStringList columns = form.records().columns();
        const auto values = [&] {
            QStringList texts;
            for (const QString &column : columns)
                texts.append(form.records().Fields(column).text());
            return texts;
        };
        int number = 0;
        const auto next = [&] {
            const qsizetype which = round < 0 ? number : round;
            return QString::number(++number) + (line < 0 ? u'e' : u'a') + QString::number(round + 1) +
                   hostile[which % hostile.size()];
        };
        for (const QString &field : fields) {
            const QStringList before = values();
            QString text = next();
            if (form.objectName() == "sys_bmsz" && field == "Text(0)")
                text = QStringLiteral("';--") + QChar(u'b' + round); // this key has five characters
            drive.type(field, text);
            QApplication::processEvents();
            const QStringList after = values();
            ColumnKind kind = ColumnKind::Unknown;
            for (int i = 0; i < columns.size(); ++i)
                if (after[i] != before[i] && after[i] == text)
                    kind = form.records().columnKind(i);
            if (takesDates(form.spec(), field)) // in whatever kind of column it keeps them
                kind = ColumnKind::Date;
            if (kind == ColumnKind::Number || kind == ColumnKind::Date)
                wanted.append({field, kind});
            else
                expected.append(text);
        }
        auto *grid = linesOf(form);
        QStringList lineNumbers;
        if (grid && line >= 0) {
            form.showLines();
            const QVector<GridColumn> &lines = grid->recordsetModel()->columns();
            for (const GridColumn &cell : lines) {
                const ColumnKind kind = kindOf(lines, cell.column);
                const QString text = next();
                drive.typeCell(grid, line, cell.column, text);
                if (kind == ColumnKind::Number || kind == ColumnKind::Date)
                    lineNumbers.append(cell.column);
                else
                    expected.append(text);
            }
        }
        if (wanted.isEmpty() && lineNumbers.isEmpty())
            return expected;

        // No number, no date: nothing is stored, and what was typed is still there.
        const Content before = contentOf(database);
        dialogs.shown.clear();
        drive.click("CmdOK");
        EXPECT_FALSE(dialogs.shown.isEmpty());
        EXPECT_TRUE(form.isBusy());
        EXPECT_EQ(contentOf(database), before);
        for (const auto &[field, kind] : wanted)
            drive.type(field, valid(kind));
        if (!lineNumbers.isEmpty())
            form.showLines();
        for (const QString &column : lineNumbers)
            drive.typeCell(grid, line, column, valid(kindOf(grid->recordsetModel()->columns(), column)));
        QApplication::processEvents();
        dialogs.shown.clear();
        return expected;
    }

    // OK, after which the database differs by what was typed alone.
    void store(RecordForm &form, const QStringList &expected, qsizetype rowsGone)
    {
        const FormDriver drive(form);
        const Content before = contentOf(database);
        dialogs.answer = false; // whether the lines of a document that is renamed go along: they stay here
        drive.click("CmdOK");
        dialogs.answer = true;
        if (rowsGone > 0 && linesOf(form) && dialogs.shown.size() == 1 &&
            dialogs.shown.first().text.startsWith("编号由"))
            dialogs.shown.clear();
        EXPECT_EQ(dialogs.shown, QVector<Shown>());
        EXPECT_FALSE(form.isBusy());
        const Content after = contentOf(database);
        EXPECT_EQ(beyond(before, after).size(), rowsGone);
        const QStringList added = beyond(after, before);
        for (const QString &text : expected)
            EXPECT_TRUE(std::any_of(added.cbegin(), added.cend(), [&](const QString &row) {
                return QString(QChar(0x1f) + row).contains(QChar(0x1f) + text + QChar(0x1f));
            })) << text.toStdString();
        const auto *grid = linesOf(form);
        EXPECT_EQ(added.size(), grid && rowsGone == 0 ? 2 : 1);
    }

    // Filter, find, tree and the boxes above it, with texts that are no key and the one that is.
    void search(RecordForm &form, const QStringList &fields)
    {
        const FormDriver drive(form);
        const QStringList boxes = controls(form, false);
        auto *tree = form.findChild<QTreeView *>("TreeView1");
        const auto *list = drive.find<Grid>(form.spec().listName);
        const Content before = contentOf(database);
        const int records = form.records().RecordCount();
        const QString key = drive.text(fields.first());
        for (const QString &text : hostile + QStringList{"no' or 'one", key}) {
            SCOPED_TRACE(text.toStdString());
            for (const QString &box : boxes) {
                // A box that searches lines shows the record of the first that it finds, or leaves the list; one that
                // searches while a choice is typed leaves it narrow.
                const QVector<FilterSpec> &filters = form.spec().filters;
                const bool byLines = std::any_of(filters.cbegin(), filters.cend(), [&](const FilterSpec &filter) {
                    return filter.name == box && (filter.via || filter.whileTyping);
                });
                drive.type(box, text);
                if (byLines) {
                    const int shown = form.records().RecordCount();
                    EXPECT_TRUE(shown <= 1 || shown == records) << shown;
                } else if (!tree) {
                    QStringList keys; // of the records that the box lets through
                    for (int row = 0; row < list->model()->rowCount(); ++row)
                        keys.append(list->model()->index(row, 0).data().toString());
                    EXPECT_EQ(keys.filter(text, Qt::CaseInsensitive), keys);
                    EXPECT_EQ(keys.size(), text.startsWith("no'") ? 0 : 1);
                }
                drive.click("Cmdadd");
                QStringList offered;
                for (const QString &field : fields)
                    offered.append(drive.text(field));
                EXPECT_EQ(offered.contains(text), tree != nullptr) << box.toStdString();
                drive.click("Cmdcancel");
                drive.type(box, "");
                if (byLines)
                    form.showStatement(form.spec().statement, {});
                EXPECT_EQ(form.records().RecordCount(), records);
            }
            if (form.findChild<QWidget *>("Cmd_find")) {
                dialogs.typed = text;
                drive.click("Cmd_find");
                EXPECT_EQ(dialogs.shown.size(), text == key ? 1 : 2);
                EXPECT_TRUE(text == key ? drive.text(fields.first()) == key : form.records().absolutePosition() == 0);
                dialogs.shown.clear();
            }
        }
        if (tree) {
            tree->expandAll();
            int deepest = 0;
            for (QModelIndex at = tree->model()->index(0, 0); at.isValid(); at = tree->indexBelow(at)) {
                tree->scrollTo(at);
                QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, tree->visualRect(at).center());
                int level = at.data().toString().contains(u'\'') ? 1 : 0;
                for (QModelIndex above = at.parent(); level > 0 && above.parent().isValid(); above = above.parent())
                    ++level;
                deepest = qMax(deepest, level);
            }
            QApplication::processEvents();
            EXPECT_EQ(deepest, form.objectName() == "sys_gzry" || form.objectName() == "sys_qysz" ? 3 : 2);
        }
        EXPECT_EQ(dialogs.shown, QVector<Shown>());
        EXPECT_EQ(contentOf(database), before);
    }
};

} // namespace

TEST_P(HostileInput, IsStoredToTheCharacterAndChangesNothingElse)
{
    const auto window = make(GetParam().name);
    auto *form = formOf(*window, GetParam().tab);
    ASSERT_NE(form, nullptr);
    const FormDriver drive(*form);
    const QStringList fields = controls(*form, true);
    ASSERT_FALSE(fields.isEmpty());
    for (int round = 0; round < hostile.size(); ++round) {
        SCOPED_TRACE(hostile[round].toStdString());
        drive.click("Cmdadd");
        const QStringList expected = fill(*form, fields, round, 0);
        store(*form, expected, 0);
        // Another form reads the same.
        const auto second = make(GetParam().name);
        auto *other = formOf(*second, GetParam().tab);
        const FormDriver reader(*other);
        QStringList shown, shownThere;
        const QString keyField = form->spec().key.isEmpty() ? fields.first() : form->spec().key;
        const QString key = drive.text(keyField);
        Recordset &there = other->records();
        for (there.MoveFirst(); !there.EOF_() && reader.text(keyField) != key;)
            there.MoveNext();
        for (const QString &field : fields) {
            shown.append(drive.text(field));
            shownThere.append(reader.text(field));
        }
        EXPECT_EQ(shownThere, shown);
    }
    search(*form, fields);
    drive.click("cmdqd");
    if (const auto *lines = linesOf(*form)) {
        while (lines->model()->rowCount() == 0 && !form->records().EOF_())
            form->records().MoveNext();
        if (lines->model()->rowCount() > 0) { // where the demonstration has any
            drive.click("Cmdedit");
            const QStringList expected = fill(*form, {}, 1, 0);
            store(*form, expected, 1);
        }
    }
    drive.click("cmdqd");
    drive.click("Cmdedit");
    const QStringList expected = fill(*form, fields, -1, -1);
    store(*form, expected, 1);
}

INSTANTIATE_TEST_SUITE_P(All, HostileInput, testing::ValuesIn(formNames()),
                         [](const auto &form) { return form.param.text().toStdString(); });

} // namespace tradewick
