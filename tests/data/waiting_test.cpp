// Rows that wait to be stored: each by itself or all together, put aside and taken back, refused and told why.
#include "data/data_control.h"
#include "data/number_of.h"
#include "database/description.h"
#include "support/test_database.h"

#include <gtest/gtest.h>

namespace tradewick
{

using test::TestDatabase;

namespace
{

class Waiting : public testing::Test
{
protected:
    TestDatabase database;
    Recordset set;
    int told = 0;

    void SetUp() override
    {
        for (const char *key : {"P0001", "P0002", "P0003"})
            database.connection().Execute("insert into sys_gksz(gkbh,gkmc) values('{k}','port')", {{"k", key}});
        open(set, "select * FROM sys_gksz order by gkbh");
        QObject::connect(&set, &Recordset::waitingChanged, [this] { ++told; });
    }

    void open(Recordset &records, const QString &statement)
    {
        records.Open(statement, {}, Connection::shared(database.connectionString()));
    }
    void type(int row, const QString &column, const QVariant &value)
    {
        set.setValueAt(row, set.columnIndex(column), value);
    }
    void add(const QString &key)
    {
        set.AddNew();
        set.Fields("gkbh").setValue(key);
    }
    QString shown(int row) { return set.valueAt(row, set.columnIndex("gkbh")).toString(); }
    QString stored(const QString &column)
    {
        QStringList texts;
        database.connection().read(
            "select " + column + " from sys_gksz order by gkbh", {}, [](const QStringList &) {},
            [&](const QVariantList &row) {
                texts.append(row.first().toString());
                return true;
            });
        return texts.join(u' ');
    }
};

} // namespace

TEST_F(Waiting, EachRowIsStoredByItself)
{
    type(0, "gkmc", "a");
    type(0, "gkxz", "x");
    EXPECT_EQ(told, 1) << "a second value in the row is no news";
    add("p0002"); // a twin
    add("P0004");
    EXPECT_EQ(set.waitingRows(), QVector<int>({0, 3, 4}));
    const int name = set.columnIndex("gkmc"), code = set.columnIndex("gkbh");
    EXPECT_EQ(set.storedValueAt(0, name).toString() + set.storedValueAt(1, code).toString(), "portP0002");
    EXPECT_TRUE(set.storedValueAt(3, code).isNull()); // not stored yet
    const qint64 twin = set.keyAt(3), added = set.keyAt(4);
    QVector<std::pair<qint64, qint64>> rekeyed;
    QObject::connect(&set, &Recordset::keyChanged, [&](qint64 before, qint64 now) { rekeyed.append({before, now}); });
    EXPECT_THROW(set.UpdateRow(3), DataError);
    told = 0;
    set.UpdateRow(4);
    set.UpdateRow(4); // waits no more
    EXPECT_EQ(told, 1);
    EXPECT_EQ(stored("gkbh"), "P0001 P0002 P0003 P0004");
    EXPECT_EQ(stored("gkmc"), "port port port ");
    EXPECT_EQ(set.waitingRows(), QVector<int>({0, 3}));
    EXPECT_EQ(rekeyed, (QVector<std::pair<qint64, qint64>>{{added, set.keyAt(4)}}));
    EXPECT_GT(set.keyAt(4), 0);
    EXPECT_EQ(set.rowOfKey(twin), 3);
    EXPECT_EQ(set.rowOfKey(added), -1);
    EXPECT_THROW(set.UpdateRow(5), DataError);
    set.UpdateRow(0);
    EXPECT_EQ(stored("gkmc"), "a port port ");
    EXPECT_EQ(set.waitingRows(), QVector<int>({3}));
}

TEST_F(Waiting, CallsOfOneTransactionFollowEachOther)
{
    const auto work = [&](bool fails) {
        set.connection()->transaction([&] {
            type(0, "gkmc", "a");
            set.UpdateRow(0);
            EXPECT_TRUE(set.isWaiting(0)) << "all is not stored yet";
            type(1, "gkmc", "b");
            set.UpdateBatch(); // sends neither the first row nor the new one twice
            type(0, "gkmc", "c");
            set.UpdateRow(0);
            set.setValueAt(set.RecordCount() - 1, set.columnIndex("gkmc"), "d");
            set.UpdateBatch();
            type(1, "gkxz", fails ? "early" : "typed since");
            if (fails)
                throw DataError(0, "undone");
        });
    };
    add("P0004");
    set.UpdateRow(3);
    add("P0005");
    EXPECT_THROW(work(true), DataError);
    EXPECT_EQ(stored("gkmc"), "port port port ");
    EXPECT_EQ(set.waitingRows(), QVector<int>({0, 1, 4}));
    work(false);
    EXPECT_EQ(stored("gkbh"), "P0001 P0002 P0003 P0004 P0005");
    EXPECT_EQ(stored("gkmc"), "c b port  d");
    EXPECT_EQ(set.waitingRows(), QVector<int>({1})) << "what came too late";
    set.UpdateBatch();
    EXPECT_EQ(stored("gkxz"), " typed since   ");
    add("P0006");
    set.connection()->transaction([&] {
        set.UpdateBatch();
        set.Delete();
    });
    EXPECT_EQ(database.count("sys_gksz"), 5);
}

TEST_F(Waiting, RowsPutAsideAreStoredFromThere)
{
    set.MoveNext();
    type(1, "gkmc", "aside");
    add("P0004");
    set.MovePrevious();
    int resets = 0;
    QObject::connect(&set, &Recordset::reset, [&] { ++resets; });
    std::unique_ptr<Recordset> aside = set.putAside();
    EXPECT_FALSE(set.isOpen());
    EXPECT_TRUE(set.waitingRows().isEmpty());
    EXPECT_EQ(aside->waitingRows(), QVector<int>({1, 3}));
    EXPECT_EQ(aside->absolutePosition(), 2);
    open(set, "select * from sys_jldw");
    resets = told = 0;
    set.takeBack(std::move(aside));
    EXPECT_EQ(resets, 1);
    EXPECT_EQ(told, 1);
    EXPECT_EQ(shown(3), "P0004");
    EXPECT_EQ(set.Fields("gkbh").text(), "P0003");
    // Put aside in the middle of a transaction, too.
    set.connection()->transaction([&] {
        set.UpdateBatch();
        aside = set.putAside();
        open(set, "select * from sys_gksz where gkbh='P0003'");
        type(0, "gkmc", "here");
    });
    EXPECT_FALSE(aside->hasPendingChanges());
    EXPECT_EQ(set.waitingRows(), QVector<int>({0}));
    EXPECT_EQ(stored("gkmc"), "port aside port ");
    aside->setValueAt(3, 1, "later");
    aside->UpdateBatch();
    EXPECT_EQ(stored("gkmc"), "port aside port later");
}

TEST_F(Waiting, CancellingAnotherRowLeavesTheCurrentOne)
{
    type(0, "gkmc", "typed");
    add("P0004");
    add("P0005");
    set.CancelUpdate(3);
    EXPECT_EQ(set.Fields("gkbh").text(), "P0005");
    set.CancelUpdate(0);
    set.CancelUpdate(1); // does not wait
    EXPECT_EQ(set.valueAt(0, set.columnIndex("gkmc")), "port");
    EXPECT_EQ(set.Fields("gkbh").text(), "P0005");
    EXPECT_EQ(set.waitingRows(), QVector<int>({3}));
    set.MoveFirst();
    set.CancelUpdate(3);
    EXPECT_EQ(shown(set.absolutePosition()), "P0001");
    EXPECT_EQ(set.RecordCount(), 3);
}

TEST_F(Waiting, TheOnlyRecordDeletedLeavesNone)
{
    open(set, "select * from sys_gksz where gkbh='P0001'");
    set.Delete();
    EXPECT_TRUE(set.BOF());
    EXPECT_TRUE(set.EOF_());
    add("P0009");
    EXPECT_FALSE(set.BOF());
    set.CancelUpdate();
    EXPECT_TRUE(set.BOF());
}

// Which row and column, and why; the engine's own words are not for clerks.
TEST_F(Waiting, ARefusalTellsRowAndColumn)
{
    for (const TableDescription &table : tableDescriptions()) {
        if (table.unique.isEmpty())
            continue;
        Recordset records;
        open(records, "select * from " + table.name + " where " + table.unique + " like 'twin'");
        for (int i = 0; i < 2; ++i) {
            records.AddNew();
            records.Fields(table.unique).setValue("Twin");
        }
        try {
            records.UpdateBatch();
            ADD_FAILURE() << table.name.toStdString();
        } catch (const DataError &error) {
            EXPECT_EQ(error.refusal(), Refusal::Duplicate) << error.what();
            EXPECT_EQ(error.column(), table.unique);
            EXPECT_EQ(error.row(), 1);
            EXPECT_EQ(error.set(), &records);
        }
    }
    Recordset lines;
    open(lines, "select * from yy_gw_wxht_b");
    const auto refusal = [&](const std::function<void()> &store) {
        try {
            store();
        } catch (const DataError &error) {
            EXPECT_FALSE(error.text().contains("failed") || error.text().contains("Incorrect")) << error.what();
            EXPECT_TRUE(error.text().contains(error.column()));
            return std::pair(error.refusal(), error.column());
        }
        return std::pair(Refusal::None, QString());
    };
    for (const auto &[column, typed] : {std::pair("sl", "abc"), {"dj", "1,2"}, {"jhrq", "soon"}}) {
        lines.AddNew();
        lines.Fields(column).setValue(typed);
        const auto expected = std::pair(Refusal::NotANumber, QString(column));
        EXPECT_EQ(refusal([&] { lines.UpdateRow(0); }), expected);
        EXPECT_EQ(refusal([&, name = column, text = typed] {
                      database.connection().executeBound(
                          {QStringLiteral("insert into yy_gw_wxht_b(%1) values(?)").arg(name), {text}});
                  }),
                  expected)
            << "told by the database";
        lines.CancelUpdate();
    }
    database.refuse("yy_gw_wxht_b", "cpbh", "X");
    lines.AddNew();
    lines.Fields("cpbh").setValue("X");
    try {
        lines.UpdateBatch();
        ADD_FAILURE();
    } catch (const DataError &error) {
        EXPECT_EQ(error.refusal(), Refusal::Other);
        EXPECT_TRUE(error.text().contains("refused"));
        EXPECT_EQ(error.row(), 0);
    }
}

TEST_F(Waiting, NumbersAreReadAsPeopleWriteThem)
{
    const struct {
        const char *text;
        std::optional<double> number;
    } cases[] = {{"1,234.50", 1234.5},
                 {"１２３．５", 123.5},
                 {"－１，２３４，５６７", -1234567},
                 {" \u3000+.5 ", 0.5},
                 {"-3.", -3},
                 {"12e3", 12000},
                 {"abc", {}},
                 {"1,2", {}},
                 {"12abc", {}},
                 {"1234,567", {}},
                 {"1 2", {}},
                 {".", {}},
                 {"", {}},
                 {"1e999", {}},
                 {"nan", {}}};
    Recordset lines;
    open(lines, "select * from yy_gw_wxht_b");
    for (const auto &c : cases) {
        EXPECT_EQ(numberOf(QString::fromUtf8(c.text)), c.number) << c.text;
        if (!c.number)
            continue;
        lines.AddNew();
        lines.Fields("sl").setValue(QString::fromUtf8(c.text));
        lines.UpdateBatch();
        EXPECT_EQ(lines.Fields("sl").value(), *c.number);
        EXPECT_EQ(database.value("select max(sl) from yy_gw_wxht_b"), *c.number);
        lines.Delete();
    }
}

} // namespace tradewick
