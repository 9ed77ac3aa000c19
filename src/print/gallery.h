// All reports to look at, each beside its twin and beside what it was before a change.
#pragma once

#include <QImage>
#include <QString>

namespace tradewick
{

// Draws each template of the folder `templates` with made-up rows as pictures into `folder`, which is made if it is not
// there. index.html shows them by folders of the business, each folder with a contact sheet of its reports, each report
// beside its twin. before: a folder of pictures of an earlier run, or empty; a report whose pictures differ is marked
// and shown with both and with their difference. False, and error, when something cannot be read or written.
bool writeGallery(const QString &templates, const QString &before, const QString &folder, QString *error);

// A page before and after a change over each other: what stayed pale, what is new green, what is gone red. A null image
// where nothing differs.
QImage differenceOf(const QImage &before, const QImage &after);

} // namespace tradewick
