#include "data/statement.h"

#include "data/data_error.h"
#include "data/date_text.h"
#include "data/sql_tokens.h"

namespace tradewick
{

namespace
{

// The wildcards of all engines are escaped alike; '[' is one on SQL Server alone, where the others take the escape of
// an ordinary character for that character.
const QChar likeEscape = u'!';

QString escapedForLike(const QString &value)
{
    QString escaped;
    for (const QChar c : value) {
        if (c == u'%' || c == u'_' || c == u'[' || c == likeEscape)
            escaped += likeEscape;
        escaped += c;
    }
    return escaped;
}

// The built-in comparison of SQLite folds ASCII letters alone; other letters with case need the collation that the
// connection brings, which no index serves.
bool hasCaseBeyondAscii(const QString &text)
{
    for (const QChar c : text)
        if (c.unicode() > 127 && c.toLower() != c.toUpper())
            return true;
    return false;
}

const QSet<QString> &wordsAfterTables()
{
    static const QSet<QString> words{"where", "order", "group",  "on",     "left", "right", "inner",
                                     "join",  "with",  "values", "select", "set",  "union", "full"};
    return words;
}

class Binder
{
public:
    Binder(const QString &statement, const Values &values, Engine engine, const KindsOfTable &kindsOfTable)
        : m_values(values), m_engine(engine), m_tokens(sqlTokens(statement))
    {
        dropServerWords();
        findTables(kindsOfTable);
        m_before.resize(m_tokens.size());
        m_after.resize(m_tokens.size());
        m_target.fill(ColumnKind::Unknown, m_tokens.size());
        m_isLike.fill(false, m_tokens.size());
        if (m_engine == Engine::Sqlite)
            rewriteFunctions();
        else if (m_engine == Engine::MariaDb)
            rewriteForMariaDb();
        findTargetsOfInsert();
        walkClauses();
        if (m_engine == Engine::MariaDb)
            orderByClient();
    }

    BoundStatement result()
    {
        for (int i = 0; i < m_tokens.size(); ++i) {
            m_bound.text += m_before[i];
            emitToken(i);
            m_bound.text += m_after[i];
        }
        return m_bound;
    }

private:
    struct Operand {
        int first, last;
        ColumnKind kind = ColumnKind::Unknown;
        bool isValue = false; // text in quotes or a placeholder
        bool isColumn = false;
    };

    // "with (nolock)" and "dbo." mean nothing on the other engines.
    void dropServerWords()
    {
        if (m_engine == Engine::SqlServer)
            return;
        SqlTokens kept;
        for (int i = 0; i < m_tokens.size(); ++i) {
            const int next = nextToken(m_tokens, i);
            if (m_tokens[i].is("with") && next < m_tokens.size() && m_tokens[next].isSymbol(u'(')) {
                i = closingParenthesis(m_tokens, next);
                kept.append({SqlToken::Space, " "});
            } else if (m_tokens[i].is("dbo") && next < m_tokens.size() && m_tokens[next].isSymbol(u'.')) {
                i = next;
            } else {
                kept.append(m_tokens[i]);
            }
        }
        m_tokens = kept;
    }

    void findTables(const KindsOfTable &kindsOfTable)
    {
        for (int i = 0; i < m_tokens.size(); ++i) {
            const SqlToken &token = m_tokens[i];
            if (!token.is("from") && !token.is("join") && !token.is("into") && !token.is("update"))
                continue;
            const int at = nextToken(m_tokens, i);
            if (at >= m_tokens.size() || m_tokens[at].kind != SqlToken::Word)
                continue;
            const QString name = m_tokens[at].text.toLower();
            const ColumnKinds kinds = kindsOfTable(name);
            m_tables.append({name, kinds});
            const int alias = nextToken(m_tokens, at);
            if (alias < m_tokens.size() && m_tokens[alias].kind == SqlToken::Word &&
                !wordsAfterTables().contains(m_tokens[alias].text.toLower()))
                m_tables.append({m_tokens[alias].text.toLower(), kinds});
        }
    }

    ColumnKind kindOf(const QString &column, const QString &qualifier = {}) const
    {
        for (const auto &[name, kinds] : m_tables)
            if (qualifier.isEmpty() || qualifier == name)
                if (const auto found = kinds.constFind(column); found != kinds.constEnd())
                    return *found;
        return ColumnKind::Unknown;
    }

