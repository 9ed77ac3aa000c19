// A band that its texts have made higher than a page, taken apart from the top down.
#pragma once

#include "reporting/page.h"

namespace tradewick
{

class BandParts
{
public:
    // whole: the items of the band, y counted from its top. height: of the band.
    BandParts(const Page &whole, int height);

    bool isEmpty() const { return m_height <= 0; }
    // Puts onto a page, from y down, what stands in the next `room` twips, and gives how high that is: less than the
    // room where a line of text would be divided. Rules and boxes are divided, texts between their lines, all else
    // goes to the next page as a whole. 0 when nothing fits; `force` then puts all that is left.
    int take(Page &page, int y, int room, bool force);

private:
    struct Lines {
        double height = 0;   // of each
        QVector<int> starts; // of each, in the item's text
        int count(int within) const { return qMin(int(starts.size()), int((within + 0.5) / height)); }
    };
    struct Part {
        PageItem item;
        bool lost;   // marked already
        Lines lines; // of a text that may be divided
        int top() const { return qMin(item.y1, item.y2); }
        int bottom() const { return qMax(item.y1, item.y2); }
        bool divides() const { return !item.isText() || lines.starts.size() > 1; }
    };
    int cutAbove(int room) const;
    void put(Page &page, const Part &part, int y) const;
    int divide(Part &part, int cut, Page &page, int y) const;

    const Page &m_whole;
    QVector<Part> m_parts;
    int m_height;
};

} // namespace tradewick
