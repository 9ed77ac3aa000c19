#include "data/statement_binder.h"

namespace tradewick
{

namespace
{

// The built-in comparison of SQLite folds ASCII letters alone; other letters with case need the collation that the
// connection brings, which no index serves.
bool hasCaseBeyondAscii(const QString &text)
{
    for (const QChar c : text)
        if (c.unicode() > 127 && c.toLower() != c.toUpper())
            return true;
    return false;
}

class SqliteBinder : public StatementBinder
{
public:
    using StatementBinder::StatementBinder;

protected:
    void dropWords() override { dropServerWords(); }

    void rewriteWords() override
    {
        for (int i = 0; i < m_tokens.size(); ++i) {
            const int open = nextToken(m_tokens, i);
            if (m_tokens[i].kind != SqlToken::Word || open >= m_tokens.size() || !m_tokens[open].isSymbol(u'('))
                continue;
            const int close = closingParenthesis(m_tokens, open);
            if (m_tokens[i].is("isnull")) {
                m_tokens[i].text = "ifnull";
            } else if (m_tokens[i].is("year") || m_tokens[i].is("month")) {
                m_before[i] = "cast(";
                m_after[close] = m_tokens[i].is("year") ? ",1,4) as integer)" : ",6,2) as integer)";
                m_tokens[i].text = "substr";
                m_tokens[close].text.clear();
                m_numberFunctions.insert(i);
            } else if (m_tokens[i].is("left") || m_tokens[i].is("right")) {
                const int comma = lastComma(open, close);
                m_after[comma] = m_tokens[i].is("left") ? "1," : "-";
                m_tokens[i].text = "substr";
            }
        }
    }

    void like(int at, const Operand &left, const Operand &right) override
    {
        if (hasCaseBeyondAscii(textOf(right))) { // a function of the connection: tradewick_like(value, pattern)
            wrap(left, "tradewick_like(", "");
            m_tokens[at] = {SqlToken::Symbol, ","};
            m_after[right.last] += ")";
        } else if (!right.isValue || valueOf(m_tokens[right.first], true).toString().contains(likeEscape)) {
            // Where nothing is escaped SQLite goes without, which every row that it looks at is quicker for.
            StatementBinder::like(at, left, right);
        }
    }

    void compare(int at, const Operand &left, const Operand &right) override
    {
        const bool text = left.kind == ColumnKind::Text;
        if (text && (right.isValue ? !isNumberValue(right) : right.kind == ColumnKind::Text)) {
            const bool ordering = m_tokens[at].text.startsWith(u'<') && m_tokens[at].text != "<>";
            const bool fold =
                ordering || m_tokens[at].text.startsWith(u'>') || (right.isValue && hasCaseBeyondAscii(textOf(right)));
            wrap(left, "rtrim(", ")");
            wrap(right, "rtrim(", fold ? ") collate tradewick " : ") collate nocase ");
        } else if (text && (right.kind == ColumnKind::Number || isNumberValue(right))) {
            wrap(left, "cast(", " as real)");
        } else if (left.kind == ColumnKind::Number && right.kind == ColumnKind::Text) {
            wrap(right, "cast(", " as real)");
        }
    }

    // text in (select text ...): equal by the same rules as =
    void membership(int at) override
    {
        int before = previousToken(m_tokens, at);
        if (before > 0 && m_tokens[before].is("not"))
            before = previousToken(m_tokens, before);
        const int open = nextToken(m_tokens, at);
        if (before < 0 || open >= m_tokens.size() || !m_tokens[open].isSymbol(u'('))
            return;
        const Operand left = operandEndingAt(before);
        if (left.kind != ColumnKind::Text)
            return;
        wrap(left, "rtrim(", ") collate nocase ");
        int item = nextToken(m_tokens, nextToken(m_tokens, open));
        if (item < m_tokens.size() && m_tokens[item].is("distinct"))
            item = nextToken(m_tokens, item);
        if (isColumnAt(item))
            wrap(operandStartingAt(item), "rtrim(", ")");
    }

    // An item of distinct, order by or group by: compared by the connection's collation where it is a text.
    void collateItem(int at, bool inSelect) override
    {
        if (!isColumnAt(at))
            return;
        const int next = nextToken(m_tokens, at), previous = previousToken(m_tokens, at);
        if (next < m_tokens.size() && (m_tokens[next].isSymbol(u'.') || m_tokens[next].isSymbol(u'(')))
            return;
        if (m_tokens[at].is("asc") || m_tokens[at].is("desc") || m_tokens[at].is("as") || m_tokens[previous].is("as"))
            return;
        if (columnKind(at) != ColumnKind::Text)
            return;
        m_after[at] += " collate tradewick ";
        if (inSelect && !(next < m_tokens.size() && m_tokens[next].is("as")))
            m_after[at] += " as \"" + m_tokens[at].text + u'"';
    }

private:
    int lastComma(int open, int close) const
    {
        for (int i = close - 1; i > open; --i) {
            if (m_tokens[i].isSymbol(u')'))
                i = openingParenthesis(m_tokens, i);
            else if (m_tokens[i].isSymbol(u','))
                return i;
        }
        return open;
    }
};

} // namespace

std::unique_ptr<StatementBinder> sqliteBinder(const QString &statement, const Values &values,
                                              const KindsOfTable &kindsOfTable)
{
    return std::make_unique<SqliteBinder>(statement, values, kindsOfTable);
}

} // namespace tradewick
