// What the engines do differently, beside what becomes of a statement's text: one descriptor for each.
#pragma once

#include "data/statement.h"

namespace tradewick
{

struct Dialect {
    // The column, out of sight of "select *", that tells a row of a table from all others; empty where there is none.
    const char *identity;
    // Statements whose parameters all are the table, in lower case: names and types of its columns in their order, each
    // with 1 where it is a base table; and its first column that is unique by itself.
    const char *columns, *uniqueColumn;
    // What a transaction begins with.
    const char *begin;
    // Whether statements and transactions go through ODBC. Its drivers' transactions start without a word to the
    // server: it is asked something first.
    bool isOdbc;
    // Whether an answer can be lost after something was written.
    bool canBreak;
    // What keeps a row that is read as it is until the transaction ends: behind the table, behind the condition.
    const char *holdTable, *holdRow;
    // A text column that equals a parameter to the letter, case and trailing blanks included.
    const char *exactText;
    // What an insert without any value says instead of columns and values.
    const char *emptyRow;
    // Between a verb and its table, so that of twins without an identity one alone is meant.
    const char *oneRow;
};

const Dialect &dialectOf(Engine engine);

} // namespace tradewick
