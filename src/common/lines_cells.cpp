// The cells of lines: what follows from an edit, texts that a column cannot take, and what spreadsheets do with cells:
// blocks that are pasted, values that are repeated, edits that are taken back.
#include "common/dialogs.h"
#include "common/lines_panel.h"
#include "common/number_text.h"
#include "common/record_form.h"
#include "data/date_text.h"
#include "data/number_of.h"

#include <algorithm>

namespace tradewick
{

// ---- what follows from an edit ----

bool LinesPanel::isBad(int row, int column)
{
    const QVariant value = records().valueAt(row, column);
    if (value.typeId() != QMetaType::QString || value.toString().trimmed().isEmpty())
        return false;
    const ColumnKind kind = records().columnKind(column);
    return (kind == ColumnKind::Number && !numberOf(value.toString())) ||
           (kind == ColumnKind::Date && !dateFromText(value.toString()).isValid());
}

QString LinesPanel::badText(int column)
{
    return records().columnKind(column) == ColumnKind::Date ? RecordForm::badDate() : RecordForm::badNumber();
}

void LinesPanel::tellBad(int row, int column)
{
    for (Grid *grid : std::as_const(m_grids)) {
        const QVector<GridColumn> &columns = grid->recordsetModel()->columns();
        const auto shown = std::find_if(columns.cbegin(), columns.cend(), [&](const GridColumn &one) {
            return records().columnIndex(one.column) == column;
        });
        if (shown == columns.cend())
            continue;
        dialogs().message(&m_form, badText(column), RecordForm::systemTitle(), MessageIcon::Critical);
        m_form.showLines(static_cast<int>(m_grids.indexOf(grid)));
        grid->setFocus();
        grid->editCell(row, shown->column);
        return;
    }
}

bool LinesPanel::tellBadCell()
{
    const QVector<int> waiting = records().isOpen() ? records().waitingRows() : QVector<int>();
    for (const int row : waiting)
        for (int column = 0; column < records().columns().size(); ++column)
            if (isBad(row, column)) {
                tellBad(row, column);
                return true;
            }
    return false;
}

// A text that its column cannot take is told behind the key that left the cell, which would close a message at once.
void LinesPanel::left(int row, const QString &column)
{
    const int at = records().columnIndex(column);
    const auto isLeftBad = [this, row, at] { return row < records().RecordCount() && at >= 0 && isBad(row, at); };
    if (!isLeftBad())
        return;
    QMetaObject::invokeMethod(
        this,
        [this, row, at, isLeftBad] {
            const bool isOpen = std::any_of(m_grids.cbegin(), m_grids.cend(),
                                            [](const Grid *grid) { return grid->cellEditor() != nullptr; });
            if (m_form.isBusy() && !isOpen && isLeftBad()) // OK tells by itself
                tellBad(row, at);
        },
        Qt::QueuedConnection);
}

void LinesPanel::edited(const LineGridSpec &spec, const QString &column)
{
    const int row = records().absolutePosition(), at = records().columnIndex(column);
    if (isBad(row, at))
        return; // told when the cell is left
    // People write "1,234.50"; what follows calculates with the number.
    const QVariant value = records().valueAt(row, at);
    if (records().columnKind(at) == ColumnKind::Number && value.typeId() == QMetaType::QString)
        if (const auto number = numberOf(value.toString()))
            records().setValueAt(row, at, *number);
    runRules(spec, column);
}

void LinesPanel::runRules(const LineGridSpec &spec, const QString &column)
{
    const LineNumbers numbers([this](const char *name) { return numberFromText(records().Fields(name).text()); });
    for (const LineRule &rule : spec.rules) {
        if (!rule.edited.contains(column))
            continue;
        m_form.run(Failure::Report, {[&] {
                       if (rule.value)
                           if (const auto value = rule.value(numbers))
                               records().Fields(rule.column).setValue(*value);
                       take(rule.presets);
                       if (rule.statement)
                           m_form.copyFirst(rule.statement, RecordForm::valuesOf(records()), rule.copies, records());
                   }});
    }
}

// ---- as in a spreadsheet ----

void LinesPanel::followKeys(Grid *grid)
{
    connect(grid, &Grid::aboutToTake, this, [this, grid] { beginEdit(grid); });
    connect(grid, &Grid::blockPasted, this, [this, grid](const QVector<QStringList> &block) {
        m_form.run(Failure::Report, {[&] { paste(grid, block); }});
    });
    connect(grid, &Grid::repeatPressed, this,
            [this, grid] { m_form.run(Failure::Report, {[&] { repeatAbove(grid); }}); });
    connect(grid, &Grid::undoPressed, &m_form, &RecordForm::takeBack);
    grid->recordsetModel()->setCellMark([this](int record, int column) {
        return records().isWaiting(record) && isBad(record, column) ? badText(column) : QString();
    });
}

void LinesPanel::beginEdit(const Grid *grid)
{
    const QModelIndex at = grid->currentIndex();
    m_form.beginEdit(
        {.grid = static_cast<int>(m_grids.indexOf(grid)), .row = at.row(), .column = grid->currentColumn()});
}

bool LinesPanel::goBackTo(const LinesState &state)
{
    m_key = state.key;
    return records().goBackTo(*state.rows);
}

void LinesPanel::goTo(const EditPlace &place)
{
    m_form.showLines(place.grid);
    m_grids[place.grid]->setFocus();
    m_grids[place.grid]->goToCell(place.row, place.column);
}

// As if it were typed there.
void LinesPanel::put(Grid *grid, int row, int section, const QString &text)
{
    if (row < records().RecordCount())
        records().setAbsolutePosition(row);
    grid->model()->setData(grid->model()->index(row, section), text);
}

// The block lies over the columns as they are shown; what would come into the document's own number is left out, so
// that whole lines can be copied from one document into another. Each row goes into a line, behind the last into a new
// one; a blank row makes none, for it would be stored.
void LinesPanel::paste(Grid *grid, const QVector<QStringList> &block)
{
    const QModelIndex from = grid->firstSelected();
    if (!from.isValid())
        return;
    hideLookup();
    grid->goTo(from);
    beginEdit(grid);
    const QVector<int> shown = grid->shownColumns(from.column());
    const RecordsetModel &model = *grid->recordsetModel();
    const auto columnOf = [&](int section) { return records().columnIndex(model.columns()[section].column); };
    const auto isBlank = [](const QString &cell) { return cell.trimmed().isEmpty(); };
    QVector<QPair<int, int>> bad;
    qsizetype beyond = 0, widest = 1;
    int row = from.row();
    for (const QStringList &cells : block) {
        const QStringList taken = cells.first(qMin(cells.size(), shown.size()));
        beyond += std::count_if(cells.cbegin() + taken.size(), cells.cend(), std::not_fn(isBlank));
        widest = qMax(widest, taken.size());
        for (qsizetype i = 0; i < taken.size(); ++i) {
            const int column = columnOf(shown[i]);
            if (column < 0 || column == records().columnIndex(m_spec.key) ||
                (row == records().RecordCount() && isBlank(taken[i])))
                continue;
            put(grid, row, shown[i], taken[i]);
            if (isBad(row, column))
                bad.append({row, shown[i]});
        }
        row = qMin(row + 1, records().RecordCount());
    }
    if (row > from.row()) {
        const QModelIndex first = model.index(from.row(), from.column());
        grid->goTo(first);
        grid->selectionModel()->select({first, model.index(row - 1, shown[widest - 1])}, QItemSelectionModel::Select);
    }
    if (bad.isEmpty() && beyond == 0)
        return;
    if (!bad.isEmpty())
        grid->goTo(model.index(bad.first().first, bad.first().second));
    QStringList reasons;
    if (!bad.isEmpty())
        reasons.append(QStringLiteral("%1个不是数值或日期，原样保留并已标出").arg(bad.size()));
    if (beyond > 0)
        reasons.append(QStringLiteral("%1个超出最后一列，没有粘贴").arg(beyond));
    dialogs().message(&m_form,
                      QStringLiteral("粘贴的内容中有%1个单元格无法接受：%2。")
                          .arg(QString::number(bad.size() + beyond), reasons.join(QStringLiteral("；"))),
                      RecordForm::systemTitle(), MessageIcon::Exclamation);
}

void LinesPanel::repeatAbove(Grid *grid)
{
    const QModelIndex at = grid->currentIndex();
    if (at.row() < 1)
        return;
    hideLookup();
    beginEdit(grid);
    put(grid, at.row(), at.column(), at.siblingAtRow(at.row() - 1).data().toString());
    grid->goTo(grid->model()->index(at.row(), at.column()));
}

} // namespace tradewick
