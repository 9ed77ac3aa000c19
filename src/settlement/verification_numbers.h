// The arithmetic of verification numbers: a series of three characters and a sequence of six digits.
#pragma once

#include <QString>

namespace tradewick
{

inline constexpr int lengthOfNumber = 9;

// The first three characters.
QString seriesOf(const QString &number);
// What the last six characters read as a number up to the first that is no digit; 0 where that is the first.
int sequenceOf(const QString &number);
// How many numbers there are from one to another, both counted: none over two series, 1 or less where the end does not
// lie behind the start.
int formsFrom(const QString &start, const QString &end);

// What is wrong with the ends of a range, blanks around them cut.
enum class RangeFault { None, Length, Order };
// Of the end alone the length is looked at. Over two series there is no order.
RangeFault faultOf(const QString &start, const QString &end);

} // namespace tradewick
