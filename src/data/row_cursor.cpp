#include "data/row_cursor.h"

#include "data/date_text.h"
#include "data/odbc_statement.h"
#include "data/sql_error.h"
#include "data/value_order.h"
#include "data/watch.h"

#include <QSqlError>
#include <QSqlRecord>

#include <algorithm>

namespace tradewick
{

RowCursor::RowCursor(const QSqlDatabase &database, const BoundStatement &statement, PreparedStatements &statements)
    : m_hiddenColumns(statement.hiddenColumns)
{
    if (database.driverName() == QLatin1String("QODBC")) {
        OdbcResult result = runOdbc(database, statement);
        m_columns = std::move(result.columns);
        m_fetched = std::move(result.rows);
        m_isFetched = true;
        return;
    }
    m_query = statements.run(database, statement);
    if (!statement.order.isEmpty())
        sort(statement);
}

const QStringList &RowCursor::columns()
{
    if (m_columns.isEmpty() && m_query) {
        const QSqlRecord record = m_query->record();
        for (int i = 0; i < record.count() - m_hiddenColumns; ++i)
            m_columns.append(record.fieldName(i));
    }
    return m_columns;
}

void RowCursor::sort(const BoundStatement &statement)
{
    struct Row {
        QVariantList values;
        std::vector<OrderKey> keys;
    };
    const qsizetype count = columns().size() + m_hiddenColumns;
    std::vector<Row> rows;
    while (next()) {
        Row &row = rows.emplace_back();
        for (int i = 0; i < count; ++i)
            row.values.append(read(i));
        for (const OrderItem &item : statement.order)
            row.keys.emplace_back(row.values[item.column < 0 ? count + item.column : item.column], ColumnKind::Unknown);
    }
    std::stable_sort(rows.begin(), rows.end(), [&](const Row &a, const Row &b) {
        for (size_t i = 0; i < a.keys.size(); ++i)
            if (const int order = a.keys[i].compare(b.keys[i]))
                return (order < 0) != statement.order[static_cast<qsizetype>(i)].descending;
        return false;
    });
    m_fetched.reserve(rows.size());
    for (Row &row : rows)
        m_fetched.push_back(std::move(row.values));
    m_isFetched = true;
}

void RowCursor::readAll(qsizetype columns, const std::function<bool(const QVariantList &)> &row)
{
    while (next()) {
        QVariantList line; // whoever keeps it has it without a copy
        line.reserve(columns);
        for (int i = 0; i < columns; ++i)
            line.append(value(i));
        if (!row(line))
            return;
    }
}

bool RowCursor::next()
{
    if (m_isFetched)
        return ++m_at < static_cast<qsizetype>(m_fetched.size());
    if (!Watch::goesOn())
        throw DataError(Watch::stopped, QStringLiteral("已停止"));
    if (m_query->next())
        return true;
    if (m_query->lastError().isValid())
        throw errorOf(m_query->lastError());
    return false;
}

QVariant RowCursor::value(int column) const
{
    return m_isFetched ? m_fetched[m_at][column] : read(column);
}

QVariant RowCursor::read(int column) const
{
    QVariant value = m_query->value(column);
    if (value.isNull())
        return {};
    switch (value.typeId()) {
    case QMetaType::QDate:
    case QMetaType::QDateTime:
        return dateText(value);
    case QMetaType::Bool:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
    case QMetaType::Short:
        return value.toInt();
    default:
        return value;
    }
}

} // namespace tradewick
