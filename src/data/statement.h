// SQL texts as they are written in the program: the server's own SQL with {placeholders}, and what an engine is sent.
#pragma once

#include <QHash>
#include <QString>
#include <QVariant>
#include <QVector>

#include <functional>

namespace tradewick
{

enum class Engine { Sqlite, MariaDb, SqlServer };

// What a column holds; the rules of comparison follow it.
enum class ColumnKind { Unknown, Text, Number, Date, Flag };

// The values of a statement's placeholders by their names, matched to the letter.
using Values = QHash<QString, QVariant>;

// What rows are ordered by, where the engine itself does not know the order of texts.
struct OrderItem {
    int column; // of the result; negative: counted from its end
    bool descending = false;
};

// A statement as an engine gets it: positional parameters, no value in the text.
struct BoundStatement {
    QString text;
    QVariantList parameters;
    QVector<OrderItem> order{}; // for the client to sort by; empty: the engine's own order holds
    int hiddenColumns = 0;      // at the end of the result, there for the order alone
};

// Kinds of the columns of a table or view by lower-case column name; empty for a name that is no table.
using ColumnKinds = QHash<QString, ColumnKind>;
using KindsOfTable = std::function<ColumnKinds(const QString &table)>;

// Turns a statement into what an engine takes.
//   statement: the server's SQL; placeholders stand as '{name}', '%{name}%' or {name} and become parameters, so that
//     every character of a value, quotes and the wildcards % _ [ included, means itself.
//   values: one for every placeholder; a placeholder without one throws DataError.
//   kindsOfTable: asked for the tables that the statement names.
// The same rules of comparison hold on each engine: text regardless of case and trailing blanks, Chinese in the order
// of pinyin, dates as dates whatever the form they were typed in.
BoundStatement bindStatement(const QString &statement, const Values &values, Engine engine,
                             const KindsOfTable &kindsOfTable);

// The table of a plain "select * from table [where ...] [order by ...]", or the empty text: only such a statement can
// be read by identities first, and written.
QString plainTableOf(const QString &statement);

} // namespace tradewick
