// Pages as pictures.
#pragma once

#include "reporting/layout.h"

#include <QImage>

namespace tradewick
{

// The page as it prints on white paper.
QImage pictureOf(const Page &page, int dotsPerInch);

// Writes a PNG a page beside path: pages of out.png become out-1.png, out-2.png and so on. False, and error, when one
// cannot be written.
bool writePictures(const QVector<PagePtr> &pages, const QString &path, int dotsPerInch, QString *error);

// Writes one picture. False, and error, when it cannot be written.
bool writePicture(const QImage &image, const QString &path, QString *error);

} // namespace tradewick
