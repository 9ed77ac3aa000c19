#include "reporting/growth.h"

#include <algorithm>

namespace tradewick
{

namespace
{

constexpr int reach = 30; // that a box may stand over the rule below it

} // namespace

void Growth::add(int top, int bottom, int height)
{
    m_boxes.append({top, bottom, height});
}

void Growth::settle()
{
    std::sort(m_boxes.begin(), m_boxes.end(), [](const Box &a, const Box &b) { return a.bottom < b.bottom; });
    int moved = 0; // by the boxes before, which alone can stand above a box
    for (Box &box : m_boxes) {
        moved = std::max(moved, at(box.top) + box.height - box.bottom);
        box.moved = moved;
    }
}

int Growth::at(int y) const
{
    int moved = 0;
    for (const Box &box : m_boxes) {
        if (box.bottom - reach > y)
            break;
        moved = box.moved;
    }
    return y + moved;
}

} // namespace tradewick
