#include "data/date_text.h"

#include <gtest/gtest.h>

#include <QDateTime>

namespace tradewick
{

TEST(DateText, ReadsTheFormsThatClerksType)
{
    const struct {
        const char *typed, *shown;
    } cases[] = {
        {"2026-11-24", "2026-11-24"},
        {"2026-3-5", "2026-03-05"},
        {"2026/3/5", "2026-03-05"},
        {"11-24-2026", "2026-11-24"},
        {"20261124", "2026-11-24"},
        {" 2026-11-24 ", "2026-11-24"},
        {"2024-2-29", "2024-02-29"},
        {"2026-11-24 00:00:00", "2026-11-24"},
        {"2026/11/24 9:05", "2026-11-24"},
        {"2026-02-29", ""},
        {"2026-13-01", ""},
        {"24-11-2026", ""},
        {"2026-11", ""},
        {"tomorrow", ""},
        {"2026-11-24x", ""},
        {"2026-11-24 25:00", ""},
        {"", ""},
        {"2026-1１-24", ""},
        {"0000-00-00", ""},
        {"26-11-24", ""},
    };
    for (const auto &c : cases)
        EXPECT_EQ(dateText(dateFromText(c.typed)).toStdString(), c.shown) << c.typed;
}

TEST(DateText, KeepsTextThatIsNoDate)
{
    EXPECT_EQ(dateText(QVariant("SOON")), "SOON");
    EXPECT_EQ(dateText(QVariant("2026/1/2")), "2026-01-02");
    EXPECT_EQ(dateText(QVariant()), "");
    EXPECT_EQ(dateText(QVariant(QDateTime(QDate(2026, 5, 6), QTime(1, 2)))), "2026-05-06");
}

} // namespace tradewick
