// A block of cells as spreadsheets put it on the clipboard.
#pragma once

#include <QStringList>
#include <QVector>

namespace tradewick
{

// The rows of a text, each with its cells: tabs part the cells, line breaks the rows, the last of which ends with or
// without one. A cell of several lines stands in quotes, its own quotes doubled; its breaks are given as '\n'. Quotes
// that no spreadsheet needs are letters like any other (19", "A" grade). None for an empty text.
QVector<QStringList> cellsOf(const QString &text);

// A cell as it stands in such a text.
QString cellText(const QString &cell);

} // namespace tradewick
