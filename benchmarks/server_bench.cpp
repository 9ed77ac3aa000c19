// Desktops at work on a server, each a process of its own: their saves beside those of bare clients that send the very
// same statements, and the contract form over 100,000 contracts beside the same on a file.
#include "server_bench.h"

#include "common/globals.h"
#include "contracts/contracts.h"
#include "data/mariadb_server.h"
#include "database/description.h"
#include "figures.h"
#include "form_bench.h"
#include "support/form_driver.h"
#include "support/scripted_dialogs.h"
#include "support/test_server.h"

#include <QDataStream>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>

#include <iostream>
#include <stdexcept>
#include <string>
#include <unistd.h>

namespace tradewick
{

using namespace test;

namespace
{

constexpr int logged = 1; // the contract whose save is logged
constexpr int linesOfContract = 3, rounds = 15, contracts = 100000, openings = 7;

// A statement as the server got it.
struct Step {
    QString text;
    bool isPrepared = false;
    QVariantList values{};
};
QDataStream &operator<<(QDataStream &stream, const Step &step)
{
    return stream << step.text << step.isPrepared << step.values;
}
QDataStream &operator>>(QDataStream &stream, Step &step)
{
    return stream >> step.text >> step.isPrepared >> step.values;
}

void writeSteps(const QVector<Step> &steps, const QString &path)
{
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    QDataStream stream(&file);
    stream << steps;
}

QString numberOf(int desktop, int contract)
{
    return QStringLiteral("D%1-%2").arg(desktop).arg(contract, 5, 10, QChar('0'));
}

// Tells the parent, which lets all go on at once: those that are done would slow down the others by ending.
void meetOthers(const char *state)
{
    std::cout << state << std::endl;
    std::string line;
    std::getline(std::cin, line);
}

// A contract typed into a form of its own, ready for OK.
std::unique_ptr<RecordForm> typedContract(const QString &number, bool isPainted)
{
    auto form = std::make_unique<RecordForm>(YY_WXHT());
    const FormDriver drive(*form);
    auto *lines = drive.find<Grid>("TDBGrid1");
    form->setUpdatesEnabled(isPainted);
    drive.click("Cmdadd");
    drive.type("Text1(0)", number);
    drive.type("Text1(1)", QStringLiteral("德国"));
    drive.type("Text1(3)", QStringLiteral("汉堡画框贸易公司"));
    drive.type("Text1(5)", QStringLiteral("Speicherstadt 12, Hamburg"));
    for (int line = 0; line < linesOfContract; ++line)
        for (const auto &[column, text] :
             {std::pair("cpmc", QStringLiteral("木制画框")), std::pair("jkdj", QStringLiteral("12.5")),
              std::pair("sl", QStringLiteral("200"))})
            drive.typeCell(lines, line, column, text);
    return form;
}

// What is measured are the saves, not the typing, which is the clerk's: all contracts are typed before the start.
void saveByForm(int desktop, int first, int count, bool isPainted)
{
    const ScriptedDialogs dialogs;
    std::vector<std::unique_ptr<RecordForm>> forms;
    for (int contract = first; contract < first + count; ++contract)
        forms.push_back(typedContract(numberOf(desktop, contract), isPainted));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents(); // what the typing left to do
    meetOthers("ready");
    for (const auto &form : forms) {
        form->findChild<QAbstractButton *>("CmdOK")->click();
        if (form->isBusy() || form->records().hasPendingChanges() || !dialogs.shown.isEmpty())
            throw std::runtime_error("a save was refused");
        if (isPainted)
            QCoreApplication::processEvents();
    }
    meetOthers("done"); // closing the windows is no save
}

// Sends the statements of one save again and again, with numbers and identities of its own.
class BareClient
{
public:
    BareClient(const QString &source, const QString &stepsFile)
    {
        m_database = QSqlDatabase::addDatabase("QMYSQL", "bare");
        openMariaDb(m_database, mariaDbSource(connectionParts(connectionStringOf(source))));
        QFile file(stepsFile);
        file.open(QIODevice::ReadOnly);
        QDataStream stream(&file);
        stream >> m_steps;
    }

    void save(int desktop, int first, int count)
    {
        meetOthers("ready");
        for (int contract = first; contract < first + count; ++contract)
            for (const Step &step : std::as_const(m_steps))
                send(step, numberOf(desktop, contract));
        meetOthers("done");
    }

private:
    void send(const Step &step, const QString &number)
    {
        static const QRegularExpression byIdentity("^select .* from (\\w+) where tradewick_id");
        QSqlQuery query(m_database);
        query.setForwardOnly(true);
        bool done = true;
        if (!step.isPrepared) {
            done = query.exec(step.text);
        } else {
            done = query.prepare(step.text);
            const QVector<qint64> written = m_written[byIdentity.match(step.text).captured(1)];
            for (qsizetype i = 0; i < step.values.size(); ++i) {
                const QVariant &value = step.values[i];
                const qsizetype fromEnd = step.values.size() - i;
                query.addBindValue(fromEnd <= written.size()                 ? written[written.size() - fromEnd]
                                   : value.toString() == numberOf(0, logged) ? QVariant(number)
                                                                             : value);
            }
            done = done && query.exec();
        }
        if (!done)
            throw std::runtime_error(query.lastError().text().toStdString());
        if (step.text.startsWith("insert into "))
            m_written[step.text.mid(12).section(u'(', 0, 0)].append(query.lastInsertId().toLongLong());
        const int columns = query.isSelect() ? query.record().count() : 0;
        while (query.next())
            for (int column = 0; column < columns; ++column)
                query.value(column);
    }

