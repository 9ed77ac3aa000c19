// A JSON list of statements on standard input, on standard output what SQL Server is sent of each, and of those that
// the check of a database puts together.
#include "data/statement.h"
#include "database/description.h"
#include "database/relations.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>

#include <cstdio>

namespace tradewick
{

namespace
{

ColumnKinds kindsOf(const QString &name)
{
    ColumnKinds kinds;
    for (const TableDescription &table : tableDescriptions())
        if (table.name == name)
            for (const ColumnDescription &column : table.columns)
                kinds.insert(column.name, column.kind);
    return kinds;
}

QString bound(const QString &statement)
{
    static const QRegularExpression placeholder(R"(\{([^}]*)\})");
    Values values;
    for (auto matches = placeholder.globalMatch(statement); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        const bool isNumber = match.capturedStart() > 0 && statement[match.capturedStart() - 1] == u'=';
        values.insert(match.captured(1), isNumber ? QVariant(1) : QVariant(QStringLiteral("1")));
    }
    return bindStatement(statement, values, Engine::SqlServer, kindsOf).text;
}

} // namespace

} // namespace tradewick

int main()
{
    QFile in, out;
    if (!in.open(stdin, QIODevice::ReadOnly) || !out.open(stdout, QIODevice::WriteOnly))
        return 1;
    QJsonArray texts;
    for (const auto &statement : QJsonDocument::fromJson(in.readAll()).array())
        texts.append(tradewick::bound(statement.toString()));
    for (const tradewick::Relation &relation : tradewick::relations())
        texts.append(tradewick::bound(relation.missing));
    out.write(QJsonDocument(texts).toJson());
}
