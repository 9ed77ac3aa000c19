#include "database/commands.h"

#include "database/copy.h"
#include "database/demo.h"
#include "database/description.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>

namespace tradewick
{

namespace
{

// The file is its owner's before anything stands in it.
void makePrivateFile(const QString &name)
{
    QFile file(name);
    if (!file.open(QFile::WriteOnly | QFile::NewOnly, QFile::ReadOwner | QFile::WriteOwner))
        throw CommandError(QStringLiteral("%1: %2").arg(name, file.errorString()));
}

// Takes the picture away again unless the database that names it is filled.
void withLogo(const QString &logo, const std::function<void()> &work)
{
    const bool existed = QFileInfo::exists(logo);
    if (!existed && !QFile::copy(QStringLiteral(":/demo/logo.png"), logo))
        throw CommandError(QStringLiteral("%1 cannot be written").arg(logo));
    try {
        work();
    } catch (...) {
        if (!existed)
            QFile::remove(logo);
        throw;
    }
    if (!existed)
        QFile::setPermissions(logo, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
}

} // namespace

void createDatabase(const QString &source)
{
    if (isFile(source))
        refuseExisting(source);
    else {
        Connection connection;
        openSource(connection, source);
        if (!tablesOf(connection).isEmpty())
            throw CommandError(QStringLiteral("%1 holds tables already").arg(shownName(source)));
    }
    writeSource(source, [](Connection &) {});
}

bool checkDatabase(const QString &source, QTextStream &out)
{
    Connection connection;
    openSource(connection, source);
    int present = 0, missing = 0;
    for (const Part &part : partsOf(connection)) {
        ++(part.isPresent ? present : missing);
        out << part.name << ": " << (part.isPresent ? "present" : "missing") << '\n';
    }
    out << present << " present, " << missing << " missing\n";
    return missing == 0;
}

QString fillWithDemonstration(const QString &source)
{
    const QString logo =
        (isFile(source) ? QFileInfo(source).absolutePath() : QDir::currentPath()) + QStringLiteral("/logo.png");
    const QTemporaryDir folder;
    const QString original = folder.filePath(QStringLiteral("demo.db"));
    writeSource(original, [&logo](Connection &connection) {
        insertDemonstration(
            [&connection](const QString &statement, const QVariantList &values) {
                connection.executeBound({statement, values});
            },
            logo);
    });
    withLogo(logo, [&] { copyDatabase(original, source); });
    return logo;
}

void addUser(const QString &source, const QString &name, const QString &password)
{
    if (name.isEmpty() || name != name.trimmed())
        throw CommandError(QStringLiteral("the name “%1” is empty or has blanks around it").arg(name));
    if (password.isEmpty())
        throw CommandError(QStringLiteral("the password is empty"));
    const auto &tables = tableDescriptions();
    const auto users = std::find_if(tables.begin(), tables.end(),
                                    [](const TableDescription &table) { return table.name == u"qb_pass"; });
    QStringList columns{QStringLiteral("name"), QStringLiteral("pass")};
    QVariantList values{name, password};
    for (const ColumnDescription &column : users->columns)
        if (column.kind == ColumnKind::Flag) {
            columns.append(column.name);
            values.append(true);
        }
    Connection connection;
    openSource(connection, source);
    connection.transaction([&] {
        if (!connection.rows(QStringLiteral("select name from qb_pass where name = '{name}'"), {{"name", name}})
                 .isEmpty())
            throw CommandError(QStringLiteral("there is a user %1 already").arg(name));
        connection.executeBound({QStringLiteral("insert into qb_pass (%1) values (%2)")
                                     .arg(columns.join(u','), QStringList(values.size(), "?").join(u',')),
                                 values});
    });
}

void writeSettings(const QString &file, const QString &dataSource)
{
    refuseExisting(file);
    makePrivateFile(file);
    try {
        Connection connection;
        connection.Open(QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=") + file);
        connection.transaction([&] {
            connection.executeBound({settingsDdl(), {}});
            connection.executeBound({QStringLiteral("insert into data_link (datasource) values (?)"), {dataSource}});
        });
    } catch (...) {
        QFile::remove(file);
        throw;
    }
}

} // namespace tradewick
