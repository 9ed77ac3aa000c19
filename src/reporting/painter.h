// Draws pages: on the screen, on a printer, into a PDF.
#pragma once

#include "reporting/layout.h"

class QPainter;

namespace tradewick
{

// Draws a page, its top left at the painter's origin. pixelsPerTwip: the device's resolution, a zoom included; the
// scale of the page's own paper comes on top.
void paintPage(QPainter &painter, const Page &page, double pixelsPerTwip);

// Writes pages as a PDF of their paper's size, fonts embedded, its texts searchable. title: shown by viewers. A file
// at path is replaced once all is written; on failure it stays as it was, and error says why.
bool writePdf(const QVector<PagePtr> &pages, const QString &title, const QString &path, QString *error);

} // namespace tradewick
