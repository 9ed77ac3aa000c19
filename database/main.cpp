// tradewick-database: makes, checks and fills the databases that the desktop program works on.
#include "database/commands.h"
#include "database/description.h"

#include <QCoreApplication>
#include <QHash>
#include <QTextStream>

#include <cstdio>

namespace
{

using namespace tradewick;

constexpr auto usage = "Usage:\n"
                       "  tradewick-database create FILE              make a new, empty database file\n"
                       "  tradewick-database check FILE               name every table, view and column of the system\n"
                       "                                              as present or missing\n"
                       "  tradewick-database demo FILE                fill it with demonstration data\n"
                       "  tradewick-database connect FILE DATASOURCE  write the local settings file of the program\n"
                       "  tradewick-database script sqlite|mariadb|sqlserver\n"
                       "                                              print the script that makes the database\n";

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
        fillWithDemonstration(operand);
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