    bool isColumnAt(int at) const
    {
        return at >= 0 && at < m_tokens.size() &&
               (m_tokens[at].kind == SqlToken::Word || m_tokens[at].kind == SqlToken::Bracketed);
    }

    void rewriteFunctions()
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

    // Names of tables are told apart by their case there; the schema has them in lower case.
    void rewriteForMariaDb()
    {
        for (int i = 0; i < m_tokens.size(); ++i) {
            if (m_tokens[i].kind != SqlToken::Word)
                continue;
            const int open = nextToken(m_tokens, i);
            const bool call = open < m_tokens.size() && m_tokens[open].isSymbol(u'(');
            m_tokens[i].text = call && m_tokens[i].is("isnull") ? "ifnull" : m_tokens[i].text.toLower();
        }
    }

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

    // No collation of that server has Chinese by pinyin: rows that texts order are ordered when they are here. What
    // they are ordered by comes along in hidden columns behind the others where it is not among them.
    void orderByClient()
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

    // insert into t(a,b) values('{a}','{b}'): each value goes into its column in that column's own form.
    void findTargetsOfInsert()
    {
        const int into = find("into", 0), values = find("values", 0);
        if (into < 0 || values < 0)
            return;
        QVector<ColumnKind> kinds;
        for (int i = nextToken(m_tokens, nextToken(m_tokens, into)); i < values; i = nextToken(m_tokens, i))
            if (isColumnAt(i))
                kinds.append(kindOf(m_tokens[i].text.toLower()));
        int column = 0;
        for (int i = nextToken(m_tokens, nextToken(m_tokens, values)); i < m_tokens.size();
             i = nextToken(m_tokens, i)) {
            if (m_tokens[i].isSymbol(u','))
                ++column;
            else if (column < kinds.size())
                m_target[i] = kinds[column];
        }
    }

    int find(const char *word, int from) const
    {
        for (int i = from; i < m_tokens.size(); ++i)
            if (m_tokens[i].is(word))
                return i;
        return -1;
    }

    void walkClauses()
    {
        enum { Other, Assignments, SelectDistinct, Order, Group } clause = Other;
        for (int i = 0; i < m_tokens.size(); ++i) {
            const SqlToken &token = m_tokens[i];
            if (token.kind == SqlToken::Word) {
                const QString word = token.text.toLower();
                if (word == "set")
                    clause = Assignments;
                else if (word == "distinct")
                    clause = SelectDistinct;
                else if (word == "by")
                    clause = m_tokens[previousToken(m_tokens, i)].is("order") ? Order : Group;
                else if (word == "select" || word == "from" || word == "where" || word == "order" || word == "values")
                    clause = Other;
                else if (word == "like")
                    comparison(i);
                else if (word == "in")
                    membership(i);
                else if (clause == Order || clause == Group || clause == SelectDistinct)
                    collateItem(i, clause == SelectDistinct);
            } else if (token.isSymbol(u'(') && (clause == SelectDistinct || clause == Order || clause == Group)) {
                i = closingParenthesis(m_tokens, i);
            } else if (isComparison(token)) {
                if (clause == Assignments)
                    m_target[nextToken(m_tokens, i)] = columnKind(previousToken(m_tokens, i));
                else
                    comparison(i);
            }
        }
    }

    static bool isComparison(const SqlToken &token)
    {
        static const QSet<QString> symbols{"=", "<>", "!=", "<", ">", "<=", ">="};
        return token.kind == SqlToken::Symbol && symbols.contains(token.text);
    }

    ColumnKind columnKind(int at) const
    {
        const int dot = at > 0 ? previousToken(m_tokens, at) : -1;
        if (dot > 0 && m_tokens[dot].isSymbol(u'.'))
            return kindOf(m_tokens[at].text.toLower(), m_tokens[previousToken(m_tokens, dot)].text.toLower());
        return kindOf(m_tokens[at].text.toLower());
    }

    ColumnKind functionKind(int name, int open) const
    {
        if (m_numberFunctions.contains(name))
            return ColumnKind::Number;
        const QString function = m_tokens[name].text.toLower();
        if (function == "sum" || function == "count" || function == "year" || function == "month")
            return ColumnKind::Number;
        if (function == "substr" || function == "left" || function == "right")
            return ColumnKind::Text;
        int argument = nextToken(m_tokens, open);
        const int dot = nextToken(m_tokens, argument);
        if (dot < m_tokens.size() && m_tokens[dot].isSymbol(u'.'))
            argument = nextToken(m_tokens, dot);
        return argument < m_tokens.size() ? columnKind(argument) : ColumnKind::Unknown;
    }

