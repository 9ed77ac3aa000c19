// Pages as pictures.
#pragma once

#include "reporting/layout.h"

namespace tradewick
{

// Writes a PNG a page beside path: pages of out.png become out-1.png, out-2.png and so on. False, and error, when one
// cannot be written.
bool writePictures(const QVector<PagePtr> &pages, const QString &path, int dotsPerInch, QString *error);

// Writes every report, filled with made-up rows and labels, as pictures into folder, which is made if it is not there,
// and index.html, which shows them all. False, and error, when something cannot be written.
bool writeGallery(const QString &folder, QString *error);

} // namespace tradewick
