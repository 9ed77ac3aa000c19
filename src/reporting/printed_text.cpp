#include "reporting/printed_text.h"

#include "common/number_text.h"
#include "data/date_text.h"

#include <QLocale>

namespace tradewick
{

bool isNumberValue(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Float:
    case QMetaType::Double:
        return true;
    default:
        return false;
    }
}

QString printedNumber(double number, const QString &format)
{
    static const QLocale grouped(QLocale::English, QLocale::UnitedStates);
    if (format == QLatin1String("0.00"))
        return QString::number(roundHalfEven(number, 2), 'f', 2);
    if (format == QLatin1String("#,##0.00"))
        return grouped.toString(roundHalfEven(number, 2), 'f', 2);
    const QString text = QString::number(number, 'g', 15);
    return text.contains(u'e') ? QString::number(number, 'f', QLocale::FloatingPointShortest) : text;
}

QString printedText(const QVariant &value, const QString &format)
{
    if (value.isNull())
        return {};
    if (isNumberValue(value))
        return printedNumber(value.toDouble(), format);
    const bool dateFormat = format == QLatin1String("mmmm d, yyyy");
    if (dateFormat) {
        const QDate date = value.typeId() == QMetaType::QString ? dateFromText(value.toString()) : value.toDate();
        if (date.isValid())
            return QLocale::c().toString(date, QStringLiteral("MMMM d, yyyy"));
    }
    if (value.typeId() == QMetaType::QDate || value.typeId() == QMetaType::QDateTime)
        return dateText(value);
    const QString text = value.toString();
    if (!format.isEmpty() && !dateFormat) {
        bool ok = false;
        const double number = text.toDouble(&ok);
        if (ok)
            return printedNumber(number, format);
    }
    return text;
}

} // namespace tradewick
