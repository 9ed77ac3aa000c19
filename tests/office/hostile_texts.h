// Texts that would be statements if they were ever read as such, and what a database holds.
#pragma once

#include "database/description.h"
#include "support/test_database.h"

#include <QMap>

namespace tradewick::test
{

inline const QStringList hostile{QStringLiteral("'; drop table sys_bzsz; --"),
                                 QStringLiteral("\" or \"\"=\""),
                                 QStringLiteral("\\'; delete from qb_pass; -- "),
                                 QStringLiteral("%_[!"),
                                 QStringLiteral("{key}{text}{khbh}?"),
                                 QStringLiteral("nul\0inside"),
                                 QStringLiteral("😀\t`]"),
                                 QStringLiteral("1' or '1'='1")};

// Rows of all tables, each as one text.
using Content = QMap<QString, QStringList>;

inline Content contentOf(const TestDatabase &database)
{
    Content content;
    Connection other;
    other.Open(database.connectionString());
    for (const TableDescription &table : tableDescriptions()) {
        QStringList &rows = content[table.name];
        other.read(
            "select * from " + table.name, {}, [](const QStringList &) {},
            [&rows](const QVariantList &row) {
                QString text;
                for (const QVariant &value : row)
                    text += value.toString() + QChar(0x1f);
                rows.append(text);
                return true;
            });
        rows.sort();
    }
    return content;
}

} // namespace tradewick::test
