// Every statement of the system, run on SQLite and on MariaDB over the same rows: what it gives, and what it leaves.
#include "database/description.h"
#include "server_database.h"
#include "support/test_database.h"
#include "support/test_server.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <algorithm>

namespace tradewick
{

using test::binFolder;
using test::connectionStringOf;
using test::ServerDatabase;

namespace
{

using Rows = QVector<QVariantList>;

// Keys join heads and lines, and each is another one to every comparison.
const QStringList keys{"Same 同1", "5%_[x]!'\\😀", "Ömer Ж", "广州", "上海", "阿坝", ""};
const QVariantList texts{"same 同1  ", QVariant(), "Ömer ж", "阿坝 ", "_x", "b  A", "5%_[x]!'\\😀", "", "广州"};
const QVariantList numbers{12.5, QVariant(), 0, -3.25, 1000000, 0.1, 7};
const QVariantList dates{"2026-08-15", "2026-08-01", QVariant(), "2026-08-31", "2025-12-31", "2026-09-01"};

// What clerks type for a text, in another case than it is stored and with a blank behind it where = is meant.
const QStringList typed{"SAME 同1", "5%_[X]!'\\😀", "ömer ж", "广州", ""};

const QHash<QString, QVariant> fixedValues{
    {"year", "2026"},     {"yyyy", 2026},       {"month", "8"},       {"m", 8}, {"Left(h,3)", "abc"},
    {"Left(s,3)", "abc"}, {"Left(e,3)", "ABC"}, {"seq(h)", "000050"}, {"n", 50}};

QStringList allStatements()
{
    QFile file(STATEMENTS_FILE);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QStringList statements;
    for (const auto &statement : QJsonDocument::fromJson(file.readAll()).array())
        statements.append(statement.toString());
    return statements;
}

ColumnKind kindOfColumn(const QString &name)
{
    for (const TableDescription &table : tableDescriptions())
        for (const ColumnDescription &column : table.columns)
            if (column.name == name.section(u'.', -1).toLower())
                return column.kind;
    return ColumnKind::Unknown;
}

QVariant valueFor(ColumnKind kind, const QString &comparison, const QString &text)
{
    if (kind == ColumnKind::Date)
        return comparison == ">=" ? "2026-08-01" : comparison == "<=" ? "2026/8/31" : "8-15-2026";
    if (kind == ColumnKind::Number)
        return " 12.50";
    if (kind == ColumnKind::Flag)
        return "True";
    // Only numbers of forms are asked for by range; other scripts than Latin have another order on MariaDB.
    if (comparison == ">=" || comparison == "<=")
        return text == typed[1] || text.isEmpty() ? text : typed[0];
    return comparison == "=" ? text + ' ' : text;
}

// A value for every placeholder, of the kind of the column that it meets.
Values valuesFor(const QString &statement, const QString &text)
{
    Values values;
    static const QRegularExpression comparison(R"(([\w.]+)\)?\s*(=|<>|>=|<=|like)\s*'?%?\{([^}]*)\})",
                                               QRegularExpression::CaseInsensitiveOption);
    for (auto matches = comparison.globalMatch(statement); matches.hasNext();) {
        const auto match = matches.next();
        QVariant &value = values[match.captured(3)];
        if (value.toString() != text) // which like takes, and so does =
            value = valueFor(kindOfColumn(match.captured(1)), match.captured(2), text);
    }
    static const QRegularExpression insertion(R"(\((.*)\)\s*values\s*\((.*)\))",
                                              QRegularExpression::DotMatchesEverythingOption);
    if (const auto match = insertion.match(statement); match.hasMatch()) {
        const QStringList columns = match.captured(1).split(u','), given = match.captured(2).split(u',');
        for (int i = 0; i < given.size(); ++i)
            values.insert(given[i].section(u'{', 1).section(u'}', 0, 0),
                          valueFor(kindOfColumn(columns.value(i).trimmed()), "", text));
    }
    for (auto fixed = fixedValues.begin(); fixed != fixedValues.end(); ++fixed)
        if (statement.contains(u'{' + fixed.key() + u'}'))
            values.insert(fixed.key(), fixed.value());
    return values;
}

QVariant valueOf(const TableDescription &table, int column, int row)
{
    const ColumnDescription &description = table.columns[column];
    const bool isPlain = row == 0 || row == keys.size();
    const auto pick = [&](const QVariantList &pool) { return pool[isPlain ? 0 : (row + column) % pool.size()]; };
    switch (description.kind) {
    case ColumnKind::Number:
        return pick(numbers);
    case ColumnKind::Date:
        return pick(dates);
    case ColumnKind::Flag:
        return row % 3 == 2 ? QVariant() : QVariant(row % 2 == 0);
    default:
        break;
    }
    if (description.name.startsWith("hxdh_") && !isPlain)
        return QStringLiteral("H%1").arg(row);
    const bool isKey = description.name == table.unique || table.indexed.contains(description.name) ||
                       description.name.endsWith("bh") || description.name.endsWith("dh");
    if (!isKey)
        return isPlain ? QVariant(keys[0]) : pick(texts);
    if (table.name.endsWith("_tm"))
        return QStringLiteral("copy %1").arg(row);
    // The last row of heads has no lines; that of lines writes the first key otherwise.
    return row < keys.size() ? keys[row] : table.unique.isEmpty() ? "SAME 同1 " : "Alone in " + table.name;
}

void fill(Connection &connection)
{
    for (const TableDescription &table : tableDescriptions())
        for (int row = 0; row <= keys.size(); ++row) {
            QStringList names, marks;
            Values values;
            for (int i = 0; i < table.columns.size(); ++i) {
                names.append(table.columns[i].name);
                marks.append("'{" + names.last() + "}'");
                values.insert(names.last(), valueOf(table, i, row));
            }
            connection.Execute(
                "insert into " + table.name + "(" + names.join(u',') + ") values(" + marks.join(u',') + ")", values);
        }
    // A contract without a letter of credit, and the lot of forms that the numbers below are of.
    connection.Execute("insert into yy_gw_wxht_h(htbh,gsmc,khmc) values('Open Same 同1','Same 同1','Same 同1')");
    connection.Execute("insert into yy_gw_wxht_b(htbh,sl,dw) values('open same 同1 ',3,'PCS')");
    connection.Execute("insert into cy_hxd_wgj_ld(start,endh,gl_fenshu,yy_fenshu,sy_fenshu,hs_fenshu) "
                       "values('ABC000001','ABC000100',100,1,99,0)");
}

// The same rows in both: the demonstration and, in every table, rows of all kinds of values.
class EveryStatement : public testing::Test
{
protected:
    void SetUp() override
    {
        const QString path = m_folder.filePath("test.db");
        QProcess process;
        process.start(binFolder() + "/tradewick-database", {"demo", path});
        ASSERT_TRUE(process.waitForFinished(60000) && process.exitCode() == 0);
        sqlite.Open(connectionStringOf(path));
        mariaDb.Open(connectionStringOf(m_server.source()));
        for (const QString &statement : ddl(Engine::MariaDb))
            mariaDb.executeBound({statement, {}});
        mariaDb.transaction([&] {
            for (const TableDescription &table : tableDescriptions())
                sqlite.read(
                    "select * from " + table.name, {}, [](const QStringList &) {},
                    [&](const QVariantList &row) {
                        mariaDb.executeBound(
                            {"insert into " + table.name + " values(" + QStringList(row.size(), "?").join(u',') + ")",
                             row});
                        return true;
                    });
        });
        for (Connection *connection : {&sqlite, &mariaDb})
            connection->transaction([&] { fill(*connection); });
    }

