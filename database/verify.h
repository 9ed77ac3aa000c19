// What the rows of a database say against each other.
#pragma once

#include <QString>

class QTextStream;

namespace tradewick
{

// Writes a line for everything that does not fit together and gives whether there is nothing: parts that are missing,
// what relations() names and is gone, twins of a number, counters of a lot of verification forms, values that are not
// of their column's kind, damage to a file. Only reads. Throws CommandError or DataError when it cannot look.
bool verifyDatabase(const QString &source, QTextStream &out);

} // namespace tradewick
