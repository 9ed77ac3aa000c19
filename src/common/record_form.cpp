#include "common/record_form.h"

#include "common/combo_field.h"
#include "common/dialogs.h"
#include "common/edit_steps.h"
#include "common/field_panel.h"
#include "common/flow_layout.h"
#include "common/form_parts.h"
#include "common/globals.h"
#include "common/pane_splitter.h"
#include "common/record_list.h"
#include "common/window_keys.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QShortcut>
#include <QStyle>
#include <QTabWidget>
#include <QTimer>

#include <algorithm>
#include <stdexcept>

namespace tradewick
{

QString RecordForm::named(const QString &name) const
{
    return m_spec.tab < 0 ? name : QStringLiteral("%1(%2)").arg(name).arg(m_spec.tab);
}

RecordForm &RecordForm::beside(int tab) const
{
    const auto forms = window()->findChildren<RecordForm *>();
    const auto found =
        std::find_if(forms.cbegin(), forms.cend(), [tab](const RecordForm *form) { return form->m_spec.tab == tab; });
    if (found == forms.cend())
        throw std::logic_error("the form " + m_spec.name.toStdString() + " has no tab " + std::to_string(tab));
    return **found;
}

RecordForm::RecordForm(const RecordFormSpec &spec, QWidget *mainWindow) : QWidget(mainWindow, Qt::Window), m_spec(spec)
{
    setObjectName(named(spec.name));
    setWindowTitle(spec.caption);
    m_primary.setObjectName(spec.control);
    m_primary.ConnectionString = gConnStr;
    if (spec.lines.statement)
        m_lines = std::make_unique<LinesPanel>(m_spec.lines, *this, gConnStr);
    build();
    followEdits();
    setBusy(false);
    m_panel->lock(true);
    connect(&records(), &Recordset::currentChanged, this, &RecordForm::recordMoved);
    connect(&records(), &Recordset::waitingChanged, this, &RecordForm::showState);
    connect(&records(), &Recordset::valueChanged, this, [this](int row, int column) {
        if (row < 0 || column < 0 || row == records().absolutePosition())
            m_panel->showRecord(column);
    });
    connect(&records(), &Recordset::keyChanged, this, [this](qint64 before, qint64 now) {
        for (qint64 *kept : {&m_added, &m_left})
            if (*kept == before)
                *kept = now;
        if (m_lines)
            m_lines->headKeyChanged(before, now);
    });
    load();
    m_list->grid()->setFocus();
}

RecordForm::~RecordForm() = default;

void RecordForm::load()
{
    for (const PageSpec &page : std::as_const(m_spec.pages))
        for (const FieldSpec &field : page.fields)
            if (field.type.offer.statement)
                offer(field.name, field.type.offer.statement);
    m_primary.setRecordSource(m_spec.statement);
    m_primary.Refresh();
    if (m_spec.startsOnLast && records().RecordCount() > 0)
        records().MoveLast();
    m_list->rebuildTree();
}

// ---- how it looks ----

void RecordForm::build()
{
    m_content = contentOf(*this);
    auto *outer = new QVBoxLayout(m_content.get());
    auto *splitter = new PaneSplitter(m_spec.listBelow ? Qt::Vertical : Qt::Horizontal, m_content.get());
    m_list = new RecordList(m_spec, *this, splitter);
    auto *content = new QWidget;
    auto *layout = new QVBoxLayout(content);
    auto *scroll = scrolled(content, splitter);
    m_panel = new FieldPanel(m_spec, records(), content);
    connect(m_panel, &FieldPanel::typed, this, &RecordForm::fieldTyped);
    connect(m_panel, &FieldPanel::chosen, this, &RecordForm::fieldChosen);
    connect(m_panel, &FieldPanel::left, this, &RecordForm::fieldLeft);
    connect(m_panel, &FieldPanel::entered, this, [this, scroll](const QString &name) {
        scroll->ensureWidgetVisible(m_panel->control(name).widget());
        fieldEntered(name);
    });
    layout->addWidget(m_panel);
    for (const QString &note : std::as_const(m_spec.notes)) {
        auto *label = new QLabel(note, content);
        label->setProperty("note", true);
        label->setWordWrap(true);
        layout->addWidget(label);
    }
    if (!m_lines)
        layout->addStretch(1);
    else
        m_lines->addTo([&](const LineGridSpec &grid) { return grid.page < 0 ? layout : m_panel->placeOf(grid); },
                       m_content.get());
    m_panel->chainGrids();
    if (m_lines)
        connect(addKeys(this, {QKeySequence(QStringLiteral("Ctrl+Return"))}, QStringLiteral("到明细的新行")),
                &QShortcut::activated, m_lines.get(), &LinesPanel::goToNewLine);
    if (m_spec.listBelow)
        splitter->insertWidget(1, m_list);
    splitter->setStretchFactor(1, 1);
    splitter->setChildrenCollapsible(false);
    outer->addWidget(splitter, 1);
    buildButtons(outer);
}

QPushButton *RecordForm::addButton(QBoxLayout *layout, const ButtonSpec &button, const std::function<void()> &press)
{
    auto *push = tradewick::addButton(*layout, named(button.name), button.caption, button.shortcut, *this);
    connect(push, &QPushButton::clicked, this, press);
    m_buttons.insert(button.name, push);
    return push;
}

void RecordForm::buildButtons(QBoxLayout *layout)
{
    auto *bar = new QWidget(m_content.get());
    layout->addWidget(bar);
    auto *flow = new FlowLayout(bar);
    const auto group = [&] {
        auto *buttons = new QWidget(bar);
        flow->addWidget(buttons);
        auto *row = new QHBoxLayout(buttons);
        row->setContentsMargins(0, 0, 0, 0);
        return row;
    };
    const QStringList &captions = m_spec.captions;
    QBoxLayout *row = group();
    void (RecordForm::*const ways[])() = {&RecordForm::first, &RecordForm::previous, &RecordForm::next,
                                          &RecordForm::last};
    const char *const names[] = {"cmdqd", "cmdxq", "cmdnext", "cmdmd"};
    const char *const keys[] = {"Alt+Home", "Alt+PgUp", "Alt+PgDown", "Alt+End"};
    for (int i = 0; m_spec.hasNavigation && i < 4; ++i)
        addButton(row, {names[i], captions[i], keys[i]}, [this, go = ways[i]] {
            if (!isBusy() || m_entered.isEmpty() || passesWhenLeft(m_entered)) // a key leaves no field
                (this->*go)();
        });
    if (!m_spec.find.column.isEmpty())
        addButton(row, {"Cmd_find", "查询", "Ctrl+F"}, [this] { find(); });
    row = group();
    m_state = new QLabel(bar); // beside what changes it, and never scrolled out of sight
    m_state->setObjectName("state");
    row->addWidget(m_state);
    addButton(row, {"Cmdadd", captions[4], "Ctrl+N"}, [this] { add(); });
    addButton(row, {"Cmddelete", captions[5], "Alt+D"}, [this] { deleteRecord(); });
    addButton(row, {"Cmdedit", captions[6], "Alt+E"}, [this] { edit(); });
    addButton(row, {"CmdOK", captions[7], "Ctrl+S"}, [this] { save(); });
    addButton(row, {"Cmdcancel", captions[8], "Alt+C"}, [this] { cancel(); });
    row = group();
    for (const ChoiceSpec &choice : std::as_const(m_spec.choices))
        m_choices.insert(choice.name, addChoice(*row, choice, [this] { focusNextChild(); }));
    for (const ButtonSpec &button : std::as_const(m_spec.buttons))
        addButton(row, button, [this, &button] { press(button); });
    addButton(row, {"Cmdreturn", captions[9], "Ctrl+W"}, [this] { window()->close(); });
    // Behind the last field comes what ends an Add or Edit, not what would leave the record.
    QWidget *before = m_buttons["CmdOK"];
    for (const char *name :
         {"Cmdcancel", "cmdqd", "cmdxq", "cmdnext", "cmdmd", "Cmd_find", "Cmdadd", "Cmddelete", "Cmdedit"})
        if (QWidget *button = m_buttons.value(name)) {
            setTabOrder(before, button);
            before = button;
        }
}

void RecordForm::setBusy(bool busy, bool adding)
{
    m_busy = busy;
    m_steps->forget();
    m_undo->setEnabled(busy);
    for (const char *name : {"CmdOK", "Cmdcancel"})
        m_buttons[name]->setEnabled(busy);
    for (const char *name : {"Cmdadd", "Cmdedit", "Cmddelete", "Cmdreturn"})
        m_buttons[name]->setEnabled(!busy);
    for (const char *name : {"cmdqd", "cmdxq", "cmdnext", "cmdmd"})
        if (QPushButton *way = m_buttons.value(name))
            way->setEnabled(!busy || m_spec.navigationWhileBusy);
    if (QPushButton *find = m_buttons.value("Cmd_find"))
        find->setEnabled(!busy);
    for (const ButtonSpec &button : std::as_const(m_spec.buttons))
        m_buttons[button.name]->setEnabled(!busy || (adding && button.whileAdding));
    m_list->setWaysOpen(!busy);
    if (m_lines)
        m_lines->setEditing(busy, adding);
    m_inAdd = busy && adding;
    m_state->setProperty("busy", busy);
    showState();
    m_state->style()->unpolish(m_state);
    m_state->style()->polish(m_state);
}

void RecordForm::showState()
{
    const bool isWaiting = !m_busy && hasRecord() && waits(records().absolutePosition());
    m_state->setText(isWaiting ? QStringLiteral("未保存")
                     : !m_busy ? QStringLiteral("浏览")
                     : m_inAdd ? QStringLiteral("新增")
                               : QStringLiteral("编辑"));
    m_list->showMarks();
}

void RecordForm::showLines(int grid)
{
    if (const int page = m_spec.lines.grids[grid].page; page >= 0)
        m_panel->tabs()->setCurrentIndex(page);
}

void RecordForm::openBeside(const RecordFormSpec &other)
{
    run(Failure::Report, {[&] {
            QWidget *owner = parentWidget() ? parentWidget() : this;
            auto *form = owner->findChild<RecordForm *>(other.name);
            if (!form || !form->isVisible()) {
                form = new RecordForm(other, owner);
                form->setAttribute(Qt::WA_DeleteOnClose);
                form->setGeometry(geometry());
            }
            form->show();
            form->raise();
            form->activateWindow();
        }});
}

void RecordForm::focusFirst()
{
    focusField(m_spec.firstFocus.isEmpty() ? keyField() : m_spec.firstFocus);
}

void RecordForm::takeFocus()
{
    if (isBusy())
        focusFirst();
    else
        m_list->grid()->setFocus();
}

void RecordForm::lock(bool locked)
{
    lockFields(locked);
    Q_EMIT fieldsLocked(locked);
}

// Whoever leaves records that wait would lose them without a sign.
bool RecordForm::mayClose()
{
    if (isBusy()) {
        QApplication::beep();
        return false;
    }
    return !anyWaits() || dialogs().ask(this, QStringLiteral("尚有未保存的记录，关闭后即丢失。是否关闭？"),
                                        systemTitle(), OnEnter::No);
}

void RecordForm::closeEvent(QCloseEvent *event)
{
    event->setAccepted(mayClose());
}

// ---- errors ----

bool RecordForm::run(Failure failure, std::initializer_list<std::function<void()>> steps)
{
    for (const auto &step : steps) {
        try {
            step();
            if (tellLost())
                return false;
        } catch (const DataError &error) {
            m_lost.clear();
            const bool lost = error.number() == DataError::connectionLost;
            if (failure == Failure::Skip && !lost)
                continue;
            if (failure == Failure::None && !lost)
                throw;
            dialogs().message(this, worded(error), {}, MessageIcon::None);
            return !lost;
        }
    }
    return true;
}

// The record set is in the middle of a move and must not be left there by a lost connection: that is told afterwards,
// by the handler that is running, or else soon.
void RecordForm::recordMoved()
{
    try {
        showRecord();
    } catch (const DataError &error) {
        if (error.number() != DataError::connectionLost)
            throw;
        m_lost = error.text();
        QTimer::singleShot(0, this, &RecordForm::tellLost);
    }
}

bool RecordForm::tellLost()
{
    if (m_lost.isEmpty())
        return false;
    const QString text = m_lost;
    m_lost.clear();
    dialogs().message(this, text, {}, MessageIcon::None);
    return true;
}

// ---- the record that is shown ----

bool RecordForm::hasRecord()
{
    return !records().BOF() && !records().EOF_();
}

void RecordForm::showRecord()
{
    m_isUnread = false;
    try {
        if (hasRecord())
            records().valueAt(records().absolutePosition(), 0);
    } catch (const DataError &) {
        m_isUnread = true; // no field of another record stays beside those of this one
        m_panel->setUnread(true);
        m_panel->showRecord();
        throw;
    }
    m_panel->setUnread(false);
    m_panel->showRecord();
    if (m_lines)
        m_lines->showHead(hasRecord() ? records().keyAt(records().absolutePosition()) : 0, text(keyField()));
    showState();
}

bool RecordForm::waits(int record)
{
    return records().isWaiting(record) || (m_lines && m_lines->wait(records().keyAt(record)));
}

bool RecordForm::isHeadStored()
{
    if (!hasRecord())
        return false;
    const int row = records().absolutePosition(), key = records().columnIndex(m_panel->field(keyField()).column);
    return !records().isNew(row) && records().storedValueAt(row, key) == records().valueAt(row, key);
}

bool RecordForm::showStatement(const char *statement, const Values &values)
{
    if (tellWaiting())
        return false;
    m_primary.setRecordSource(statement, values);
    run(Failure::Report, {[this] { m_primary.Refresh(); }});
    return true;
}

} // namespace tradewick
