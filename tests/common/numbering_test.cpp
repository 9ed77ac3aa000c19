#include "common/numbering.h"
#include "data/connection.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

using namespace tradewick;

namespace
{

const QDate day(2024, 3, 5);

const NumberRule contracts = monthly("X", "select distinct HTBH from YY_gw_wxHT_H where year(djrq)='{year}'and "
                                          "month(djrq)='{month}' order by HTBH"),
                 withoutTable = monthly("C", "select distinct HTBH from YY_GN_CGHT_H where year(djrq)='{year}'and "
                                             "month(djrq)='{month}' order by HTBH"),
                 currencies = running("$", 3, "select bzbh from sys_bzsz order by bzbh"),
                 departments = running("B", 4, "select bmbh from sys_BMSZ order by BMbh"),
                 ports = running("P", 4, "select gkbh from sys_gksz order by gkbh ", TooLong::IsDropped),
                 ownRows = running("S", 3, nullptr);

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
    QString next(const NumberRule &rule, const std::optional<QVariant> &lastKey = {}, const QStringList &waiting = {})
    {
        return proposeNumber(rule, connection, lastKey, day, waiting);
    }
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
        EXPECT_EQ(next(contracts), number);
    }
    fill("yy_gw_wxht_h", "htbh", {"X240300077"}, "2024-02-29");
    EXPECT_EQ(next(contracts), "X240300001"); // dated in another month
    EXPECT_EQ(gNumYY + gNumMM + gNumDD, "240305");
}

TEST_F(Numbering, TheDateMakesTheMonthNotTheNumber)
{
    fill("yy_gw_wxht_h", "htbh", {"X231200500"}, "2024-03-01");
    EXPECT_EQ(next(contracts), "X240300501");
    EXPECT_EQ(proposeNumber(contracts, connection, {}, QDate(2009, 11, 30)), "X091100001");
    fill("yy_gw_wxht_h", "htbh", {"X230300008"}, "2023-03-01");
    EXPECT_EQ(next(contracts), "X240300001"); // the same month of another year
}

TEST_F(Numbering, AFailedLookupKeepsTheSequence)
{
    fill("yy_gw_wxht_h", "htbh", {"X240300041"});
    EXPECT_EQ(next(contracts), "X240300042");
    EXPECT_EQ(next(withoutTable), "C240300042"); // has no table here
    EXPECT_THROW(next(currencies), DataError);
}

// Three digits of the last code are read, or four where a form says so, and a number that would be too long is taken or
// left, as it says.
TEST_F(Numbering, CodesReadTheTailOfTheLastKey)
{
    struct Case {
        const NumberRule &rule;
        const char *table, *column;
        QStringList keys;
        const char *number;
    };
    const Case cases[] = {
        {currencies, "sys_bzsz", "bzbh", {}, "$0001"},
        {currencies, "sys_bzsz", "bzbh", {"$0009"}, "$0010"},
        {currencies, "sys_bzsz", "bzbh", {"$0999"}, "$1000"},
        {currencies, "sys_bzsz", "bzbh", {"$0999", "$1000"}, "$0001"},
        {departments, "sys_bmsz", "bmbh", {"B9999"}, "B10000"},
        {departments, "sys_bmsz", "bmbh", {"B1000"}, "B1001"},
        {ports, "sys_gksz", "gkbh", {"P9998"}, "P9999"},
        {ports, "sys_gksz", "gkbh", {"P9999"}, "P9999"}, // 10000: the one before stays
        {ports, "sys_gksz", "gkbh", {}, "P0001"},
    };
    for (const auto &[rule, table, column, keys, number] : cases) {
        fill(table, column, keys);
        EXPECT_EQ(next(rule), number) << table << keys.join(' ').toStdString();
    }
}

TEST_F(Numbering, AFormMayKnowItsLastRowItself)
{
    EXPECT_EQ(next(ownRows), "S0001");
    EXPECT_EQ(next(ownRows, "S0123"), "S0124");
    EXPECT_EQ(next(ownRows, "S1999"), "S1000");
    EXPECT_THROW(next(ownRows, QVariant()), DataError);
    EXPECT_EQ(next({}), ""); // numbers nothing
}

TEST_F(Numbering, RecordsThatWaitArePassedOver)
{
    fill("yy_gw_wxht_h", "htbh", {"X240300004"});
    EXPECT_EQ(next(contracts, {}, {"X240300005", "x240300006", "X240300008"}), "X240300007");
    EXPECT_EQ(next(ownRows, {}, {"S0001", "S0002"}), "S0003");
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
