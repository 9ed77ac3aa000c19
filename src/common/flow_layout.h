// Lays its widgets out in a row as long as they fit, and goes on in a further row: nothing is cut on a small screen.
#pragma once

#include <QLayout>

namespace tradewick
{

class FlowLayout : public QLayout
{
public:
    explicit FlowLayout(QWidget *parent) : QLayout(parent) { setContentsMargins(0, 0, 0, 0); }
    ~FlowLayout() override;

    void addItem(QLayoutItem *item) override { m_items.append(item); }
    int count() const override { return static_cast<int>(m_items.size()); }
    QLayoutItem *itemAt(int index) const override { return m_items.value(index); }
    QLayoutItem *takeAt(int index) override;
    Qt::Orientations expandingDirections() const override { return {}; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override { return arrange(QRect(0, 0, width, 0), false); }
    QSize minimumSize() const override;
    QSize sizeHint() const override;
    void setGeometry(const QRect &rect) override;

private:
    // Places the items within the rectangle's width, where move is set, and gives the height that they take. The room
    // that a row leaves stands between its items.
    int arrange(const QRect &rect, bool move) const;

    QVector<QLayoutItem *> m_items;
};

} // namespace tradewick
