#include "common/lines_panel.h"

#include "common/dialogs.h"
#include "common/line_totals.h"
#include "common/record_form.h"

#include <QApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>

namespace tradewick
{

namespace
{

constexpr int rowsOfLookup = 8, leastRowsOfLookup = 5, leastRowsOfGrid = 5;

// Scrolls the form along with the cell of a grid that has the focus, however the focus came there.
void keepInSight(const Grid *grid)
{
    const auto follow = [grid] {
        QScrollArea *scroll = nullptr;
        for (QWidget *up = grid->parentWidget(); up && !scroll; up = up->parentWidget())
            scroll = qobject_cast<QScrollArea *>(up);
        if (!scroll || (!grid->hasFocus() && !grid->isAncestorOf(QApplication::focusWidget())))
            return;
        const QRect cell = grid->visualRect(grid->currentIndex());
        const QPoint at = grid->viewport()->mapTo(scroll->widget(), cell.center());
        scroll->ensureVisible(at.x(), at.y(), cell.width() / 2, cell.height());
    };
    QObject::connect(grid->selectionModel(), &QItemSelectionModel::currentChanged, grid, follow, Qt::QueuedConnection);
    QObject::connect(qApp, &QApplication::focusChanged, grid, follow);
}

} // namespace

LinesPanel::LinesPanel(const LinesSpec &spec, RecordForm &form, const QString &connection) : m_spec(spec), m_form(form)
{
    m_lines.ConnectionString = m_found.ConnectionString = connection;
}

LinesPanel::~LinesPanel() = default;

void LinesPanel::addTo(const std::function<QBoxLayout *(const LineGridSpec &grid)> &place, QWidget *window)
{
    for (const LineGridSpec &spec : m_spec.grids) {
        QBoxLayout *layout = place(spec);
        Grid *grid = addGrid(spec, layout->parentWidget());
        layout->addWidget(grid, 1);
        LineTotals::addBelow(grid, layout);
        keepInSight(grid);
    }
    if (!m_spec.lookup.columns.isEmpty())
        addLookup(window);
}

Grid *LinesPanel::addGrid(const LineGridSpec &spec, QWidget *parent)
{
    auto *grid = new Grid(spec.name, spec.title, parent);
    m_grids.append(grid);
    grid->showRecords(records(), spec.columns);
    grid->horizontalHeader()->setStretchLastSection(true);
    grid->setEnterColumns(spec.enterColumns);
    grid->setMinimumHeight(grid->verticalHeader()->defaultSectionSize() * leastRowsOfGrid);
    connect(grid, &Grid::cellEdited, this, [this, &spec](int, const QString &column) { edited(spec, column); });
    connect(grid, &Grid::cellLeft, this, &LinesPanel::left);
    connect(grid, &Grid::typed, this,
            [this, grid](const QString &column, const QString &text) { typed(grid, column, text); });
    connect(grid, &Grid::deletePressed, this, [this, grid] { removeLines(grid); });
    followKeys(grid);
    grid->setKeyHook([this](int key) {
        if (key == Qt::Key_Escape) {
            const bool wasOpen = m_lookup && m_lookup->isVisible();
            hideLookup();
            return wasOpen;
        }
        if (!isSearched())
            return false;
        if (key == Qt::Key_Down) {
            m_typing->commitEditor();
            m_lookup->setFocus();
        } else {
            pick();
        }
        return true;
    });
    for (const DropDownSpec &drop : spec.dropDowns)
        grid->setDropDown(drop.column, drop.name, [this, &drop] { return m_form.offered(drop.statement); });
    return grid;
}

// ---- which lines are shown, and which wait ----

void LinesPanel::showHead(qint64 head, const QString &key)
{
    if (head == m_head && key == m_key && records().isOpen())
        return;
    if (head != m_head && records().isOpen() && records().hasPendingChanges())
        m_aside[m_head] = records().putAside();
    m_head = head;
    m_key = key;
    if (const auto aside = m_aside.find(head); aside != m_aside.end()) {
        records().takeBack(std::move(aside->second));
        m_aside.erase(aside);
        return;
    }
    refresh();
}

void LinesPanel::keyTyped(const QString &key, bool isNew)
{
    if (key == m_key)
        return;
    m_key = key;
    if (!records().isOpen() || !records().hasPendingChanges()) {
        refresh();
        return;
    }
    const int column = records().columnIndex(m_spec.key);
    if (isNew) {
        records().takeOver(column, key);
        return;
    }
    for (int row = 0; row < records().RecordCount(); ++row)
        if (records().isNew(row))
            records().setValueAt(row, column, key);
}

void LinesPanel::headKeyChanged(qint64 before, qint64 now)
{
    if (m_head == before)
        m_head = now;
    if (auto aside = m_aside.extract(before)) {
        aside.key() = now;
        m_aside.insert(std::move(aside));
    }
}

void LinesPanel::refresh()
{
    m_lines.setRecordSource(m_spec.statement, {{m_spec.key, m_key}});
    m_lines.Refresh();
}

bool LinesPanel::wait(qint64 head)
{
    return head == m_head ? records().isOpen() && records().hasPendingChanges() : m_aside.contains(head);
}

QVector<qint64> LinesPanel::headsWaiting()
{
    QVector<qint64> heads;
    for (const auto &aside : m_aside)
        heads.append(aside.first);
    if (wait(m_head))
        heads.append(m_head);
    return heads;
}

void LinesPanel::store(qint64 head)
{
    if (head == m_head) {
        records().UpdateBatch();
        return;
    }
    const auto aside = m_aside.find(head);
    if (aside == m_aside.end())
        return;
    aside->second->UpdateBatch();
    records().connection()->onCommit([this, lines = aside->second.get()] {
        std::erase_if(m_aside, [lines](const auto &one) { return one.second.get() == lines; });
    });
}

void LinesPanel::drop(qint64 head)
{
    m_aside.erase(head);
    if (wait(m_head) && head == m_head)
        refresh();
}

// ---- typing ----

void LinesPanel::setEditing(bool editing, bool adding)
{
    for (int i = 0; i < m_grids.size(); ++i) {
        if (editing && (!adding || m_spec.grids[i].whileAdding))
            m_grids[i]->setEditing(true, [this] { startLine(); });
        else
            m_grids[i]->setEditing(false);
    }
}

void LinesPanel::commitEditors()
{
    for (Grid *grid : std::as_const(m_grids))
        grid->commitEditor();
}

void LinesPanel::startLine()
{
    records().AddNew();
    records().Fields(m_spec.key).setValue(m_key);
    if (!m_spec.startsNeedKey || !m_key.isEmpty())
        take(m_spec.starts);
}

void LinesPanel::take(const QVector<Preset> &presets)
{
    for (const Preset &preset : presets)
        records().Fields(preset.column).setValue(m_form.filled(preset));
}

// Each row goes by itself: one that another desktop changed stops the rest, which stay.
void LinesPanel::removeLines(Grid *grid)
{
    QVector<int> rows = grid->selectedRecords();
    rows.removeIf([this](int row) { return row >= records().RecordCount(); });
    const LineGridSpec &spec = m_spec.grids[m_grids.indexOf(grid)];
    const bool isShut = !grid->isEditing() && !(spec.whileAdding && spec.deletesWhileLocked);
    if (!m_form.isBusy() || isShut || rows.isEmpty() || m_form.tellTakenKey())
        return;
    const int column = grid->currentIndex().column();
    const auto remove = [this](int row) {
        const auto work = [this, row] {
            records().setAbsolutePosition(row);
            records().Delete();
        };
        if (!records().isNew(row))
            return m_form.store(work);
        work(); // nothing is stored, and it can be taken back
        return true;
    };
    beginEdit(grid);
    m_form.run(Failure::Report, {[&] {
                   bool removed = true;
                   for (auto row = rows.crbegin(); removed && row != rows.crend(); ++row)
                       removed = remove(*row);
                   // Lines of a document that is not there yet wait for it.
                   if (removed && m_form.isHeadStored() && !tellBadCell() &&
                       m_form.store([this] { records().UpdateBatch(); }))
                       refresh();
               }});
    const int row = qMin(rows.first(), grid->model()->rowCount() - 1);
    grid->setCurrentIndex(grid->model()->index(row, column));
}

bool LinesPanel::isOwn(const Conflict &conflict) const
{
    const qsizetype key = conflict.columns.indexOf(m_spec.key.toLower());
    const auto keyIn = [key](const QVariantList &row) { return row.value(key).toString().trimmed(); };
    return key < 0 || conflict.now.isEmpty() ||
           keyIn(conflict.now).compare(keyIn(conflict.read), Qt::CaseInsensitive) == 0;
}

void LinesPanel::goToNewLine()
{
    const auto shown = std::find_if(m_grids.cbegin(), m_grids.cend(), [](const Grid *one) { return one->isVisible(); });
    Grid *grid = shown == m_grids.cend() ? m_grids.first() : *shown;
    m_form.showLines(static_cast<int>(m_grids.indexOf(grid)));
    grid->setFocus();
    grid->setCurrentIndex(grid->model()->index(grid->model()->rowCount() - 1, 0));
}

// ---- the list that is searched ----

void LinesPanel::addLookup(QWidget *window)
{
    m_lookup = new Grid("TDBGrid2", m_spec.lookup.title, window);
    m_lookup->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_lookup->showRecords(m_found.Recordset(), m_spec.lookup.columns);
    m_lookup->setFocusPolicy(Qt::ClickFocus); // down goes into it; Tab goes on, and Enter then picks nothing
    m_lookup->setAutoFillBackground(true);
    m_lookup->installEventFilter(this);
    m_lookup->hide();
    connect(m_lookup, &Grid::rowActivated, this, &LinesPanel::pick);
    // It lies over the form, and must not lie over what the clerk goes on with.
    connect(qApp, &QApplication::focusChanged, m_lookup, [this](QWidget *, QWidget *now) {
        const auto holds = [now](const QWidget *grid) { return grid == now || grid->isAncestorOf(now); };
        if (m_lookup->isVisible() && now && now->window() == m_lookup->window() && !holds(m_lookup) &&
            std::none_of(m_grids.cbegin(), m_grids.cend(), holds))
            hideLookup();
    });
}

// Above the lines, where nobody types meanwhile; where there is too little room, beside the cell.
void LinesPanel::placeLookup(const Grid *grid)
{
    const QWidget *window = m_lookup->parentWidget();
    const int row = m_lookup->verticalHeader()->defaultSectionSize(),
              head = m_lookup->horizontalHeader()->sizeHint().height() + 2 * m_lookup->frameWidth();
    const QPoint corner = grid->mapTo(window, QPoint(0, 0));
    const QRect cell = grid->visualRect(grid->currentIndex());
    const int cellTop = grid->viewport()->mapTo(window, cell.topLeft()).y(), cellBottom = cellTop + cell.height();
    const int wanted = head + row * qBound(1, m_lookup->model()->rowCount(), rowsOfLookup),
              least = head + row * leastRowsOfLookup;
    QRect place(corner.x(), 0, qMin(grid->width(), window->width() - corner.x()), wanted);
    if (corner.y() >= least) {
        place.setHeight(qMin(wanted, corner.y()));
        place.moveBottom(corner.y() - 1);
    } else if (window->height() - cellBottom >= cellTop) {
        place.setHeight(qMin(wanted, window->height() - cellBottom));
        place.moveTop(cellBottom);
    } else {
        place.setHeight(qMin(wanted, cellTop));
        place.moveBottom(cellTop - 1);
    }
    m_lookup->setGeometry(place);
    m_lookup->raise();
    m_lookup->show();
}

void LinesPanel::hideLookup()
{
    m_searched.clear();
    if (m_lookup)
        m_lookup->hide();
}

bool LinesPanel::isSearched() const
{
    return m_lookup && m_lookup->isVisible() && !m_searched.isEmpty() && m_typing->currentColumn() == m_searched &&
           m_lookup->model()->rowCount() > 0;
}

void LinesPanel::typed(Grid *grid, const QString &column, const QString &text)
{
    if (!m_lookup)
        return;
    m_typing = grid;
    m_searched.clear();
    placeLookup(grid);
    const bool hasLine = grid->currentIndex().row() < records().RecordCount();
    const auto inLine = [&](const QString &name) { return records().Fields(name).text().trimmed(); };
    for (const LookupSearch &search : m_spec.lookup.searches) {
        if (search.column != column || (!search.needs.isEmpty() && (!hasLine || inLine(search.needs).isEmpty())))
            continue;
        if (!search.ownColumn.isEmpty() && inLine(search.ownColumn) != m_key.trimmed()) {
            dialogs().message(&m_form, search.notOwn, RecordForm::systemTitle(), MessageIcon::Question);
            return;
        }
        Values values = hasLine ? RecordForm::valuesOf(records()) : Values();
        values.insert(m_form.headValues());
        values.insert(column, text);
        values.insert("typed", text);
        const LookupSpec &lookup = m_spec.lookup;
        if (!lookup.firstColumn.isEmpty())
            m_lookup->recordsetModel()->setFirst(lookup.firstColumn, values.value(lookup.first).toString());
        m_found.setRecordSource(search.statement, values);
        m_form.run(Failure::Report, {[this] { m_found.Refresh(); }});
        if (m_found.Recordset().isOpen() && m_found.Recordset().RecordCount() > 0)
            m_found.Recordset().setAbsolutePosition(m_lookup->recordsetModel()->recordAt(0));
        m_lookup->scrollToTop();
        placeLookup(grid);
        m_searched = column;
        return;
    }
}

// The row under the lookup's cursor goes into the line that is typed; its quantity comes next.
void LinesPanel::pick()
{
    if (!m_form.isBusy() || !m_typing || m_found.Recordset().RecordCount() == 0)
        return;
    const LookupSpec &lookup = m_spec.lookup;
    const int at = static_cast<int>(m_grids.indexOf(m_typing));
    m_form.run(Failure::Report,
               {[&] {
                    beginEdit(m_typing);
                    m_typing->commitEditor();
                    if (records().RecordCount() == 0 || m_typing->currentIndex().row() >= records().RecordCount())
                        startLine();
                    for (const ColumnPair &pair : lookup.copies)
                        records().Fields(pair.to).setValue(m_found.Recordset().Fields(pair.from).value());
                    take(lookup.presets);
                    runRules(m_spec.grids[at], lookup.asEdited); // a quantity that stands counts at the new prices
                },
                [&] {
                    hideLookup();
                    m_typing->setFocus();
                    m_typing->editCell(records().absolutePosition(), m_spec.grids[at].enterColumns.value(1));
                }});
}

QString LinesPanel::captionOf(const QString &column) const
{
    for (const LineGridSpec &spec : m_spec.grids)
        for (const GridColumn &shown : spec.columns)
            if (shown.column.compare(column, Qt::CaseInsensitive) == 0)
                return shown.caption;
    return column;
}

bool LinesPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_lookup && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape) {
        hideLookup();
        m_typing->setFocus();
        return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace tradewick
