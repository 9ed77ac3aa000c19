#include "common/amount_words.h"
#include "data/data_error.h"

#include <gtest/gtest.h>

#include <QHash>
#include <QRegularExpression>

using namespace tradewick;

namespace
{

std::string english(QString amount)
{
    return AmountInEnglish(amount).toStdString();
}

std::string chinese(double amount)
{
    return AmountInChinese(amount).toStdString();
}

// Reads English words back to the whole number that they name.
qint64 readWhole(const QString &words)
{
    static const QHash<QString, int> values = [] {
        QHash<QString, int> all;
        const QString ones = "ONE TWO THREE FOUR FIVE SIX SEVEN EIGHT NINE TEN ELEVEN TWELVE THIRTEEN FOURTEEN FIFTEEN "
                             "SIXTEEN SEVENTEEN EIGHTEEN NINETEEN";
        const QStringList names = ones.split(' ');
        for (int i = 0; i < names.size(); ++i)
            all[names[i]] = i + 1;
        const QStringList tens = QString("TWENTY THIRTY FORTY FIFTY SIXTY SEVENTY EIGHTY NINETY").split(' ');
        for (int i = 0; i < tens.size(); ++i)
            all[tens[i]] = (i + 2) * 10;
        return all;
    }();
    qint64 total = 0;
    qint64 group = 0;
    for (const QString &word : words.split(' ', Qt::SkipEmptyParts)) {
        if (word == "HUNDRED")
            group *= 100;
        else if (word == "THOUSAND" || word == "MILLION" || word == "BILLION") {
            total += group * (word == "THOUSAND" ? 1000 : word == "MILLION" ? 1000000 : 1000000000);
            group = 0;
        } else
            group += values.value(word);
    }
    return total + group;
}

} // namespace

TEST(AmountInEnglish, GivesTheWordsToTheCharacter)
{
    const std::pair<const char *, const char *> cases[] = {
        {"1234.56", "ONE THOUSAND TWO HUNDRED AND THIRTY FOUR AND CENTS FIFTY SIX ONLY"},
        {"2000", "TWO THOUSAND  ONLY"},
        {"1000000", "ONE MILLION  ONLY"},
        {"0", " ONLY"},
        {"", " ONLY"},
        {"0.5", " CENTS FIFTY ONLY"},
        {"0.05", " CENTS FIVE ONLY"},
        {"1.05", "ONE AND CENTS FIVE ONLY"},
        {"1.5", "ONE AND CENTS FIFTY ONLY"},
        {"11.11", "ELEVEN AND CENTS ELEVEN ONLY"},
        {"19", "NINETEEN ONLY"},
        {"20", "TWENTY ONLY"},
        {"100", "ONE HUNDRED ONLY"},
        {"110", "ONE HUNDRED AND TEN ONLY"},
        {"101", "ONE HUNDRED AND ONE ONLY"},
        {"1000.4", "ONE THOUSAND  AND CENTS FORTY ONLY"},
        {"1001", "ONE THOUSAND ONE ONLY"},
        {"1000001", "ONE MILLION ONE ONLY"},
        {"12345678.9", "TWELVE MILLION THREE HUNDRED AND FORTY FIVE THOUSAND SIX HUNDRED AND SEVENTY EIGHT AND CENTS "
                       "NINETY ONLY"},
        {"5000000000", "FIVE BILLION  ONLY"},
        {"1000000000000", "ONE   ONLY"},
        {" 1 200 USD", "ONE THOUSAND TWO HUNDRED ONLY"},
        {"2.345", "TWO AND CENTS THIRTY FOUR ONLY"},
        {"99.999", "ONE HUNDRED ONLY"},
    };
    for (const auto &[amount, words] : cases)
        EXPECT_EQ(english(amount), words) << amount;
}

TEST(AmountInEnglish, ReplacesItsArgumentByTheNormalForm)
{
    const std::pair<const char *, const char *> cases[] = {{"1,5", "1"},     {"007.50", "7.5"}, {"0.125", ".12"},
                                                           {"0.135", ".14"}, {"x", "0"},        {"3.999", "4"}};
    for (const auto &[typed, normal] : cases) {
        QString amount = typed;
        AmountInEnglish(amount);
        EXPECT_EQ(amount.toStdString(), normal);
    }
}