    QSqlDatabase m_database;
    QVector<Step> m_steps;
    QHash<QString, QVector<qint64>> m_written; // identities by table
};

// Processes that wait for one start.
class Clients
{
public:
    Clients(int count, const std::function<QStringList(int number)> &arguments)
    {
        for (int number = 0; number < count; ++number) {
            auto process = std::make_unique<QProcess>();
            process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
            process->start(QApplication::applicationFilePath(), arguments(number));
            m_processes.push_back(std::move(process));
        }
        for (const auto &process : m_processes)
            process->waitForReadyRead(60000);
    }

    double milliseconds()
    {
        const double time = tradewick::milliseconds([this] {
            letGoOn();
            for (const auto &process : m_processes)
                while (!process->readAllStandardOutput().contains("done"))
                    if (!process->waitForReadyRead(600000))
                        throw std::runtime_error("a client failed");
        });
        letGoOn();
        for (const auto &process : m_processes)
            if (!process->waitForFinished(60000) || process->exitStatus() != QProcess::NormalExit ||
                process->exitCode() != 0)
                throw std::runtime_error("a client failed");
        return time;
    }

private:
    void letGoOn()
    {
        for (const auto &process : m_processes) {
            process->readAllStandardOutput();
            process->write("go\n");
            process->waitForBytesWritten();
        }
    }

