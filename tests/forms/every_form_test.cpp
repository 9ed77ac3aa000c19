// What every entry form does, walked by its declaration: fields, states, the way through the records, messages, what an
// error of the database shows, and what waits. A new form is walked without a line here.
#include "data/date_text.h"
#include "every_form.h"
#include "reporting/report.h"

#include <QDateEdit>
#include <QLabel>

#include <map>

namespace tradewick
{

using namespace test;

TEST_P(EveryForm, StoresEachFieldInItsOwnColumnUnderItsLabel)
{
    const FormDriver drive = open();
    std::map<QString, QString> typed; // by column
    drive.click("Cmdadd");
    QMultiHash<const QWidget *, QString> labels;
    for (const QLabel *label : form->findChildren<QLabel *>())
        labels.insert(label->buddy(), label->text());
    for (const FieldSpec &field : fields) {
        if (!isTyped(field) || typed.contains(field.column.toLower()))
            continue;
        const QString text = isDate(field) ? QStringLiteral("2026-03-15") : QString::number(20000 - typed.size());
        drive.type(field.name, isDate(field) ? "" : text);
        if (isDate(field)) // key by key: "2026-03-1" is a date, too
            QTest::keyClicks(drive.control(field.name), text);
        typed[field.column.toLower()] = text;
        if (!field.caption.isEmpty() && !field.joined) {
            EXPECT_EQ(labels.value(drive.control(field.name)), field.caption);
        }
    }
    drive.click("CmdOK");
    EXPECT_EQ(dialogs.shown, QVector<Shown>());
    ASSERT_EQ(count(), 1);
    const auto stored = database.connection().rows("select * from " + table).first();
    for (const auto &[column, text] : typed)
        EXPECT_EQ(stored[column].toString(), text) << column.toStdString();
    EXPECT_EQ(form->windowTitle(), spec.caption);
    const auto *list = drive.find<Grid>(spec.listName)->model();
    for (int i = 0; i < list->columnCount(); ++i) {
        EXPECT_EQ(list->headerData(i, Qt::Horizontal).toString(), spec.list[i].caption);
        EXPECT_GE(form->records().columnIndex(spec.list[i].column), 0) << spec.list[i].column.toStdString();
    }
    for (const QString &note : spec.notes)
        EXPECT_TRUE(labels.values().contains(note)) << note.toStdString();
    drive.expectAccessibleNames();
}

TEST_P(EveryForm, AsksForWhatIsMissing)
{
    const FormDriver drive = open();
    for (const QLabel *label : form->findChildren<QLabel *>()) {
        const bool isRequired =
            label->buddy() && std::any_of(spec.required.cbegin(), spec.required.cend(), [&](const RequiredField &one) {
                return one.name == label->buddy()->objectName();
            });
        EXPECT_EQ(label->property("required").toBool(), isRequired) << label->text().toStdString();
    }
    drive.click("Cmdadd");
    const auto fillRequired = [&] {
        drive.type(key(), "K0001");
        typeRequired(drive, "K0001");
        if (spec.required.isEmpty())
            drive.type(name(), "named");
    };
    for (const RequiredField &required : spec.required) {
        fillRequired();
        drive.type(required.name, required.length ? "K" : "");
        drive.click("CmdOK");
        const QString title = spec.requiredTitle;
        EXPECT_EQ(dialogs.shown, required.message.isEmpty()
                                     ? QVector<Shown>()
                                     : QVector<Shown>({{required.message, title, MessageIcon::Exclamation}}));
        dialogs.shown.clear();
        EXPECT_TRUE(form->isBusy());
        if (!required.message.isEmpty() && required.movesFocus) {
            EXPECT_EQ(drive.focused(), required.focus.isEmpty() ? required.name : required.focus);
        }
        EXPECT_FALSE(drive.control(required.name)->property("readOnly").toBool());
        EXPECT_EQ(count(), 0);
    }
    fillRequired();
    drive.click("CmdOK");
    EXPECT_FALSE(form->isBusy());
    EXPECT_EQ(count(), 1);
    for (const EmptyField &blank : spec.whenEmpty)
        EXPECT_EQ(drive.text(blank.name), blank.stored);
}

TEST_P(EveryForm, WalksToTheEndsAndBackOnCancel)
{
    {
        const FormDriver none = open();
        for (const char *button : {"cmdqd", "cmdxq", "cmdnext", "cmdmd"})
            none.click(button);
        EXPECT_EQ(dialogs.shown, QVector<Shown>());
    }
    const QStringList keys{"A0001", "B0001", "C0001", "D0001"};
    for (const QString &one : keys)
        insert(one);
    const FormDriver drive = open();
    EXPECT_EQ(drive.text(key()), spec.startsOnLast ? "D0001" : "A0001");
    drive.click("cmdqd");
    const struct {
        const char *button, *shown;
    } steps[] = {{"cmdxq", "A0001"},   {"cmdnext", "B0001"}, {"cmdmd", "D0001"},
                 {"cmdnext", "D0001"}, {"cmdxq", "C0001"},   {"cmdqd", "A0001"}};
    for (const auto &step : steps) {
        drive.click(step.button);
        EXPECT_EQ(drive.text(key()), step.shown) << step.button;
        EXPECT_EQ(drive.find<Grid>(spec.listName)->currentIndex().row(), form->records().absolutePosition());
    }
    for (const char *begin : {"Cmdadd", "Cmdedit"}) {
        drive.click("cmdmd");
        drive.click(begin);
        if (spec.hasNavigation) {
            EXPECT_EQ(drive.enabled("cmdnext"), spec.navigationWhileBusy);
        }
        for (const QString &off :
             {QString("Cmdadd"), QString("Cmdedit"), QString("Cmddelete"), QString("Cmdreturn"), spec.listName})
            EXPECT_FALSE(drive.enabled(off)) << off.toStdString();
        EXPECT_EQ(drive.focused(), spec.firstFocus.isEmpty() ? key() : spec.firstFocus);
        drive.type(name(), "lost");
        form->window()->close();
        EXPECT_TRUE(form->isVisible());
        drive.click("Cmdcancel");
        // Where this Add left from, or the first, wherever that was.
        const bool returns = spec.cancelReturns && begin == QByteArray("Cmdadd");
        EXPECT_EQ(drive.text(key()), returns ? "D0001" : "A0001");
        EXPECT_TRUE(drive.control(name())->property("readOnly").toBool());
        EXPECT_FALSE(form->records().hasPendingChanges());
    }
    EXPECT_EQ(count(), 4);
    EXPECT_EQ(count(nameColumn(), "lost"), 0);
    drive.click("cmdmd");
    drive.click("Cmdedit");
    drive.type(name(), "kept");
    drive.click("CmdOK");
    EXPECT_EQ(drive.text(key()), "D0001");
    EXPECT_EQ(count(nameColumn(), "kept"), 1);
    drive.click("Cmdreturn");
    EXPECT_FALSE(form->isVisible());
}

// Add, another record (the code forms leave the way open), Cancel: what Add began is gone for good.
TEST_P(EveryForm, CancelDropsWhatAddBeganWhereverTheClerkStands)
{
    insert("A0001");
    insert("B0001");
    const FormDriver drive = open();
    drive.click("Cmdadd");
    drive.type(key(), "N0001");
    drive.type(name(), "abandoned");
    drive.click("cmdxq");
    drive.click("Cmdcancel");
    EXPECT_FALSE(form->records().hasPendingChanges());
    EXPECT_EQ(form->records().RecordCount(), 2);
    drive.click("Cmdedit");
    drive.type(name(), "kept");
    drive.click("CmdOK");
    EXPECT_EQ(count(), 2);
    EXPECT_EQ(count(nameColumn(), "abandoned"), 0);
}

TEST_P(EveryForm, DeletesWhatIsShownAndGoesOn)
{
    for (const char *one : {"A0001", "B0001", "C0001", "D0001"})
        insert(one);
    const FormDriver drive = open();
    drive.click("cmdqd");
    const QVector<Shown> question = spec.deleteQuestion.isEmpty()
                                        ? QVector<Shown>()
                                        : QVector<Shown>{{spec.deleteQuestion, "系统提示", MessageIcon::Question}};
    const bool endsOnLast = spec.afterDelete == AfterDelete::Last;
    drive.click("cmdnext");
    if (!question.isEmpty()) {
        dialogs.answer = false;
        drive.click("Cmddelete");
        EXPECT_EQ(std::exchange(dialogs.shown, {}), question);
        EXPECT_EQ(count(), 4);
        EXPECT_EQ(drive.text(key()), "B0001");
        dialogs.answer = true;
    }
    // A deletion that the database refuses is passed over, and the handler goes on to the next record.
    database.refuseDeletion(table);
    drive.click("Cmddelete");
    EXPECT_EQ(std::exchange(dialogs.shown, {}), question);
    EXPECT_EQ(count(), 4);
    EXPECT_EQ(drive.text(key()), endsOnLast ? "D0001" : "C0001");
    database.allowDeletion(table);
    drive.click("cmdqd");
    drive.click("cmdnext");
    drive.click("Cmddelete");
    EXPECT_EQ(count(nameColumn(), "B0001"), 0);
    EXPECT_EQ(drive.text(key()), endsOnLast ? "D0001" : "C0001");
    drive.click("cmdmd");
    drive.click("Cmddelete");
    EXPECT_EQ(count(nameColumn(), "D0001"), 0);
    EXPECT_EQ(drive.text(key()), spec.afterDelete == AfterDelete::Next ? "A0001" : "C0001");
    drive.click("Cmddelete");
    drive.click("Cmddelete");
    EXPECT_EQ(count(), 0);
    EXPECT_EQ(drive.text(key()), "");
    dialogs.shown.clear();
    drive.click("Cmddelete"); // nothing is left
    for (const char *button : {"cmdxq", "cmdnext", "cmdqd", "cmdmd"})
        drive.click(button);
    EXPECT_EQ(dialogs.shown, question);
}

TEST_P(EveryForm, TellsOrPassesOverARefusedSaveAndTheRecordWaits)
{
    insert("A0001");
    insert("A0002");
    database.refuse(table, nameColumn(), "never");
    QStringList printed;
    setReportViewer([&](Report &report, QWidget *) { printed.append(report.name()); });
    const FormDriver drive = open();
    for (const char *begin : {"Cmdadd", "Cmdedit"}) {
        drive.click(begin);
        const QString number = begin == QString("Cmdadd") ? "B0001" : "C0001";
        drive.type(key(), number);
        typeRequired(drive, number);
        drive.type(name(), "never");
        drive.click("CmdOK");
        expectTold(spec.failures.ok, "refused");
        EXPECT_FALSE(form->isBusy());
        EXPECT_TRUE(form->records().hasPendingChanges());
        EXPECT_EQ(drive.text(name()), "never");
        EXPECT_EQ(drive.text("state"), "未保存");
        EXPECT_EQ(count(nameColumn(), "never"), 0);
        for (const ChoiceSpec &choice : spec.choices)
            drive.find<QComboBox>(choice.name)->setCurrentIndex(0);
        for (const ButtonSpec &button : spec.buttons) {
            if (!button.shortcut.endsWith("+P"))
                continue;
            drive.click(button.name); // would print what the database has; a button that does nothing tells nothing
            EXPECT_EQ(printed, QStringList());
            EXPECT_LE(dialogs.shown.size(), 1);
            for (const Shown &told : std::exchange(dialogs.shown, {}))
                EXPECT_EQ(told.text, "尚有未保存的记录，请先保存或取消。");
        }
        drive.click("Cmdedit");
        drive.type(name(), "taken");
        drive.click("CmdOK");
        EXPECT_EQ(dialogs.shown, QVector<Shown>());
        EXPECT_EQ(count(nameColumn(), "taken"), 1);
        EXPECT_EQ(drive.text("state"), "浏览");
        database.connection().Execute("delete from " + table + " where " + nameColumn() + "='taken'");
        form->refresh();
    }
    setReportViewer({});
}

// One record that the database refuses holds no other back, bears a mark, and goes with its own Cancel or Delete alone.
TEST_P(EveryForm, ARecordThatWaitsWaitsByItself)
{
    insert("A0001");
    database.refuse(table, nameColumn(), "never");
    const FormDriver drive = open();
    const auto add = [&](const QString &number, const QString &text) {
        drive.click("Cmdadd");
        drive.type(key(), number);
        typeRequired(drive, number);
        drive.type(name(), text);
        drive.click("CmdOK");
    };
    const auto *list = drive.find<Grid>(spec.listName);
    const auto mark = [&](int row) { return list->model()->headerData(row, Qt::Vertical, Qt::ToolTipRole).toString(); };
    add("N0001", "never");
    dialogs.shown.clear();
    add("N0002", "second");
    EXPECT_EQ(dialogs.shown, QVector<Shown>()); // the other one's refusal was told
    EXPECT_EQ(count(), 2);
    EXPECT_EQ(count(nameColumn(), "second"), 1);
    EXPECT_EQ(mark(1), "未保存");
    EXPECT_EQ(mark(2), "");
    for (const FilterSpec &filter : spec.filters) { // refused meanwhile, and says so by itself
        if (filter.offers || filter.via)
            continue;
        drive.type(filter.name, "N");
        EXPECT_EQ(drive.text(filter.name), "") << filter.name.toStdString();
    }
    if (spec.dateFilter.statement) {
        auto *picker = drive.find<QDateEdit>(spec.dateFilter.name);
        picker->setDate(QDate(2026, 1, 1));
        EXPECT_EQ(picker->date(), QDate::currentDate());
    }
    EXPECT_EQ(form->records().RecordCount(), 3);
    dialogs.shown.clear();
    if (!spec.numbering.prefix.isEmpty()) { // its number is passed over
        drive.click("cmdqd");
        drive.click("cmdnext");
        const QString waiting = [&] {
            drive.click("Cmdadd");
            const QString proposed = drive.text(key());
            drive.click("Cmdcancel");
            return proposed;
        }();
        drive.click("cmdnext");
        drive.click("Cmdedit");
        drive.type(key(), waiting);
        drive.click("CmdOK");
        dialogs.shown.clear();
        drive.click("Cmdadd");
        EXPECT_NE(drive.text(key()), waiting);
        drive.click("Cmdcancel");
    }
    drive.click("cmdqd");
    drive.click("Cmdedit");
    drive.click("Cmdcancel");
    EXPECT_EQ(mark(1), "未保存");
    drive.click("cmdqd");
    drive.click("cmdnext");
    EXPECT_EQ(drive.text(name()), "never");
    drive.click("Cmdedit");
    drive.click("Cmdcancel");
    EXPECT_EQ(form->records().RecordCount(), 2);
    EXPECT_FALSE(form->records().hasPendingChanges());
    // Nor does it where it is the one that is shown at OK.
    form->records().MoveFirst();
    drive.click("Cmdedit");
    drive.type(name(), "third");
    form->records().setAbsolutePosition(1);
    drive.type(name(), "never");
    drive.click("CmdOK");
    EXPECT_EQ(count(nameColumn(), "third"), 1);
    EXPECT_EQ(mark(1), "未保存");
}

TEST_P(EveryForm, TellsOrPassesOverWhatCannotBeRead)
{
    database.connection().transaction([this] {
        for (int i = 0; i < 1600; ++i)
            insert(QStringLiteral("A%1").arg(i, 4, 10, QChar(u'0')));
    });
    // Records that nobody looked at yet follow in blocks of 64.
    struct {
        const char *button;
        int at;
        Failure error;
        std::unique_ptr<OpenForm> opened = {};
    } cases[] = {{"cmdnext", 1343, spec.failures.next},
                 {"cmdxq", 1280, spec.failures.previous},
                 {"cmdmd", 1280, spec.failures.ends},
                 {"Cmdadd", 1280, spec.failures.add}};
    for (auto &step : cases) {
        step.opened = std::make_unique<OpenForm>(GetParam());
        step.opened->form->refresh(); // a form that starts on its last record has read that
        step.opened->form->records().setAbsolutePosition(step.at);
    }
    database.drop(table);
    for (const auto &step : cases) {
        SCOPED_TRACE(step.button);
        const RecordForm &walked = *step.opened->form;
        const QString number = spec.tab < 0 ? QString() : QStringLiteral("(%1)").arg(spec.tab);
        auto *button = walked.findChild<QAbstractButton *>(step.button + number);
        if (!button && !spec.hasNavigation)
            continue;
        if (step.error == Failure::None)
            EXPECT_THROW(button->click(), DataError);
        else
            button->click();
        expectTold(step.error, table);
        // What was passed over goes on, what was told ends there.
        const bool isAdd = step.button == QString("Cmdadd");
        EXPECT_EQ(step.opened->form->records().RecordCount(), isAdd && step.error == Failure::Skip ? 1601 : 1600);
    }
}

INSTANTIATE_TEST_SUITE_P(All, EveryForm, testing::ValuesIn(walkedForms()), nameOf);

} // namespace tradewick
