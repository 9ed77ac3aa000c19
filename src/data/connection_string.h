// The OLE DB connection string that every engine is opened with.
#pragma once

#include <QString>

namespace tradewick
{

// The parts of a connection string that count.
struct ConnectionParts {
    QString provider, dataSource, userId, password, catalog;
};

// Reads "Provider=...;password=...;User ID=...;Initial Catalog=...;Data Source=...", keys without regard to case. A
// value may hold semicolons and equal signs as long as no known key follows them.
ConnectionParts connectionParts(const QString &connectionString);

} // namespace tradewick
