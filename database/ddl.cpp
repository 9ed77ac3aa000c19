#include "database/description.h"

#include <algorithm>

namespace tradewick
{

namespace
{

// Numbers and dates are refused by the server when they are none; SQLite has to be told so. The type names stand as
// they are so that any SQLite browser shows what a column is for.
QString sqliteType(const ColumnDescription &column)
{
    static const QHash<ColumnKind, QString> types{
        {ColumnKind::Number, "REAL"}, {ColumnKind::Date, "DATE"}, {ColumnKind::Flag, "BOOLEAN"}};
    const QString rule = sqliteRule(column);
    return rule.isEmpty() ? QStringLiteral("TEXT") : QStringLiteral("%1 CHECK (%2)").arg(types[column.kind], rule);
}

// A clerk's long text is never refused; a key is as long as an index can hold.
QString mariaDbType(const ColumnDescription &column, bool isKey)
{
    switch (column.kind) {
    case ColumnKind::Number:
        return QStringLiteral("DOUBLE");
    case ColumnKind::Date:
        return QStringLiteral("DATE");
    case ColumnKind::Flag:
        return QStringLiteral("BOOLEAN");
    default:
        return isKey ? QStringLiteral("VARCHAR(255)") : QStringLiteral("MEDIUMTEXT");
    }
}

QString sqlServerType(const ColumnDescription &column, bool isShort)
{
    switch (column.kind) {
    case ColumnKind::Number:
        return QStringLiteral("float");
    case ColumnKind::Date:
        return QStringLiteral("datetime");
    case ColumnKind::Flag:
        return QStringLiteral("bit");
    default:
        return QStringLiteral("nvarchar(%1) COLLATE Chinese_PRC_CI_AS").arg(isShort ? "255" : "max");
    }
}

QString indexOn(const TableDescription &table, const QString &column, bool unique, Engine engine)
{
    const auto found = std::find_if(table.columns.begin(), table.columns.end(),
                                    [&](const ColumnDescription &other) { return other.name == column; });
    const QString uniqueness = unique ? "UNIQUE " : "", name = "ix_" + table.name + u'_' + column;
    const bool isText = found->kind == ColumnKind::Text;
    // An index of MariaDB holds the beginning of a text, and stands in the statement that makes the table.
    if (engine == Engine::MariaDb)
        return QStringLiteral("%1INDEX %2 (%3)").arg(uniqueness, name, isText && !unique ? column + "(64)" : column);
    // SQL Server counts two Nulls as twins, the others do not.
    const bool filtered = unique && engine == Engine::SqlServer;
    return QStringLiteral("CREATE %1INDEX %2 ON %3 (%4)%5")
        .arg(uniqueness, name, table.name, isText ? comparable(column, engine) : column,
             filtered ? " WHERE " + column + " IS NOT NULL" : QString());
}

QStringList indexesOf(const TableDescription &table, Engine engine)
{
    QStringList indexes;
    if (!table.unique.isEmpty())
        indexes.append(indexOn(table, table.unique, true, engine));
    for (const QString &column : table.indexed)
        indexes.append(indexOn(table, column, false, engine));
    return indexes;
}

QStringList createTable(const TableDescription &table, Engine engine)
{
    QStringList columns;
    for (const ColumnDescription &column : table.columns) {
        const bool isKey = column.name == table.unique;
        const bool isShort = isKey || table.indexed.contains(column.name) || !column.longText;
        columns.append(column.name + u' ' +
                       (engine == Engine::Sqlite    ? sqliteType(column)
                        : engine == Engine::MariaDb ? mariaDbType(column, isKey)
                                                    : sqlServerType(column, isShort) + " NULL"));
    }
    const auto create = [&] {
        return QStringLiteral("CREATE TABLE %1 (\n    %2\n)").arg(table.name, columns.join(QStringLiteral(",\n    ")));
    };
    if (engine != Engine::MariaDb)
        return QStringList(create()) + indexesOf(table, engine);
    // The identity of a row, out of sight so that "insert into t select * from its twin" fits. Indexes are made with
    // the table, where each of its own would make the server wait for the disk again.
    columns.append(QStringLiteral("tradewick_id BIGINT NOT NULL AUTO_INCREMENT PRIMARY KEY INVISIBLE"));
    columns.append(indexesOf(table, engine));
    return {create() + QStringLiteral(" ENGINE=InnoDB CHARACTER SET utf8mb4 COLLATE utf8mb4_uca1400_as_ci")};
}

QString createView(const ViewDescription &view, Engine engine)
{
    QStringList columns;
    for (const ColumnDescription &column : view.columns)
        columns.append(column.expression.endsWith(u'.' + column.name) ? column.expression
                                                                      : column.expression + " AS " + column.name);
    return QStringLiteral("CREATE VIEW %1 AS\nSELECT %2\nFROM %3 h %4 JOIN %5 b ON %6 = %7")
        .arg(view.name, columns.join(QStringLiteral(", ")), view.head, view.headsAlone ? "LEFT" : "INNER", view.body,
             comparable("h." + view.key, engine), comparable("b." + view.key, engine));
}

} // namespace

QString comparable(const QString &column, Engine engine)
{
    return engine == Engine::Sqlite ? "rtrim(" + column + ") COLLATE NOCASE" : column;
}

QString sqliteRule(const ColumnDescription &column)
{
    switch (column.kind) {
    case ColumnKind::Number:
        return QStringLiteral("typeof(%1) NOT IN ('text', 'blob')").arg(column.name);
    case ColumnKind::Date:
        // Only with a modifier does date() reckon 30 February out into March, which then differs from what was written.
        return QStringLiteral("date(%1, '+0 days') IS substr(%1, 1, 10)").arg(column.name);
    case ColumnKind::Flag:
        return QStringLiteral("%1 IN (0, 1)").arg(column.name);
    default:
        return {};
    }
}

QStringList ddl(Engine engine)
{
    QStringList statements;
    for (const TableDescription &table : tableDescriptions())
        statements.append(createTable(table, engine));
    for (const ViewDescription &view : viewDescriptions())
        statements.append(createView(view, engine));
    return statements;
}

QString settingsDdl()
{
    return QStringLiteral("CREATE TABLE data_link (datasource TEXT, UserID TEXT, Password TEXT, \"Database\" TEXT)");
}

QString ddlScript(Engine engine)
{
    if (engine != Engine::SqlServer)
        return ddl(engine).join(QStringLiteral(";\n")) + QStringLiteral(";\n");
    // A view must be the first statement of its batch, and indexes on a part of the rows need a setting that the
    // server's own shell has switched off.
    const QString end = QStringLiteral("\nGO\n");
    return QStringLiteral("SET QUOTED_IDENTIFIER ON") + end + ddl(engine).join(end) + end;
}

} // namespace tradewick