    Connection sqlite, mariaDb;

private:
    QTemporaryDir m_folder;
    ServerDatabase m_server;
};

// A cell as it is compared: text to the letter, or, where equal texts count as one and any of them may stand for all,
// as the engines compare it.
QString cell(const QVariant &value, bool folded)
{
    if (!value.isValid())
        return QStringLiteral("Null");
    if (value.typeId() != QMetaType::QString)
        return QString::number(value.toDouble(), 'g', 12);
    QString text = value.toString();
    if (folded) {
        while (text.endsWith(u' '))
            text.chop(1);
        text = text.toCaseFolded();
    }
    return u'\'' + text + u'\'';
}

struct Outcome {
    QStringList columns, rows, order;
    QString refusal; // by the engine, with its words
    qint64 changed = 0;
};

Outcome select(Connection &connection, const QString &statement, const Values &values)
{
    static const QRegularExpression merging(R"(\b(distinct|group)\b)", QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression ordering(R"(order\s+by\s+(.*)$)", QRegularExpression::CaseInsensitiveOption);
    const bool merges = merging.match(statement).hasMatch();
    QStringList ordered;
    for (const QString &item : ordering.match(statement.simplified()).captured(1).toLower().split(u','))
        ordered.append(item.trimmed().section(u' ', 0, 0).section(u'.', -1));
    Outcome outcome;
    connection.read(
        statement, values,
        [&](const QStringList &columns) {
            for (const QString &column : columns)
                outcome.columns.append(column.toLower());
        },
        [&](const QVariantList &row) {
            QStringList cells, order;
            for (const QVariant &value : row)
                cells.append(cell(value, merges));
            for (const QString &item : ordered)
                if (const auto at = outcome.columns.indexOf(item); at >= 0)
                    order.append(cell(row[at], true));
            outcome.rows.append(cells.join(u'|'));
            outcome.order.append(order.join(u'|'));
            return true;
        });
    outcome.rows.sort();
    return outcome;
}

// Runs what changes a table, looks at the table, and takes it back.
Outcome change(Connection &connection, const QString &statement, const Values &values)
{
    static const QRegularExpression target(R"((?:into|update|from)\s+(\w+))",
                                           QRegularExpression::CaseInsensitiveOption);
    struct TakeBack {
    };
    Outcome outcome;
    try {
        connection.transaction([&] {
            const qint64 changed = connection.Execute(statement, values);
            outcome = select(connection, "select * from " + target.match(statement).captured(1).toLower(), {});
            outcome.changed = changed;
            throw TakeBack{};
        });
    } catch (const TakeBack &) {
    }
    return outcome;
}

} // namespace

TEST_F(EveryStatement, GivesAndLeavesTheSameOnBothEngines)
{
    int selects = 0, changes = 0;
    QStringList fruitless;
    for (const QString &statement : allStatements()) {
        const bool isSelect = statement.startsWith("select", Qt::CaseInsensitive);
        ++(isSelect ? selects : changes);
        bool yields = false;
        QString refused;
        for (const QString &text : typed) {
            const Values values = valuesFor(statement, text);
            const auto run = [&](Connection &connection) {
                try {
                    return isSelect ? select(connection, statement, values) : change(connection, statement, values);
                } catch (const DataError &error) {
                    return Outcome{.refusal = error.text()};
                }
            };
            const Outcome here = run(sqlite), there = run(mariaDb);
            const std::string name = (statement + "\n  with " + text).toStdString();
            EXPECT_EQ(here.refusal.isEmpty(), there.refusal.isEmpty())
                << name << here.refusal.toStdString() << there.refusal.toStdString();
            refused = here.refusal + there.refusal;
            EXPECT_EQ(here.changed, there.changed) << name;
            EXPECT_EQ(here.columns, there.columns) << name;
            EXPECT_EQ(here.order, there.order) << name;
            EXPECT_EQ(here.rows.size(), there.rows.size()) << name;
            for (int i = 0; i < qMin(here.rows.size(), there.rows.size()); ++i)
                EXPECT_EQ(here.rows[i].toStdString(), there.rows[i].toStdString()) << name;
            yields = yields || (isSelect ? !here.rows.isEmpty() : here.changed > 0);
            if (!statement.contains(u'{'))
                break;
        }
        if (!yields)
            fruitless.append(statement + ' ' + refused);
    }
    EXPECT_EQ(selects + changes, 315);
    EXPECT_EQ(fruitless, QStringList()) << fruitless.join(u'\n').toStdString();
}

} // namespace tradewick
