// What an error of a database driver means.
#pragma once

#include "data/data_error.h"

#include <QList>
#include <QStringList>

class QSqlError;

namespace tradewick
{

// All that a driver says about one failure, the cause first: SQLSTATEs (ODBC alone has them), the engine's own numbers,
// and its texts.
struct DriverError {
    QStringList states;
    QList<int> numbers;
    QStringList texts;
};

// The error as the program tells it: what a clerk can put right is said in words before the engine's own text; a link
// that broke has the number DataError::connectionLost.
DataError errorOf(const DriverError &error);
DataError errorOf(const QSqlError &error);

// The error of a value that the program itself refuses, before the database does.
DataError refused(Refusal refusal, const QString &column);

} // namespace tradewick
