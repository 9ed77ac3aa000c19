// A laid out report as a workbook.
#pragma once

#include "reporting/layout.h"

class QWidget;

namespace tradewick
{

// Writes the pages' texts to an .xls file at path, replacing one that is there. Columns follow from where texts stand
// in the whole report, a text over several of them joins their cells; rows follow the pages from top to bottom, each
// page starting a printed page. What heads every page alike is written once and printed on top of each. Texts that
// carry a number become numbers; lines, boxes and pictures stay away. Without pages nothing is written. On failure, of
// which an empty path is one, gives false and says why in error, and no file is left behind.
bool exportToExcel(const QVector<PagePtr> &pages, const QString &path, QString *error);

// The tool of a shown report: asks for the file and exports the pages to excelTargetFile, whether the question was
// answered or its window closed. A failure is told in a message over parent.
void exportShownReport(const QVector<PagePtr> &pages, QWidget *parent);

} // namespace tradewick