    std::vector<std::unique_ptr<QProcess>> m_processes;
};

// The values of an execution, read from the statement with and without them.
QVariantList valuesIn(const QString &prepared, const QString &executed)
{
    QVariantList values;
    qsizetype at = 0;
    for (const QChar c : prepared) {
        if (c != u'?') {
            ++at;
            continue;
        }
        const bool isText = executed[at] == u'\'';
        qsizetype end = isText ? executed.indexOf(u'\'', at + 1) : at;
        while (!isText && end < executed.size() && (executed[end].isLetterOrNumber() || executed[end] == u'.'))
            ++end;
        const QString value = executed.mid(at + (isText ? 1 : 0), end - at - (isText ? 1 : 0));
        values.append(isText ? QVariant(value) : value == "NULL" ? QVariant() : QVariant(value.toDouble()));
        at = end + (isText ? 1 : 0);
    }
    return values;
}

void makeTables(const TestServer &server, const QString &database)
{
    server.run({"create database " + database});
    Connection connection;
    connection.Open(connectionStringOf(server.source(database)));
    for (const QString &statement : ddl(Engine::MariaDb))
        connection.executeBound({statement, {}});
}

// What the form sends when OK is pressed, as the server logged it.
QVector<Step> stepsOfSave(const TestServer &server)
{
    makeTables(server, "logged");
    server.run({"set global log_output='TABLE'", "set global general_log=1"});
    Clients(1, [&](int) {
        return QStringList{"--child-saves", server.source("logged"), "0", "0", "3"};
    }).milliseconds();
    server.run({"set global general_log=0"});
    Connection connection;
    connection.Open(connectionStringOf(server.source("logged")));
    QVector<Step> steps;
    QStringList prepared; // one that is run again is not prepared again
    int saves = 0;
    connection.readBound(
        {"select command_type, convert(argument using utf8mb4) from mysql.general_log where thread_id = (select "
         "max(thread_id) from mysql.general_log where argument like 'insert into yy_gw_wxht_h%')",
         {}},
        2, [&](const QVariantList &row) {
            const QString type = row[0].toString(), text = row[1].toString();
            if (type == "Prepare")
                prepared.prepend(text);
            const auto known = std::find_if(prepared.cbegin(), prepared.cend(), [&text](const QString &statement) {
                return text.startsWith(statement.section(u'?', 0, 0));
            });
            saves += type == "Query" && text == "begin" ? 1 : 0;
            if (saves == logged + 1 && type == "Execute" && known != prepared.cend())
                steps.append({*known, true, valuesIn(*known, text)});
            else if (saves == logged + 1 && type == "Query")
                steps.append({text});
            return true;
        });
    return steps;
}

int countOf(const TestServer &server, const QString &database, const QString &table)
{
    Connection connection;
    connection.Open(connectionStringOf(server.source(database)));
    return connection.rows("select count(*) as n from " + table).first()["n"].toInt();
}

// Milliseconds that the server has worked, all its threads together.
double serverWork(const TestServer &server)
{
    Connection connection;
    connection.Open(connectionStringOf(server.source()));
    QFile pid(connection.rows("select @@pid_file as name").first()["name"].toString());
    pid.open(QIODevice::ReadOnly);
    QFile state("/proc/" + QString::fromLatin1(pid.readAll().trimmed()) + "/stat");
    state.open(QIODevice::ReadOnly);
    const QList<QByteArray> items = state.readAll().split(' ');
    return static_cast<double>(items.value(13).toLongLong() + items.value(14).toLongLong()) * 1000 /
           static_cast<double>(::sysconf(_SC_CLK_TCK));
}

// Each desktop has a machine of its own to paint its screen with; here all share one, so the ratio leaves painting out.
Figure saves(const TestServer &server, const QString &kind, int desktops, int saves, const QString &stepsFile,
             qsizetype statements)
{
    struct Side {
        const char *child;
        QString database{};
        QVector<double> times{};
        double serverWork = 0;
    };
    Side ours{"--child-saves"}, bare{"--child-bare-saves"}, painted{"--child-painted-saves"};
    const QVector<Side *> sides{&ours, &bare, &painted};
    static int databases = 0;
    for (Side *side : sides) {
        side->database = QStringLiteral("saves%1").arg(++databases);
        makeTables(server, side->database);
    }
    for (int round = 0; round < rounds; ++round)
        for (Side *side : sides) {
            Clients clients(desktops, [&](int number) {
                return QStringList{side->child,
                                   server.source(side->database),
                                   QString::number(number),
                                   QString::number(round * saves),
                                   QString::number(saves),
                                   stepsFile};
            });
            const double before = serverWork(server);
            side->times.append(clients.milliseconds());
            side->serverWork += serverWork(server) - before;
        }
    const int all = rounds * desktops * saves;
    for (const Side *side : sides)
        if (countOf(server, side->database, "yy_gw_wxht_h") != all ||
            countOf(server, side->database, "yy_gw_wxht_b") != all * linesOfContract)
            throw std::runtime_error("contracts are missing");
    const auto perSecond = [&](const Side &side) { return desktops * saves * 1000 / median(side.times); };
    return {
        QStringLiteral("saves per second of %1 bare clients / of %1 desktops, unpainted, %2").arg(desktops).arg(kind),
        perSecond(bare) / perSecond(ours), 1 / 0.7,
        QStringLiteral("desktops %1, bare clients %2, painting desktops %3; %4 statements a save; the server worked "
                       "%5 ms for a desktop's, %6 ms for a bare client's")
            .arg(perSecond(ours), 0, 'f', 1)
            .arg(perSecond(bare), 0, 'f', 1)
            .arg(perSecond(painted), 0, 'f', 1)
            .arg(statements)
            .arg(ours.serverWork / all, 0, 'f', 2)
            .arg(bare.serverWork / all, 0, 'f', 2)};
}

Figure opening(const TestServer &server)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("full.db");
    makeContracts(path, contracts);
    makeTables(server, "full");
    fillContracts(connectionStringOf(server.source("full")), contracts);
    QVector<double> onFile, onServer;
    const auto timed = [](const QString &source) {
        useDatabase(source);
        std::unique_ptr<RecordForm> form; // its closing is not measured
        return milliseconds([&form] { form = openContractForm(); });
    };
    for (int i = 0; i < openings; ++i) {
        onFile.append(timed(path));
        onServer.append(timed(server.source("full")));
    }
    return {"open the contract form over 100,000 contracts on a server / on a file", median(onServer) / median(onFile),
            2,
            QStringLiteral("server %1 ms, file %2 ms").arg(median(onServer), 0, 'f', 1).arg(median(onFile), 0, 'f', 1)};
}

} // namespace

int serverBenchmarkChild(const QStringList &arguments)
{
    const QString source = arguments.value(1);
    const int desktop = arguments.value(2).toInt(), first = arguments.value(3).toInt(),
              count = arguments.value(4).toInt();
    if (arguments.first() == "--child-bare-saves") {
        BareClient(source, arguments.value(5)).save(desktop, first, count);
    } else {
        useDatabase(source);
        saveByForm(desktop, first, count, arguments.first() == "--child-painted-saves");
    }
    gConn.reset();
    return 0;
}

QVector<Figure> serverFigures()
{
    const QTemporaryDir folder;
    const QString stepsFile = folder.filePath("steps");
    QVector<Figure> figures;
    const struct {
        QString name;
        QStringList options;
    } kinds[] = {
        {"each kept through a power cut", {"--innodb-flush-method=fsync", "--innodb-flush-log-at-trx-commit=1"}},
        {"each kept through a crash of the server", {}}};
    for (const auto &[name, options] : kinds) {
        const TestServer server(options);
        const QVector<Step> steps = stepsOfSave(server);
        writeSteps(steps, stepsFile);
        figures.append(saves(server, name, 1, 60, stepsFile, steps.size()));
        figures.append(saves(server, name, 8, 20, stepsFile, steps.size()));
        if (options.isEmpty())
            continue;
        figures.append(opening(server));
        figures.append(nextRecord("next record over 100,000 contracts on a server"));
        gConn.reset();
    }
    return figures;
}

} // namespace tradewick
