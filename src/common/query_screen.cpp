#include "common/query_screen.h"

#include "common/column_footer.h"
#include "common/combo_field.h"
#include "common/criteria_panel.h"
#include "common/dialogs.h"
#include "common/field_panel.h"
#include "common/flow_layout.h"
#include "common/globals.h"
#include "common/line_totals.h"
#include "common/number_text.h"
#include "common/pane_splitter.h"
#include "common/record_form.h"
#include "common/window_keys.h"

#include <QApplication>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScopeGuard>
#include <QScrollArea>
#include <QShortcut>
#include <QTabWidget>
#include <QTimer>

#include <algorithm>

namespace tradewick
{

namespace
{

constexpr int leastRowsOfGrid = 5;

} // namespace

QueryScreen::QueryScreen(const QuerySpec &spec, QWidget *mainWindow, OpenRecord openRecord)
    : QWidget(mainWindow, Qt::Window), m_spec(spec), m_openRecord(std::move(openRecord)),
      m_fragments(m_spec.criteria.size())
{
    setObjectName(spec.name);
    setWindowTitle(spec.caption);
    if (spec.entry)
        m_entry = std::make_unique<RecordFormSpec>(spec.entry());
    if (m_entry)
        m_entry->required.clear(); // nothing is typed here that could be missed
    for (const QueryListSpec &list : m_spec.lists) {
        m_lists.push_back(std::make_unique<List>());
        m_lists.back()->spec = &list;
        m_lists.back()->control.setObjectName(list.control);
        m_lists.back()->control.ConnectionString = gConnStr;
    }
    m_lines.setObjectName("Adodc_body_General");
    m_lines.ConnectionString = gConnStr;
    build();
    if (m_entry)
        connect(&records(), &Recordset::currentChanged, this, &QueryScreen::recordMoved);
    load();
    m_lists.front()->grid->setFocus();
}

QueryScreen::~QueryScreen() = default;

Connection &QueryScreen::connection() const
{
    return *Connection::shared(gConnStr);
}

void QueryScreen::load()
{
    for (const auto &list : m_lists) {
        open(*list, QString::fromUtf8(list->spec->all), {});
        writeFooters(*list, ColumnText::AtLoad, {});
    }
    for (const Criterion &criterion : m_spec.criteria) {
        if (!criterion.offers)
            continue;
        QStringList items;
        connection().read(
            QString::fromUtf8(criterion.offers), {}, [](const QStringList &) {},
            [&items](const QVariantList &row) {
                items.append(row.first().toString());
                return true;
            });
        m_criteria->offer(criterion.name, items);
    }
}

// ---- how it looks ----

void QueryScreen::build()
{
    m_content = std::make_unique<QWidget>(this);
    auto *whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(m_content.get());
    auto *outer = new QVBoxLayout(m_content.get());
    m_criteria = new CriteriaPanel(m_spec, m_content.get());
    outer->addWidget(m_criteria);
    const QString keys = QStringLiteral("Alt+0");
    m_criteria->setToolTip(keys);
    connect(addKeys(this, {QKeySequence(keys)}, QStringLiteral("到查询条件")), &QShortcut::activated, m_criteria,
            &CriteriaPanel::takeFocus);
    connect(m_criteria, &CriteriaPanel::typed, this, [this](const QString &name) { quickFind(name, false); });
    connect(m_criteria, &CriteriaPanel::chosen, this, [this](const QString &name) { quickFind(name, true); });
    auto *splitter = new PaneSplitter(Qt::Horizontal, m_content.get());
    splitter->addWidget(buildLists());
    if (m_entry)
        splitter->addWidget(buildRecord());
    splitter->setChildrenCollapsible(false);
    outer->addWidget(splitter, 1);
    if (!m_spec.options.frame.isEmpty())
        addOptions(outer);
    buildButtons(outer);
}

QWidget *QueryScreen::buildLists()
{
    if (m_lists.size() == 1) {
        auto *page = new QWidget(m_content.get());
        buildList(*m_lists.front(), page);
        return page;
    }
    m_tabs = new QTabWidget(m_content.get());
    m_tabs->setObjectName("SSTab1");
    m_tabs->setAccessibleName(m_spec.caption);
    for (const auto &list : m_lists) {
        auto *page = new QWidget(m_tabs);
        Grid *grid = buildList(*list, page);
        const int index = m_tabs->addTab(page, list->spec->caption);
        const QString keys = QStringLiteral("Alt+%1").arg(index + 1);
        m_tabs->setTabToolTip(index, keys);
        connect(addKeys(this, {QKeySequence(keys)}, list->spec->caption), &QShortcut::activated, this,
                [this, index, grid] {
                    m_tabs->setCurrentIndex(index);
                    grid->setFocus();
                });
    }
    return m_tabs;
}

Grid *QueryScreen::buildList(List &list, QWidget *page)
{
    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    list.grid = new Grid(list.spec->grid, QStringLiteral("查询结果"), page);
    list.grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    list.grid->showRecords(list.control.Recordset(), list.spec->columns);
    list.grid->setWhole(0); // numbers are never cut
    list.grid->horizontalHeader()->setStretchLastSection(true);
    list.grid->setMinimumHeight(list.grid->verticalHeader()->defaultSectionSize() * leastRowsOfGrid);
    layout->addWidget(list.grid, 1);
    connect(list.grid, &Grid::rowActivated, this, [this, &list] { openEntry(list); });
    if (list.spec->footers.isEmpty())
        return list.grid;
    list.footer = new ColumnFooter(list.grid, page);
    layout->addWidget(list.footer);
    writeFooters(list, ColumnText::Always, {});
    return list.grid;
}

QWidget *QueryScreen::buildRecord()
{
    auto *scroll = new QScrollArea(m_content.get());
    auto *content = new QWidget;
    auto *layout = new QVBoxLayout(content);
    m_panel = new FieldPanel(*m_entry, records(), content);
    m_panel->lock(true);
    connect(m_panel, &FieldPanel::entered, this,
            [this, scroll](const QString &name) { scroll->ensureWidgetVisible(m_panel->control(name).widget()); });
    layout->addWidget(m_panel);
    for (const LineGridSpec &spec : m_entry->lines.grids) {
        QBoxLayout *place = spec.page >= 0 ? m_panel->placeOf(spec) : layout;
        auto *grid = new Grid(spec.name, QStringLiteral("商品明细"), place->parentWidget());
        grid->showRecords(m_lines.Recordset(), spec.columns);
        grid->setMinimumHeight(grid->verticalHeader()->defaultSectionSize() * leastRowsOfGrid);
        place->addWidget(grid, 1);
        LineTotals::addBelow(grid, place);
    }
    scroll->setWidget(content);
    scroll->setWidgetResizable(true);
    scroll->setFocusPolicy(Qt::NoFocus); // it follows the fields; a stop on it would show nowhere
    scroll->setFrameShape(QFrame::NoFrame);
    return scroll;
}

QPushButton *QueryScreen::addButton(QLayout *layout, const QueryButton &button, const std::function<void()> &press)
{
    auto *push = new QPushButton(button.caption, layout->parentWidget());
    push->setObjectName(button.name);
    push->setAccessibleName(button.caption);
    push->setAutoDefault(true); // Enter presses it as the space bar does
    push->setEnabled(!button.waits);
    if (button.waits)
        m_waiting.append(push);
    addKeys(this, button.shortcut, push);
    connect(push, &QPushButton::clicked, this, press);
    layout->addWidget(push);
    return push;
}

void QueryScreen::buildButtons(QBoxLayout *layout)
{
    auto *bar = new QWidget(m_content.get());
    layout->addWidget(bar);
    auto *flow = new FlowLayout(bar);
    auto *finding = new QWidget(m_criteria);
    m_criteria->frame({})->addWidget(finding);
    auto *pair = new QHBoxLayout(finding);
    pair->setContentsMargins(0, 0, 0, 0);
    QWidget *findButton = addButton(pair, {"CmdFIND", "查询", "Ctrl+F"}, [this] { find(); });
    QWidget *emptyButton = addButton(pair, {"Command1", "清空", "Alt+C"}, [this] { m_criteria->emptyAll(); });
    // Behind the last criterion of a find comes what finds; boxes that act by themselves follow.
    const auto last = std::find_if(m_spec.criteria.crbegin(), m_spec.criteria.crend(),
                                   [](const Criterion &one) { return one.frame.isEmpty(); });
    setTabOrder(m_criteria->findChild<QWidget *>(last->name), findButton);
    setTabOrder(findButton, emptyButton);
    for (const ChoiceSpec &choice : m_spec.choices) {
        auto *combo = new ComboField(bar);
        combo->setObjectName(choice.name);
        combo->setAccessibleName(plainCaption(choice.caption));
        combo->lineEdit()->setAccessibleName(combo->accessibleName());
        combo->addItems(choice.items);
        combo->setSizeAdjustPolicy(QComboBox::AdjustToContents); // its texts are names, which must be whole
        combo->showText({});
        auto *box = new QWidget(bar);
        auto *row = new QHBoxLayout(box);
        row->setContentsMargins(0, 0, 0, 0);
        row->addWidget(new QLabel(choice.caption, box));
        row->addWidget(combo);
        flow->addWidget(box);
        m_choices.insert(choice.name, combo);
        const auto goOn = [this] { focusNextChild(); }; // to the button that acts upon it
        connect(combo, &ComboField::enterPressed, this, goOn);
        connect(combo->lineEdit(), &QLineEdit::returnPressed, this, goOn);
    }
    for (const QueryButton &button : m_spec.buttons)
        addButton(button.frame.isEmpty() ? flow : m_criteria->frame(button.frame), button,
                  [this, &button] { run([this, &button] { button.press(*this); }); });
    addButton(flow, {"CmdEXIT", "退出", "Ctrl+W"}, [this] { close(); });
}

// None of the options is chosen, and the arrows only walk: a choice prints at once.
void QueryScreen::addOptions(QBoxLayout *layout)
{
    m_options = new QGroupBox(m_spec.options.caption, m_content.get());
    m_options->setObjectName(m_spec.options.frame);
    auto *row = new QHBoxLayout(m_options);
    for (const QueryButton &option : m_spec.options.options) {
        auto *radio = new QRadioButton(option.caption, m_options);
        radio->setObjectName(option.name);
        radio->setAccessibleName(option.caption);
        radio->setAutoExclusive(false);
        row->addWidget(radio);
        connect(radio, &QRadioButton::clicked, this, [this, radio, &option] {
            radio->setChecked(false);
            m_options->hide();
            run([this, &option] { option.press(*this); });
        });
    }
    auto *away = addKeys(m_options, {Qt::Key_Escape}, QStringLiteral("收起“%1”").arg(m_spec.options.caption));
    away->setContext(Qt::WidgetWithChildrenShortcut);
    connect(away, &QShortcut::activated, m_options, &QWidget::hide);
    auto *take = addKeys(m_options, {Qt::Key_Return, Qt::Key_Enter}, m_spec.options.caption);
    take->setContext(Qt::WidgetWithChildrenShortcut);
    connect(take, &QShortcut::activated, this, [this] {
        if (auto *radio = qobject_cast<QRadioButton *>(m_options->focusWidget()))
            radio->click();
    });
    layout->addWidget(m_options);
    m_options->hide();
}

void QueryScreen::showOptions()
{
    m_options->show();
    m_options->findChild<QRadioButton *>(m_spec.options.options.first().name)->setFocus();
}

// ---- what is found ----

void QueryScreen::open(List &list, const QString &statement, const Values &values)
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const auto back = qScopeGuard([] { QApplication::restoreOverrideCursor(); });
    list.control.setRecordSource(statement, values);
    list.control.Refresh();
}

