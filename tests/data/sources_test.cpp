// What record sets make of views and joins, of identities that are given away again, and of columns by wrong names.
#include "data/copies.h"
#include "support/test_database.h"

#include <gtest/gtest.h>

namespace tradewick
{

using test::TestDatabase;

namespace
{

class Sources : public testing::Test
{
protected:
    TestDatabase database;
    Recordset set;

    void open(const QString &statement) { set.Open(statement, {}, Connection::shared(database.connectionString())); }
    void run(const QString &statement) { database.connection().Execute(statement); }
    QStringList shown(const QString &column)
    {
        QStringList texts;
        for (int row = 0; row < set.RecordCount(); ++row)
            texts.append(set.valueAt(row, set.columnIndex(column)).toString());
        return texts;
    }
};

} // namespace

TEST_F(Sources, ViewsAndJoinsAreReadWhole)
{
    for (const char *key : {"X1", "X2"})
        database.connection().Execute("insert into yy_gw_wxht_h(htbh,djrq) values('{k}','2026-03-05')", {{"k", key}});
    for (const char *product : {"A", "B"})
        database.connection().Execute("insert into yy_gw_wxht_b(htbh,cpbh,sl) values('X1','{p}',2)", {{"p", product}});
    run("insert into yy_gn_cght_h(htbh) values('C1')");
    run("insert into yy_xyz_h(xyzh) values('L1')");
    for (const char *statement :
         {"select * from yy_wxht_rpt order by htbh,cpbh", "select * from yy_wxht_rpt where htbh<>'' order by htbh,cpbh",
          "select h.htbh,h.djrq,b.cpbh,b.sl from yy_gw_wxht_h h left join yy_gw_wxht_b b on h.htbh=b.htbh order by "
          "h.htbh,b.cpbh"}) {
        SCOPED_TRACE(statement);
        open(statement);
        EXPECT_EQ(shown("htbh"), QStringList({"X1", "X1", "X2"})) << "a contract without lines has its head";
        EXPECT_EQ(shown("cpbh"), QStringList({"A", "B", ""}));
        EXPECT_EQ(set.Fields("djrq").text(), "2026-03-05");
        EXPECT_THROW(set.AddNew(), DataError);
        EXPECT_THROW(set.Fields("sl").setValue(3), DataError);
        EXPECT_THROW(set.Delete(), DataError);
        EXPECT_EQ(set.RecordCount(), 3);
    }
    open("select * from yy_wxht_rpt");
    EXPECT_EQ(set.columnKind(set.columnIndex("sl")), ColumnKind::Number);
    for (const auto &[view, rows] : {std::pair("yy_cght_rpt", 1), {"yy_xyz_bd_rpt", 0}}) {
        open(QStringLiteral("select * from %1").arg(view));
        EXPECT_EQ(set.RecordCount(), rows) << view;
    }
}

// SQLite gives the identity of the last row, deleted, to the next new one.
TEST_F(Sources, AnotherKeyIsAnotherRecord)
{
    run("insert into sys_gksz(gkbh,gkmc) values('P0001','port')");
    const auto replaced = [&](const std::function<void()> &typed) {
        database.connection().Execute("delete from sys_gksz");
        run("insert into sys_gksz(gkbh,gkmc) values('P0001','port')");
        open("select * from sys_gksz");
        EXPECT_EQ(set.Fields("gkmc").text(), "port");
        typed();
        database.elsewhere("delete from sys_gksz");
        database.elsewhere("insert into sys_gksz(gkbh,gkmc) values('P0002','theirs')");
    };
    const auto gone = [&](const std::function<void()> &action) {
        try {
            action();
        } catch (const ConflictError &error) {
            return error.conflict().now.isEmpty();
        }
        return false;
    };
    replaced([&] { set.Fields("gkmc").setValue("mine"); });
    EXPECT_TRUE(gone([&] { set.UpdateBatch(); }));
    set.CancelUpdate();
    EXPECT_TRUE(gone([&] { set.connection()->transaction([&] { set.requireRow(set.absolutePosition()); }); }));
    set.Resync();
    EXPECT_EQ(set.Fields("gkmc").text(), "port");
    set.renewGone();
    set.UpdateBatch();
    EXPECT_EQ(database.count("sys_gksz"), 2);
    replaced([] {});
    set.Delete(); // what was wanted is no more; theirs stays
    EXPECT_EQ(database.count("sys_gksz"), 1);
    EXPECT_EQ(set.RecordCount(), 0);
    // A blank more and another case are the same key, and thus a change.
    replaced([&] { set.Fields("gkmc").setValue("mine"); });
    database.elsewhere("update sys_gksz set gkbh='p0001 '");
    try {
        set.UpdateBatch();
        ADD_FAILURE();
    } catch (const ConflictError &error) {
        EXPECT_EQ(error.conflict().now.isEmpty(), database.isOnServer());
    }
}

TEST_F(Sources, AWrongColumnIsTold)
{
    run("insert into yy_gwkh_zl(khbh,khmc,hl) values('K1',' 客户 ',8.5)");
    run("insert into yy_gw_wxht_h(htbh) values('X1')");
    open("select * from yy_gw_wxht_h");
    const Row row = database.connection().rows("select khbh,khmc,HL,zwdz from yy_gwkh_zl").first();
    EXPECT_EQ(row["Hl"], 8.5);
    EXPECT_TRUE(row["zwdz"].isNull());
    const auto told = [](const std::function<void()> &action) {
        try {
            action();
        } catch (const DataError &error) {
            return error.number() == DataError::noSuchColumn ? error.text() : QString();
        }
        return QString();
    };
    EXPECT_TRUE(told([&] { row["zwd"]; }).contains("zwd"));
    EXPECT_TRUE(told([&] { copyColumns(row, set, {{"khmc", "khmc"}, {"dizh", "zwd"}}); }).contains("zwd"));
    EXPECT_TRUE(told([&] { copyColumns(row, set, {{"khmc", "khmc"}, {"dizhi", "zwdz"}}); }).contains("dizhi"));
    EXPECT_FALSE(set.hasPendingChanges());
    set.Fields("dizh").setValue("before");
    copyColumns(row, set, {{"KHMC", "khmc"}, {"hl", "hl"}, {"dizh", "zwdz"}});
    EXPECT_EQ(set.Fields("khmc").text(), " 客户 ");
    EXPECT_EQ(set.Fields("hl").value(), 8.5);
    EXPECT_TRUE(set.Fields("dizh").value().isNull());
    copyColumns(row, set, {{"khmc", "khmc"}}, true);
    EXPECT_EQ(set.Fields("khmc").text(), "客户");
}

} // namespace tradewick
