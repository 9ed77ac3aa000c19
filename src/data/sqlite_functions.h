// What an SQLite connection of the program knows beyond SQLite itself; nothing of it stands in a schema.
#pragma once

#include <QVariant>

namespace tradewick
{

// Adds to the connection, given by its driver's handle:
//   collation tradewick: regardless of case and trailing blanks, signs before digits before letters, Chinese by pinyin;
//   tradewick_like(value, pattern): like with the escape '!' that folds the case of every script.
void addSqliteFunctions(const QVariant &driverHandle);

} // namespace tradewick
