// Statements that the engine has prepared and that are run again with other values: a server parses them once, and the
// way there and back for it falls away.
#pragma once

#include "data/statement.h"

#include <QCache>
#include <QSqlDatabase>
#include <QSqlQuery>

#include <memory>

namespace tradewick
{

class PreparedStatements
{
    struct Kept {
        QSqlQuery query;
        QByteArray shape; // of the result's columns when the driver made room for their values
    };
    using Free = QCache<QString, Kept>; // by text

    struct GiveBack {
        std::weak_ptr<Free> free;
        QString text;
        QByteArray shape;
        void operator()(QSqlQuery *query) const;
    };

public:
    using Query = std::unique_ptr<QSqlQuery, GiveBack>;

    PreparedStatements();
    // The statement, run with its values; it is kept for the next run when the query goes, unless it failed. One whose
    // tables were altered since is prepared anew. Throws DataError.
    Query run(const QSqlDatabase &database, const BoundStatement &statement);
    // Before the database is closed. Queries still in use end with their users.
    void clear();

private:
    std::shared_ptr<Free> m_free;
};

} // namespace tradewick
