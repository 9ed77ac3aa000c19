#include "settlement/verification_numbers.h"

namespace tradewick
{

namespace
{

constexpr int lengthOfSeries = 3, lengthOfSequence = 6;

} // namespace

QString seriesOf(const QString &number)
{
    return number.left(lengthOfSeries);
}

int sequenceOf(const QString &number)
{
    int sequence = 0;
    for (const QChar c : number.right(lengthOfSequence)) {
        if (c < u'0' || c > u'9')
            break;
        sequence = sequence * 10 + (c.unicode() - u'0');
    }
    return sequence;
}

int formsFrom(const QString &start, const QString &end)
{
    return seriesOf(start) == seriesOf(end) ? sequenceOf(end) - sequenceOf(start) + 1 : 0;
}

RangeFault faultOf(const QString &start, const QString &end)
{
    if (end.size() != lengthOfNumber)
        return RangeFault::Length;
    return seriesOf(start) == seriesOf(end) && formsFrom(start, end) <= 1 ? RangeFault::Order : RangeFault::None;
}

} // namespace tradewick
