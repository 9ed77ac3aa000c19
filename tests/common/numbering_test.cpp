#include "common/numbering.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

using namespace tradewick;

namespace
{

const QDate today(2024, 3, 5);

struct Numbering : testing::Test {
    QTemporaryDir folder;
    Connection connection;

    void SetUp() override
    {
        const QString path = folder.filePath("numbers.db");
        ASSERT_TRUE(QFile(path).open(QIODevice::WriteOnly));
        connection.Open("Provider=SQLOLEDB.1;Data Source=" + path);
        gNumSeq = gNumRaw = QString();
    }

    // A table with that key column, a document date, and one row for each key.
    void fill(const QString &table, const QString &column, const QStringList &keys, const QString &date = "2024-03-31")
    {
        connection.transaction([&] {
            connection.Execute("drop table if exists " + table);
            connection.Execute("create table " + table + " (" + column + " text, djrq date)");
            for (const QString &key : keys)
                connection.Execute("insert into " + table + " values ('{key}', '{date}')",
                                   {{"key", key}, {"date", date}});
        });
    }
    std::string next(const QString &form) { return proposeNumber(form, connection, today).toStdString(); }
};

} // namespace

TEST_F(Numbering, DocumentNumbersRunThroughTheMonth)
{
    const std::pair<QStringList, const char *> cases[] = {
        {{}, "X240300001"},
        {{"X240300009", "X240300123", "X240300010"}, "X240300124"},
        {{"X240399999"}, "X2403100000"},
        {{"X2403100000"}, "X240300001"},
        {{"X240300004", "ZZ手写"}, "X240300001"}, // typed by hand, sorts last, no digits
    };
    for (const auto &[keys, number] : cases) {
        fill("yy_gw_wxht_h", "htbh", keys);
        EXPECT_EQ(next("YY_WXHT"), number);
    }
    fill("yy_gw_wxht_h", "htbh", {"X240300077"}, "2024-02-29");
    EXPECT_EQ(next("YY_WXHT"), "X240300001"); // dated in another month
    EXPECT_EQ(gNumYY + gNumMM + gNumDD, "240305");
}

TEST_F(Numbering, TheDateMakesTheMonthNotTheNumber)
{
    fill("yy_gw_wxht_h", "htbh", {"X231200500"}, "2024-03-01");
    EXPECT_EQ(next("YY_WXHT"), "X240300501");
    EXPECT_EQ(proposeNumber("YY_WXHT", connection, QDate(2009, 11, 30)), "X091100001");
    fill("yy_gw_wxht_h", "htbh", {"X230300008"}, "2023-03-01");
    EXPECT_EQ(next("YY_WXHT"), "X240300001"); // the same month of another year
}

TEST_F(Numbering, AFailedLookupKeepsTheSequence)
{
    fill("yy_gw_wxht_h", "htbh", {"X240300041"});
    EXPECT_EQ(next("YY_WXHT"), "X240300042");
    EXPECT_EQ(next("YY_CGHT"), "C240300042"); // has no table here
    EXPECT_THROW(next("sys_bzsz"), DataError);
}

// Three digits of the last code are read, or four where a form says so, and a number that would be too long is taken or
// left, as it says.
TEST_F(Numbering, CodesReadTheTailOfTheLastKey)
{
    struct Case {
        const char *form, *table, *column;
        QStringList keys;
        const char *number;
    };
    const Case cases[] = {
        {"sys_bzsz", "sys_bzsz", "bzbh", {}, "$0001"},
        {"sys_bzsz", "sys_bzsz", "bzbh", {"$0009"}, "$0010"},
        {"sys_bzsz", "sys_bzsz", "bzbh", {"$0999"}, "$1000"},
        {"sys_bzsz", "sys_bzsz", "bzbh", {"$0999", "$1000"}, "$0001"},
        {"sys_bmsz", "sys_bmsz", "bmbh", {"B9999"}, "B10000"},
        {"sys_bmsz", "sys_bmsz", "bmbh", {"B1000"}, "B1001"},
        {"Sys_GKSZ", "sys_gksz", "gkbh", {"P9998"}, "P9999"},
        {"Sys_GKSZ", "sys_gksz", "gkbh", {"P9999"}, "P9999"}, // 10000: the one before stays
        {"Sys_GKSZ", "sys_gksz", "gkbh", {}, "P0001"},
    };
    for (const auto &[form, table, column, keys, number] : cases) {
        fill(table, column, keys);
        EXPECT_EQ(next(form), number) << form << keys.join(' ').toStdString();
    }
}

TEST_F(Numbering, AFormMayKnowItsLastRowItself)
{
    EXPECT_EQ(proposeCode("sys_SSDZ", {}, true), "S0001");
    EXPECT_EQ(proposeCode("sys_SSDZ", "S0123", false), "S0124");
    EXPECT_EQ(proposeCode("sys_SSDZ", "S1999", false), "S1000");
    EXPECT_THROW(proposeCode("sys_SSDZ", {}, false), DataError);
    EXPECT_EQ(next("sys_QXSZ"), ""); // numbers nothing
}

TEST(NextSequence, ReadsWhateverTheTailHolds)
{
    const std::tuple<QVariant, int, int, const char *> cases[] = {
        {"C240300001", 5, 5, "00002"}, {"7", 5, 5, "00008"},     {"", 5, 5, "00001"},     {"A12B3", 3, 4, "0003"},
        {"A12B", 3, 4, "0013"},        {"99 9 9", 3, 4, "0100"}, {"X-0-5", 2, 4, "00-4"}, {"X1e2", 3, 4, "0101"},
    };
    for (const auto &[key, tail, digits, sequence] : cases)
        EXPECT_EQ(nextSequence(key, tail, digits).toStdString(), sequence) << key.toString().toStdString();
}
