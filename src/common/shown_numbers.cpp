#include "common/shown_numbers.h"

#include "common/number_text.h"

namespace tradewick
{

namespace
{

constexpr int placesOfAmount = 2, mostOfPrice = 4, mostOfOthers = 15;

} // namespace

ShownNumbers::ShownNumbers(const QVector<GridColumn> &columns)
{
    for (const GridColumn &column : columns) {
        if (column.caption.contains(u'额'))
            m_columns.append({placesOfAmount, placesOfAmount, placesOfAmount});
        else if (column.caption.contains(u'价'))
            m_columns.append({0, mostOfPrice, 0});
        else
            m_columns.append({0, mostOfOthers, 0});
    }
}

bool ShownNumbers::meet(int column, const QString &number)
{
    const qsizetype point = number.indexOf(u'.');
    Places &places = m_columns[column];
    const int needed = point < 0 ? 0 : static_cast<int>(number.size() - point) - 1;
    if (qMin(needed, places.most) <= places.now)
        return false;
    places.now = qMin(needed, places.most);
    return true;
}

QString ShownNumbers::shown(int column, const QString &number) const
{
    bool isNumber = false;
    const double value = number.toDouble(&isNumber);
    if (!isNumber || number.contains(u'e', Qt::CaseInsensitive)) // too large or small for a row of figures
        return number;
    const int places = m_columns[column].now;
    return QString::number(roundHalfEven(value, places), 'f', places);
}

void ShownNumbers::forget()
{
    for (Places &places : m_columns)
        places.now = places.least;
}

} // namespace tradewick
