#include "common/number_text.h"
#include "data/data_error.h"

#include <gtest/gtest.h>

using namespace tradewick;

TEST(NumberText, IsTheShortestDecimalForm)
{
    const std::pair<double, const char *> cases[] = {
        {0, "0"},
        {-0.0, "0"},
        {1, "1"},
        {100, "100"},
        {0.5, ".5"},
        {-0.5, "-.5"},
        {0.05, ".05"},
        {10.05, "10.05"},
        {-1234.56, "-1234.56"},
        {0.1 + 0.2, ".3"},
        {1.15 * 100, "115"},
        {1.0 / 3, ".333333333333333"},
        {2.0 / 3, ".666666666666667"},
        {999999999999999, "999999999999999"},
        {1234567890123456, "1234567890123460"},
        {1e15, "1000000000000000"},
        {1e20, "100000000000000000000"},
        {1e21, "1E+21"},
        {-1.5e300, "-1.5E+300"},
        {0.00001, ".00001"},
        {1.25e-16, "1.25E-16"},
        {99999.999999999999, "100000"},
    };
    for (const auto &[number, text] : cases)
        EXPECT_EQ(numberText(number).toStdString(), text);
}

TEST(NumberFromText, ReadsTheLeadingNumber)
{
    const std::pair<const char16_t *, double> cases[] = {
        {u"", 0},           {u"   ", 0},       {u"abc", 0}, {u"12abc", 12},  {u" 1 234 .5", 1234.5},
        {u"1,234", 1},      {u".5", .5},       {u"5.", 5},  {u".", 0},       {u"-", 0},
        {u"-12.5x", -12.5}, {u"+7", 7},        {u"1-2", 1}, {u"1.2.3", 1.2}, {u"1e3", 1000},
        {u"1D2", 100},      {u"25E-1kg", 2.5}, {u"3e", 3},  {u"3e+", 3},     {u"e5", 0},
        {u"1e2e3", 100},    {u"00012", 12},    {u"--5", 0}, {u"壹", 0},      {u"1e-999", 0},
    };
    for (const auto &[text, number] : cases)
        EXPECT_DOUBLE_EQ(numberFromText(QString::fromUtf16(text)), number) << QString::fromUtf16(text).toStdString();
    EXPECT_THROW(numberFromText("1e999"), DataError);
}

TEST(RoundHalfEven, TakesTheHalfAsItWasTyped)
{
    struct Case {
        double number;
        int places;
        double rounded;
    };
    const Case cases[] = {
        {2.345, 2, 2.34},
        {2.355, 2, 2.36},
        {2.675, 2, 2.68},
        {1.005, 2, 1.0},
        {-2.345, 2, -2.34},
        {-2.355, 2, -2.36},
        {2.3450001, 2, 2.35},
        {2.344999, 2, 2.34},
        {0.5, 0, 0},
        {1.5, 0, 2},
        {2.5, 0, 2},
        {0.005, 2, 0},
        {0.015, 2, 0.02},
        {0.0051, 2, 0.01},
        {0.0049, 2, 0},
        {9.995, 2, 10},
        {99.995, 2, 100},
        {0.995, 2, 1},
        {0.999, 2, 1},
        {1234567.125, 2, 1234567.12},
        {125, -1, 120},
        {1.1 + 2.035, 2, 3.14},
        {1e20, 2, 1e20},
        {0, 2, 0},
        {7, 2, 7},
        {0.00001, 2, 0},
    };
    for (const auto &[number, places, rounded] : cases)
        EXPECT_DOUBLE_EQ(roundHalfEven(number, places), rounded) << number;
}

// Every number of cents survives the way through a double, text and back.
TEST(NumberText, KeepsCents)
{
    for (int cents = 0; cents < 300000; cents += 7) {
        const QString expected =
            QString::number(cents / 100) + u'.' + QString::number(cents % 100).rightJustified(2, u'0');
        const double amount = expected.toDouble();
        ASSERT_DOUBLE_EQ(roundHalfEven(amount, 2), amount);
        ASSERT_EQ(numberText(amount * 100).toStdString(), std::to_string(cents));
        ASSERT_DOUBLE_EQ(numberFromText(numberText(amount)), amount);
    }
}
