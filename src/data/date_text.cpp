#include "data/date_text.h"

#include <QDateTime>
#include <QStringList>

namespace tradewick
{

namespace
{

bool allDigits(QStringView text)
{
    for (const QChar c : text)
        if (c < u'0' || c > u'9')
            return false;
    return !text.isEmpty();
}

} // namespace

QDate dateFromText(const QString &text)
{
    QStringView rest = QStringView(text).trimmed();
    if (const auto blank = rest.indexOf(u' '); blank >= 0) {
        const QStringView time = rest.mid(blank + 1).trimmed();
        if (!QTime::fromString(time.toString(), "H:m:s").isValid() &&
            !QTime::fromString(time.toString(), "H:m").isValid() &&
            !QTime::fromString(time.toString(), "H:m:s.z").isValid())
            return {};
        rest = rest.left(blank);
    }
    if (rest.size() == 8 && allDigits(rest))
        return {rest.left(4).toInt(), rest.mid(4, 2).toInt(), rest.mid(6).toInt()};
    const QChar separator = rest.contains(u'/') ? u'/' : u'-';
    const auto parts = rest.split(separator);
    if (parts.size() != 3)
        return {};
    for (const QStringView part : parts)
        if (!allDigits(part))
            return {};
    if (parts[0].size() == 4 && parts[1].size() <= 2 && parts[2].size() <= 2)
        return {parts[0].toInt(), parts[1].toInt(), parts[2].toInt()};
    if (parts[2].size() == 4 && parts[0].size() <= 2 && parts[1].size() <= 2)
        return {parts[2].toInt(), parts[0].toInt(), parts[1].toInt()};
    return {};
}

QString dateText(const QDate &date)
{
    const int year = date.year();
    if (!date.isValid() || year < 0 || year > 9999)
        return {};
    // By hand: each cell of a list asks, and Qt's own format is slow.
    const int parts[] = {year / 100, year % 100, date.month(), date.day()};
    QString text;
    text.reserve(10);
    for (int i = 0; i < 4; ++i) {
        if (i > 1)
            text += u'-';
        text += QChar(u'0' + parts[i] / 10);
        text += QChar(u'0' + parts[i] % 10);
    }
    return text;
}

QString dateText(const QVariant &value)
{
    if (value.isNull())
        return {};
    if (value.typeId() == QMetaType::QDate || value.typeId() == QMetaType::QDateTime)
        return dateText(value.toDate());
    const QString text = value.toString();
    const QDate date = dateFromText(text);
    return date.isValid() ? dateText(date) : text;
}

} // namespace tradewick