    Operand operandEndingAt(int last) const
    {
        Operand operand{last, last, {}, {}, {}};
        const SqlToken &token = m_tokens[last];
        if (token.kind == SqlToken::Text || token.kind == SqlToken::Placeholder) {
            operand.isValue = true;
        } else if (token.kind == SqlToken::Number) {
            operand.kind = ColumnKind::Number;
        } else if (token.kind == SqlToken::Symbol) { // the closing parenthesis of a function, or nothing in its place
            const int open = openingParenthesis(m_tokens, last);
            operand.first = open;
            if (const int name = previousToken(m_tokens, open); name >= 0 && m_tokens[name].kind == SqlToken::Word) {
                operand.first = name;
                operand.kind = functionKind(name, open);
            }
        } else {
            operand.isColumn = true;
            operand.kind = columnKind(last);
            if (const int dot = previousToken(m_tokens, last); dot > 0 && m_tokens[dot].isSymbol(u'.'))
                operand.first = previousToken(m_tokens, dot);
        }
        return operand;
    }

    Operand operandStartingAt(int first) const
    {
        const int next = nextToken(m_tokens, first);
        if (next < m_tokens.size() && m_tokens[first].kind == SqlToken::Word) {
            if (m_tokens[next].isSymbol(u'(')) {
                Operand operand = operandEndingAt(closingParenthesis(m_tokens, next));
                operand.first = first;
                return operand;
            }
            if (m_tokens[next].isSymbol(u'.'))
                return operandEndingAt(nextToken(m_tokens, next));
        }
        return operandEndingAt(first);
    }

    void wrap(const Operand &operand, const QString &before, const QString &after)
    {
        m_before[operand.first] = before + m_before[operand.first];
        m_after[operand.last] += after;
    }