TEST(AmountInEnglish, NamesEveryWholeNumber)
{
    for (qint64 number = 1; number < 3000000000; number += number < 2500 ? 1 : number / 7 + 13) {
        QString amount = QString::number(number);
        const QString words = AmountInEnglish(amount);
        ASSERT_TRUE(words.endsWith(" ONLY"));
        ASSERT_EQ(readWhole(words.chopped(5)), number) << words.toStdString();
    }
}

TEST(AmountInEnglish, SaysThatAnAmountIsTooLongAndGoesOn)
{
    bool tooLong = false;
    QString amount = "123456789012.34";
    EXPECT_EQ(AmountInEnglish(amount, &tooLong),
              "ONE HUNDRED AND TWENTY THREE BILLION FOUR HUNDRED AND FIFTY SIX MILLION SEVEN "
              "HUNDRED AND EIGHTY NINE THOUSAND TWELVE AND CENTS THIRTY FOUR ONLY");
    EXPECT_FALSE(tooLong);
    amount = "1234567890123.45";
    EXPECT_EQ(AmountInEnglish(amount, &tooLong),
              "ONE  TWO HUNDRED AND THIRTY FOUR BILLION FIVE HUNDRED AND SIXTY SEVEN MILLION EIGHT HUNDRED AND NINETY "
              "THOUSAND ONE HUNDRED AND TWENTY THREE AND CENTS FORTY FIVE ONLY");
    EXPECT_TRUE(tooLong);
    EXPECT_EQ(english("2000000000000000"), "TWO   ONLY");
}

TEST(AmountInEnglish, FailsAtASign)
{
    for (const char *amount : {"-1", "-.5", "-12", "-123", "-1234.5"}) {
        try {
            english(amount);
            ADD_FAILURE() << amount;
        } catch (const DataError &error) {
            EXPECT_EQ(error.number(), 13);
        }
    }
}

TEST(AmountInEnglish, HasAWordFunctionForEachPartOfAGroup)
{
    EXPECT_EQ(DigitWord1("907"), "NINE");
    EXPECT_EQ(DigitWord1("007"), "");
    EXPECT_EQ(DigitWord3("907"), "SEVEN");
    EXPECT_EQ(TeenWord("413"), "THIRTEEN");
    EXPECT_EQ(TensWord("440"), "FORTY");
    EXPECT_EQ(TwoDigitWords("910"), "TEN");
    EXPECT_EQ(TwoDigitWords("$900"), "NINETY");
    EXPECT_EQ(GroupWords("900"), "NINE HUNDRED");
    EXPECT_EQ(GroupWords("999"), "NINE HUNDRED AND NINETY NINE");
    EXPECT_EQ(GroupWords("000"), "");
    const QStringList scales{"", "THOUSAND", "MILLION", "BILLION", "", ""};
    for (int i = 0; i < scales.size(); ++i)
        EXPECT_EQ(ScaleWord(i), scales[i]);
}

TEST(AmountInChinese, GivesTheCapitals)
{
    const std::pair<double, const char *> cases[] = {
        {0, ""},
        {0.05, "伍分"},
        {0.50, "伍角"},
        {0.55, "伍角伍分"},
        {1, "壹圆整"},
        {1.01, "壹圆零壹分"},
        {10.05, "壹拾圆零伍分"},
        {100.50, "壹佰圆伍角"},
        {1005, "壹仟零伍圆整"},
        {1050, "壹仟零伍拾圆整"},
        {1500, "壹仟伍佰圆整"},
        {10000, "壹万圆整"},
        {10005, "壹万零伍圆整"},
        {100000.50, "壹拾万圆伍角"},
        {1000000, "壹佰万圆整"},
        {10000000, "壹仟万圆整"},
        {100000000, "壹亿圆整"},
        {100005000, "壹亿零伍仟圆整"},
        {100000005, "壹亿零伍圆整"},
        {110000000, "壹亿壹仟万圆整"},
        {123456789.12, "壹亿贰仟叁佰肆拾伍万陆仟柒佰捌拾玖圆壹角贰分"},
        {200010000, "贰亿零壹万圆整"},
        {999999999999.99, "玖仟玖佰玖拾玖亿玖仟玖佰玖拾玖万玖仟玖佰玖拾玖圆玖角玖分"},
        {9000000000001, "亿零壹圆整"},
        {2.345, "贰圆叁角肆分"},
        {-12.34, "壹佰壹拾贰圆叁角肆分"},
    };
    for (const auto &[amount, words] : cases)
        EXPECT_EQ(chinese(amount), words) << amount;
    double amount = 2.675;
    AmountInChinese(amount);
    EXPECT_DOUBLE_EQ(amount, 2.68);
}
