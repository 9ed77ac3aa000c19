#include "data/prepared_statements.h"

#include "data/sql_error.h"

#include <QSqlError>

namespace tradewick
{

namespace
{

constexpr int kept = 32;
constexpr qsizetype longestKept = 4096; // those of many rows at once hold as many values, and hardly come again

} // namespace

PreparedStatements::PreparedStatements() : m_free(std::make_shared<Free>(kept)) {}

void PreparedStatements::GiveBack::operator()(QSqlQuery *query) const
{
    const std::shared_ptr<Free> pool = free.lock();
    if (!pool || query->isSelect() || query->lastError().isValid() || text.size() > longestKept) {
        delete query;
        return;
    }
    query->finish();
    pool->insert(text, query);
}

PreparedStatements::Query PreparedStatements::take(const QSqlDatabase &database, const QString &text)
{
    if (QSqlQuery *ready = m_free->take(text))
        return {ready, {m_free, text}};
    Query query(new QSqlQuery(database), {m_free, text});
    query->setForwardOnly(true);
    if (!query->prepare(text))
        throw errorOf(query->lastError());
    return query;
}

void PreparedStatements::clear()
{
    m_free = std::make_shared<Free>(kept);
}

} // namespace tradewick
