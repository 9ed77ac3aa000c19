// How wide the columns of a grid are, and how their numbers are shown.
#include "common/grid.h"

#include <QHeaderView>
#include <QScrollBar>
#include <QStyle>

namespace tradewick
{

namespace
{

// Rows looked at to find a column's width; a register of 100,000 rows must not be read for it.
constexpr int rowsMeasured = 30;
constexpr int widestColumn = 260;
constexpr qsizetype advancesKept = 4096;

} // namespace

// Texts alone are measured: the view's own way lays out every cell as if it were painted. The same texts come again
// with every row and every save.
int Grid::textWidth(int column, int firstRow, int rows) const
{
    const QFontMetrics metrics = fontMetrics();
    if (m_advances.size() > advancesKept || m_advancesFont != font()) {
        m_advances.clear();
        m_advancesFont = font();
    }
    const auto advance = [&](const QString &text) {
        auto known = m_advances.constFind(text);
        if (known == m_advances.constEnd())
            known = m_advances.insert(text, metrics.horizontalAdvance(text));
        return *known;
    };
    // Beside the text its margins, the line of the grid, and a pixel for what rounding takes.
    const int margin = 2 * (style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, this) + 1) + 2;
    const int end = qMin(firstRow + rows, m_model->rowCount());
    for (int row = firstRow; row < end; ++row)
        shownText(m_model->index(row, column)); // how many places there are is known behind the last
    int width = 0;
    for (int row = firstRow; row < end; ++row)
        width = qMax(width, advance(shownText(m_model->index(row, column))) + margin);
    return width;
}

QString Grid::shownText(const QModelIndex &cell) const
{
    const QString text = cell.data().toString();
    if (text.isEmpty() || !(cell.data(Qt::TextAlignmentRole).toInt() & Qt::AlignRight))
        return text; // numbers alone stand at the right
    if (m_numbers.meet(cell.column(), text))
        m_refit.start(0);
    return m_numbers.shown(cell.column(), text);
}

int Grid::fittingWidth(int column) const
{
    if (const auto kept = m_keptWidths.constFind(column); kept != m_keptWidths.cend())
        return *kept;
    const int least = qMax(fontMetrics().averageCharWidth() * 8, m_headWidths[column]);
    return qMin(qMax(least, textWidth(column, 0, rowsMeasured)), widest(column));
}

int Grid::widest(int column) const
{
    return m_whole.contains(column) ? QWIDGETSIZE_MAX : widestColumn;
}

void Grid::keepWidth(int column, std::optional<int> width)
{
    if (width)
        m_keptWidths.insert(column, *width);
    else
        m_keptWidths.remove(column);
    setColumnWidth(column, fittingWidth(column));
}

int Grid::wantedWidth() const
{
    int width = verticalHeader()->sizeHint().width() + verticalScrollBar()->sizeHint().width() + 2 * frameWidth();
    for (int column = 0; column < m_model->columnCount(); ++column)
        width += qMax(fittingWidth(column), m_whole.contains(column) ? columnWidth(column) : 0);
    return width;
}

// Of the rows in sight: the view's own way reads and lays out a thousand, after each change of a cell.
int Grid::sizeHintForColumn(int column) const
{
    const int rows = viewport()->height() / verticalHeader()->defaultSectionSize() + 2;
    return textWidth(column, qMax(0, rowAt(0)), rows);
}

// Columns that are never cut grow with what comes into sight.
void Grid::scrollContentsBy(int dx, int dy)
{
    QTableView::scrollContentsBy(dx, dy);
    for (const int column : std::as_const(m_whole))
        if (dy != 0 && !m_keptWidths.contains(column))
            setColumnWidth(column, qMax(columnWidth(column), sizeHintForColumn(column)));
}

} // namespace tradewick
