#include "common/column_footer.h"

#include <QHeaderView>
#include <QPainter>
#include <QScrollBar>

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
    QHeaderView &head = *m_grid->horizontalHeader();
    const QVector<GridColumn> &columns = m_grid->recordsetModel()->columns();
    for (int i = 0; i < columns.size(); ++i) {
        const int width = QFontMetrics(bold(font())).horizontalAdvance(m_grid->shownNumber(i, text)) + 2 * margin;
        if (columns[i].column.compare(column, Qt::CaseInsensitive) == 0 && width > head.sectionSize(i))
            head.resizeSection(i, width); // a sum without its first digits is another sum
        if (const QString below = m_texts.value(columns[i].column.toLower()); !below.isEmpty())
            spoken.append(columns[i].caption + m_grid->shownNumber(i, below));
    }
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
    painter.setFont(bold(font()));
    painter.setPen(palette().color(QPalette::WindowText));
    const QHeaderView &head = *m_grid->horizontalHeader();
    const int left = m_grid->viewport()->x();
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
        painter.drawText(place(i), (isNumber ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter,
                         m_grid->shownNumber(i, text));
    }
}

} // namespace tradewick
