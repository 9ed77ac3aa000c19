// What a statement becomes on every engine: values bound, kinds of what meets in it known. What an engine understands
// otherwise is left to its own binder.
#pragma once

#include "data/sql_tokens.h"
#include "data/statement.h"

#include <QSet>

#include <memory>

namespace tradewick
{

class StatementBinder
{
public:
    StatementBinder(const QString &statement, const Values &values, const KindsOfTable &kindsOfTable);
    virtual ~StatementBinder() = default;
    StatementBinder(const StatementBinder &) = delete;
    StatementBinder &operator=(const StatementBinder &) = delete;

    // Once. Throws DataError for a placeholder without a value.
    BoundStatement bind();

protected:
    struct Operand {
        int first, last; // tokens
        ColumnKind kind = ColumnKind::Unknown;
        bool isValue = false; // text in quotes or a placeholder
        bool isColumn = false;
    };

    // Words that mean nothing to the engine, before anything is looked at; functions and names that it has others for,
    // when the tables are known.
    virtual void dropWords() {}
    virtual void rewriteWords() {}
    // At a comparison, like or in; an item of distinct, order by or group by; when all is said. A text that is compared
    // with a number counts as the digits it begins with on every engine: one row without any refuses no statement.
    virtual void compare(int at, const Operand &left, const Operand &right);
    virtual void like(int at, const Operand &left, const Operand &right);
    virtual void membership(int /*at*/) {}
    virtual void collateItem(int /*at*/, bool /*inSelect*/) {}
    virtual void finish() {}
    virtual QString bracketed(const QString &name) const { return u'[' + name + u']'; }

    // "with (nolock)" and "dbo.", which mean nothing on other engines than the server.
    void dropServerWords();
    bool isColumnAt(int at) const;
    int find(const char *word, int from) const; // -1 where it does not stand
    ColumnKind columnKind(int at) const;
    Operand operandEndingAt(int last) const;
    Operand operandStartingAt(int first) const;
    void wrap(const Operand &operand, const QString &before, const QString &after);
    QVariant valueOf(const SqlToken &token, bool like) const;
    QString textOf(const Operand &operand) const;
    bool isNumberValue(const Operand &operand) const;

    // The wildcards of all engines are escaped alike; '[' is one on SQL Server alone, where the others take the escape
    // of an ordinary character for that character.
    static constexpr QChar likeEscape = u'!';

    SqlTokens m_tokens;
    QVector<QString> m_before, m_after; // what stands around a token
    QSet<int> m_numberFunctions;        // tokens
    BoundStatement m_bound;

private:
    void findTables();
    ColumnKind kindOf(const QString &column, const QString &qualifier = {}) const;
    void findTargetsOfInsert();
    void walkClauses();
    void comparison(int at);
    ColumnKind functionKind(int name, int open) const;
    QVariant value(const QString &name) const;
    void emitToken(int i);

    const Values &m_values;
    const KindsOfTable &m_kindsOfTable;
    QVector<std::pair<QString, ColumnKinds>> m_tables;
    QVector<ColumnKind> m_target; // kind of the column that a value meets
    QVector<bool> m_isLike;
};

// The binder of an engine: the server's own SQL is the base's.
std::unique_ptr<StatementBinder> sqliteBinder(const QString &statement, const Values &values,
                                              const KindsOfTable &kindsOfTable);
std::unique_ptr<StatementBinder> mariaDbBinder(const QString &statement, const Values &values,
                                               const KindsOfTable &kindsOfTable);

} // namespace tradewick
