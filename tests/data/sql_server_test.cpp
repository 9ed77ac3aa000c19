// SQL Server through ODBC: what the drivers are told, what a real one then sends, and statements through one.
#include "data/recordset.h"
#include "data/sql_server.h"
#include "server_database.h"
#include "sql_server_stand_in.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

namespace tradewick
{

using test::ServerDatabase;
using test::SqlServerStandIn;

namespace
{

const QString vendors = "ODBC Driver 18 for SQL Server";

QString messageOf(const std::function<void()> &action)
{
    try {
        action();
    } catch (const DataError &error) {
        return error.text();
    }
    return {};
}

QString connectionString(const QString &dataSource, const QString &user = {}, const QString &password = {},
                         const QString &catalog = {})
{
    return "Provider=SQLOLEDB.1;password=" + password + ";User ID=" + user + ";Initial Catalog=" + catalog +
           ";Data Source=" + dataSource;
}

} // namespace

TEST(SqlServerSource, TellsEachDriverWhereTheServerIsAndHowToGuardTheLink)
{
    const struct {
        const char *source, *vendor;
        QStringList freeTds;
    } cases[] = {
        {"OFFICE",
         "{tcp:OFFICE};Database={外贸};Encrypt=yes;TrustServerCertificate=no",
         {"host = OFFICE", "port = 1433", "encryption = require", "ca file = /etc/ssl/certs/ca-certificates.crt"}},
        {"tcp:office.example,14330",
         "{tcp:office.example,14330};Database={外贸};Encrypt=yes;TrustServerCertificate=no",
         {"host = office.example", "port = 14330", "check certificate hostname = yes"}},
        {"OFFICE\\TRADE?tls=encrypt",
         "{tcp:OFFICE\\TRADE};Database={外贸};Encrypt=yes;TrustServerCertificate=yes",
         {"host = OFFICE", "instance = TRADE", "encryption = require"}},
        {"办公室,1433?tls=off",
         "{tcp:办公室,1433};Database={外贸};Encrypt=no;TrustServerCertificate=yes",
         {"host = 办公室", "port = 1433", "encryption = request"}},
        {"(local)",
         "{tcp:localhost};Database={外贸};Encrypt=no;TrustServerCertificate=yes",
         {"host = localhost", "encryption = request"}},
        {".\\TRADE?tls=verify",
         "{tcp:localhost\\TRADE};Database={外贸};Encrypt=yes;TrustServerCertificate=no",
         {"host = localhost", "instance = TRADE", "encryption = require"}},
    };
    for (const auto &c : cases) {
        const SqlServerSource source = sqlServerSource({{}, c.source, "sa", "secret", "外贸"});
        EXPECT_EQ(odbcText(source, vendors).keywords.toStdString(),
                  "Driver={ODBC Driver 18 for SQL Server};Server=" + std::string(c.vendor) + ";APP=Tradewick");
        const OdbcText text = odbcText(source, "FreeTDS");
        EXPECT_EQ(text.keywords, "Driver={FreeTDS};Servername=tradewick;Database={外贸};APP=Tradewick");
        const QStringList lines = text.configuration.split(u'\n');
        for (const QString &line : c.freeTds)
            EXPECT_TRUE(lines.contains(line)) << c.source << ": " << text.configuration.toStdString();
        EXPECT_EQ(text.configuration.contains("ca file"), source.tls == Guard::Tls::Verify) << c.source;
    }
    for (const char *source : {"", "np:OFFICE", "OFFICE;Encrypt=no", "OFFICE\nca file =", "OFFICE\\A B", "OFFICE,port",
                               "OFFICE?tls=maybe", "OFFICE?ca=/nowhere.pem", "/nowhere/office"})
        EXPECT_THROW(sqlServerSource({{}, source, {}, {}, {}}), DataError) << source;
}

TEST(SqlServerSource, ACertificateFileIsForTheDriverThatCanUseIt)
{
    QTemporaryDir folder;
    const QString path = folder.filePath("office.pem");
    ASSERT_TRUE(QFile(path).open(QIODevice::WriteOnly));
    const SqlServerSource source = sqlServerSource({{}, "OFFICE?ca=" + path, {}, {}, {}});
    EXPECT_TRUE(odbcText(source, "FreeTDS").configuration.contains("ca file = " + path));
    EXPECT_THROW(odbcText(source, vendors), DataError);
}

TEST(SqlServerDriver, IsTheBestThatIsInstalled)
{
    QTemporaryDir folder;
    QFile file(folder.filePath("odbcinst.ini"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[SQLite3]\nDriver=libsqlite3odbc.so\n\n [FreeTDS] \nDriver=libtdsodbc.so\n");
    file.close();
    const QByteArray before = qgetenv("ODBCSYSINI");
    qputenv("ODBCSYSINI", folder.path().toLocal8Bit());
    const QStringList installed = installedOdbcDrivers();
    if (before.isEmpty())
        qunsetenv("ODBCSYSINI");
    else
        qputenv("ODBCSYSINI", before);
    EXPECT_EQ(sqlServerDriver(installed), "FreeTDS");
    EXPECT_EQ(sqlServerDriver(installed + QStringList{"ODBC Driver 17 for SQL Server"}),
              "ODBC Driver 17 for SQL Server");
    EXPECT_EQ(sqlServerDriver({"FreeTDS", "ODBC Driver 17 for SQL Server", vendors}), vendors);
    EXPECT_TRUE(messageOf([] { sqlServerDriver({"SQLite3"}); }).contains("tdsodbc"));
}

// The values of a connection string reach the server to the letter, through the toolkit, the driver manager and the
// driver, each of which reads keywords and braces.
TEST(SqlServerLink, ShowsTheServerWhoLogsInAndTakesItsRefusal)
{
    const struct {
        const char *user, *password, *catalog;
    } cases[] = {
        {"sa", "a;b=c", "trade"}, {"业务员", "密码;Encryption=off", "外贸"}, {"o'neill", "}{x}PWD=y}", "a b"},
        {"s}a;", "}}", "{a}"},    {"sa", " x.dsn?%&\"'", "trade"},
    };
    SqlServerStandIn server;
    for (const auto &c : cases) {
        Connection connection;
        const QString message = messageOf([&] {
            connection.Open(
                connectionString(QString("127.0.0.1,%1").arg(server.port()), c.user, c.password, c.catalog));
        });
        EXPECT_TRUE(message.startsWith("数据库服务器不接受这个用户名、口令或数据库名。")) << message.toStdString();
        EXPECT_FALSE(connection.isOpen());
        EXPECT_EQ(server.login(), (QJsonObject{{"user", c.user},
                                               {"password", c.password},
                                               {"database", c.catalog},
                                               {"application", "Tradewick"},
                                               {"encryption", 0}}));
    }
}

TEST(SqlServerLink, DoublesBracesForTheDriversThatReadThem)
{
    EXPECT_EQ(odbcValue("a};b", vendors), "{a}};b}");
    EXPECT_THROW(odbcValue("a};b", "FreeTDS"), DataError);
}

TEST(SqlServerLink, IsAsSafeAsTheSourceAsks)
{
    SqlServerStandIn plain, known("localhost"), other("office.example");
    const QString ca = "&ca=" + known.certificate();
    const struct {
        SqlServerStandIn &server;
        QString query;
        bool opens;
    } cases[] = {
        {plain, "tls=off", true},          {plain, "tls=encrypt", false},
        {plain, "tls=verify", false},      {known, "tls=off", true},
        {known, "tls=encrypt", true},      {known, "tls=verify", false}, // nobody vouches for it
        {known, "tls=verify" + ca, true},  {other, "tls=verify&ca=" + other.certificate(), false},
        {other, "tls=verify" + ca, false},
    };
    for (const auto &c : cases) {
        Connection connection;
        const QString message = messageOf([&] { connection.Open(c.server.source("localhost", c.query)); });
        EXPECT_EQ(connection.isOpen(), c.opens) << c.query.toStdString() << message.toStdString();
        const QJsonObject login = c.server.login();
        EXPECT_EQ(login["encryption"].toInt(), c.query == "tls=off" ? 0 : 1);
        EXPECT_EQ(login["password"].toString(), c.opens ? "secret" : "") << c.query.toStdString();
    }
}

namespace
{

ColumnKinds contractKinds(const QString &table)
{
    return table == "h" ? ColumnKinds{{"htbh", ColumnKind::Text},
                                      {"djrq", ColumnKind::Date},
                                      {"hl", ColumnKind::Number},
                                      {"wc", ColumnKind::Flag}}
                        : ColumnKinds();
}

} // namespace

TEST(SqlServerStatements, AreSentAsTheyStandWithTypedValues)
{
    const struct {
        const char *statement, *text;
        Values values;
        QVariantList parameters;
    } cases[] = {
        {"select* FROM h with(nolock) where htbh='{k}'and isnull(hl,0)>={n} order by [htbh]",
         "select* FROM h with(nolock) where htbh= ? and isnull(hl,0)>= ?  order by [htbh]",
         {{"k", "外贸's"}, {"n", 6.5}},
         {"外贸's", 6.5}},
        {"select dbo.h.htbh from dbo.h where dbo.h.htbh like '%{k}%'",
         "select dbo.h.htbh from dbo.h where dbo.h.htbh like  ?  escape '!'",
         {{"k", "5%[a]_!"}},
         {"%5!%![a]!_!!%"}},
        {"insert into h(htbh,djrq,hl,wc) values('{k}','{d}','{n}','{f}')",
         "insert into h(htbh,djrq,hl,wc) values( ? , ? , ? , ? )",
         {{"k", ""}, {"d", "2026/3/5"}, {"n", " 6.50 "}, {"f", "True"}},
         {"", "2026-03-05", 6.5, true}},
        {"update h set djrq='{d}',hl='{n}' where htbh='{k}'",
         "update h set djrq= ? ,hl= ?  where htbh= ? ",
         {{"d", QDate(2026, 3, 5)}, {"n", QVariant()}, {"k", "😀"}},
         {"2026-03-05", QVariant(), "😀"}},
    };
    for (const auto &c : cases) {
        const BoundStatement bound = bindStatement(c.statement, c.values, Engine::SqlServer, contractKinds);
        EXPECT_EQ(bound.text.toStdString(), c.text);
        EXPECT_EQ(bound.parameters, c.parameters) << c.text;
        for (int i = 0; i < bound.parameters.size(); ++i)
            EXPECT_EQ(bound.parameters[i].typeId(), c.parameters[i].typeId()) << c.text << " " << i;
        EXPECT_TRUE(bound.order.isEmpty());
    }
}

namespace
{

// The one server for which there is an ODBC driver and a server to be had; what differs from SQL Server is its SQL.
class ThroughOdbc : public testing::Test
{
protected:
    QString source(const QString &password = "pw") const
    {
        return connectionString("odbc:Driver={MariaDB Unicode};Socket=" + database.socket() +
                                    ";Charset=utf8mb4;Database=" + database.name(),
                                "clerk", password);
    }
    void SetUp() override
    {
        connection.Open(source());
        connection.Execute("create table kinds(text varchar(255), number double, date datetime, flag bit, "
                           "words longtext) character set utf8mb4");
    }

    ServerDatabase database;
    Connection connection;
};

} // namespace

TEST_F(ThroughOdbc, ValuesOfEveryKindComeBackAsTheyWere)
{
    const Values rows[] = {
        {{"t", "外贸 \"O'Neill\" {x} ? -- 😀"},
         {"n", -6.25},
         {"d", "2026/3/5"},
         {"f", "True"},
         {"w", QString(4000, u'汉')}},
        {{"t", ""}, {"n", 0}, {"d", QDate(2000, 2, 29)}, {"f", false}, {"w", "a\\b\nc "}},
        {{"t", QVariant()}, {"n", QVariant()}, {"d", QVariant()}, {"f", QVariant()}, {"w", QVariant()}},
    };
    for (const Values &row : rows)
        EXPECT_EQ(connection.Execute(
                      "insert into kinds(text,number,date,flag,words) values('{t}','{n}','{d}','{f}','{w}')", row),
                  1);
    const QVector<Row> found = connection.rows("select * from kinds");
    ASSERT_EQ(found.size(), 3);
    EXPECT_EQ(found[0].columns(), QStringList({"text", "number", "date", "flag", "words"}));
    EXPECT_EQ(found[0].values(), QVariantList({rows[0]["t"], -6.25, "2026-03-05", 1, rows[0]["w"]}));
    EXPECT_EQ(found[1].values(), QVariantList({"", 0.0, "2000-02-29", 0, rows[1]["w"]}));
    EXPECT_EQ(found[2].values(), QVariantList(5));
    EXPECT_EQ(connection.kindsOf("kinds"), (ColumnKinds{{"text", ColumnKind::Text},
                                                        {"number", ColumnKind::Number},
                                                        {"date", ColumnKind::Date},
                                                        {"flag", ColumnKind::Flag},
                                                        {"words", ColumnKind::Text}}));
    EXPECT_EQ(connection.rows("select text from kinds where text='{t}'", {{"t", rows[0]["t"]}}).size(), 1);
    EXPECT_EQ(connection.rows("select text from kinds where text like '%{t}%'", {{"t", "😀"}}).size(), 1);
    EXPECT_EQ(connection.rows("select text from kinds where words='{w}'", {{"w", QString(100, u'汉')}}).size(), 0);
    EXPECT_EQ(connection.Execute("update kinds set number='{n}' where date>='{d}'", {{"n", ""}, {"d", "3-5-2026"}}), 1);
}

TEST_F(ThroughOdbc, ATransactionIsWholeOrAbsentAndReadsBetween)
{
    const auto insert = [&] { connection.Execute("insert into kinds(number) values(1)"); };
    const auto count = [&] { return connection.rows("select count(*) as n from kinds").first().value("n").toInt(); };
    connection.transaction([&] {
        insert();
        insert();
    });
    EXPECT_THROW(connection.transaction([&] {
        insert();
        EXPECT_EQ(count(), 3);
        connection.Execute("insert into nowhere(number) values(1)");
    }),
                 DataError);
    EXPECT_EQ(count(), 2);
    // A statement in the middle of a result, and a result that is left in the middle.
    int seen = 0;
    connection.read(
        "select number from kinds", {}, [](const QStringList &) {},
        [&](const QVariantList &) {
            insert();
            return ++seen < 2;
        });
    EXPECT_EQ(count(), 4);
    Connection other;
    other.Open(source());
    EXPECT_EQ(other.rows("select number from kinds").size(), 4);
}

TEST_F(ThroughOdbc, RefusalsComeAsErrorsOfTheProgram)
{
    Connection refused;
    EXPECT_TRUE(messageOf([&] { refused.Open(source("wrong;PWD=pw")); }).startsWith("数据库服务器不接受"));
    EXPECT_FALSE(refused.isOpen());
    EXPECT_FALSE(messageOf([&] { refused.Open(connectionString("odbc:DSN=nowhere")); }).isEmpty());
    connection.Execute("create unique index one on kinds(text)");
    const Values value{{"t", "P0001"}};
    connection.Execute("insert into kinds(text) values('{t}')", value);
    EXPECT_TRUE(
        messageOf([&] { connection.Execute("insert into kinds(text) values('{t}')", value); }).startsWith("编号重复"));
}

namespace
{

// Record sets as forms use them, through the driver, on a server that speaks the protocol.
class OnSqlServer : public testing::Test
{
protected:
    void SetUp() override
    {
        for (Connection *connection : {mine.get(), &theirs})
            connection->Open(server.source());
        for (const char *key : {"P0001", "P0002", "P0003"})
            theirs.Execute("insert into sys_gksz(gkbh,gkmc) values('{k}','广州')", {{"k", key}});
        set.Open("select * FROM sys_gksz order by gkbh", {}, mine);
    }

    QStringList names() { return column("select gkmc from sys_gksz order by gkbh"); }
    QStringList column(const QString &statement)
    {
        QStringList values;
        for (const Row &row : theirs.rows(statement))
            values.append(row.values().first().toString());
        return values;
    }

    SqlServerStandIn server;
    std::shared_ptr<Connection> mine = std::make_shared<Connection>();
    Connection theirs;
    Recordset set;
};

} // namespace

TEST_F(OnSqlServer, RowsAreAddedChangedAndDeleted)
{
    set.AddNew();
    set.Fields("gkbh").setValue("P0004");
    set.Fields("gkmc").setValue("上海 😀 O'Neill");
    set.UpdateBatch();
    set.setAbsolutePosition(1);
    set.Fields("gkmc").setValue("");
    set.UpdateBatch();
    EXPECT_EQ(names(), (QStringList{"广州", "", "广州", "上海 😀 O'Neill"}));
    set.Fields("gkmc").setValue(QVariant());
    set.UpdateBatch();
    EXPECT_FALSE(theirs.rows("select gkmc from sys_gksz where gkbh='P0002'").first()["gkmc"].isValid());
    set.Delete();
    set.setAbsolutePosition(2);
    set.Delete();
    EXPECT_EQ(names(), (QStringList{"广州", "广州"}));
    EXPECT_EQ(set.RecordCount(), 2);
}

TEST_F(OnSqlServer, EveryKindOfColumnComesBackAsItWasTyped)
{
    Recordset contracts;
    contracts.Open("select * from yy_gw_wxht_h", {}, mine);
    EXPECT_EQ(contracts.RecordCount(), 0);
    contracts.AddNew();
    contracts.Fields("htbh").setValue("X1");
    contracts.Fields("djrq").setValue("2026/3/5");
    contracts.Fields("hl").setValue(" 6.50 ");
    contracts.Fields("qttk").setValue(QString(5000, u'汉'));
    contracts.UpdateBatch();
    const Row row = theirs.rows("select * from yy_gw_wxht_h where djrq>='{d}'", {{"d", "3-5-2026"}}).value(0);
    EXPECT_EQ(row["djrq"], "2026-03-05");
    EXPECT_EQ(row["hl"], 6.5);
    EXPECT_EQ(row["qttk"], QString(5000, u'汉'));
    EXPECT_FALSE(row["khbh"].isValid());
    // It is found again by all its values as they were written.
    contracts.Fields("hl").setValue(7);
    contracts.UpdateBatch();
    EXPECT_EQ(theirs.rows("select hl from yy_gw_wxht_h").first()["hl"], 7.0);
}

TEST_F(OnSqlServer, AConflictShowsTheRowAsItStandsNow)
{
    set.Fields("gkmc").setValue("上海");
    theirs.Execute("update sys_gksz set gkmc='北京' where gkbh='P0001'");
    try {
        set.UpdateBatch();
        FAIL() << "the other's change was written over";
    } catch (const ConflictError &error) {
        ASSERT_FALSE(error.conflict().now.isEmpty());
        EXPECT_EQ(error.conflict().now[set.columnIndex("gkmc")], "北京");
    }
    EXPECT_EQ(names().first(), "北京");
    theirs.Execute("delete from sys_gksz where gkbh='P0001'");
    try {
        set.UpdateBatch();
        FAIL() << "the row is gone";
    } catch (const ConflictError &error) {
        EXPECT_TRUE(error.conflict().now.isEmpty());
    }
    set.CancelUpdate();
    EXPECT_THROW(set.requireRow(set.absolutePosition()), ConflictError);
}

TEST_F(OnSqlServer, ATransactionIsWholeOrAbsent)
{
    const auto change = [&](const QString &name) {
        mine->Execute("update sys_gksz set gkmc='{n}' where gkbh='P0001'", {{"n", name}});
    };
    mine->transaction([&] { change("上海"); });
    EXPECT_EQ(names().first(), "上海");
    EXPECT_TRUE(messageOf([&] {
                    mine->transaction([&] {
                        change("北京");
                        mine->Execute("insert into sys_gksz(gkbh) values('P0002')");
                    });
                }).startsWith("编号重复"));
    EXPECT_EQ(names().first(), "上海");
    mine->transaction([&] { change("北京"); });
    EXPECT_EQ(names().first(), "北京");
    EXPECT_TRUE(messageOf([&] {
                    theirs.Execute("update yy_gw_wxht_h set hl='{n}'", {{"n", "six"}});
                    theirs.Execute("insert into yy_gw_wxht_h(hl) values('{n}')", {{"n", "six"}});
                }).startsWith("录入的内容不是"));
}

TEST_F(OnSqlServer, ARowThatWasStoredWithoutAnAnswerIsNotStoredTwice)
{
    set.AddNew();
    set.Fields("gkbh").setValue("P0004");
    set.Fields("gkmc").setValue("上海");
    EXPECT_THROW(mine->transaction([&] {
        set.UpdateBatch();
        throw DataError(0, "undone");
    }),
                 DataError);
    theirs.Execute("insert into sys_gksz(gkbh,gkmc) values('P0004','上海')");
    set.UpdateBatch();
    EXPECT_FALSE(set.hasPendingChanges());
    EXPECT_EQ(names(), (QStringList{"广州", "广州", "广州", "上海"}));
}

TEST_F(OnSqlServer, ABrokenLinkIsToldAndNothingTypedIsLost)
{
    set.Fields("gkmc").setValue("上海");
    server.kill();
    try {
        set.UpdateBatch();
        FAIL() << "nobody is there";
    } catch (const DataError &error) {
        EXPECT_EQ(error.number(), DataError::connectionLost) << error.text().toStdString();
    }
    EXPECT_EQ(set.Fields("gkmc").text(), "上海");
    EXPECT_TRUE(set.hasPendingChanges());
}

TEST(SqlServerLink, TellsThatNobodyAnswers)
{
    Connection connection;
    try {
        connection.Open(connectionString("127.0.0.1,1"));
        FAIL() << "nobody listens there";
    } catch (const DataError &error) {
        EXPECT_EQ(error.number(), DataError::connectionLost) << error.text().toStdString();
    }
}

} // namespace tradewick
