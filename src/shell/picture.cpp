#include "shell/picture.h"

#include <QPainter>
#include <QPainterPath>

namespace tradewick
{

namespace
{

constexpr QSizeF drawing{640, 400}; // the picture's own coordinates

QPainterPath mountain(std::initializer_list<QPointF> ridge)
{
    QPainterPath path({0, drawing.height()});
    for (const QPointF &point : ridge)
        path.lineTo(point);
    path.lineTo(drawing.width(), drawing.height());
    path.closeSubpath();
    return path;
}

// A container ship, seen from the side.
void drawShip(QPainter &painter)
{
    static const QColor boxes[] = {QColor(0xc9, 0x6f, 0x4a), QColor(0x5b, 0x8c, 0x7a), QColor(0x8a, 0x9b, 0xb5),
                                   QColor(0xd8, 0xb3, 0x65)};
    for (int column = 0; column < 7; ++column)
        for (int row = 0; row < 2 + column % 2; ++row)
            painter.fillRect(QRectF(370 + column * 22, 298 - row * 13, 20, 11), boxes[(column * 2 + row) % 4]);
    painter.fillRect(QRectF(532, 262, 22, 47), QColor(0xf4, 0xf5, 0xf2));
    painter.setBrush(QColor(0x23, 0x3d, 0x4d));
    painter.drawPolygon(QPolygonF({{345, 309}, {575, 309}, {560, 338}, {362, 338}}));
}

} // namespace

Picture::Picture(const QString &name, QWidget *parent) : QWidget(parent)
{
    setObjectName(name);
    setAccessibleName(productTitle);
}

QSize Picture::sizeHint() const
{
    return {520, 325};
}

void Picture::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(width() / drawing.width(), height() / drawing.height());
    QLinearGradient sky(0, 0, 0, drawing.height());
    sky.setColorAt(0, QColor(0xdc, 0xe9, 0xe6));
    sky.setColorAt(1, QColor(0xf6, 0xf7, 0xf2));
    painter.fillRect(QRectF({}, drawing), sky);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0xb9, 0xd0, 0xc9));
    painter.drawPath(mountain({{0, 240}, {110, 170}, {190, 225}, {300, 150}, {420, 235}, {540, 180}, {640, 235}}));
    painter.setBrush(QColor(0x8f, 0xb3, 0xa9));
    painter.drawPath(mountain({{0, 290}, {90, 235}, {210, 285}, {330, 245}, {470, 290}, {640, 260}}));
    painter.setBrush(QColor(0x4d, 0x7c, 0x86));
    painter.drawRect(QRectF(0, 325, drawing.width(), 75));
    drawShip(painter);

    // Enlarged by the painter, in the font that the windows use anyway: at start, another size is another search
    // through the system's fonts.
    const auto text = [&](double x, double y, double size, const QString &words) {
        painter.save();
        painter.translate(x, y);
        painter.scale(size, size);
        painter.drawText(QPointF(0, 0), words);
        painter.restore();
    };
    painter.setPen(QColor(0x1f, 0x4e, 0x4a));
    const double unit = 1.0 / fontMetrics().height();
    text(40, 98, 48 * unit, productTitle);
    text(42, 130, 22 * unit, brand);
}

} // namespace tradewick
