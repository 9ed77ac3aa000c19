#include "database/commands.h"

#include "database/copy.h"
#include "database/demo.h"
#include "database/description.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTextStream>

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
