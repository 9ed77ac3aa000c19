// A MariaDB server of one's own: who may answer, links that break, answers that are hostile.
#include "common/globals.h"
#include "common/tabbed_form.h"
#include "contracts/contracts.h"
#include "data/mariadb_server.h"
#include "database/description.h"
#include "masterdata/masterdata.h"
#include "settlement/settlement.h"
#include "support/cutting_proxy.h"
#include "support/form_driver.h"
#include "support/scripted_dialogs.h"
#include "support/test_server.h"

#include <gtest/gtest.h>

#include <QProcess>
#include <QTemporaryDir>

namespace tradewick
{

using namespace test;

namespace
{

// Certificates: of an office of its own, for the address that the tests call the server by, and for another name.
class Certificates
{
public:
    Certificates()
    {
        openssl({"req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "30", "-subj", "/CN=office", "-keyout",
                 file("ca.key"), "-out", file("ca.pem")});
        openssl({"req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "30", "-subj", "/CN=stranger", "-keyout",
                 file("stranger.key"), "-out", file("stranger.pem")});
        sign("here", "IP:127.0.0.1");
        sign("elsewhere", "DNS:db.example");
        sign("ended", "IP:127.0.0.1", "0");
    }

    QString file(const QString &name) const { return m_folder.filePath(name); }
    QStringList serverOptions(const QString &name) const
    {
        return {"--ssl-ca=" + file("ca.pem"), "--ssl-cert=" + file(name + ".pem"), "--ssl-key=" + file(name + ".key")};
    }

private:
    static void openssl(const QStringList &arguments)
    {
        QProcess process;
        process.start("openssl", arguments);
        process.waitForFinished(60000);
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    }
    void sign(const QString &name, const QString &host, const QString &days = "30") const
    {
        QFile extensions(file(name + ".ext"));
        EXPECT_TRUE(extensions.open(QIODevice::WriteOnly));
        extensions.write(("subjectAltName=" + host).toUtf8());
        extensions.close();
        openssl({"req", "-newkey", "rsa:2048", "-nodes", "-subj", "/CN=server", "-keyout", file(name + ".key"), "-out",
                 file(name + ".csr")});
        openssl({"x509", "-req", "-in", file(name + ".csr"), "-CA", file("ca.pem"), "-CAkey", file("ca.key"),
                 "-CAcreateserial", "-days", days, "-extfile", extensions.fileName(), "-out", file(name + ".pem")});
    }

    QTemporaryDir m_folder;
};

// A database on a server of the test's own, reached through a way that can be cut.
class BrokenLink : public testing::Test
{
protected:
    TestServer server;
    CuttingProxy way{server.port()};
    ScriptedDialogs dialogs;

    BrokenLink()
    {
        server.run({"create database office"});
        Connection connection;
        connection.Open(connectionStringOf(server.source("office")));
        for (const QString &statement : ddl(Engine::MariaDb))
            connection.executeBound({statement, {}});
        connection.transaction([&] {
            for (int i = 1; i <= 200; ++i) {
                const QString number = QStringLiteral("X2608%1").arg(i, 5, 10, QChar('0'));
                connection.Execute("insert into yy_gw_wxht_h(htbh,khmc,djrq) values('{n}','客户{n}','2026-08-03')",
                                   {{"n", number}});
                connection.Execute("insert into yy_gw_wxht_b(htbh,cpbh) values('{n}','P1')", {{"n", number}});
                connection.Execute("insert into sys_bzsz(bzbh,bizh) values('{n}','USD')", {{"n", number}});
            }
        });
        gConnStr = connectionStringOf(QStringLiteral("mariadb://root@127.0.0.1:%1/office").arg(way.port()));
        gConn = std::make_shared<Connection>();
        gConn->Open(gConnStr);
        Connection::share(gConn);
    }
    ~BrokenLink() override
    {
        gConn.reset();
        gConnStr.clear();
    }