    void comparison(int at)
    {
        const bool like = m_tokens[at].is("like");
        int before = previousToken(m_tokens, at);
        if (like && before > 0 && m_tokens[before].is("not"))
            before = previousToken(m_tokens, before);
        const int after = nextToken(m_tokens, at);
        if (before < 0 || after >= m_tokens.size())
            return;
        const Operand left = operandEndingAt(before), right = operandStartingAt(after);
        if (like) {
            m_isLike[right.first] = true;
            const bool fold = m_engine == Engine::Sqlite && hasCaseBeyondAscii(textOf(right));
            if (fold) { // a function of the connection: tradewick_like(value, pattern)
                wrap(left, "tradewick_like(", "");
                m_tokens[at] = {SqlToken::Symbol, ","};
                m_after[right.last] += ")";
            } else if (m_engine != Engine::Sqlite || !right.isValue ||
                       valueOf(m_tokens[right.first], true).toString().contains(likeEscape)) {
                // Where nothing is escaped SQLite goes without, which every row that it looks at is quicker for.
                m_after[right.last] += QStringLiteral(" escape '") + likeEscape + u'\'';
            }
            return;
        }
        if (right.isValue)
            m_target[right.first] = left.kind;
        if (m_engine != Engine::Sqlite)
            return;
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
    void membership(int at)
    {
        int before = previousToken(m_tokens, at);
        if (before > 0 && m_tokens[before].is("not"))
            before = previousToken(m_tokens, before);
        const int open = nextToken(m_tokens, at);
        if (m_engine != Engine::Sqlite || before < 0 || open >= m_tokens.size() || !m_tokens[open].isSymbol(u'('))
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
    void collateItem(int at, bool inSelect)
    {
        if (m_engine != Engine::Sqlite || !isColumnAt(at))
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

    QVariant value(const QString &name) const
    {
        const auto found = m_values.constFind(name);
        if (found == m_values.constEnd())
            throw DataError(0, "no value for {" + name + "}");
        return *found;
    }

    // What a quoted text or a placeholder stands for. A text that is nothing but one placeholder keeps its type.
    QVariant valueOf(const SqlToken &token, bool like) const
    {
        if (token.kind == SqlToken::Placeholder)
            return value(token.text);
        const QString &text = token.text;
        if (!like && text.startsWith(u'{') && text.indexOf(u'}') == text.size() - 1)
            return value(text.mid(1, text.size() - 2));
        QString whole;
        for (qsizetype at = 0; at < text.size();) {
            const qsizetype close = text[at] == u'{' ? text.indexOf(u'}', at) : -1;
            if (close > 0) {
                const QString part = value(text.mid(at + 1, close - at - 1)).toString();
                whole += like ? escapedForLike(part) : part;
                at = close + 1;
            } else {
                whole += text[at];
                at += text.mid(at, 2) == QLatin1String("''") ? 2 : 1;
            }
        }
        return whole;
    }

    QString textOf(const Operand &operand) const
    {
        return operand.isValue ? valueOf(m_tokens[operand.first], false).toString() : QString();
    }

    bool isNumberValue(const Operand &operand) const
    {
        if (!operand.isValue)
            return false;
        const int type = valueOf(m_tokens[operand.first], false).typeId();
        return type == QMetaType::Int || type == QMetaType::LongLong || type == QMetaType::Double;
    }

    static QVariant inKind(const QVariant &value, ColumnKind kind)
    {
        if (value.isNull() || value.typeId() != QMetaType::QString)
            return value.typeId() == QMetaType::QDate ? QVariant(dateText(value.toDate())) : value;
        const QString text = value.toString();
        if (kind == ColumnKind::Date) {
            const QDate date = dateFromText(text);
            return date.isValid() ? QVariant(dateText(date)) : text.trimmed().isEmpty() ? QVariant() : value;
        }
        bool isNumber = false;
        const double number = text.trimmed().isEmpty() ? (isNumber = true, 0.0) : text.trimmed().toDouble(&isNumber);
        if (kind == ColumnKind::Number && isNumber)
            return number;
        if (kind == ColumnKind::Flag)
            return text.trimmed().compare("true", Qt::CaseInsensitive) == 0 || (isNumber && number != 0);
        return value;
    }

    void emitToken(int i)
    {
        const SqlToken &token = m_tokens[i];
        const bool quoted = token.kind == SqlToken::Text;
        if (token.kind == SqlToken::Placeholder || (quoted && token.text.contains(u'{'))) {
            m_bound.text += " ? ";
            m_bound.parameters.append(inKind(valueOf(token, m_isLike[i]), m_target[i]));
        } else if (quoted) {
            m_bound.text += u'\'' + token.text + u'\'';
        } else if (token.kind == SqlToken::Bracketed) {
            m_bound.text += m_engine == Engine::MariaDb ? u'`' + token.text + u'`' : u'[' + token.text + u']';
        } else {
            m_bound.text += token.text;
        }
    }

    const Values &m_values;
    Engine m_engine;
    SqlTokens m_tokens;
    QVector<std::pair<QString, ColumnKinds>> m_tables;
    QVector<QString> m_before, m_after;
    QVector<ColumnKind> m_target; // kind of the column that a value meets
    QVector<bool> m_isLike;
    QSet<int> m_numberFunctions;
    BoundStatement m_bound;
};

} // namespace

BoundStatement bindStatement(const QString &statement, const Values &values, Engine engine,
                             const KindsOfTable &kindsOfTable)
{
    return Binder(statement, values, engine, kindsOfTable).result();
}

QString plainTableOf(const QString &statement)
{
    const SqlTokens tokens = sqlTokens(statement);
    int at = nextToken(tokens, -1);
    if (at >= tokens.size() || !tokens[at].is("select"))
        return {};
    at = nextToken(tokens, at);
    if (at >= tokens.size() || !tokens[at].isSymbol(u'*'))
        return {};
    at = nextToken(tokens, at);
    if (at >= tokens.size() || !tokens[at].is("from"))
        return {};
    int name = nextToken(tokens, at);
    if (name + 2 < tokens.size() && tokens[name].is("dbo"))
        name = nextToken(tokens, nextToken(tokens, name));
    if (name >= tokens.size() || tokens[name].kind != SqlToken::Word)
        return {};
    for (at = nextToken(tokens, name); at < tokens.size(); at = nextToken(tokens, at)) {
        if (tokens[at].is("where") || tokens[at].is("order"))
            break;
        if (tokens[at].is("with"))
            at = closingParenthesis(tokens, nextToken(tokens, at));
        else
            return {};
    }
    for (const SqlToken &token : tokens)
        if (token.is("group") || token.is("join") || token.is("union"))
            return {};
    return tokens[name].text.toLower();
}

} // namespace tradewick
