#include "common/flow_layout.h"

namespace tradewick
{

namespace
{

constexpr int gap = 6; // between items and rows

} // namespace

FlowLayout::~FlowLayout()
{
    qDeleteAll(m_items);
}

QLayoutItem *FlowLayout::takeAt(int index)
{
    return index >= 0 && index < m_items.size() ? m_items.takeAt(index) : nullptr;
}

// As wide as the widest item, as high as all rows at the present width.
QSize FlowLayout::minimumSize() const
{
    QSize size;
    for (const QLayoutItem *item : m_items)
        size = size.expandedTo(item->sizeHint());
    return {size.width(), geometry().width() > 0 ? heightForWidth(geometry().width()) : size.height()};
}

QSize FlowLayout::sizeHint() const
{
    QSize size;
    for (const QLayoutItem *item : m_items)
        size = {size.width() + item->sizeHint().width() + gap, qMax(size.height(), item->sizeHint().height())};
    return size;
}

void FlowLayout::setGeometry(const QRect &rect)
{
    QLayout::setGeometry(rect);
    arrange(rect, true);
}

int FlowLayout::arrange(const QRect &rect, bool move) const
{
    int y = rect.top();
    for (int first = 0; first < count();) {
        int last = first, taken = 0, height = 0;
        for (; last < count(); ++last) {
            const QSize size = m_items[last]->sizeHint();
            const int with = taken + (last > first ? gap : 0) + size.width();
            if (last > first && with > rect.width())
                break;
            taken = with;
            height = qMax(height, size.height());
        }
        const int between = last - first > 1 ? gap + qMax(0, rect.width() - taken) / (last - first - 1) : 0;
        for (int x = rect.left(); first < last; ++first) {
            const QSize size = m_items[first]->sizeHint();
            if (move)
                m_items[first]->setGeometry({QPoint(x, y), size});
            x += size.width() + between;
        }
        y += height + gap;
    }
    return y - rect.top() - gap;
}

} // namespace tradewick