bool QueryScreen::find()
{
    if (tellReversed(reversed(), false))
        return false;
    for (QPushButton *button : std::as_const(m_waiting))
        button->setEnabled(true);
    if (QWidget *offered = QApplication::activePopupWidget()) // over what is found
        offered->close();
    const Values values = criteria();
    m_fragments = fragmentsOf(m_spec.criteria, values);
    const bool isDone = run([&] {
        for (const auto &list : m_lists) {
            open(*list, findStatement(*list->spec, m_fragments, isWithin()), values);
            writeFooters(*list, ColumnText::ByFind, values);
        }
    });
    m_fragments = QVector<Fragment>(m_spec.criteria.size());
    return isDone;
}

void QueryScreen::quickFind(const QString &box, bool isChosen)
{
    for (const QuickSearch &quick : m_spec.quick) {
        const char *statement = isChosen ? quick.chosen : quick.typed;
        const QString text = m_criteria->text(box);
        if (quick.name != box || !statement || text.trimmed().isEmpty())
            continue;
        if (isChosen && !quick.empties.isEmpty())
            m_criteria->empty(quick.empties);
        run([&] {
            Values values{{box, text}};
            if (isChosen && quick.via) {
                const QVector<Row> rows = connection().rows(QString::fromUtf8(quick.via), values);
                if (rows.isEmpty())
                    return;
                values.insert(rows.first().named());
            }
            open(*m_lists.front(), QString::fromUtf8(statement), values);
        });
    }
}

