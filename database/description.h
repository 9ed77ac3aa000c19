// The one description of the system's tables and views, from which every engine's script, the check of a database and
// the demonstration data are made.
#pragma once

#include "data/statement.h"

#include <QStringList>

namespace tradewick
{

struct ColumnDescription {
    QString name; // lower case
    ColumnKind kind = ColumnKind::Text;
    bool longText = false; // clauses, addresses, remarks: no length worth naming
    QString expression;    // of a view: what it shows, over h (head) and b (body); empty for a table
};

struct TableDescription {
    QString name;
    QString unique;      // the key column, or empty where twins are allowed
    QStringList indexed; // further columns that statements search or join by
    QVector<ColumnDescription> columns;
};

struct ViewDescription {
    QString name;
    QString head, body;      // tables
    QString key;             // the column of both that joins them
    bool headsAlone = false; // whether heads without body rows are shown
    QVector<ColumnDescription> columns;
};

// All tables and views of the shared database.
const QVector<TableDescription> &tableDescriptions();
const QVector<ViewDescription> &viewDescriptions();

// A key column as SQL text that compares as statements do: regardless of case and trailing blanks. The schema's indexes
// and views are made of the same text, so that they serve.
QString comparable(const QString &column, Engine engine);

// What a column of an SQLite file has to hold, as SQL text; empty for a text.
QString sqliteRule(const ColumnDescription &column);

// The statements that make all tables, indexes and views of an empty database, in their order. Throws nothing.
QStringList ddl(Engine engine);

// The statement that makes the table of the local settings file, which is always an SQLite file.
QString settingsDdl();

// The statements as a script for the engine's own shell.
QString ddlScript(Engine engine);

} // namespace tradewick
