// The rules of the check of layouts that look at lines and boxes alone.
#pragma once

#include "print/lint.h"

namespace tradewick
{

// Line ends of a page 1 to 60 twips from another line without touching any.
QVector<Finding> openCorners(const Page &page);
// Items of a page of one kind and exactly one place.
QVector<Finding> drawnTwice(const Page &page);
// Texts of the rows that are not under a head of their table, totals that are not under their column.
QVector<Finding> besideTheirHeads(const ReportTemplate &report);

} // namespace tradewick