    QVariant value(const QString &statement) const
    {
        Connection other;
        other.Open(connectionStringOf(server.source("office")));
        return other.rows(statement).value(0)["v"];
    }
    bool toldOfTheLink()
    {
        const bool told = dialogs.shown.size() == 1 && dialogs.shown[0].text.startsWith("与数据库服务器的连接已中断");
        dialogs.shown.clear();
        return told;
    }
};

} // namespace

TEST(Guard, AsksForAsMuchAsTheSourceSays)
{
    using Tls = MariaDbSource::Tls;
    const QTemporaryDir folder;
    QFile ca(folder.filePath("ca.pem"));
    ASSERT_TRUE(ca.open(QIODevice::WriteOnly));
    const QString trusted = "ca=" + ca.fileName();
    const struct {
        QString source;
        std::optional<Tls> tls; // none: refused
    } cases[] = {
        {"mariadb://db.office.example/trade?" + trusted, Tls::Verify},
        {"mariadb://192.0.2.7/trade?" + trusted, Tls::Verify},
        {"mariadb://127.evil.example/trade?" + trusted, Tls::Verify},
        {"mariadb://localhost.evil.example/trade?" + trusted, Tls::Verify},
        {"mariadb://db.office.example/trade?tls=encrypt", Tls::Encrypt},
        {"mariadb://db.office.example/trade?tls=off", Tls::Off},
        {"mariadb://localhost/trade", Tls::Off},
        {"mariadb://127.0.0.1:3307/trade", Tls::Off},
        {"mariadb://[::1]/trade", Tls::Off},
        {"mariadb:///trade?socket=/run/mysqld/mysqld.sock", Tls::Off},
        {"mariadb://127.0.0.1/trade?tls=verify&" + trusted, Tls::Verify},
        {"mariadb://db.office.example/trade?tls=maybe", std::nullopt},
        {"mariadb://db.office.example/trade?ca=/nowhere.pem", std::nullopt},
        {"mariadb:///trade", std::nullopt},
        {"mariadb://a b/trade", std::nullopt},
    };
    for (const auto &c : cases) {
        try {
            EXPECT_EQ(mariaDbSource({{}, c.source, {}, {}, {}}).tls, c.tls) << c.source.toStdString();
        } catch (const DataError &) {
            EXPECT_FALSE(c.tls) << c.source.toStdString();
        }
    }
    const MariaDbSource source =
        mariaDbSource({{}, "mariadb://a%40b:p%3Aw@[2001:db8::1]:3307/%E5%A4%96%E8%B4%B8?tls=off", {}, {}, {}});
    EXPECT_EQ(source.user, "a@b");
    EXPECT_EQ(source.password, "p:w");
    EXPECT_EQ(source.host, "2001:db8::1");
    EXPECT_EQ(source.port, 3307);
    EXPECT_EQ(source.database, "外贸");
    EXPECT_EQ(mariaDbSource({{}, "mariadb://u:p@localhost/d", "u2", "p2", "d2"}).user, "u2");
}

TEST(Guard, ClosesWhatIsNotGuarded)
{
    const Certificates certificates;
    const TestServer plain({"--skip-ssl"}), here(certificates.serverOptions("here")),
        elsewhere(certificates.serverOptions("elsewhere")), ended(certificates.serverOptions("ended"));
    const QString ca = "&ca=" + certificates.file("ca.pem"), stranger = "&ca=" + certificates.file("stranger.pem");
    const struct {
        const TestServer &server;
        QString query;
        bool opens, isEncrypted;
    } cases[] = {
        {here, "tls=verify" + ca, true, true},
        {here, "tls=encrypt", true, true},
        {here, "tls=off", true, false},
        {here, "tls=verify" + stranger, false, false}, // signed by nobody we know
        {here, "tls=verify", false, false},            // the machine's own certificates do not know it either
        {elsewhere, "tls=verify" + ca, false, false},  // a true certificate, for another name
        {elsewhere, "tls=encrypt" + ca, true, true},   //
        {ended, "tls=verify" + ca, false, false},      // was true until a moment ago
        {plain, "tls=verify" + ca, false, false},      // a server that offers nothing
        {plain, "tls=encrypt", false, false},          //
        {plain, "tls=off", true, false},               //
        {plain, "", true, false},                      // loopback needs none
    };
    for (const auto &c : cases) {
        const QString source = c.server.tcpSource("mysql", c.query);
        Connection connection;
        bool opens = true;
        try {
            connection.Open(connectionStringOf(source));
        } catch (const DataError &error) {
            opens = false;
            EXPECT_FALSE(error.text().isEmpty());
        }
        EXPECT_EQ(opens, c.opens) << source.toStdString();
        EXPECT_EQ(connection.isOpen(), c.opens);
        const QString cipher =
            opens ? connection
                        .rows("select variable_value as v from information_schema.session_status where "
                              "variable_name='Ssl_cipher'")
                        .first()["v"]
                        .toString()
                  : QString();
        EXPECT_EQ(!cipher.isEmpty(), c.isEncrypted) << source.toStdString();
    }
}

TEST_F(BrokenLink, AServerThatStartedAnewIsNotEvenNoticed)
{
    RecordForm form(YY_WXHT());
    const FormDriver drive(form);
    for (int i = 0; i < 3; ++i) {
        server.kill();
        server.start();
        const QString before = drive.text("Text1(0)");
        for (int step = 0; step < 70; ++step) // beyond the rows that were read
            drive.click("cmdnext");
        EXPECT_NE(drive.text("Text1(0)"), before);
        EXPECT_EQ(drive.text("Text1(3)"), "客户" + drive.text("Text1(0)"));
        server.kill();
        server.start();
        drive.click("Cmdedit");
        drive.type("Text1(1)", "德国");
        drive.click("CmdOK");
        EXPECT_FALSE(form.isBusy());
        EXPECT_EQ(dialogs.shown, QVector<Shown>());
    }
    EXPECT_EQ(value("select count(*) as v from yy_gw_wxht_h where gb='德国'"), 3);
}

// Moving needs no server as the form has always told it: with the server away a handler that lets errors out must not
// end the program, and no field shows what is another record's.
TEST_F(BrokenLink, MovingWithoutAServerEndsNothing)
{
    RecordForm form(YY_WXHT());
    const FormDriver drive(form);
    server.kill();
    drive.click("cmdmd");
    EXPECT_TRUE(toldOfTheLink());
    const QString number = drive.text("Text1(0)"); // of a row that was read before, or nothing
    EXPECT_EQ(drive.text("Text1(3)"), number.isEmpty() ? QString() : "客户" + number);
    drive.click("Cmdedit"); // what was not read, head or lines, is not edited
    EXPECT_TRUE(toldOfTheLink());
    EXPECT_FALSE(form.isBusy());
    drive.click("cmdqd");
    dialogs.shown.clear();
    server.start();
    drive.click("cmdmd");
    EXPECT_EQ(drive.text("Text1(3)"), "客户" + drive.text("Text1(0)"));
    EXPECT_EQ(drive.find<Grid>("TDBGrid1")->model()->rowCount(), 1);
    EXPECT_EQ(dialogs.shown, QVector<Shown>());
}

// Forms that report and forms that skip errors: both say it, keep what was typed, and save it later.
TEST_F(BrokenLink, ASaveWithoutAServerKeepsWhatWasTyped)
{
    RecordForm form(sys_bzsz());
    const FormDriver drive(form);
    drive.click("Cmdadd");
    drive.type("Text(0)", "NEW");
    drive.type("Text(1)", "EUR");
    server.kill();
    drive.click("CmdOK");
    EXPECT_TRUE(toldOfTheLink());
    EXPECT_TRUE(form.isBusy());
    EXPECT_EQ(drive.text("Text(0)") + drive.text("Text(1)"), "NEWEUR");
    drive.click("CmdOK");
    EXPECT_TRUE(toldOfTheLink());
    server.start();
    drive.click("CmdOK");
    EXPECT_EQ(dialogs.shown, QVector<Shown>());
    EXPECT_FALSE(form.isBusy());
    EXPECT_EQ(value("select count(*) as v from sys_bzsz where bizh='EUR'"), 1);
}

// The server stored it, its answer was lost: saving again must not store it twice.
// Whether the link breaks in the middle of raising them, or before the answer to what is stored by then.
TEST_F(BrokenLink, CountersRiseOnceWithTheirIssueOrNotAtAll)
{
    server.run({"insert into office.cy_hxd_wgj_ld(start,endh,gl_fenshu,yy_fenshu,sy_fenshu) "
                "values('ABC000001','ABC000999',999,0,999)"});
    const TabbedForm window(CY_HXD_Djb());
    const FormDriver drive(window.tab(2));
    for (const bool isMiddle : {true, false}) {
        drive.click("Cmdadd");
        drive.type("Text1(15)", isMiddle ? "ABC000101" : "ABC000201");
        drive.type("Text1(16)", isMiddle ? "ABC000200" : "ABC000300");
        if (isMiddle)
            way.cutAfter(1000);
        else
            way.cutAnswerTo("commit");
        drive.click("CmdOK");
        EXPECT_TRUE(way.hasCut());
        EXPECT_TRUE(toldOfTheLink());
        EXPECT_EQ(value("select yy_fenshu as v from cy_hxd_wgj_ld"), isMiddle ? 0 : 200);
        EXPECT_EQ(value("select count(*) as v from cy_hxd_gshs"), isMiddle ? 0 : 2);
        EXPECT_TRUE(window.tab(2).isBusy());
        drive.click("CmdOK");
        EXPECT_EQ(dialogs.shown, QVector<Shown>());
        EXPECT_EQ(value("select yy_fenshu as v from cy_hxd_wgj_ld"), isMiddle ? 100 : 200);
        EXPECT_EQ(value("select sy_fenshu as v from cy_hxd_wgj_ld"), isMiddle ? 899 : 799);
        EXPECT_EQ(value("select count(*) as v from cy_hxd_gshs"), isMiddle ? 1 : 2);
    }
}

TEST_F(BrokenLink, AnUnansweredCommitIsNotRepeated)
{
    RecordForm form(YY_WXHT());
    const FormDriver drive(form);
    auto *lines = drive.find<Grid>("TDBGrid1");
    for (const bool isNew : {true, false}) {
        drive.click(isNew ? "Cmdadd" : "Cmdedit");
        if (isNew)
            drive.type("Text1(0)", "TWICE");
        drive.type("Text1(1)", isNew ? "法国" : "意大利");
        drive.typeCell(lines, 0, "beizhu", isNew ? "one" : "other");
        drive.typeCell(lines, isNew ? 1 : 2, "beizhu", "two");
        way.cutAnswerTo("commit");
        drive.click("CmdOK");
        EXPECT_TRUE(way.hasCut());
        EXPECT_TRUE(toldOfTheLink());
        EXPECT_TRUE(form.isBusy());
        drive.click("CmdOK");
        EXPECT_FALSE(form.isBusy());
        EXPECT_EQ(dialogs.shown, QVector<Shown>());
        EXPECT_EQ(dialogs.conflicts.size(), 0);
        EXPECT_EQ(value("select count(*) as v from yy_gw_wxht_h where htbh='TWICE'"), 1);
        EXPECT_EQ(value("select gb as v from yy_gw_wxht_h where htbh='TWICE'"), isNew ? "法国" : "意大利");
        EXPECT_EQ(value("select count(*) as v from yy_gw_wxht_b where htbh='TWICE'"), isNew ? 2 : 3);
    }
}

// Cut anywhere, in the middle of a row too: a message or nothing, never half a contract and never an end.
TEST_F(BrokenLink, CutAnywhereStoresAllOrNothing)
{
    RecordForm form(YY_WXHT());
    const FormDriver drive(form);
    auto *lines = drive.find<Grid>("TDBGrid1");
    int cuts = 0, saved = 0;
    for (int bytes = 1; bytes < 1200; bytes += 13) {
        const bool whileAdding = bytes % 2 == 0;
        const QString number = QStringLiteral("CUT%1").arg(bytes);
        if (whileAdding)
            way.cutAfter(bytes);
        drive.click("Cmdadd");
        cuts += whileAdding && way.hasCut() ? 1 : 0;
        way.cutAfter(-1);
        if (!form.isBusy())
            continue; // no number without the server: nothing was begun
        drive.type("Text1(0)", number);
        drive.typeCell(lines, 0, "beizhu", number);
        if (!whileAdding)
            way.cutAfter(bytes);
        drive.click("CmdOK");
        drive.click("cmdqd");
        drive.click("cmdmd");
        cuts += !whileAdding && way.hasCut() ? 1 : 0;
        way.cutAfter(-1);
        if (form.isBusy())
            drive.click("CmdOK");
        ++saved;
        EXPECT_FALSE(form.isBusy()) << bytes;
        EXPECT_EQ(value("select count(*) as v from yy_gw_wxht_h where htbh='" + number + "'"), 1) << bytes;
        EXPECT_EQ(value("select count(*) as v from yy_gw_wxht_b where htbh='" + number + "'"), 1) << bytes;
    }
    EXPECT_EQ(value("select count(*) as v from yy_gw_wxht_h"), 200 + saved);
    EXPECT_GT(cuts, 20);
    EXPECT_EQ(dialogs.conflicts.size(), 0);
}

TEST_F(BrokenLink, AnswersOfOtherKindsThanExpectedAreShownOrRefused)
{
    server.run({"use office", "alter table sys_gksz modify gkmc double, modify beizhu longblob, modify gkxz datetime",
                "insert into sys_gksz(gkbh,gkmc,gkxz,beizhu,gkmc_en) values('P1',1e308,'2026-08-03 10:11:12',"
                "repeat(x'ff00fe',300000),repeat('汉',200000)),('P2',null,null,null,null)"});
    RecordForm form(Sys_GKSZ());
    const FormDriver drive(form);
    EXPECT_EQ(drive.text("Text(0)"), "P1");
    EXPECT_EQ(drive.text("Text(2)").size(), 32767); // as much as the box holds
    drive.click("cmdnext");
    drive.click("Cmdedit");
    drive.type("Text(1)", "no number");
    drive.click("CmdOK");
    EXPECT_EQ(value("select gkmc as v from sys_gksz where gkbh='P2'"), QVariant());
    server.run({"use office", "alter table sys_gksz drop column gkmc_en"});
    drive.click("cmdqd");
    drive.click("cmdmd");
    EXPECT_EQ(value("select count(*) as v from sys_gksz"), 2);
}

TEST_F(BrokenLink, AStatementRunAgainGivesWhatAnAlteredTableHolds)
{
    const QString longText(300, u'箱');
    const struct {
        QString columns, stored;
        QStringList read;
    } tables[] = {
        {"num int, name varchar(10)", "1,'box'", {"1", "box"}},
        {"num double, name varchar(10)", "1.25,'box'", {"1.25", "box"}},
        {"num double, name varchar(400)", "1.25,repeat('箱',300)", {"1.25", longText}},
        {"num int, name varchar(400), day date", "2,'box','2026-08-01'", {"2", "box", "2026-08-01"}},
        {"num int, name varchar(400), day varchar(30)", "3,'box','neither day'", {"3", "box", "neither day"}},
        {"num int", "4", {"4"}},
        {"num varchar(300)", "repeat('5',300)", {QString(300, u'5')}},
    };
    for (const auto &[columns, stored, read] : tables) {
        server.run({"use office", "drop table if exists altered",
                    "create table altered(" + columns + ") character set utf8mb4",
                    "insert into altered values(" + stored + ")"});
        for (int time = 0; time < 2; ++time) {
            QStringList texts;
            gConn->read(
                "select * from altered where num > {n}", {{"n", 0}}, [](const QStringList &) {},
                [&texts](const QVariantList &row) {
                    for (const QVariant &value : row)
                        texts.append(value.toString());
                    return true;
                });
            EXPECT_EQ(texts, read);
        }
    }
}

} // namespace tradewick
