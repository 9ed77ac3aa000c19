// SQL cut into tokens, enough to rewrite a statement without losing a character of it.
#pragma once

#include <QString>
#include <QVector>

namespace tradewick
{

struct SqlToken {
    enum Kind {
        Space,
        Word, // identifier, keyword
        Number,
        Text,        // 'quoted'; text() is what stands between the quotes
        Bracketed,   // [identifier]
        Placeholder, // {name}, outside of quotes
        Symbol,      // operator or punctuation
    };
    Kind kind;
    QString text;

    bool is(const char *word) const;
    bool isSymbol(QChar c) const { return kind == Symbol && text.size() == 1 && text[0] == c; }
};

using SqlTokens = QVector<SqlToken>;

SqlTokens sqlTokens(const QString &sql);

// Index of the next or previous token that is no space, from `at` on and without `at`; size() or -1 at the ends.
int nextToken(const SqlTokens &tokens, int at);
int previousToken(const SqlTokens &tokens, int at);

// The parenthesis that closes the one at `open`, or opens the one at `close`; `at` itself when it has no partner.
int closingParenthesis(const SqlTokens &tokens, int open);
int openingParenthesis(const SqlTokens &tokens, int close);

} // namespace tradewick
