// Opening the contract form over 100,000 contracts, its memory and its next record; a cell edit in a long detail sheet;
// the start of the program.
#include "form_bench.h"

#include "common/globals.h"
#include "common/grid.h"
#include "contracts/contracts.h"
#include "database/description.h"
#include "documents/documents.h"
#include "figures.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLineEdit>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>

#include <algorithm>
#include <functional>

namespace tradewick
{

namespace
{

constexpr int contracts = 100000, linesOfContract = 3, linesOfSheet = 400, runs = 5;

QString connectionString(const QString &path)
{
    return "Provider=SQLOLEDB.1;Persist Security Info=True;password=;User ID=;Initial Catalog=;Data Source=" + path;
}

} // namespace

void makeTables(const QString &path)
{
    {
        QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", "make");
        database.setDatabaseName(path);
        database.open();
        QSqlQuery query(database);
        for (const QString &statement : ddl(Engine::Sqlite))
            query.exec(statement);
    }
    QSqlDatabase::removeDatabase("make");
}

void insertRows(Connection &connection, const QString &into, const QVector<QVariantList> &rows)
{
    const QString marks = "(" + QStringList(rows.first().size(), "?").join(u',') + ")";
    BoundStatement statement{"insert into " + into + " values" + QStringList(rows.size(), marks).join(u','), {}};
    for (const QVariantList &row : rows)
        statement.parameters += row;
    connection.executeBound(statement);
}

void makeContracts(const QString &path, int count)
{
    makeTables(path);
    fillContracts(connectionString(path), count);
}

void fillContracts(const QString &to, int count)
{
    constexpr int atOnce = 200;
    Connection connection;
    connection.Open(to);
    const QString text(40, u'框');
    connection.transaction([&] {
        for (int first = 0; first < count; first += atOnce) {
            QVector<QVariantList> heads, lines;
            for (int i = first; i < std::min(first + atOnce, count); ++i) {
                const QString number = QString("X26%1").arg(i, 7, 10, QChar('0'));
                heads.append({number, "K001", text, "2026-03-05", text, text, text, text, text, text});
                for (int line = 0; line < linesOfContract; ++line)
                    lines.append({number, "P1", text, 5, 12.5});
            }
            insertRows(connection, "yy_gw_wxht_h(htbh,khbh,khmc,djrq,gsmc,dizh,madol,qttk,e_gsmc,fstk)", heads);
            insertRows(connection, "yy_gw_wxht_b(htbh,cpbh,cpmc,sl,je)", lines);
        }
    });
}

double milliseconds(const std::function<void()> &work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

double median(QVector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void useDatabase(const QString &source)
{
    gConnStr = connectionString(source);
    gConn = Connection::shared(gConnStr);
}

std::unique_ptr<RecordForm> openContractForm()
{
    auto form = std::make_unique<RecordForm>(YY_WXHT());
    form->resize(1366, 700);
    form->show();
    QApplication::processEvents();
    return form;
}

namespace
{

void readWhole(const QString &path)
{
    {
        QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", "whole");
        database.setDatabaseName(path);
        database.open();
        QSqlQuery query("select * from yy_gw_wxht_h", database);
        query.last();
    }
    QSqlDatabase::removeDatabase("whole");
}

double residentMegabytes()
{
    QFile status("/proc/self/statm");
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    return status.readAll().split(' ').value(1).toDouble() * 4096 / 1e6;
}

// Output of a program that runs once, by itself.
QString outputOf(const QString &program, const QStringList &arguments, const QString &platform = "offscreen")
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", platform);
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    process.waitForFinished(120000);
    return QString::fromUtf8(process.readAllStandardOutput());
}

Figure opening(const QString &path)
{
    QVector<double> opened, whole;
    for (int i = 0; i < runs; ++i) {
        whole.append(milliseconds([&] { readWhole(path); }));
        opened.append(milliseconds([] { openContractForm(); }));
    }
    return {
        "open the contract form over 100,000 contracts / read that table whole", median(opened) / median(whole), 0.1,
        QStringLiteral("form %1 ms, whole read %2 ms").arg(median(opened), 0, 'f', 1).arg(median(whole), 0, 'f', 1)};
}

Figure memory(const QString &full, const QString &empty)
{
    const QString self = QApplication::applicationFilePath();
    const double withRows = outputOf(self, {"--child-memory", full}).toDouble();
    const double without = outputOf(self, {"--child-memory", empty}).toDouble();
    return {"memory of the open contract form over 100,000 contracts, more than over none / 25 MB",
            (withRows - without) / 25, 1,
            QStringLiteral("%1 MB against %2 MB").arg(withRows, 0, 'f', 1).arg(without, 0, 'f', 1)};
}

// The program reads the settings beside itself, so it starts from a folder of its own. Both programs start on a real
// display where there is one, as users start them.
Figure start(const QTemporaryDir &folder)
{
    const QString bin = QApplication::applicationDirPath();
    const QString program = folder.filePath("tradewick-bench-login");
    QFile::copy(bin + "/tradewick-bench-login", program);
    outputOf(bin + "/tradewick-database", {"demo", folder.filePath("demo.db")});
    outputOf(bin + "/tradewick-database", {"connect", folder.filePath("data_link.mdb"), folder.filePath("demo.db")});
    const QString platform = qEnvironmentVariableIsSet("DISPLAY") ? "xcb" : "offscreen";
    QVector<double> login, empty;
    for (int i = 0; i < runs * 2; ++i) {
        empty.append(milliseconds([&] { outputOf(bin + "/tradewick-bench-empty", {}, platform); }));
        login.append(milliseconds([&] { outputOf(program, {}, platform); }));
    }
    return {"start to login window / start of an empty window", median(login) / median(empty), 2,
            QStringLiteral("login %1 ms, empty window %2 ms, platform %3")
                .arg(median(login), 0, 'f', 0)
                .arg(median(empty), 0, 'f', 0)
                .arg(platform)};
}

// The number of packages typed into each line, from which weights, volume and the sums below the lines follow.
Figure cellEdits()
{
    gConn->transaction([] {
        gConn->Execute("insert into yy_mxb_h(fpbh,djrq) values('FP1','2026-03-05')");
        for (int line = 0; line < linesOfSheet; ++line)
            gConn->Execute(
                "insert into yy_mxb_b(fpbh,cpbh,sl,dj,djz,dmz,djtj) values('FP1','P1',10,2.5,1.25,1.5,0.05)");
    });
    RecordForm form(YY_DZ_MXB());
    form.resize(1366, 700);
    form.show();
    QApplication::processEvents();
    form.findChild<QAbstractButton *>("Cmdedit")->click();
    form.showLines();
    auto *goods = form.findChild<Grid *>("TDBGrid1");
    QVector<double> edits;
    for (int line = 0; line < linesOfSheet; ++line) {
        goods->editCell(line, "jianshu");
        QLineEdit *editor = goods->cellEditor();
        edits.append(milliseconds([&] {
            editor->setText("7");
            QTest::keyClick(editor, Qt::Key_Return);
            QApplication::processEvents();
        }));
    }
    return {"cell edit in a sheet of 400 lines, median / one frame of 16 ms", median(edits) / 16, 1,
            QStringLiteral("edit %1 ms, zjz of the last line %2")
                .arg(median(edits), 0, 'f', 2)
                .arg(form.lines().valueAt(linesOfSheet - 1, form.lines().columnIndex("zjz")).toDouble())};
}

} // namespace

Figure nextRecord(const QString &name)
{
    const auto form = openContractForm();
    auto *button = form->findChild<QAbstractButton *>("cmdnext");
    QVector<double> presses, empty;
    for (int i = 0; i < 400; ++i) {
        presses.append(milliseconds([&] {
            button->click();
            QApplication::processEvents();
        }));
        empty.append(milliseconds([] {
            QMetaObject::invokeMethod(
                qApp, [] {}, Qt::QueuedConnection);
            QApplication::processEvents();
        }));
    }
    return {name + ", median / one frame of 16 ms", median(presses) / 16, 1,
            QStringLiteral("press %1 ms, empty event round trip %2 ms")
                .arg(median(presses), 0, 'f', 2)
                .arg(median(empty), 0, 'f', 4)};
}

int benchmarkChild(const QStringList &arguments)
{
    useDatabase(arguments.value(1));
    const auto form = openContractForm();
    QTextStream(stdout) << residentMegabytes();
    return 0;
}

QVector<Figure> formFigures()
{
    const QTemporaryDir folder;
    const QString full = folder.filePath("full.db"), empty = folder.filePath("empty.db");
    makeContracts(full, contracts);
    makeContracts(empty, 0);
    useDatabase(full);
    return {opening(full), memory(full, empty), nextRecord("next record over 100,000 contracts"), cellEdits(),
            start(folder)};
}

} // namespace tradewick
