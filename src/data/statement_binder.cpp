#include "data/statement_binder.h"

#include "data/data_error.h"
#include "data/date_text.h"

namespace tradewick
{

namespace
{

QString escapedForLike(const QString &value, QChar likeEscape)
{
    QString escaped;
    for (const QChar c : value) {
        if (c == u'%' || c == u'_' || c == u'[' || c == likeEscape)
            escaped += likeEscape;
        escaped += c;
    }
    return escaped;
}

const QSet<QString> &wordsAfterTables()
{
    static const QSet<QString> words{"where", "order", "group",  "on",     "left", "right", "inner",
                                     "join",  "with",  "values", "select", "set",  "union", "full"};
    return words;
}

bool isComparison(const SqlToken &token)
{
    const QSet<QString> symbols{"=", "<>", "!=", "<", ">", "<=", ">="};
    return token.kind == SqlToken::Symbol && symbols.contains(token.text);
}

QVariant inKind(const QVariant &value, ColumnKind kind)
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

} // namespace

StatementBinder::StatementBinder(const QString &statement, const Values &values, const KindsOfTable &kindsOfTable)
    : m_tokens(sqlTokens(statement)), m_values(values), m_kindsOfTable(kindsOfTable)
{
}

BoundStatement StatementBinder::bind()
{
    dropWords();
    findTables();
    m_before.resize(m_tokens.size());
    m_after.resize(m_tokens.size());
    m_target.fill(ColumnKind::Unknown, m_tokens.size());
    m_isLike.fill(false, m_tokens.size());
    rewriteWords();
    findTargetsOfInsert();
    walkClauses();
    finish();
    for (int i = 0; i < m_tokens.size(); ++i) {
        m_bound.text += m_before[i];
        emitToken(i);
        m_bound.text += m_after[i];
    }
    return m_bound;
}

void StatementBinder::dropServerWords()
{
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

void StatementBinder::findTables()
{
    for (int i = 0; i < m_tokens.size(); ++i) {
        const SqlToken &token = m_tokens[i];
        if (!token.is("from") && !token.is("join") && !token.is("into") && !token.is("update"))
            continue;
        const int at = nextToken(m_tokens, i);
        if (at >= m_tokens.size() || m_tokens[at].kind != SqlToken::Word)
            continue;
        const QString name = m_tokens[at].text.toLower();
        const ColumnKinds kinds = m_kindsOfTable(name);
        m_tables.append({name, kinds});
        const int alias = nextToken(m_tokens, at);
        if (alias < m_tokens.size() && m_tokens[alias].kind == SqlToken::Word &&
            !wordsAfterTables().contains(m_tokens[alias].text.toLower()))
            m_tables.append({m_tokens[alias].text.toLower(), kinds});
    }
}

ColumnKind StatementBinder::kindOf(const QString &column, const QString &qualifier) const
{
    for (const auto &[name, kinds] : m_tables)
        if (qualifier.isEmpty() || qualifier == name)
            if (const auto found = kinds.constFind(column); found != kinds.constEnd())
                return *found;
    return ColumnKind::Unknown;
}

bool StatementBinder::isColumnAt(int at) const
{
    return at >= 0 && at < m_tokens.size() &&
           (m_tokens[at].kind == SqlToken::Word || m_tokens[at].kind == SqlToken::Bracketed);
}

// insert into t(a,b) values('{a}','{b}'): each value goes into its column in that column's own form.
void StatementBinder::findTargetsOfInsert()
{
    const int into = find("into", 0), values = find("values", 0);
    if (into < 0 || values < 0)
        return;
    QVector<ColumnKind> kinds;
    for (int i = nextToken(m_tokens, nextToken(m_tokens, into)); i < values; i = nextToken(m_tokens, i))
        if (isColumnAt(i))
            kinds.append(kindOf(m_tokens[i].text.toLower()));
    int column = 0;
    for (int i = nextToken(m_tokens, nextToken(m_tokens, values)); i < m_tokens.size(); i = nextToken(m_tokens, i)) {
        if (m_tokens[i].isSymbol(u','))
            ++column;
        else if (column < kinds.size())
            m_target[i] = kinds[column];
    }
}

int StatementBinder::find(const char *word, int from) const
{
    for (int i = from; i < m_tokens.size(); ++i)
        if (m_tokens[i].is(word))
            return i;
    return -1;
}

void StatementBinder::walkClauses()
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

ColumnKind StatementBinder::columnKind(int at) const
{
    const int dot = at > 0 ? previousToken(m_tokens, at) : -1;
    if (dot > 0 && m_tokens[dot].isSymbol(u'.'))
        return kindOf(m_tokens[at].text.toLower(), m_tokens[previousToken(m_tokens, dot)].text.toLower());
    return kindOf(m_tokens[at].text.toLower());
}

ColumnKind StatementBinder::functionKind(int name, int open) const
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

StatementBinder::Operand StatementBinder::operandEndingAt(int last) const
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

StatementBinder::Operand StatementBinder::operandStartingAt(int first) const
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

void StatementBinder::wrap(const Operand &operand, const QString &before, const QString &after)
{
    m_before[operand.first] = before + m_before[operand.first];
    m_after[operand.last] += after;
}

void StatementBinder::comparison(int at)
{
    const bool isLike = m_tokens[at].is("like");
    int before = previousToken(m_tokens, at);
    if (isLike && before > 0 && m_tokens[before].is("not"))
        before = previousToken(m_tokens, before);
    const int after = nextToken(m_tokens, at);
    if (before < 0 || after >= m_tokens.size())
        return;
    const Operand left = operandEndingAt(before), right = operandStartingAt(after);
    if (isLike) {
        m_isLike[right.first] = true;
        like(at, left, right);
        return;
    }
    if (right.isValue)
        m_target[right.first] = left.kind;
    compare(at, left, right);
}

void StatementBinder::compare(int, const Operand &left, const Operand &right)
{
    if (left.kind != ColumnKind::Text || !isNumberValue(right))
        return;
    QString text;
    for (int i = left.first; i <= left.last; ++i) {
        const SqlToken::Kind kind = m_tokens[i].kind;
        if (kind == SqlToken::Text || kind == SqlToken::Placeholder || kind == SqlToken::Bracketed)
            return;
        text += m_tokens[i].text;
    }
    wrap(left, "cast('0'+left(", ",patindex('%[^0-9]%'," + text + "+'x')-1) as float)");
}

void StatementBinder::like(int, const Operand &, const Operand &right)
{
    m_after[right.last] += QStringLiteral(" escape '") + likeEscape + u'\'';
}

QVariant StatementBinder::value(const QString &name) const
{
    const auto found = m_values.constFind(name);
    if (found == m_values.constEnd())
        throw DataError(0, "no value for {" + name + "}");
    return *found;
}

// What a quoted text or a placeholder stands for. A text that is nothing but one placeholder keeps its type.
QVariant StatementBinder::valueOf(const SqlToken &token, bool like) const
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
            whole += like ? escapedForLike(part, likeEscape) : part;
            at = close + 1;
        } else {
            whole += text[at];
            at += text.mid(at, 2) == QLatin1String("''") ? 2 : 1;
        }
    }
    return whole;
}

QString StatementBinder::textOf(const Operand &operand) const
{
    return operand.isValue ? valueOf(m_tokens[operand.first], false).toString() : QString();
}

bool StatementBinder::isNumberValue(const Operand &operand) const
{
    if (!operand.isValue)
        return false;
    const int type = valueOf(m_tokens[operand.first], false).typeId();
    return type == QMetaType::Int || type == QMetaType::LongLong || type == QMetaType::Double;
}

void StatementBinder::emitToken(int i)
{
    const SqlToken &token = m_tokens[i];
    const bool quoted = token.kind == SqlToken::Text;
    if (token.kind == SqlToken::Placeholder || (quoted && token.text.contains(u'{'))) {
        m_bound.text += " ? ";
        m_bound.parameters.append(inKind(valueOf(token, m_isLike[i]), m_target[i]));
    } else if (quoted) {
        m_bound.text += u'\'' + token.text + u'\'';
    } else if (token.kind == SqlToken::Bracketed) {
        m_bound.text += bracketed(token.text);
    } else {
        m_bound.text += token.text;
    }
}

} // namespace tradewick
