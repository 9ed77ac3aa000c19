// An office at work: eight desktops save contracts, issue verification forms and take them back on one server, which is
// killed in the middle and started again. What was reported as saved is there, whole, once; what was refused stays on
// its screen.
#include "common/globals.h"
#include "common/tabbed_form.h"
#include "contracts/contracts.h"
#include "database/description.h"
#include "settlement/settlement.h"
#include "support/form_driver.h"
#include "support/scripted_dialogs.h"
#include "support/test_server.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QSet>

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tradewick
{

using namespace test;

namespace
{

constexpr int desktops = 8, linesOfContract = 3, formsOfIssue = 3;

// How long they work; script/soak lets them go on for minutes.
int seconds()
{
    const int given = qEnvironmentVariableIntValue("TRADEWICK_SOAK_SECONDS");
    return given > 0 ? given : 12;
}

class Desktop
{
public:
    Desktop(const QString &source, int number, int pipe) : m_number(number), m_pipe(pipe)
    {
        gConnStr = connectionStringOf(source);
        gConn = Connection::shared(gConnStr);
    }

    void work()
    {
        RecordForm form(YY_WXHT());
        const FormDriver drive(form);
        auto *lines = drive.find<Grid>("TDBGrid1");
        const TabbedForm registered(CY_HXD_Djb());
        QElapsedTimer clock;
        clock.start();
        for (int i = 0; clock.elapsed() < seconds() * 1000; ++i) {
            const QString mark = QStringLiteral("%1-%2").arg(m_number).arg(i);
            drive.click("Cmdadd");
            if (!form.isBusy() || form.records().EOF_()) {
                give(drive, form, "?no entry begun");
                continue;
            }
            drive.type("Text1(1)", mark);
            for (int line = 0; line < linesOfContract; ++line)
                drive.typeCell(lines, line, "beizhu", mark);
            for (int attempt = 0; attempt < 2000 && !save(drive, form, mark, lines); ++attempt) {
            }
            const auto number = [&](int which) {
                return QStringLiteral("ABC%1").arg(m_number * 10000 + i * formsOfIssue + which, 6, 10, QChar('0'));
            };
            enter(registered.tab(2), {{"Text1(15)", number(1)}, {"Text1(16)", number(formsOfIssue)}});
            enter(registered.tab(1), {{"Text1(4)", number(1)}});
        }
    }

private:
    // True once the contract is stored. A number that another desktop was faster with is typed over.
    bool save(const FormDriver &drive, RecordForm &form, const QString &mark, Grid *lines)
    {
        if (!form.isBusy()) {
            drive.click("Cmdedit");
            drive.type("Text1(0)", QStringLiteral("M%1").arg(mark));
        }
        m_dialogs.shown.clear();
        const QString number = drive.text("Text1(0)");
        drive.click("CmdOK");
        if (!form.records().hasPendingChanges() && !form.isBusy()) {
            tell("+" + number + " " + mark);
            return true;
        }
        const QString told = m_dialogs.shown.isEmpty() ? QString("nothing") : m_dialogs.shown.first().text;
        const bool expected = told.contains("编号重复") || told.startsWith("与数据库服务器的连接已中断") ||
                              told.startsWith("其他用户正在保存");
        if (!expected)
            tell("?" + told + conflictText());
        if (drive.text("Text1(1)") != mark || lines->model()->index(0, 0).row() != 0)
            tell("?typed text is gone: " + drive.text("Text1(1)"));
        tell(told.contains("编号重复") ? "twin" : "refused");
        ::usleep(20000);
        return false;
    }

    // One more record of a tab, sent until it is stored: its row and its counters, together.
    void enter(RecordForm &form, const QVector<std::pair<QString, QString>> &fields)
    {
        const FormDriver drive(form);
        drive.click("Cmdadd");
        for (const auto &[field, text] : fields)
            drive.type(field, text);
        for (int attempt = 0; attempt < 2000; ++attempt) {
            if (!form.isBusy())
                drive.click("Cmdedit");
            m_dialogs.shown.clear();
            drive.click("CmdOK");
            if (!form.records().hasPendingChanges() && !form.isBusy())
                return;
            tell("refused");
            ::usleep(20000);
        }
        tell("?never stored: " + fields.first().second);
    }

    void give(const FormDriver &drive, RecordForm &form, const QString &word)
    {
        if (m_dialogs.shown.isEmpty())
            tell(word);
        m_dialogs.shown.clear();
        if (form.isBusy())
            drive.click("Cmdcancel");
        ::usleep(20000);
    }

    QString conflictText() const
    {
        QString text = QStringLiteral("; %1 conflicts").arg(m_dialogs.conflicts.size());
        if (!m_dialogs.conflicts.isEmpty())
            for (const ConflictField &field : m_dialogs.conflicts.last().fields)
                text += QStringLiteral("; %1: %2, %3, %4").arg(field.caption, field.read, field.now, field.typed);
        return text;
    }

    void tell(const QString &line) const
    {
        const QByteArray bytes = line.simplified().toUtf8() + '\n';
        [[maybe_unused]] const auto written = ::write(m_pipe, bytes.constData(), bytes.size());
    }

    ScriptedDialogs m_dialogs;
    int m_number, m_pipe;
};

} // namespace

// Suites of this ending run first, while the process is still without threads and can be forked.
TEST(OfficeDeathTest, EightDesktopsLoseNothingWhileTheServerIsKilled)
{
    TestServer server({"--max-connections=200"});
    server.run({"create database office"});
    {
        Connection connection;
        connection.Open(connectionStringOf(server.source("office")));
        for (const QString &statement : ddl(Engine::MariaDb))
            connection.executeBound({statement, {}});
        connection.Execute("insert into cy_hxd_wgj_ld(start,endh,gl_fenshu,yy_fenshu,sy_fenshu,hs_fenshu) "
                           "values('ABC000001','ABC999999',999999,0,999999,0)");
    }
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    QList<pid_t> children;
    for (int number = 0; number < desktops; ++number) {
        children.append(::fork());
        if (children.last() == 0) {
            Desktop(server.source("office"), number, ends[1]).work();
            ::_exit(0);
        }
    }
    ::close(ends[1]);
    QByteArray told;
    bool isKilled = false;
    QElapsedTimer clock;
    clock.start();
    char buffer[65536];
    for (pollfd wait{ends[0], POLLIN, 0};;) {
        if (::poll(&wait, 1, 100) > 0) {
            const ssize_t got = ::read(ends[0], buffer, sizeof buffer);
            if (got <= 0)
                break;
            told.append(buffer, got);
        }
        if (!isKilled && clock.elapsed() > seconds() * 400) {
            isKilled = true;
            server.kill();
            server.start();
        }
    }
    ::close(ends[0]);
    for (const pid_t child : std::as_const(children)) {
        int status = 0;
        ::waitpid(child, &status, 0);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    }

    QHash<QString, QString> reported; // mark of a contract by its number
    int twins = 0, refused = 0;
    for (const QByteArray &line : told.split('\n')) {
        const QString text = QString::fromUtf8(line);
        EXPECT_FALSE(text.startsWith(u'?')) << line.constData();
        if (text.startsWith(u'+')) {
            const QString number = text.mid(1).section(u' ', 0, 0);
            EXPECT_FALSE(reported.contains(number)) << line.constData();
            reported.insert(number, text.section(u' ', 1));
        }
        twins += text == "twin" ? 1 : 0;
        refused += text == "refused" ? 1 : 0;
    }
    Connection connection;
    connection.Open(connectionStringOf(server.source("office")));
    QHash<QString, QString> stored;
    for (const Row &head : connection.rows("select htbh,gb from yy_gw_wxht_h"))
        stored.insert(head["htbh"].toString(), head["gb"].toString());
    for (auto i = stored.constBegin(); i != stored.constEnd(); ++i)
        EXPECT_EQ(reported.value(i.key(), "not reported"), i.value()) << i.key().toStdString();
    for (auto i = reported.constBegin(); i != reported.constEnd(); ++i)
        EXPECT_EQ(stored.value(i.key(), "not stored"), i.value()) << i.key().toStdString();
    EXPECT_GT(stored.size(), desktops * 2);
    EXPECT_GT(refused, 0);
    for (const Row &contract : connection.rows("select htbh, count(*) as n from yy_gw_wxht_b group by htbh")) {
        EXPECT_EQ(contract["n"].toInt(), linesOfContract) << contract["htbh"].toString().toStdString();
        EXPECT_TRUE(stored.contains(contract["htbh"].toString()));
    }
    EXPECT_EQ(connection.rows("select htbh, count(*) as n from yy_wxht_rpt group by htbh").size(), stored.size());
    const auto sum = [&](const QString &what) { return connection.rows("select " + what).first()["n"].toInt(); };
    EXPECT_EQ(sum("hs_fenshu as n from cy_hxd_wgj_ld"), sum("count(*) as n from cy_hxd_gsly"));
    EXPECT_EQ(sum("yy_fenshu as n from cy_hxd_wgj_ld"), sum("count(*) as n from cy_hxd_gshs") * formsOfIssue);
    EXPECT_EQ(sum("count(distinct hxdh_st) as n from cy_hxd_gshs"), sum("count(*) as n from cy_hxd_gshs"));
    EXPECT_EQ(sum("sy_fenshu + yy_fenshu as n from cy_hxd_wgj_ld"), sum("gl_fenshu as n from cy_hxd_wgj_ld"));
    EXPECT_GT(sum("count(*) as n from cy_hxd_gsly"), desktops);
    RecordProperty("contracts", static_cast<int>(stored.size()));
    printf("%d contracts of %d desktops in %d s, %d numbers offered twice, %d saves refused and kept\n",
           static_cast<int>(stored.size()), desktops, seconds(), twins, refused);
}

} // namespace tradewick
