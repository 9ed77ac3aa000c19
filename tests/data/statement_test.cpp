// Statements on a real database: what they select is what the server's comparison would.
#include "data/connection_string.h"
#include "support/test_database.h"

#include <gtest/gtest.h>

namespace tradewick
{

using test::TestDatabase;

namespace
{

class Statements : public testing::Test
{
protected:
    TestDatabase database;

    QStringList names(const QString &statement, const Values &values = {})
    {
        QStringList found;
        for (const Row &row : database.connection().rows(statement, values))
            found.append(row.values().first().toString());
        return found;
    }

    void addPort(const QString &key, const QVariant &name)
    {
        database.connection().Execute("insert into sys_gksz(gkbh,gkmc) values('{key}','{name}')",
                                      {{"key", key}, {"name", name}});
    }
};

} // namespace

TEST_F(Statements, EveryCharacterOfAValueMeansItself)
{
    const QStringList values{"O'Neill & Söhne",
                             "x'; delete from yy_gw_wxht_h --",
                             "50% _[a]",
                             "😀",
                             "{key}",
                             "a!b\\c",
                             "\"double\"",
                             "-- comment",
                             QString(4000, u'汉'),
                             "?",
                             "''"};
    for (int i = 0; i < values.size(); ++i)
        addPort(QString::number(i), values[i]);
    for (int i = 0; i < values.size(); ++i) {
        const QStringList only{QString::number(i)};
        EXPECT_EQ(names("select gkbh from sys_gksz where gkmc='{v}'", {{"v", values[i]}}), only) << i;
        EXPECT_EQ(names("select gkbh from sys_gksz where gkmc like '%{v}%' order by gkbh", {{"v", values[i]}}), only)
            << i;
        EXPECT_EQ(names("select gkmc from sys_gksz where gkbh='{k}'", {{"k", i}}), QStringList{values[i]}) << i;
    }
    EXPECT_EQ(database.count("sys_gksz"), values.size());
}

TEST_F(Statements, CompareAsTheServerDoes)
{
    addPort("P0001", "Söhne & Co");
    addPort("p0002 ", "广州");
    addPort("P0003", "  ");
    addPort("P0004", QVariant());
    addPort("10", "PIER 7");
    const struct {
        const char *condition;
        QVariant value;
        QStringList keys;
    } cases[] = {
        {"gkbh='{v}'", "P0002", {"p0002 "}},
        {"gkbh='{v}'", "p0001  ", {"P0001"}},
        {"gkmc='{v}'", "SÖHNE & CO", {"P0001"}},
        {"gkmc like '%{v}%'", "sÖh", {"P0001"}},
        {"gkmc like '%{v}%'", "pier", {"10"}},
        {"gkmc<>'{v}'", "", {"P0001", "p0002 ", "10"}},
        {"gkmc=''", {}, {"P0003"}},
        {"gkbh={v}", 10, {"10"}},
        {"gkbh='{v}'", 10.0, {"10"}},
        {"gkmc is null", {}, {"P0004"}},
        {"isnull(gkmc,'')=''", {}, {"P0003", "P0004"}},
        {"Left(gkbh, 1) = '{v}'", "P", {"P0001", "p0002 ", "P0003", "P0004"}},
        {"right(gkbh,4)<='{v}'", "0002", {"P0001"}},
        {"gkmc not like '%{v}%'", "PIER", {"P0001", "p0002 ", "P0003"}},
    };
    for (const auto &c : cases) {
        QStringList found = names(QString("select gkbh from sys_gksz where %1").arg(c.condition), {{"v", c.value}});
        EXPECT_EQ(QSet<QString>(found.begin(), found.end()), QSet<QString>(c.keys.begin(), c.keys.end()))
            << c.condition << " " << c.value.toString().toStdString();
    }
}

TEST_F(Statements, OrderDistinctAndGroupFollowTheCollation)
{
    int key = 0;
    for (const char *name : {"上海", "阿坝", "b", "A", "广州", "北京", "_x", "7", "a "})
        addPort(QString::number(++key), name);
    const QString ordered =
        names("select DISTINCT gkmc from sys_gksz where not gkmc is null order by gkmc").join(u'|').toLower();
    EXPECT_EQ(ordered.toStdString(), "_x|7|a|b|阿坝|北京|广州|上海");
    EXPECT_EQ(database.connection().rows("select gkmc, count(*) as n from sys_gksz group by gkmc").size(), 8);
    EXPECT_EQ(database.connection().rows("select DISTINCT dbo.sys_gksz.gkmc from dbo.sys_gksz with (nolock)").size(),
              8);
}

TEST_F(Statements, NotInWithANullYieldsNothing)
{
    addPort("A ", "x");
    database.connection().Execute("insert into sys_jldw(jlbh) values('a')");
    EXPECT_EQ(names("select gkbh from sys_gksz where gkbh not in (select distinct jlbh from sys_jldw)"), QStringList());
    EXPECT_EQ(names("select gkbh from sys_gksz where gkbh in (select distinct jlbh from sys_jldw)"), QStringList{"A "});
    addPort("B", "x");
    EXPECT_EQ(names("select gkbh from sys_gksz where gkbh not in (select distinct jlbh from sys_jldw)"),
              QStringList{"B"});
    database.connection().Execute("insert into sys_jldw(jldw) values('PCS')");
    EXPECT_EQ(names("select gkbh from sys_gksz where gkbh not in (select distinct jlbh from sys_jldw)"), QStringList());
}

TEST_F(Statements, DatesAndNumbersMeetByValue)
{
    Connection &connection = database.connection();
    connection.Execute("insert into yy_gw_wxht_h(htbh,djrq,hl) values('{h}','{d}','{r}')",
                       {{"h", "X1"}, {"d", "2026/3/5"}, {"r", " 6.50 "}});
    EXPECT_EQ(database.value("select djrq from yy_gw_wxht_h"), "2026-03-05");
    const QStringList one{"X1"};
    EXPECT_EQ(names("select htbh from yy_gw_wxht_h where djrq='{d}'", {{"d", "20260305"}}), one);
    EXPECT_EQ(names("select htbh from yy_gw_wxht_h where djrq>='{a}' and djrq<='{b}'order by djrq",
                    {{"a", "3-1-2026"}, {"b", QDate(2026, 3, 31)}}),
              one);
    EXPECT_EQ(names("select distinct HTBH from YY_gw_wxHT_H where year(djrq)='{y}'and month(djrq)='{m}' order by HTBH",
                    {{"y", "2026"}, {"m", "3"}}),
              one);
    EXPECT_EQ(names("select htbh from yy_gw_wxht_h where hl='{r}'", {{"r", "6.5"}}), one);
    connection.Execute("update yy_gw_wxht_h set djrq='{d}', hl='{r}' where htbh='{h}'",
                       {{"d", ""}, {"r", "7,5"}, {"h", "nobody"}});
    connection.Execute("update yy_gw_wxht_h set djrq='{d}' where htbh='{h}'", {{"d", ""}, {"h", "x1"}});
    EXPECT_TRUE(database.value("select djrq from yy_gw_wxht_h").isNull());
    EXPECT_THROW(connection.Execute("update yy_gw_wxht_h set hl='{r}'", {{"r", "six"}}), DataError);
    EXPECT_THROW(connection.Execute("update yy_gw_wxht_h set hl='{missing}'"), DataError);
}

TEST_F(Statements, TellWhichStatementsArePlain)
{
    EXPECT_EQ(plainTableOf("select* FROM YY_gw_wxHT_H with(nolock) where djrq='{date}'"), "yy_gw_wxht_h");
    EXPECT_EQ(plainTableOf("select * FROM qb_pass order by name asc"), "qb_pass");
    EXPECT_EQ(plainTableOf("select * from a, b"), "");
    EXPECT_EQ(plainTableOf("select a.* from a"), "");
    EXPECT_EQ(plainTableOf("select DISTINCT * from SYS_CWGS"), "");
    EXPECT_EQ(plainTableOf("select * from a inner join b on a.x=b.x where a.x=1"), "");
}

TEST(ConnectionString, KeepsEveryCharacterOfItsValues)
{
    const ConnectionParts parts = connectionParts("Provider=SQLOLEDB.1;Persist Security Info=True;password=a;b=c;User "
                                                  "ID=sa;Initial Catalog=外贸;Data Source=HOST\\A,1433");
    EXPECT_EQ(parts.password, "a;b=c");
    EXPECT_EQ(parts.userId, "sa");
    EXPECT_EQ(parts.catalog, "外贸");
    EXPECT_EQ(parts.dataSource, "HOST\\A,1433");
    EXPECT_EQ(parts.provider, "SQLOLEDB.1");
    Connection connection;
    EXPECT_THROW(connection.Open("Provider=SQLOLEDB.1;Data Source=/nowhere/office.db"), DataError);
    EXPECT_FALSE(connection.isOpen());
}

} // namespace tradewick
