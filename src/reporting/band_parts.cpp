#include "reporting/band_parts.h"

#include "reporting/text_lines.h"

#include <cmath>

namespace tradewick
{

BandParts::BandParts(const Page &whole, int height) : m_whole(whole), m_height(height)
{
    for (qsizetype at = 0; at < whole.items.size(); ++at) {
        const PageItem &item = whole.items[at];
        Part part{item, whole.overflows.contains(at), {}};
        const bool grown = item.isText() && !part.lost && item.width < 0 && std::isnan(item.number) &&
                           (item.object->kind == ObjectKind::Field || item.object->isWritable());
        if (grown) {
            const QStringView text = whole.text(item);
            for (QStringView line :
                 linesOfGrown(text, *whole.context->fonts[item.object->font], item.x2 - item.x1, &part.lines.height))
                part.lines.starts.append(static_cast<int>(line.data() - text.data()));
        }
        m_parts.append(part);
    }
}

int BandParts::cutAbove(int room) const
{
    int cut = room;
    for (bool moved = true; moved;) {
        moved = false;
        for (const Part &part : m_parts) {
            if (part.top() >= cut || part.bottom() <= cut)
                continue;
            const bool stays = part.divides() && (!part.item.isText() || part.lines.count(cut - part.top()) > 0) &&
                               part.item.object->kind != ObjectKind::Image;
            if (!stays) {
                cut = part.top();
                moved = true;
            }
        }
    }
    return cut;
}

void BandParts::put(Page &page, const Part &part, int y) const
{
    PageItem item = part.item;
    item.y1 += y;
    item.y2 += y;
    page.append(item, m_whole.text(part.item), part.lost);
}

// Puts what stands above the cut, leaves the rest in the part, and gives how much of the room above stays empty.
int BandParts::divide(Part &part, int cut, Page &page, int y) const
{
    Part upper = part;
    int &end = upper.item.y1 < upper.item.y2 ? upper.item.y2 : upper.item.y1;
    int &begin = part.item.y1 < part.item.y2 ? part.item.y1 : part.item.y2;
    end = cut;
    begin = cut;
    int empty = 0;
    if (part.item.isText()) {
        Lines &lines = part.lines;
        const int count = qMin(lines.count(cut - upper.item.y1), int(lines.starts.size()) - 1);
        const int taken = lines.starts[count] - lines.starts[0];
        upper.item.length = taken;
        end = upper.item.y1 + static_cast<int>(std::ceil(count * lines.height));
        empty = qMax(0, cut - end);
        part.item.start += taken;
        part.item.length -= taken;
        lines.starts.remove(0, count);
        part.item.y2 = cut + static_cast<int>(std::ceil(static_cast<double>(lines.starts.size()) * lines.height));
    }
    put(page, upper, y);
    return empty;
}

int BandParts::take(Page &page, int y, int room, bool force)
{
    const int cut = m_height <= room ? m_height : cutAbove(room);
    if (cut <= 0 && !force)
        return 0;
    const bool all = m_height <= room || cut <= 0;
    QVector<Part> later, divided;
    int empty = 0;
    for (Part &part : m_parts) {
        if (all || part.bottom() <= cut)
            put(page, part, y);
        else if (part.top() >= cut)
            later.append(part);
        else {
            empty = qMax(empty, divide(part, cut, page, y));
            divided.append(part);
        }
    }
    const int taken = all ? m_height : cut;
    m_height -= all ? m_height : cut - empty;
    for (Part &part : later) {
        part.item.y1 += empty - cut;
        part.item.y2 += empty - cut;
    }
    for (Part &part : divided) { // these begin at the top of the next piece
        int &begin = part.item.y1 < part.item.y2 ? part.item.y1 : part.item.y2;
        int &end = part.item.y1 < part.item.y2 ? part.item.y2 : part.item.y1;
        begin -= cut;
        end += part.item.isText() ? -cut : empty - cut;
    }
    m_parts = divided + later;
    return taken;
}

} // namespace tradewick
