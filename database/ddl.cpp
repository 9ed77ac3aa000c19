#include "database/description.h"

#include <algorithm>

namespace tradewick
{

namespace
{

// Numbers and dates are refused by the server when they are none; SQLite has to be told so. The type names stand as
// they are so that any SQLite browser shows what a column is for. Only with a modifier does date() reckon 30 February
// out into March, which then differs from what was written.
QString sqliteType(const ColumnDescription &column)
{
    switch (column.kind) {
    case ColumnKind::Number:
        return QStringLiteral("REAL CHECK (typeof(%1) NOT IN ('text', 'blob'))").arg(column.name);
    case ColumnKind::Date:
        return QStringLiteral("DATE CHECK (date(%1, '+0 days') IS substr(%1, 1, 10))").arg(column.name);
    case ColumnKind::Flag:
        return QStringLiteral("BOOLEAN CHECK (%1 IN (0, 1))").arg(column.name);
    default:
        return QStringLiteral("TEXT");
    }
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

QString createTable(const TableDescription &table, Engine engine)
{
    QStringList columns;
    for (const ColumnDescription &column : table.columns) {
        const bool key = column.name == table.unique;
        const bool isShort = key || table.indexed.contains(column.name) || !column.longText;
        columns.append(column.name + u' ' +
                       (engine == Engine::Sqlite    ? sqliteType(column)
                        : engine == Engine::MariaDb ? mariaDbType(column, key)
                                                    : sqlServerType(column, isShort) + " NULL"));
    }
    // The identity of a row, out of sight so that "insert into t select * from its twin" fits.
    if (engine == Engine::MariaDb)
        columns.append(QStringLiteral("tradewick_id BIGINT NOT NULL AUTO_INCREMENT PRIMARY KEY INVISIBLE"));
    const QString create =
        QStringLiteral("CREATE TABLE %1 (\n    %2\n)").arg(table.name, columns.join(QStringLiteral(",\n    ")));
    return engine == Engine::MariaDb
               ? create + QStringLiteral(" ENGINE=InnoDB CHARACTER SET utf8mb4 COLLATE utf8mb4_uca1400_as_ci")
               : create;
}

// Statements compare text regardless of case and trailing blanks; in SQLite that is an expression, and the index is on
// the same one.
QString createIndex(const TableDescription &table, const QString &column, bool unique, Engine engine)
{
    const auto found = std::find_if(table.columns.begin(), table.columns.end(),
                                    [&](const ColumnDescription &other) { return other.name == column; });
    const bool text = found->kind == ColumnKind::Text;
    // An index of MariaDB holds the beginning of a text.
    const bool beginning = text && !unique && engine == Engine::MariaDb;
    // SQL Server counts two Nulls as twins, the others do not.
    const bool filtered = unique && engine == Engine::SqlServer;
    return QStringLiteral("CREATE %1INDEX ix_%2_%3 ON %2 (%4)%5")
        .arg(unique ? "UNIQUE " : "", table.name, column,
             text && engine == Engine::Sqlite ? "rtrim(" + column + ") COLLATE NOCASE"
             : beginning                      ? column + "(64)"
                                              : column,
             filtered ? " WHERE " + column + " IS NOT NULL" : QString());
}

QString createView(const ViewDescription &view, Engine engine)
{
    QStringList columns;
    for (const ColumnDescription &column : view.columns)
        columns.append(column.expression.endsWith(u'.' + column.name) ? column.expression
                                                                      : column.expression + " AS " + column.name);
    const QString join = engine == Engine::Sqlite ? QStringLiteral("rtrim(h.%1) = rtrim(b.%1) COLLATE NOCASE")
                                                  : QStringLiteral("h.%1 = b.%1");
    return QStringLiteral("CREATE VIEW %1 AS\nSELECT %2\nFROM %3 h %4 JOIN %5 b ON %6")
        .arg(view.name, columns.join(QStringLiteral(", ")), view.head, view.headsAlone ? "LEFT" : "INNER", view.body,
             join.arg(view.key));
}

} // namespace

QStringList ddl(Engine engine)
{
    QStringList statements;
    for (const TableDescription &table : tableDescriptions()) {
        statements.append(createTable(table, engine));
        if (!table.unique.isEmpty())
            statements.append(createIndex(table, table.unique, true, engine));
        for (const QString &column : table.indexed)
            statements.append(createIndex(table, column, false, engine));
    }
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
