#include "data/sqlite_functions.h"

#include "data/collation.h"
#include "data/watch.h"

#include <sqlite3.h>

#include <QString>

namespace tradewick
{

namespace
{

int collate(void *, int lengthA, const void *a, int lengthB, const void *b)
{
    return compareText(static_cast<const char *>(a), lengthA, static_cast<const char *>(b), lengthB);
}

bool matches(QStringView value, QStringView pattern)
{
    while (!pattern.isEmpty()) {
        const QChar c = pattern[0];
        if (c == u'%') {
            for (qsizetype skip = 0; skip <= value.size(); ++skip)
                if (matches(value.mid(skip), pattern.mid(1)))
                    return true;
            return false;
        }
        if (value.isEmpty())
            return false;
        const bool escaped = c == u'!' && pattern.size() > 1;
        if (c != u'_' && value[0] != pattern[escaped ? 1 : 0])
            return false;
        pattern = pattern.mid(escaped ? 2 : 1);
        value = value.mid(1);
    }
    return value.isEmpty();
}

QString folded(sqlite3_value *value)
{
    return QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_value_text(value)), sqlite3_value_bytes(value))
        .toCaseFolded();
}

void like(sqlite3_context *context, int, sqlite3_value **arguments)
{
    if (sqlite3_value_type(arguments[0]) == SQLITE_NULL || sqlite3_value_type(arguments[1]) == SQLITE_NULL)
        sqlite3_result_null(context);
    else
        sqlite3_result_int(context, matches(folded(arguments[0]), folded(arguments[1])));
}

} // namespace

void addSqliteFunctions(const QVariant &driverHandle)
{
    auto *database = *static_cast<sqlite3 *const *>(driverHandle.constData());
    // A register of some 50,000 rows is kept whole between two keystrokes that search it; the built-in 2 MB are not.
    sqlite3_exec(database, "pragma cache_size = -16384", nullptr, nullptr, nullptr);
    sqlite3_create_collation_v2(database, "tradewick", SQLITE_UTF8, nullptr, collate, nullptr);
    sqlite3_create_function_v2(database, "tradewick_like", 2, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr, like,
                               nullptr, nullptr, nullptr);
    // After so many steps of a statement, which are done in a millisecond.
    constexpr int stepsBetweenAsking = 20000;
    sqlite3_progress_handler(
        database, stepsBetweenAsking, [](void *) { return Watch::goesOn() ? 0 : 1; }, nullptr);
}

} // namespace tradewick
