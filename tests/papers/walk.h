// A walk over what a document declares: whatever it names is looked for where it has to be.
#pragma once

#include "papers/papers.h"

namespace tradewick::test
{

// What is wrong with a document on a database of the whole schema, each fault with the name of what is wrong; empty
// when everything is there.
QStringList faultsOf(const Document &document, Connection &connection);

// A row of the columns for a report's rules and fields, as often as `count`.
class OneRow : public RowSource
{
public:
    explicit OneRow(QStringList columns, QVariant value = 1) : m_columns(std::move(columns)), m_value(std::move(value))
    {
    }
    QStringList columns() const override { return m_columns; }
    bool next() override { return !std::exchange(m_isRead, true); }
    QVariant value(int) const override { return m_value; }

private:
    QStringList m_columns;
    QVariant m_value;
    bool m_isRead = false;
};

} // namespace tradewick::test
