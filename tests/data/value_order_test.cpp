// Values sorted in the program stand as the database would give them.
#include "data/value_order.h"
#include "support/test_database.h"

#include <gtest/gtest.h>

#include <QDate>

#include <algorithm>
#include <numeric>
#include <random>

namespace tradewick
{

using namespace test;

TEST(ValueOrder, TextsStandAsTheDatabaseOrdersThem)
{
    TestDatabase database;
    const QStringList parts{"A", "a", "b", "Z",  "0",  "10", "-",  "_",  " ",
                            "é", "É", "ж", "啊", "张", "重", "中", "ａ", "😀"};
    std::mt19937 random(7);
    QVariantList texts{QVariant(), "", "  "};
    for (int i = 0; i < 600; ++i) {
        QString text;
        for (auto length = random() % 4; length > 0; --length)
            text += parts[static_cast<qsizetype>(random()) % parts.size()];
        texts.append(text);
    }
    database.connection().transaction([&] {
        for (int i = 0; i < texts.size(); ++i)
            database.connection().Execute("insert into sys_jldw(jlbh,jldw) values('{i}','{t}')",
                                          {{"i", QString::number(1000 + i)}, {"t", texts[i]}});
    });
    for (const Qt::SortOrder order : {Qt::AscendingOrder, Qt::DescendingOrder}) {
        QVector<int> expected;
        database.connection().read(
            order == Qt::AscendingOrder ? "select jlbh from sys_jldw order by jldw, jlbh"
                                        : "select jlbh from sys_jldw order by jldw desc, jlbh",
            {}, [](const QStringList &) {},
            [&](const QVariantList &row) {
                expected.append(row.first().toInt() - 1000);
                return true;
            });
        EXPECT_EQ(sortedPositions(texts, ColumnKind::Text, order), expected);
    }
}

TEST(ValueOrder, NumbersAndDatesStandByWhatTheySay)
{
    const QVariant null;
    const struct {
        ColumnKind kind;
        QVariantList sorted;
    } cases[] = {
        {ColumnKind::Number, {null, "", -2, "9", 9.5, "10", 100, "about 3"}},
        {ColumnKind::Date, {null, "2025-12-31", "2026-3-5", "2026/03/06", QDate(2026, 11, 24)}},
        {ColumnKind::Unknown, {null, " ", 9, 10.5, "10", "9"}},
        {ColumnKind::Flag, {null, false, true}},
    };
    std::mt19937 random(7);
    for (const auto &c : cases) {
        QVector<int> shuffled(c.sorted.size());
        std::iota(shuffled.begin(), shuffled.end(), 0);
        std::shuffle(shuffled.begin(), shuffled.end(), random);
        QVariantList values;
        for (const int at : std::as_const(shuffled))
            values.append(c.sorted[at]);
        for (const Qt::SortOrder order : {Qt::AscendingOrder, Qt::DescendingOrder}) {
            QVariantList result;
            for (const int at : sortedPositions(values, c.kind, order))
                result.append(values[at]);
            if (order == Qt::DescendingOrder)
                std::reverse(result.begin(), result.end());
            EXPECT_EQ(result, c.sorted) << static_cast<int>(c.kind);
        }
    }
}

} // namespace tradewick
