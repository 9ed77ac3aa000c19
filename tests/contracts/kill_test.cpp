// The program is killed while it saves contracts, again and again: a contract is there with all its lines or not at
// all.
#include "common/globals.h"
#include "contracts/contracts.h"
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

constexpr int kills = 300, linesOfContract = 3;

// Saves contracts through the form until it is killed, and tells each one that the form reported as saved.
[[noreturn]] void saveUntilKilled(const QString &connectionString, int round, int pipe)
{
    gConnStr = connectionString;
    gConn = Connection::shared(connectionString);
    RecordForm form(YY_WXHT());
    const FormDriver drive(form);
    auto *lines = drive.find<Grid>("TDBGrid1");
    for (int i = 0;; ++i) {
        const QByteArray number = QString("K%1-%2").arg(round).arg(i).toUtf8();
        drive.click("Cmdadd");
        drive.type("Text1(0)", number);
        for (int line = 0; line < linesOfContract; ++line)
            drive.typeCell(lines, line, "beizhu", "line");
        drive.click("CmdOK");
        if (!form.records().hasPendingChanges()) [[maybe_unused]]
            const auto written = ::write(pipe, (number + '\n').constData(), number.size() + 1);
    }
}

} // namespace

// Suites of this ending run first, while the process is still without threads and can be forked.
TEST(KillDeathTest, ABatchIsWholeOrAbsent)
{
    TestDatabase database;
    const QString connectionString = database.connectionString();
    database.connection().Close(); // each child opens the file for itself
    std::mt19937 random(20261124);
    QSet<QString> reported;
    for (int round = 0; round < kills; ++round) {
        int ends[2];
        ASSERT_EQ(::pipe(ends), 0);
        const pid_t child = ::fork();
        if (child == 0)
            saveUntilKilled(connectionString, round, ends[1]);
        ::close(ends[1]);
        // From the first save on, at any moment of the ones that follow.
        QByteArray told;
        char buffer[4096];
        const ssize_t first = ::read(ends[0], buffer, sizeof buffer);
        ASSERT_GT(first, 0);
        told.append(buffer, first);
        ::usleep(random() % 20000);
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        for (ssize_t got = 0; (got = ::read(ends[0], buffer, sizeof buffer)) > 0;)
            told.append(buffer, got);
        ::close(ends[0]);
        told.truncate(told.lastIndexOf('\n') + 1);
        for (const QByteArray &number : told.split('\n'))
            if (!number.isEmpty())
                reported.insert(QString::fromUtf8(number));
    }
    Connection connection;
    connection.Open(connectionString);
    if (!database.isOnServer()) { // whose storage a killed client cannot reach
        EXPECT_EQ(connection.rows("select integrity_check as n from pragma_integrity_check").first()["n"], "ok");
    }
    QSet<QString> stored;
    for (const Row &head : connection.rows("select htbh from yy_gw_wxht_h"))
        stored.insert(head["htbh"].toString());
    EXPECT_GE(reported.size(), kills);
    EXPECT_TRUE((reported - stored).isEmpty());
    EXPECT_EQ(connection.rows("select htbh, count(*) as n from yy_wxht_rpt group by htbh").size(), stored.size());
    for (const Row &contract : connection.rows("select htbh, count(*) as n from yy_gw_wxht_b group by htbh")) {
        EXPECT_EQ(contract["n"].toInt(), linesOfContract);
        EXPECT_TRUE(stored.contains(contract["htbh"].toString()));
    }
}

} // namespace tradewick
