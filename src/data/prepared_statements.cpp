#include "data/prepared_statements.h"

#include "data/mariadb_result.h"
#include "data/sql_error.h"

#include <QSqlError>

namespace tradewick
{

namespace
{

constexpr int kept = 16;                // a server counts those of all desktops together
constexpr qsizetype longestKept = 4096; // those of many rows at once hold as many values, and hardly come again

bool execute(QSqlQuery &query, const BoundStatement &statement)
{
    // A null QString would be stored as Null; Null is an invalid QVariant and nothing else.
    for (qsizetype i = 0; i < statement.parameters.size(); ++i) {
        const QVariant &value = statement.parameters[i];
        const bool isNullText = value.typeId() == QMetaType::QString && value.toString().isNull();
        query.bindValue(static_cast<int>(i), isNullText ? QVariant(QString("")) : value);
    }
    return query.exec();
}

} // namespace

PreparedStatements::PreparedStatements() : m_free(std::make_shared<Free>(kept)) {}

void PreparedStatements::GiveBack::operator()(QSqlQuery *query) const
{
    const std::unique_ptr<QSqlQuery> owned(query);
    const std::shared_ptr<Free> pool = free.lock();
    const bool hasRoom = !query->isSelect() || !shape.isEmpty(); // for the values of its result, or needs none
    if (!pool || !hasRoom || query->lastError().isValid() || text.size() > longestKept)
        return;
    query->finish();
    pool->insert(text, new Kept{std::move(*query), shape});
}

PreparedStatements::Query PreparedStatements::run(const QSqlDatabase &database, const BoundStatement &statement)
{
    if (const std::unique_ptr<Kept> known{m_free->take(statement.text)}) {
        Query query(new QSqlQuery(std::move(known->query)), {m_free, statement.text, known->shape});
        if (execute(*query, statement)) {
            if (shapeOfResult(*query) == known->shape)
                return query;
            // The driver would cut the values, or read them as what they were before.
            query.get_deleter().free.reset();
        } else if (!isOtherShape(query->lastError())) {
            throw errorOf(query->lastError());
        }
    }
    Query query(new QSqlQuery(database), {m_free, statement.text, {}});
    query->setForwardOnly(true);
    if (!query->prepare(statement.text) || !execute(*query, statement))
        throw errorOf(query->lastError());
    query.get_deleter().shape = shapeOfResult(*query);
    return query;
}

void PreparedStatements::clear()
{
    m_free = std::make_shared<Free>(kept);
}

} // namespace tradewick
