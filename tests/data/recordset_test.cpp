#include "data/data_control.h"
#include "support/test_database.h"

#include <gtest/gtest.h>

namespace tradewick
{

using test::TestDatabase;

namespace
{

class Records : public testing::Test
{
protected:
    TestDatabase database;
    Recordset set;

    void SetUp() override
    {
        for (const char *key : {"P0001", "P0002", "P0003"})
            database.connection().Execute("insert into sys_gksz(gkbh,gkmc) values('{k}','port')", {{"k", key}});
        open();
    }

    void open() { set.Open("select * FROM sys_gksz", {}, Connection::shared(database.connectionString())); }
    QString key() { return set.Fields("GKBH").text(); }
};

} // namespace

TEST_F(Records, MoveAsAStaticCursorDoes)
{
    EXPECT_EQ(set.RecordCount(), 3);
    EXPECT_EQ(key(), "P0001");
    set.MovePrevious();
    EXPECT_TRUE(set.BOF());
    EXPECT_THROW(key(), DataError);
    set.MovePrevious();
    set.MoveNext();
    EXPECT_EQ(key(), "P0001");
    set.MoveLast();
    set.MoveNext();
    EXPECT_TRUE(set.EOF_());
    set.MovePrevious();
    EXPECT_EQ(key(), "P0003");
    EXPECT_THROW(set.Fields("nothing"), DataError);
    Recordset empty;
    empty.Open("select * from sys_jldw", {}, set.connection());
    EXPECT_TRUE(empty.BOF());
    EXPECT_TRUE(empty.EOF_());
    EXPECT_THROW(empty.MoveFirst(), DataError);
}

TEST_F(Records, RowsWaitUntilUpdateBatch)
{
    set.AddNew();
    EXPECT_EQ(set.RecordCount(), 4);
    set.Fields("gkbh").setValue("P0004");
    set.MoveFirst();
    set.Fields("gkmc").setValue("改名");
    EXPECT_EQ(database.count("sys_gksz"), 3);
    EXPECT_TRUE(set.hasPendingChanges());
    set.UpdateBatch();
    EXPECT_FALSE(set.hasPendingChanges());
    EXPECT_EQ(database.value("select gkmc from sys_gksz where gkbh='P0001'"), "改名");
    EXPECT_EQ(database.count("sys_gksz"), 4);
    set.MoveLast();
    set.Fields("beizhu").setValue("again");
    set.UpdateBatch();
    EXPECT_EQ(database.value("select beizhu from sys_gksz where gkbh='P0004'"), "again");
    EXPECT_TRUE(database.value("select gkxz from sys_gksz where gkbh='P0004'").isNull());
}

TEST_F(Records, CancelUpdateDropsTheWaitingRow)
{
    set.AddNew();
    set.Fields("gkbh").setValue("P0009");
    set.CancelUpdate();
    EXPECT_EQ(set.RecordCount(), 3);
    set.MoveFirst();
    set.Fields("gkmc").setValue("x");
    set.CancelUpdate();
    EXPECT_EQ(set.Fields("gkmc").text(), "port");
    set.UpdateBatch();
    EXPECT_EQ(database.count("sys_gksz"), 3);
}

TEST_F(Records, DeleteLetsTheNextRowTakeThePlace)
{
    set.MoveNext();
    set.Delete();
    EXPECT_EQ(database.count("sys_gksz"), 2);
    EXPECT_EQ(key(), "P0003");
    set.MoveNext();
    EXPECT_EQ(key(), "P0003");
    set.Delete();
    EXPECT_TRUE(set.EOF_());
    set.MovePrevious();
    EXPECT_EQ(key(), "P0001");
    set.AddNew();
    set.Delete();
    EXPECT_EQ(set.RecordCount(), 1);
    EXPECT_EQ(database.count("sys_gksz"), 1);
}

TEST_F(Records, ABatchIsWholeOrAbsent)
{
    set.Fields("gkmc").setValue("changed");
    set.AddNew();
    set.Fields("gkbh").setValue("p0002 "); // a twin by the rules of comparison
    EXPECT_THROW(set.UpdateBatch(), DataError);
    EXPECT_EQ(database.value("select gkmc from sys_gksz where gkbh='P0001'"), "port");
    EXPECT_TRUE(set.hasPendingChanges());
    EXPECT_EQ(key(), "p0002 ");
    set.Fields("gkbh").setValue("P0005");
    set.UpdateBatch();
    EXPECT_EQ(database.value("select gkmc from sys_gksz where gkbh='P0001'"), "changed");
    EXPECT_EQ(database.count("sys_gksz"), 4);
}

TEST_F(Records, SeveralBatchesAreOneTransaction)
{
    Recordset units;
    units.Open("select * FROM SYS_JLDW", {}, set.connection());
    units.AddNew();
    units.Fields("jlbh").setValue("J0001");
    set.Fields("gkbh").setValue("P0002");
    const auto both = [&] {
        set.connection()->transaction([&] {
            units.UpdateBatch();
            set.UpdateBatch();
        });
    };
    EXPECT_THROW(both(), DataError);
    EXPECT_EQ(database.count("sys_jldw"), 0);
    EXPECT_TRUE(units.hasPendingChanges());
    set.Fields("gkbh").setValue("P0007");
    both();
    EXPECT_EQ(database.count("sys_jldw"), 1);
    EXPECT_FALSE(units.hasPendingChanges());
}

TEST_F(Records, WhatAnotherDesktopChangedIsNotOverwritten)
{
    EXPECT_EQ(key(), "P0001");
    set.Fields("beizhu").setValue("mine");
    database.elsewhere("update sys_gksz set gkxz='theirs' where gkbh='P0001'");
    EXPECT_THROW(set.UpdateBatch(), DataError);
    EXPECT_EQ(set.Fields("beizhu").text(), "mine");
    EXPECT_TRUE(database.value("select beizhu from sys_gksz where gkbh='P0001'").isNull());
    set.CancelUpdate();
    open();
    set.MoveLast();
    EXPECT_EQ(key(), "P0003");
    database.elsewhere("delete from sys_gksz where gkbh='P0003'");
    set.Fields("beizhu").setValue("mine");
    EXPECT_THROW(set.UpdateBatch(), DataError);
    EXPECT_EQ(database.count("sys_gksz"), 2);
}

TEST_F(Records, WhatWasSavedIsReadAgainBeforeItIsChangedAgain)
{
    Connection &elsewhere = database.connection();
    set.Fields("gkmc").setValue("mine");
    set.UpdateBatch();
    elsewhere.Execute("update sys_gksz set gkmc='theirs' where gkbh='P0001'");
    EXPECT_EQ(set.Fields("gkmc").text(), "mine");
    set.Resync();
    EXPECT_EQ(set.Fields("gkmc").text(), "theirs");

    set.Fields("gkmc").setValue("mine again");
    set.UpdateBatch();
    elsewhere.Execute("update sys_gksz set beizhu='noted' where gkbh='P0001'");
    set.Fields("gkxz").setValue("sea");
    set.UpdateBatch(); // the note came after the save: it is no conflict, and it stays
    EXPECT_EQ(database.value("select beizhu from sys_gksz where gkbh='P0001'"), "noted");
    EXPECT_EQ(database.value("select gkxz from sys_gksz where gkbh='P0001'"), "sea");

    set.Fields("gkxz").setValue("typed");
    set.Resync(); // drops nothing that waits
    EXPECT_EQ(set.Fields("gkxz").text(), "typed");
}

TEST_F(Records, TheSameRowsReadAgainTellOnlyWhatDiffers)
{
    QStringList told;
    QObject::connect(&set, &Recordset::reset, [&] { told.append("reset"); });
    QObject::connect(&set, &Recordset::valueChanged, [&](int row, int) { told.append(QString::number(row)); });
    const auto read = [&](const QString &key) {
        told.clear();
        set.Open("select * from sys_gksz where gkbh like '%{key}%'", {{"key", key}},
                 Connection::shared(database.connectionString()));
        return told;
    };
    EXPECT_EQ(read("P000"), QStringList("reset"));
    set.MoveLast();
    EXPECT_EQ(read("P000"), QStringList());
    EXPECT_EQ(key(), "P0001") << "reading goes to the first row";
    database.connection().Execute("update sys_gksz set gkmc='other' where gkbh='P0002'");
    EXPECT_EQ(read("P000"), QStringList("1"));
    set.MoveNext();
    EXPECT_EQ(set.Fields("gkmc").text(), "other");
    set.Fields("gkmc").setValue("typed");
    EXPECT_EQ(read("P000"), QStringList("reset")) << "what waited is dropped, and views look anew";
    EXPECT_EQ(set.valueAt(1, set.columnIndex("gkmc")), "other");
    database.connection().Execute("insert into sys_gksz(gkbh) values('P0004')");
    EXPECT_EQ(read("P000"), QStringList("reset"));
    EXPECT_EQ(set.RecordCount(), 4);
    EXPECT_EQ(read("P0004"), QStringList("reset"));
    EXPECT_EQ(key(), "P0004");
    EXPECT_EQ(read("none"), QStringList("reset"));
    EXPECT_TRUE(set.EOF_());
}

TEST_F(Records, AFilterLeavesAllItsRowsHoweverMany)
{
    int stored = 0;
    for (const int rows : {63, 64, 65, 130}) {
        for (; stored < rows; ++stored)
            database.connection().Execute("insert into sys_gksz(gkbh) values('{k}')",
                                          {{"k", QStringLiteral("Q%1").arg(stored, 3, 10, QChar('0'))}});
        set.Open("select * from sys_gksz where gkbh like 'Q%{key}%' order by gkbh desc", {{"key", ""}},
                 Connection::shared(database.connectionString()));
        ASSERT_EQ(set.RecordCount(), rows);
        for (int row = 0; row < rows; ++row)
            ASSERT_EQ(set.valueAt(row, 0), QStringLiteral("Q%1").arg(rows - 1 - row, 3, 10, QChar('0')));
    }
}

TEST_F(Records, FindSearchesForwardByTheRulesOfComparison)
{
    set.MoveNext();
    set.Find("gkbh", "p0003 ");
    EXPECT_EQ(key(), "P0003");
    set.Find("gkbh", "P0001");
    EXPECT_TRUE(set.EOF_());
    set.MoveFirst();
    set.Find("gkbh", "' or '1'='1");
    EXPECT_TRUE(set.EOF_());
}

TEST_F(Records, ShowValuesInTheirOneForm)
{
    Connection &connection = database.connection();
    connection.Execute("insert into yy_gw_wxht_h(htbh,djrq,hl) values('X1','2026-03-05',0.1)");
    connection.Execute("insert into qb_pass(name,t1,t2) values('u','{on}','{off}')", {{"on", "True"}, {"off", false}});
    Recordset heads, users;
    heads.Open("select* FROM YY_gw_wxHT_H with(nolock)", {}, set.connection());
    users.Open("select * FROM qb_pass order by name asc", {}, set.connection());
    EXPECT_EQ(heads.Fields("djrq").text(), "2026-03-05");
    EXPECT_EQ(heads.Fields("hl").text(), "0.1");
    EXPECT_EQ(heads.Fields("gb").text(), "");
    EXPECT_TRUE(heads.Fields("gb").value().isNull());
    EXPECT_EQ(users.Fields("t1").text(), "True");
    EXPECT_EQ(users.Fields("t2").text(), "False");
    EXPECT_EQ(users.Fields("t3").text(), "");
    heads.Fields("djrq").setValue("11-24-2026");
    heads.Fields("hl").setValue("");
    heads.UpdateBatch();
    EXPECT_EQ(database.value("select djrq from yy_gw_wxht_h"), "2026-11-24");
    EXPECT_TRUE(database.value("select hl from yy_gw_wxht_h").isNull());
    heads.Fields("djrq").setValue("soon");
    EXPECT_THROW(heads.UpdateBatch(), DataError);
}

TEST_F(Records, ManyRowsAreReadAsTheyAreLookedAt)
{
    set.connection()->transaction([&] {
        for (int i = 0; i < 5000; ++i)
            set.connection()->Execute("insert into sys_jldw(jlbh,jldw) values('{k}','{n}')",
                                      {{"k", QString("J%1").arg(i, 5, 10, QChar('0'))}, {"n", i}});
    });
    DataControl control;
    control.ConnectionString = database.connectionString();
    control.setRecordSource("select * FROM SYS_JLDW order by jlbh");
    control.Refresh();
    Recordset &units = control.Recordset();
    EXPECT_EQ(units.RecordCount(), 5000);
    database.elsewhere("delete from sys_jldw where jlbh='J04990'");
    for (int row : {4999, 0, 2500, 63, 64, 4990}) {
        units.setAbsolutePosition(row);
        EXPECT_EQ(units.Fields("jldw").text(), row == 4990 ? QString() : QString::number(row)) << row;
    }
    control.setRecordSource("select jldw FROM SYS_JLDW where jlbh='{k}'", {{"k", "J00007"}});
    control.Refresh();
    EXPECT_EQ(units.Fields("jldw").text(), "7");
    EXPECT_THROW(units.AddNew(), DataError);
}

TEST_F(Records, AStatementRunsAgainWithOtherValuesWhereverItIs)
{
    Connection &connection = *set.connection();
    const QString names = "select gkmc from sys_gksz where gkbh >= '{k}' order by gkbh";
    const QString insert = "insert into sys_gksz(gkbh,gkmc) values('{k}','{n}')";
    const QString longName(60, u'港');
    EXPECT_EQ(connection.Execute(insert, {{"k", "P0004"}, {"n", "a"}}), 1);
    EXPECT_THROW(connection.Execute(insert, {{"k", "P0004"}, {"n", "twin"}}), DataError);
    EXPECT_EQ(connection.Execute(insert, {{"k", "P0005"}, {"n", longName}}), 1);
    EXPECT_EQ(connection.Execute(insert, {{"k", "P0006"}, {"n", QVariant()}}), 1);

    QVector<QVector<QVariant>> inner; // read while the same statement's outer rows are
    QVariantList outer;
    connection.read(
        names, {{"k", "P0004"}}, [](const QStringList &) {},
        [&](const QVariantList &row) {
            outer.append(row.first());
            inner.append(QVector<QVariant>());
            for (const Row &found : connection.rows(names, {{"k", "P0005"}}))
                inner.last().append(found["gkmc"]);
            return true;
        });
    EXPECT_EQ(outer, QVariantList({"a", longName, QVariant()}));
    EXPECT_EQ(inner, QVector<QVariantList>(3, {longName, QVariant()}));
    connection.read(
        names, {{"k", "P0004"}}, [](const QStringList &) {}, [](const QVariantList &) { return false; });
    database.elsewhere("delete from sys_gksz where gkbh='{k}'", {{"k", "P0005"}}); // nobody reads any more
    EXPECT_EQ(connection.rows(names, {{"k", "P0005"}}).size(), 1);
}

} // namespace tradewick
