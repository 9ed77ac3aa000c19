#include "common/query_screen.h"

#include "common/column_footer.h"
#include "common/combo_field.h"
#include "common/criteria_panel.h"
#include "common/dialogs.h"
#include "common/field_panel.h"
#include "common/flow_layout.h"
#include "common/form_parts.h"
#include "common/globals.h"
#include "common/line_totals.h"
#include "common/number_text.h"
#include "common/pane_splitter.h"
#include "common/record_form.h"
#include "common/window_keys.h"
#include "data/watch.h"

#include <QApplication>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
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

// Room for a few rows, whatever else the window holds.
void keepRoom(Grid &grid)
{
    constexpr int leastRows = 5;
    grid.setMinimumHeight(grid.verticalHeader()->defaultSectionSize() * leastRows);
}

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
    std::vector<std::unique_ptr<Recordset>> all;
    QHash<QString, QStringList> offers;
    const bool isRead = read([&] {
        for (const QueryListSpec &list : m_spec.lists)
            all.push_back(opened(QString::fromUtf8(list.all), {}));
        for (const Criterion &criterion : m_spec.criteria)
            if (criterion.offers)
                connection().read(
                    QString::fromUtf8(criterion.offers), {}, [](const QStringList &) {},
                    [&](const QVariantList &row) {
                        offers[criterion.name].append(row.first().toString());
                        return true;
                    });
    });
    if (!isRead) // the lists stay empty, and a find fills them
        return;
    for (size_t i = 0; i < m_lists.size(); ++i) {
        showRecords(*m_lists[i], std::move(all[i]));
        writeFooters(*m_lists[i], ColumnText::AtLoad, {});
    }
    for (auto offer = offers.cbegin(); offer != offers.cend(); ++offer)
        m_criteria->offer(offer.key(), offer.value());
}

// ---- how it looks ----

void QueryScreen::build()
{
    m_content = contentOf(*this);
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
    keepRoom(*list.grid);
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
    auto *content = new QWidget;
    auto *layout = new QVBoxLayout(content);
    auto *scroll = scrolled(content, m_content.get());
    m_panel = new FieldPanel(*m_entry, records(), content);
    m_panel->lock(true);
    connect(m_panel, &FieldPanel::entered, this,
            [this, scroll](const QString &name) { scroll->ensureWidgetVisible(m_panel->control(name).widget()); });
    layout->addWidget(m_panel);
    for (const LineGridSpec &spec : m_entry->lines.grids) {
        QBoxLayout *place = spec.page >= 0 ? m_panel->placeOf(spec) : layout;
        auto *grid = new Grid(spec.name, QStringLiteral("商品明细"), place->parentWidget());
        grid->showRecords(m_lines.Recordset(), spec.columns);
        keepRoom(*grid);
        place->addWidget(grid, 1);
        LineTotals::addBelow(grid, place);
    }
    return scroll;
}

QPushButton *QueryScreen::addButton(QLayout *layout, const QueryButton &button, const std::function<void()> &press)
{
    auto *push = tradewick::addButton(*layout, button.name, button.caption, button.shortcut, *this);
    push->setEnabled(!button.waits);
    if (button.waits)
        m_waiting.append(push);
    connect(push, &QPushButton::clicked, this, press);
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
        auto *box = new QWidget(bar);
        auto *row = new QHBoxLayout(box);
        row->setContentsMargins(0, 0, 0, 0);
        m_choices.insert(choice.name, addChoice(*row, choice, [this] { focusNextChild(); }));
        flow->addWidget(box);
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

// Lets the user stop what the action reads, beside what is shown; gives whether it was read to its end.
bool QueryScreen::read(const std::function<void()> &action)
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const auto back = qScopeGuard([] { QApplication::restoreOverrideCursor(); });
    const auto goesOn = dialogs().stoppable(isVisible() ? this : parentWidget(), QStringLiteral("正在查询"));
    bool isStopped = false;
    const Watch watch([&] {
        isStopped = isStopped || !goesOn();
        return !isStopped;
    });
    try {
        action();
    } catch (const DataError &error) {
        if (!isStopped || error.number() != Watch::stopped)
            throw;
        return false;
    }
    return true;
}

std::unique_ptr<Recordset> QueryScreen::opened(const QString &statement, const Values &values)
{
    auto records = std::make_unique<Recordset>();
    records->Open(statement, values, Connection::shared(gConnStr));
    return records;
}

void QueryScreen::showRecords(List &list, std::unique_ptr<Recordset> records)
{
    list.control.Recordset().takeBack(std::move(records));
}

// All lists or none: what one of them shows belongs to what the others do.
bool QueryScreen::showFound(const Values &values)
{
    std::vector<std::unique_ptr<Recordset>> found;
    std::vector<Values> sums;
    const bool isRead = read([&] {
        for (const QueryListSpec &list : m_spec.lists) {
            found.push_back(opened(findStatement(list, m_fragments, isWithin()), values));
            sums.emplace_back();
            if (const QString statement = QString::fromUtf8(list.sums); !statement.isEmpty())
                sums.back() = connection().rows(statement + joined(m_fragments), values).first().named();
        }
    });
    for (size_t i = 0; isRead && i < m_lists.size(); ++i) {
        showRecords(*m_lists[i], std::move(found[i]));
        writeFooters(*m_lists[i], ColumnText::ByFind, sums[i]);
    }
    return isRead;
}

bool QueryScreen::find()
{
    if (tellReversedAtFind())
        return false;
    for (QPushButton *button : std::as_const(m_waiting))
        button->setEnabled(true);
    if (QWidget *offered = QApplication::activePopupWidget()) // over what is found
        offered->close();
    const Values values = criteria();
    m_fragments = fragmentsOf(m_spec.criteria, values);
    bool isRead = false;
    run([&] { isRead = showFound(values); });
    m_fragments = QVector<Fragment>(m_spec.criteria.size());
    return isRead;
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
            std::unique_ptr<Recordset> found;
            const bool isRead = read([&] {
                Values values{{box, text}};
                const QVector<Row> via =
                    isChosen && quick.via ? connection().rows(QString::fromUtf8(quick.via), values) : QVector<Row>();
                if (!via.isEmpty())
                    values.insert(via.first().named());
                if (!via.isEmpty() || !isChosen || !quick.via)
                    found = opened(QString::fromUtf8(statement), values);
            });
            if (isRead && found)
                showRecords(*m_lists.front(), std::move(found));
        });
    }
}

// row: of sums.
void QueryScreen::writeFooters(List &list, ColumnText::Written when, Values row)
{
    const int count = list.control.Recordset().isOpen() ? list.control.Recordset().RecordCount() : 0;
    row.insert("count", count);
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

std::optional<bool> QueryScreen::ask(const QString &question, MessageIcon icon)
{
    return dialogs().choose(this, question, RecordForm::systemTitle(), icon);
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
