// How rows of different tables belong together: heads and their lines, and documents that name another one.
#pragma once

#include <QString>
#include <QVector>

namespace tradewick
{

struct Relation {
    QString table, column; // whose rows name a row
    QString other, key;    // of that table, which bears the number there
    // Gives `number` and `n`, how many rows of the table bear it, for every number that no row of the other table has.
    // In the server's own SQL, without placeholders.
    QString missing;
};

// All that a sound database holds to: every line has its head, every document its lines, and what it was made of is
// there.
const QVector<Relation> &relations();

} // namespace tradewick
