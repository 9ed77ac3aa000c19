// Draws pages: on the screen, on a printer, into a PDF.
#pragma once

#include "reporting/page.h"

#include <functional>

class QIODevice;
class QPainter;

namespace tradewick
{

// Draws a page, its top left at the painter's origin. pixelsPerTwip: the device's resolution, a zoom included; the
// scale of the page's own paper comes on top.
void paintPage(QPainter &painter, const Page &page, double pixelsPerTwip);

// Writes pages as a PDF of their paper's size into an open device, fonts embedded, its texts searchable. title: shown
// by viewers. False when the device cannot be written to; one that refuses later on tells it itself.
bool writePdf(const QVector<PagePtr> &pages, const QString &title, QIODevice &device);

// The same as a file, replaced as by replaceFile().
bool writePdf(const QVector<PagePtr> &pages, const QString &title, const QString &path, QString *error);

// Replaces the file at path by what write puts into the device it is given, once all of it is written. When write
// gives false, or the file cannot be written, it stays as it was, and error says why. A device or a pipe is refused.
bool replaceFile(const QString &path, const std::function<bool(QIODevice &)> &write, QString *error);

} // namespace tradewick
