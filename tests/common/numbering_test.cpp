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

struct Form {
    const char *form, *prefix, *table, *column;
};

const Form documents[] = {
    {"YY_CGHT", "C", "yy_gn_cght_h", "htbh"},       {"YY_WXHT", "X", "yy_gw_wxht_h", "htbh"},
    {"YY_Yh_XYZ", "XY", "yy_xyz_h", "xyzh"},        {"YY_XyZ_New_Rpt", "XY", "yy_xyz_nh", "xyzh"},
    {"YY_DZ_MXB", "FP", "yy_mxb_h", "fpbh"},        {"CY_Dcd_Rpt", "DC", "cy_dcd_djb_h", "dcdh"},
    {"cy_HYtD_DjB", "TD", "cy_hytd_djb_h", "tdhm"},
};

const Form wrapping[] = {
    {"sys_bzsz", "$", "sys_bzsz", "bzbh"},      {"sys_fkfs", "F", "sys_fkfs", "fkbh"},
    {"sys_zffs", "F", "sys_zffs", "fkbh"},      {"sys_JLDW", "J", "sys_jldw", "jlbh"},
    {"CY_Pcd_Djb", "PC", "cy_pcd_rpt", "pcdh"},
};

const Form ports[] = {
    {"Sys_GKSZ", "P", "sys_gksz", "gkbh"},
    {"Sys_CwGs_ZL", "P", "sys_cwgs", "gsbh"},
    {"Sys_TcGs_Set", "P", "sys_tcgs", "gsbh"},
};

} // namespace

TEST_F(Numbering, DocumentNumbersRunThroughTheMonth)
{
    for (const auto &[form, prefix, table, column] : documents) {
        const std::string month = std::string(prefix) + "2403";
        const QString key = QString::fromStdString(month);
        fill(table, column, {});
        EXPECT_EQ(next(form), month + "00001") << form;
        fill(table, column, {key + "00009", key + "00123", key + "00010"});
        EXPECT_EQ(next(form), month + "00124") << form;
        fill(table, column, {key + "99999"});
        EXPECT_EQ(next(form), month + "100000") << form;
        fill(table, column, {key + "100000"});
        EXPECT_EQ(next(form), month + "00001") << form;
        fill(table, column, {key + "00077"}, "2024-02-29");
        EXPECT_EQ(next(form), month + "00001") << form; // dated in another month
        fill(table, column, {key + "00004", "ZZ手写"});
        EXPECT_EQ(next(form), month + "00001") << form; // typed by hand, sorts last, no digits
    }
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

TEST_F(Numbering, CodesReadTheTailOfTheLastKey)
{
    for (const auto &[form, prefix, table, column] : wrapping) {
        fill(table, column, {});
        EXPECT_EQ(next(form), prefix + std::string("0001")) << form;
        fill(table, column, {QString(prefix) + "0009"});
        EXPECT_EQ(next(form), prefix + std::string("0010")) << form;
        fill(table, column, {QString(prefix) + "0999"});
        EXPECT_EQ(next(form), prefix + std::string("1000")) << form;
        fill(table, column, {QString(prefix) + "0999", QString(prefix) + "1000"});
        EXPECT_EQ(next(form), prefix + std::string("0001")) << form;
    }
    fill("sys_bmsz", "bmbh", {"B9999"});
    EXPECT_EQ(next("sys_bmsz"), "B10000");
    fill("sys_bmsz", "bmbh", {"B1000"});
    EXPECT_EQ(next("sys_bmsz"), "B1001");
}

TEST_F(Numbering, PortsAndCompaniesKeepTheSequenceThatWouldBeTooLong)
{
    for (const auto &[form, prefix, table, column] : ports) {
        fill(table, column, {QString(prefix) + "9998"});
        EXPECT_EQ(next(form), "P9999") << form;
        fill(table, column, {QString(prefix) + "9999"});
        EXPECT_EQ(next(form), "P9999") << form;
        EXPECT_EQ(gNumRaw, "10000");
        fill(table, column, {});
        EXPECT_EQ(next(form), "P0001") << form;
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
