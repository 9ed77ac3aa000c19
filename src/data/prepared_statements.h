// Statements without a result that the engine has prepared and that are run again with other values: a server parses
// them once, and the way there and back for it falls away. Those with a result are not kept: the driver's room for the
// values is that of the columns when it was prepared, and someone may alter the table.
#pragma once

#include <QCache>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>

#include <memory>

namespace tradewick
{

class PreparedStatements
{
    using Free = QCache<QString, QSqlQuery>; // by text

    struct GiveBack {
        std::weak_ptr<Free> free;
        QString text;
        void operator()(QSqlQuery *query) const;
    };

public:
    using Query = std::unique_ptr<QSqlQuery, GiveBack>;

    PreparedStatements();
    // The statement, ready for values; it is free again when the query goes, unless it failed. Throws DataError.
    Query take(const QSqlDatabase &database, const QString &text);
    // Before the database is closed. Queries still in use end with their users.
    void clear();

private:
    std::shared_ptr<Free> m_free;
};

} // namespace tradewick
