#include "data/sql_tokens.h"

namespace tradewick
{

namespace
{

bool startsWord(QChar c)
{
    return c.isLetter() || c == u'_' || c == u'#' || c == u'@';
}

qsizetype endOfNumber(const QString &sql, qsizetype at)
{
    while (at < sql.size() && (sql[at].isDigit() || sql[at] == u'.'))
        ++at;
    return at;
}

} // namespace

bool SqlToken::is(const char *word) const
{
    return kind == Word && text.compare(QLatin1String(word), Qt::CaseInsensitive) == 0;
}

SqlTokens sqlTokens(const QString &sql)
{
    SqlTokens tokens;
    qsizetype at = 0;
    const auto until = [&](qsizetype end, SqlToken::Kind kind, qsizetype skip = 0) {
        tokens.append({kind, sql.mid(at + skip, end - at - 2 * skip)});
        at = end;
    };
    while (at < sql.size()) {
        const QChar c = sql[at];
        qsizetype end = at + 1;
        if (c.isSpace()) {
            while (end < sql.size() && sql[end].isSpace())
                ++end;
            until(end, SqlToken::Space);
        } else if (c == u'\'') {
            while (end < sql.size() && (sql[end] != u'\'' || sql.mid(end, 2) == QLatin1String("''")))
                end += sql[end] == u'\'' ? 2 : 1;
            until(qMin(end + 1, sql.size()), SqlToken::Text, 1);
        } else if (c == u'{' || c == u'[') {
            const qsizetype close = sql.indexOf(c == u'{' ? u'}' : u']', at);
            until(close < 0 ? sql.size() : close + 1, c == u'{' ? SqlToken::Placeholder : SqlToken::Bracketed, 1);
        } else if (startsWord(c)) {
            while (end < sql.size() && (startsWord(sql[end]) || sql[end].isDigit()))
                ++end;
            until(end, SqlToken::Word);
        } else if (c.isDigit()) {
            until(endOfNumber(sql, at), SqlToken::Number);
        } else {
            const QString two = sql.mid(at, 2);
            const bool pair = two == "<>" || two == "<=" || two == ">=" || two == "!=" || two == "||";
            until(at + (pair ? 2 : 1), SqlToken::Symbol);
        }
    }
    return tokens;
}

int nextToken(const SqlTokens &tokens, int at)
{
    do
        ++at;
    while (at < tokens.size() && tokens[at].kind == SqlToken::Space);
    return at;
}

int previousToken(const SqlTokens &tokens, int at)
{
    do
        --at;
    while (at >= 0 && tokens[at].kind == SqlToken::Space);
    return at;
}

namespace
{

int partner(const SqlTokens &tokens, int at, int step)
{
    int depth = 0;
    for (int i = at; i >= 0 && i < tokens.size(); i += step) {
        if (tokens[i].isSymbol(u'('))
            ++depth;
        else if (tokens[i].isSymbol(u')'))
            --depth;
        if (depth == 0)
            return i;
    }
    return at;
}

} // namespace

int closingParenthesis(const SqlTokens &tokens, int open)
{
    return partner(tokens, open, 1);
}
int openingParenthesis(const SqlTokens &tokens, int close)
{
    return partner(tokens, close, -1);
}

} // namespace tradewick
