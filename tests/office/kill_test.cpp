// The program is killed while it saves documents, again and again: each is there with all its lines or not at all.
#include "common/globals.h"
#include "contracts/contracts.h"
#include "documents/documents.h"
#include "support/form_driver.h"
#include "support/test_database.h"

#include <gtest/gtest.h>

#include <QSet>

#include <random>
#include <sys/wait.h>
#include <unistd.h>

namespace tradewick
{

using namespace test;

namespace
{

constexpr int kills = 150, linesOfEach = 3;

struct Saved {
    RecordFormSpec (*form)();
    QString key, heads, lines, view, typed; // a column of the lines
    Qt::Key page;                           // of the lines, with Alt
};

// Saves documents through the form until it is killed, and tells each one that the form reported as saved.
[[noreturn]] void saveUntilKilled(const Saved &of, const QString &connectionString, int round, int pipe)
{
    gConnStr = connectionString;
    gConn = Connection::shared(connectionString);
    RecordForm form(of.form());
    const FormDriver drive(form);
    auto *lines = drive.find<Grid>("TDBGrid1");
    for (int i = 0;; ++i) {
        const QByteArray number = QString("K%1-%2").arg(round).arg(i).toUtf8();
        drive.click("Cmdadd");
        drive.type("Text1(0)", number);
        QTest::keyClick(&form, of.page, Qt::AltModifier);
        for (int line = 0; line < linesOfEach; ++line)
            drive.typeCell(lines, line, of.typed, "line");
        drive.click("CmdOK");
        if (!form.records().hasPendingChanges()) [[maybe_unused]]
            const auto written = ::write(pipe, (number + '\n').constData(), number.size() + 1);
    }
}

// Kills a desktop after it has saved some; gives what it had reported.
QSet<QString> savedBeforeKill(const Saved &of, const QString &connectionString, int round, int wait)
{
    int ends[2];
    EXPECT_EQ(::pipe(ends), 0);
    const pid_t child = ::fork();
    if (child == 0)
        saveUntilKilled(of, connectionString, round, ends[1]);
    ::close(ends[1]);
    // From the first save on, at any moment of the ones that follow.
    QByteArray told;
    char buffer[4096];
    const ssize_t first = ::read(ends[0], buffer, sizeof buffer);
    EXPECT_GT(first, 0);
    told.append(buffer, qMax<ssize_t>(first, 0));
    ::usleep(wait);
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    for (ssize_t got = 0; (got = ::read(ends[0], buffer, sizeof buffer)) > 0;)
        told.append(buffer, got);
    ::close(ends[0]);
    told.truncate(told.lastIndexOf('\n') + 1);
    QSet<QString> reported;
    for (const QByteArray &number : told.split('\n'))
        if (!number.isEmpty())
            reported.insert(QString::fromUtf8(number));
    return reported;
}

} // namespace

// Suites of this ending run first, while the process is still without threads and can be forked.
TEST(KillDeathTest, ABatchIsWholeOrAbsent)
{
    TestDatabase database;
    const QString connectionString = database.connectionString();
    database.connection().Close(); // each child opens the file for itself
    std::mt19937 random(20261124);
    const Saved documents[] = {
        {YY_WXHT, "htbh", "yy_gw_wxht_h", "yy_gw_wxht_b", "yy_wxht_rpt", "beizhu", Qt::Key_1},
        {YY_DZ_MXB, "fpbh", "yy_mxb_h", "yy_mxb_b", "yy_mxb_rpt", "shuming", Qt::Key_2},
    };
    Connection connection;
    for (const Saved &of : documents) {
        SCOPED_TRACE(of.heads.toStdString());
        QSet<QString> reported;
        for (int round = 0; round < kills; ++round)
            reported += savedBeforeKill(of, connectionString, round, static_cast<int>(random() % 20000));
        connection.Open(connectionString);
        if (!database.isOnServer()) { // whose storage a killed client cannot reach
            EXPECT_EQ(connection.rows("select integrity_check as n from pragma_integrity_check").first()["n"], "ok");
        }
        QSet<QString> stored;
        for (const Row &head : connection.rows("select * from " + of.heads))
            stored.insert(head[of.key].toString());
        EXPECT_GE(reported.size(), kills);
        EXPECT_TRUE((reported - stored).isEmpty());
        const QString counted = "select " + of.key + ", count(*) as n from %1 group by " + of.key;
        EXPECT_EQ(connection.rows(counted.arg(of.view)).size(), stored.size());
        for (const Row &one : connection.rows(counted.arg(of.lines))) {
            EXPECT_EQ(one["n"].toInt(), linesOfEach);
            EXPECT_TRUE(stored.contains(one[of.key].toString()));
        }
        connection.Close();
    }
}

} // namespace tradewick
