#include "common/line_totals.h"

#include "common/number_text.h"

#include <QHeaderView>
#include <QPainter>
#include <QScrollBar>

#include <utility>

namespace tradewick
{

namespace
{

constexpr int margin = 4;

QFont bold(QFont font)
{
    font.setBold(true);
    return font;
}

} // namespace

LineTotals::LineTotals(Grid *grid, const QStringList &columns, QWidget *parent)
    : QWidget(parent), m_grid(grid), m_columns(columns)
{
    setObjectName(grid->objectName() + QStringLiteral("_totals"));
    setAccessibleName(grid->accessibleName() + QStringLiteral("总计"));
    const auto repaint = [this] { update(); };
    connect(grid->horizontalHeader(), &QHeaderView::sectionResized, this, repaint);
    connect(grid->horizontalScrollBar(), &QScrollBar::valueChanged, this, repaint);
    const QAbstractItemModel *model = grid->model();
    for (const auto change : {&QAbstractItemModel::rowsRemoved, &QAbstractItemModel::rowsInserted})
        connect(model, change, this, &LineTotals::forget);
    connect(model, &QAbstractItemModel::modelReset, this, &LineTotals::forget);
    connect(model, &QAbstractItemModel::dataChanged, this, &LineTotals::forget);
}

// One edit changes several cells; the lines are gone through once, when the sums are looked at.
void LineTotals::forget()
{
    m_isAdded = false;
    update();
}

QString LineTotals::text(const QString &column)
{
    add();
    return m_sums.value(column);
}

void LineTotals::add()
{
    if (std::exchange(m_isAdded, true))
        return;
    const RecordsetModel &model = *m_grid->recordsetModel();
    QStringList spoken;
    QHeaderView &head = *m_grid->horizontalHeader();
    for (int i = 0; i < model.columnCount(); ++i) {
        const GridColumn &column = model.columns()[i];
        if (!m_columns.contains(column.column))
            continue;
        double sum = 0;
        for (int row = 0; row < model.rowCount(); ++row)
            sum += numberFromText(model.index(row, i).data().toString());
        QString text = numberText(sum);
        if (text.startsWith(u'.'))
            text.prepend(u'0');
        m_sums.insert(column.column, text);
        const int width = QFontMetrics(bold(font())).horizontalAdvance(text) + 2 * margin;
        if (width > head.sectionSize(i)) // a sum without its first digits is another sum
            head.resizeSection(i, width);
        spoken.append(column.caption + m_sums[column.column]);
    }
    setAccessibleDescription(spoken.join(u' '));
}

QSize LineTotals::sizeHint() const
{
    return {0, m_grid->verticalHeader()->defaultSectionSize()};
}

void LineTotals::paintEvent(QPaintEvent *)
{
    add();
    QPainter painter(this);
    painter.setFont(bold(font()));
    painter.setPen(palette().color(QPalette::WindowText));
    const QHeaderView &head = *m_grid->horizontalHeader();
    const int left = m_grid->viewport()->x();
    painter.setClipRect(left, 0, m_grid->viewport()->width(), height());
    const auto place = [&](int column) {
        return QRect(left + head.sectionViewportPosition(column) + margin, 0, head.sectionSize(column) - 2 * margin,
                     height());
    };
    painter.drawText(place(0), Qt::AlignLeft | Qt::AlignVCenter, QStringLiteral("总计"));
    const QVector<GridColumn> &columns = m_grid->recordsetModel()->columns();
    for (int i = 0; i < columns.size(); ++i)
        painter.drawText(place(i), Qt::AlignRight | Qt::AlignVCenter, m_sums.value(columns[i].column));
}

} // namespace tradewick
