// tradewick-database: makes, checks and fills the databases that the desktop program works on.
#include "database/backup.h"
#include "database/commands.h"
#include "database/description.h"
#include "database/password.h"
#include "database/sql_server_script.h"
#include "database/verify.h"

#include <QCoreApplication>
#include <QHash>
#include <QTextStream>

#include <cstdio>

namespace
{

using namespace tradewick;

constexpr auto usage =
    "Usage:\n"
    "  tradewick-database create SOURCE            make all tables and views: of a new file, or in an empty database\n"
    "  tradewick-database check SOURCE             name every table, view and column of the system as present or\n"
    "                                              missing\n"
    "  tradewick-database demo SOURCE              fill it with demonstration data; the logo is put beside the file,\n"
    "                                              for a server into the current folder\n"
    "  tradewick-database user SOURCE NAME         add a user of the program who has all rights: the first one, who "
    "makes\n"
    "                                              the others; asks for the password\n"
    "  tradewick-database copy FROM TO             copy all rows into a database that has none\n"
    "  tradewick-database copy FROM FILE.sql       write a script of all for SQL Server's own shell\n"
    "  tradewick-database backup SOURCE FILE       write all, as it stands at one moment, into one new file FILE.db\n"
    "  tradewick-database restore FILE TO          copy a backup into a database that has no rows\n"
    "  tradewick-database verify SOURCE            name what does not fit together, a line each; status 1 if any is\n"
    "  tradewick-database connect FILE SOURCE      write the local settings file of the program\n"
    "  tradewick-database script sqlite|mariadb|sqlserver\n"
    "                                              print the script that makes the database\n"
    "\n"
    "SOURCE, FROM, TO  a file FILE.db, or mariadb://USER@HOST/DATABASE; the password may stand in the environment as\n"
    "                  TRADEWICK_PASSWORD\n"
    "The password of a new user may stand there as TRADEWICK_USER_PASSWORD, or come as a line of the standard input.\n";

void writeCounts(const QVector<TableCount> &counts, QTextStream &out)
{
    qint64 rows = 0;
    for (const TableCount &count : counts) {
        out << count.table << ": " << count.rows << '\n';
        rows += count.rows;
    }
    out << rows << " rows of " << counts.size() << " tables\n";
}

int run(const QStringList &arguments, QTextStream &out)
{
    static const QHash<QString, Engine> engines{{QStringLiteral("sqlite"), Engine::Sqlite},
                                                {QStringLiteral("mariadb"), Engine::MariaDb},
                                                {QStringLiteral("sqlserver"), Engine::SqlServer}};
    const QString command = arguments.value(0);
    const QString operand = arguments.value(1);
    const auto called = [&](const char *name, qsizetype operands) {
        return command == QLatin1String(name) && arguments.size() == operands + 1;
    };
    if (called("create", 1))
        createDatabase(operand);
    else if (called("check", 1))
        return checkDatabase(operand, out) ? 0 : 1;
    else if (called("demo", 1))
        out << "logo: " << fillWithDemonstration(operand) << '\n';
    else if (called("user", 2))
        addUser(operand, arguments[2], newPassword());
    else if (called("copy", 2))
        writeCounts(arguments[2].endsWith(QLatin1String(".sql"), Qt::CaseInsensitive)
                        ? writeSqlServerScript(operand, arguments[2])
                        : copyDatabase(operand, arguments[2]),
                    out);
    else if (called("backup", 2))
        writeCounts(backUp(operand, arguments[2]), out);
    else if (called("restore", 2))
        writeCounts(restore(operand, arguments[2]), out);
    else if (called("verify", 1))
        return verifyDatabase(operand, out) ? 0 : 1;
    else if (called("connect", 2))
        writeSettings(operand, arguments[2]);
    else if (called("script", 1) && engines.contains(operand))
        out << ddlScript(engines[operand]);
    else {
        QTextStream(stderr) << usage;
        return 2;
    }
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QTextStream out(stdout);
    try {
        return run(QCoreApplication::arguments().mid(1), out);
    } catch (const std::exception &error) {
        QTextStream(stderr) << "tradewick-database: " << error.what() << '\n';
        return 1;
    }
}
