#include "reporting/overlay.h"

#include "reporting/fonts.h"

#include <QPainter>
#include <QSettings>
#include <QUrl>

#include <cmath>

namespace tradewick
{

namespace
{

QSettings settings()
{
    return {QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Tradewick"), QStringLiteral("printers")};
}

// Names of printers may hold slashes, which would divide a key.
QString keyOf(const QString &printer, const QString &report)
{
    const auto part = [](const QString &name) {
        return QString::fromLatin1(QUrl::toPercentEncoding(name.isEmpty() ? QStringLiteral("-") : name));
    };
    return QStringLiteral("shift/%1/%2").arg(part(printer), part(report));
}

} // namespace

PaperShift paperShift(const QString &printer, const QString &report)
{
    const QStringList kept = settings().value(keyOf(printer, report)).toString().split(u' ');
    return kept.size() == 2 ? PaperShift{kept[0].toInt(), kept[1].toInt()} : PaperShift();
}

void setPaperShift(const QString &printer, const QString &report, PaperShift shift)
{
    QSettings kept = settings();
    if (shift == PaperShift())
        kept.remove(keyOf(printer, report));
    else
        kept.setValue(keyOf(printer, report), QStringLiteral("%1 %2").arg(shift.right).arg(shift.down));
}

void paintRulers(QPainter &painter, const QSizeF &sheet, double pixelsPerMillimetre, const QString &words)
{
    constexpr double from = 20, lineWidth = 0.1, figure = 3; // millimetres
    painter.save();
    painter.scale(pixelsPerMillimetre, pixelsPerMillimetre);
    painter.setPen(QPen(Qt::black, lineWidth));
    QFont font = TextFont::of({QStringLiteral("Arial"), 9, false}).font();
    font.setPixelSize(10); // scaled down, since a millimetre is a pixel here
    painter.setFont(font);
    const auto write = [&](double x, double y, const QString &text) {
        painter.save();
        painter.translate(x, y);
        painter.scale(figure / 10, figure / 10);
        painter.drawText(QPointF(), text);
        painter.restore();
    };
    const auto ruler = [&](double length, auto place) {
        painter.drawLine(place(0, 0), place(length, 0));
        for (int at = 0; at <= length; ++at)
            painter.drawLine(place(at, 0), place(at, at % 10 == 0 ? 5 : at % 5 == 0 ? 3.5 : 2));
        for (int at = 0; at <= length; at += 10) {
            const QPointF end = place(at, 6);
            write(end.x(), end.y() + figure, QString::number(at));
        }
    };
    ruler(std::floor(sheet.width()), [](double along, double aside) { return QPointF(along, from + aside); });
    ruler(std::floor(sheet.height()), [](double along, double aside) { return QPointF(from + aside, along); });
    for (int x = 50; x < sheet.width(); x += 50) {
        for (int y = 50; y < sheet.height(); y += 50) {
            painter.drawLine(QPointF(x - 3, y), QPointF(x + 3, y));
            painter.drawLine(QPointF(x, y - 3), QPointF(x, y + 3));
            write(x + 0.5, y - 0.5, QStringLiteral("%1/%2").arg(x).arg(y));
        }
    }
    write(55, 40, words);
    painter.restore();
}

} // namespace tradewick
