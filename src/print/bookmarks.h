// Bookmarks of a finished PDF, which Qt's writer has no words for.
#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

namespace tradewick
{

struct Bookmark {
    QString title;
    qsizetype page; // from 0
};

// The PDF with these bookmarks, in their order; nothing else in it changes. Throws std::exception for what is no PDF,
// or for a page that it does not have.
QByteArray withBookmarks(const QByteArray &pdf, const QVector<Bookmark> &bookmarks);

} // namespace tradewick
