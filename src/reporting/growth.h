// How a band becomes higher for texts longer than their boxes: what stands below such a box moves down, what stands
// beside it becomes longer with it. All lengths are twips from the band's top.
#pragma once

#include <QVector>

namespace tradewick
{

class Growth
{
public:
    void clear() { m_boxes.clear(); }
    bool isEmpty() const { return m_boxes.isEmpty(); }
    // A box from top to bottom that has to be `height` high, in any order.
    void add(int top, int bottom, int height);
    // To be called once behind the last box.
    void settle();
    // Where something at y in the band as it was drawn stands in the grown one.
    int at(int y) const;

private:
    struct Box {
        int top, bottom, height;
        int moved = 0; // of what stands at its bottom or below
    };
    QVector<Box> m_boxes; // by their bottoms
};

} // namespace tradewick
