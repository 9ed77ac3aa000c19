#include "database/commands.h"

#include "database/demo.h"
#include "database/description.h"

#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTextStream>

#include <functional>

namespace tradewick
{

namespace
{

void run(const QSqlDatabase &database, const QString &statement, const QVariantList &values = {})
{
    QSqlQuery query(database);
    query.prepare(statement);
    for (const QVariant &value : values)
        query.addBindValue(value);
    if (query.lastError().isValid() || !query.exec())
        throw CommandError(query.lastError().text());
}

// Hands the opened file to `work` and closes it.
void withFile(const QString &file, bool readOnly, const std::function<void(QSqlDatabase &)> &work)
{
    struct Opened {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("file"));
        Opened() = default;
        Opened(const Opened &) = delete;
        Opened &operator=(const Opened &) = delete;
        ~Opened()
        {
            database.close();
            database = QSqlDatabase();
            QSqlDatabase::removeDatabase(QStringLiteral("file"));
        }
    } opened;
    opened.database.setDatabaseName(file);
    if (readOnly)
        opened.database.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
    if (!opened.database.open())
        throw CommandError(QStringLiteral("%1: %2").arg(file, opened.database.lastError().text()));
    work(opened.database);
}

// Writes through `work` in one transaction, all or nothing; a file that did not exist before is gone again on failure.
void write(const QString &file, const std::function<void(QSqlDatabase &)> &work)
{
    const bool existed = QFileInfo::exists(file);
    try {
        withFile(file, false, [&](QSqlDatabase &database) {
            run(database, QStringLiteral("begin immediate"));
            work(database);
            run(database, QStringLiteral("commit"));
        });
    } catch (...) {
        if (!existed)
            QFile::remove(file);
        throw;
    }
}

void refuseExisting(const QString &file)
{
    if (QFileInfo::exists(file))
        throw CommandError(QStringLiteral("%1 exists already").arg(file));
}

void refuseOtherNames(const QString &file)
{
    if (!file.endsWith(QLatin1String(".db"), Qt::CaseInsensitive))
        throw CommandError(QStringLiteral("%1: the name of a database file ends in .db").arg(file));
}

void createSchema(const QSqlDatabase &database)
{
    for (const QString &statement : ddl(Engine::Sqlite))
        run(database, statement);
}

QStringList namesIn(const QSqlDatabase &database, const QString &statement, const QVariantList &values)
{
    QSqlQuery query(database);
    query.prepare(statement);
    for (const QVariant &value : values)
        query.addBindValue(value);
    QStringList names;
    // A view whose table is gone cannot be read: it then has no columns, which is what is to be told.
    if (query.exec())
        while (query.next())
            names.append(query.value(0).toString().toLower());
    return names;
}

} // namespace

void createDatabase(const QString &file)
{
    refuseOtherNames(file);
    refuseExisting(file);
    write(file, createSchema);
}

bool checkDatabase(const QString &file, QTextStream &out)
{
    if (!QFileInfo(file).isFile())
        throw CommandError(QStringLiteral("%1 does not exist").arg(file));
    int present = 0, missing = 0;
    withFile(file, true, [&](const QSqlDatabase &database) {
        if (QSqlQuery probe(database); !probe.exec(QStringLiteral("select count(*) from sqlite_master")))
            throw CommandError(QStringLiteral("%1: %2").arg(file, probe.lastError().text()));
        const auto tell = [&](const QString &kind, const QString &name, bool found) {
            ++(found ? present : missing);
            out << kind << ' ' << name << ": " << (found ? "present" : "missing") << '\n';
        };
        const auto tellAll = [&](const QString &kind, const auto &descriptions) {
            const QStringList names =
                namesIn(database, QStringLiteral("select name from sqlite_master where type = ?"), {kind});
            for (const auto &description : descriptions) {
                tell(kind, description.name, names.contains(description.name));
                const QStringList columns =
                    namesIn(database, QStringLiteral("select name from pragma_table_info(?)"), {description.name});
                for (const ColumnDescription &column : description.columns)
                    tell(QStringLiteral("column"), description.name + u'.' + column.name,
                         columns.contains(column.name));
            }
        };
        tellAll(QStringLiteral("table"), tableDescriptions());
        tellAll(QStringLiteral("view"), viewDescriptions());
    });
    out << present << " present, " << missing << " missing\n";
    return missing == 0;
}

void fillWithDemonstration(const QString &file)
{
    refuseOtherNames(file);
    write(file, [&](const QSqlDatabase &database) {
        const QStringList tables = namesIn(database, QStringLiteral("select name from sqlite_master where type = ?"),
                                           {QStringLiteral("table")});
        if (tables.isEmpty())
            createSchema(database);
        else if (!namesIn(database, QStringLiteral("select htbh from yy_gw_wxht_h limit ?"), {1}).isEmpty())
            throw CommandError(QStringLiteral("%1 holds contracts already").arg(file));
        const QString logo = QFileInfo(file).absolutePath() + QStringLiteral("/logo.png");
        insertDemonstration(
            [&](const QString &statement, const QVariantList &values) { run(database, statement, values); }, logo);
        if (!QFileInfo::exists(logo) && !QFile::copy(QStringLiteral(":/demo/logo.png"), logo))
            throw CommandError(QStringLiteral("%1 cannot be written").arg(logo));
        QFile::setPermissions(logo, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
    });
}

void writeSettings(const QString &file, const QString &dataSource)
{
    refuseExisting(file);
    // The file is its owner's before anything stands in it.
    QFile empty(file);
    if (!empty.open(QFile::WriteOnly | QFile::NewOnly, QFile::ReadOwner | QFile::WriteOwner))
        throw CommandError(QStringLiteral("%1: %2").arg(file, empty.errorString()));
    empty.close();
    try {
        write(file, [&](const QSqlDatabase &database) {
            run(database, settingsDdl());
            run(database, QStringLiteral("insert into data_link (datasource) values (?)"), {dataSource});
        });
    } catch (const CommandError &) {
        QFile::remove(file);
        throw;
    }
}

} // namespace tradewick
