// Columns that a form takes over from a record that was looked up, as a table of pairs.
#pragma once

#include "data/column_pairs.h"
#include "data/recordset.h"

namespace tradewick
{

// Sets the current row's columns to the values of another row's. Throws DataError 3265, which names the column, before
// anything is set, where either side lacks one, and 3021 where there is no current row.
//   trimmed: texts without the blanks around them.
void copyColumns(const Row &from, Recordset &to, const Copies &pairs, bool trimmed = false);

} // namespace tradewick
