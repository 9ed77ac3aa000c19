// Picks of some forms store lines before the record that they belong to. Until that is stored, nothing but its number
// tells them from those of another desktop's Add.
#pragma once

#include "data/recordset.h"

namespace tradewick
{

class RecordForm;
struct RecordFormSpec;

// Whether the form's picks do, and its Cancel takes such lines away again.
bool storesLinesFirst(const RecordFormSpec &spec);

// How many of the lines that are shown are stored.
int storedLines(Recordset &lines);

// Whether lines came under this number of a record that is not stored yet, which the form does not show: those of an
// Add that goes on at another desktop. Throws DataError.
bool hasForeignLines(RecordForm &form, const QString &key);

} // namespace tradewick
