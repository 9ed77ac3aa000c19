#include "data/statement.h"

#include "data/statement_binder.h"

namespace tradewick
{

BoundStatement bindStatement(const QString &statement, const Values &values, Engine engine,
                             const KindsOfTable &kindsOfTable)
{
    switch (engine) {
    case Engine::Sqlite:
        return sqliteBinder(statement, values, kindsOfTable)->bind();
    case Engine::MariaDb:
        return mariaDbBinder(statement, values, kindsOfTable)->bind();
    default:
        return StatementBinder(statement, values, kindsOfTable).bind();
    }
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