void QueryScreen::writeFooters(List &list, ColumnText::Written when, const Values &values)
{
    const int count = list.control.Recordset().isOpen() ? list.control.Recordset().RecordCount() : 0;
    Values row{{"count", count}};
    if (when == ColumnText::ByFind && list.spec->sums && count > 0)
        row.insert(connection().rows(QString::fromUtf8(list.spec->sums) + joined(m_fragments), values).first().named());
    for (const ColumnText &footer : list.spec->footers) {
        const bool isDue = footer.written == when ||
                           (footer.written == ColumnText::ByFindOfSome && when == ColumnText::ByFind && count > 0);
        if (!isDue)
            continue;
        QString text = footer.text;
        for (auto value = row.cbegin(); value != row.cend(); ++value)
            text.replace(u'{' + value.key() + u'}', numberText(value->toDouble()));
        list.footer->setText(footer.column, text);
    }
}

int QueryScreen::shownList() const
{
    return m_tabs ? m_tabs->currentIndex() : 0;
}

Values QueryScreen::criteria() const
{
    return m_criteria->values();
}

bool QueryScreen::isWithin() const
{
    return m_criteria->isWithin();
}

QString QueryScreen::choice(const QString &name) const
{
    return m_choices[name]->currentText().trimmed();
}

// ---- the record that is shown ----

