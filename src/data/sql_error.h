// What an error of a database driver means.
#pragma once

#include "data/data_error.h"

class QSqlError;

namespace tradewick
{

// The error as the program tells it: what a clerk can put right is said in words before the engine's own text; a link
// that broke has the number DataError::connectionLost.
DataError errorOf(const QSqlError &error);

} // namespace tradewick
