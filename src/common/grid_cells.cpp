// What a spreadsheet does with cells: blocks that are copied and pasted, values that are repeated, edits taken back.
#include "common/cell_block.h"
#include "common/grid.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>

#include <algorithm>

namespace tradewick
{

void Grid::goTo(const QModelIndex &cell)
{
    selectionModel()->setCurrentIndex(cell, QItemSelectionModel::ClearAndSelect);
    scrollTo(cell);
}

void Grid::goToCell(int row, const QString &column)
{
    const auto at = std::find_if(m_model->columns().cbegin(), m_model->columns().cend(),
                                 [&](const GridColumn &one) { return one.column == column; });
    const auto section = static_cast<int>(at - m_model->columns().cbegin());
    goTo(m_model->index(qMin(row, m_model->rowCount() - 1), section));
}

QModelIndex Grid::firstSelected() const
{
    const QModelIndexList cells = selectionModel()->selectedIndexes(); // of one rectangle
    return cells.isEmpty() ? currentIndex() : *std::min_element(cells.cbegin(), cells.cend());
}

QVector<int> Grid::shownColumns(int from) const
{
    QVector<int> columns;
    const QHeaderView &head = *horizontalHeader();
    for (int at = head.visualIndex(from); at < head.count(); ++at)
        if (const int column = head.logicalIndex(at); !isColumnHidden(column))
            columns.append(column);
    return columns;
}

// Keys that act upon the cells themselves; gives whether it was one of them. The open cell keeps its own undo, and a
// text of one line is pasted into it.
bool Grid::sheetKey(const QKeyEvent &event)
{
    QLineEdit *editor = cellEditor();
    const auto giveUp = [&] {
        if (editor)
            closeEditor(editor, QAbstractItemDelegate::RevertModelCache);
    };
    if (event.matches(QKeySequence::Paste)) {
        const QVector<QStringList> rows = cellsOf(QApplication::clipboard()->text());
        if (editor && rows.size() <= 1 && rows.value(0).size() <= 1) {
            editor->insert(rows.value(0).value(0));
        } else if (!rows.isEmpty()) {
            commitEditor();
            Q_EMIT blockPasted(rows);
        }
        return true;
    }
    if (event.modifiers() == Qt::ControlModifier && event.key() == Qt::Key_D) {
        giveUp();
        Q_EMIT repeatPressed();
        return true;
    }
    if (editor && event.matches(QKeySequence::Undo) && !editor->isUndoAvailable()) {
        giveUp();
        Q_EMIT undoPressed();
        return true;
    }
    return false;
}

void Grid::copySelection() const
{
    QString text;
    int row = -1;
    QModelIndexList cells = selectionModel()->selectedIndexes();
    std::sort(cells.begin(), cells.end());
    for (const QModelIndex &cell : std::as_const(cells)) {
        if (!text.isEmpty())
            text += row == cell.row() ? u'\t' : u'\n';
        row = cell.row();
        text += cellText(cell.data().toString());
    }
    QApplication::clipboard()->setText(text);
}

} // namespace tradewick