void QueryScreen::recordMoved()
{
    try {
        showRecord();
    } catch (const DataError &error) { // the record set is in the middle of a move and must not be left there
        QTimer::singleShot(0, this,
                           [this, text = error.text()] { dialogs().message(this, text, {}, MessageIcon::None); });
    }
}

void QueryScreen::showRecord()
{
    m_panel->showRecord();
    m_lines.setRecordSource(QString::fromUtf8(m_entry->lines.statement), {{m_entry->lines.key, number()}});
    m_lines.Refresh();
}

QString QueryScreen::number() const
{
    return m_panel ? m_panel->text(m_entry->pages.first().fields.first().name).trimmed() : QString();
}

void QueryScreen::openEntry(List &list)
{
    Recordset &found = list.control.Recordset();
    if (m_openRecord && !list.spec->opens.isEmpty() && !found.BOF() && !found.EOF_())
        run([&] { m_openRecord(list.spec->opens, list.spec->key, found.Fields(list.spec->key).value()); });
}

// ---- what is told ----

bool QueryScreen::tellReversed(const QString &message, bool anyRange)
{
    const bool isReversed = m_criteria->isReversed(anyRange);
    if (isReversed)
        tell(message);
    return isReversed;
}

void QueryScreen::tell(const QString &message)
{
    dialogs().message(this, message, RecordForm::systemTitle(), MessageIcon::Critical);
}

bool QueryScreen::ask(const QString &question, MessageIcon icon)
{
    return dialogs().ask(this, question, RecordForm::systemTitle(), OnEnter::Yes, icon);
}

bool QueryScreen::run(const std::function<void()> &action)
{
    try {
        action();
        return true;
    } catch (const DataError &error) {
        dialogs().message(this, error.text(), {}, MessageIcon::None);
        return false;
    }
}

} // namespace tradewick
