#include "common/column_footer.h"

#include <QHeaderView>
#include <QPainter>
#include <QScrollBar>

namespace tradewick
{

ColumnFooter::ColumnFooter(Grid *grid, QWidget *parent) : QWidget(parent), m_grid(grid)
{
    setObjectName(grid->objectName() + QStringLiteral("_totals"));
    setAccessibleName(grid->accessibleName() + QStringLiteral("总计"));
    const auto repaint = [this] { update(); };
    connect(grid->horizontalHeader(), &QHeaderView::sectionResized, this, repaint);
    connect(grid->horizontalScrollBar(), &QScrollBar::valueChanged, this, repaint);
}

void ColumnFooter::setText(const QString &column, const QString &text)
{
    m_texts.insert(column.toLower(), text);
    QStringList spoken;
    for (const GridColumn &one : m_grid->recordsetModel()->columns())
        if (const QString below = m_texts.value(one.column.toLower()); !below.isEmpty())
            spoken.append(one.caption + below);
    setAccessibleDescription(spoken.join(u' '));
    update();
}

QSize ColumnFooter::sizeHint() const
{
    return {0, m_grid->verticalHeader()->defaultSectionSize()};
}

void ColumnFooter::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QFont bold = font();
    bold.setBold(true);
    painter.setFont(bold);
    painter.setPen(palette().color(QPalette::WindowText));
    const QHeaderView &head = *m_grid->horizontalHeader();
    const int left = m_grid->viewport()->x(), margin = 4;
    painter.setClipRect(left, 0, m_grid->viewport()->width(), height());
    const auto place = [&](int column) {
        return QRect(left + head.sectionViewportPosition(column) + margin, 0, head.sectionSize(column) - 2 * margin,
                     height());
    };
    painter.drawText(place(0), Qt::AlignLeft | Qt::AlignVCenter, m_title);
    const QVector<GridColumn> &columns = m_grid->recordsetModel()->columns();
    for (int i = 0; i < columns.size(); ++i) {
        const QString text = m_texts.value(columns[i].column.toLower());
        bool isNumber = false;
        text.toDouble(&isNumber);
        painter.drawText(place(i), (isNumber ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter, text);
    }
}

} // namespace tradewick
