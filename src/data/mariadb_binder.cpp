#include "data/statement_binder.h"

namespace tradewick
{

namespace
{

class MariaDbBinder : public StatementBinder
{
public:
    using StatementBinder::StatementBinder;

protected:
    void dropWords() override { dropServerWords(); }

    // Names of tables are told apart by their case there; the schema has them in lower case.
    void rewriteWords() override
    {
        for (int i = 0; i < m_tokens.size(); ++i) {
            if (m_tokens[i].kind != SqlToken::Word)
                continue;
            const int open = nextToken(m_tokens, i);
            const bool call = open < m_tokens.size() && m_tokens[open].isSymbol(u'(');
            m_tokens[i].text = call && m_tokens[i].is("isnull") ? "ifnull" : m_tokens[i].text.toLower();
        }
    }

    // An update in a strict session ends at the first text that is no number.
    void compare(int, const Operand &left, const Operand &right) override
    {
        if (left.kind == ColumnKind::Text && isNumberValue(right))
            wrap(left, "concat('0',regexp_substr(", ",'^[0-9]*[.]?[0-9]*'))");
    }

    // No collation of that server has Chinese by pinyin: rows that texts order are ordered when they are here. What
    // they are ordered by comes along in hidden columns behind the others where it is not among them.
    void finish() override
    {
        const int order = find("order", 0), select = find("select", 0), from = find("from", 0);
        if (order < 0 || select < 0 || from < 0 || !m_tokens[nextToken(m_tokens, order)].is("by"))
            return;
        int first = nextToken(m_tokens, select);
        const bool distinct = m_tokens[first].is("distinct");
        if (distinct)
            first = nextToken(m_tokens, first);
        const QVector<Operand> columns = itemsOf(first, from);
        QVector<OrderItem> wanted;
        bool byText = false;
        QString hidden;
        QVector<int> hiddenItems;
        for (Operand item :
             itemsOf(nextToken(m_tokens, nextToken(m_tokens, order)), static_cast<int>(m_tokens.size()))) {
            const bool descending = m_tokens[item.last].is("desc");
            if (descending || m_tokens[item.last].is("asc"))
                item.last = previousToken(m_tokens, item.last);
            const ColumnKind kind = columnKind(item.last);
            byText = byText || kind == ColumnKind::Text || kind == ColumnKind::Unknown;
            const QString name = m_tokens[item.last].text;
            int column = -1;
            for (int i = 0; i < columns.size() && !m_tokens[columns[i].last].isSymbol(u'*'); ++i)
                if (m_tokens[columns[i].last].text == name)
                    column = i;
            if (column < 0) {
                hidden += u',';
                for (int i = item.first; i <= item.last; ++i)
                    hidden += m_tokens[i].text;
                hiddenItems.append(static_cast<int>(wanted.size()));
            }
            wanted.append({column, descending});
        }
        if (!byText)
            return;
        for (int i = 0; i < hiddenItems.size(); ++i)
            wanted[hiddenItems[i]].column = i - static_cast<int>(hiddenItems.size());
        m_bound.order = wanted;
        m_bound.hiddenColumns = static_cast<int>(hiddenItems.size());
        m_before[from].prepend(hidden + u' ');
        m_tokens.resize(order);
    }

    QString bracketed(const QString &name) const override { return u'`' + name + u'`'; }

private:
    // The items of a list of the statement from `first` up to `end`, each by its first and last token.
    QVector<Operand> itemsOf(int first, int end) const
    {
        QVector<Operand> items;
        int start = nextToken(m_tokens, first - 1);
        for (int i = start; i <= end; i = nextToken(m_tokens, i)) {
            if (i < end && m_tokens[i].isSymbol(u'('))
                i = closingParenthesis(m_tokens, i);
            if (i < end && !m_tokens[i].isSymbol(u','))
                continue;
            if (start < i)
                items.append({start, previousToken(m_tokens, i), {}, {}, {}});
            start = nextToken(m_tokens, i);
            if (i == end)
                break;
        }
        return items;
    }
};

} // namespace

std::unique_ptr<StatementBinder> mariaDbBinder(const QString &statement, const Values &values,
                                               const KindsOfTable &kindsOfTable)
{
    return std::make_unique<MariaDbBinder>(statement, values, kindsOfTable);
}

} // namespace tradewick
