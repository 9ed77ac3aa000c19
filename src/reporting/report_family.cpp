#include "reporting/report_family.h"

#include <QLocale>

namespace tradewick
{

QDateTime (*reportClock)() = &QDateTime::currentDateTime;

namespace
{

void stampNumber(FormattedBand &band)
{
    if (band.section.kind == SectionKind::PageFooter)
        band.setText(QStringLiteral("p_number"), QString::number(band.page));
}

void stampDate(FormattedBand &band)
{
    static const QLocale chinese(QLocale::Chinese, QLocale::China);
    const QDateTime now = reportClock();
    const QDate today = now.date();
    band.setText(QStringLiteral("p_year"), QString::number(today.year()) + u'年');
    band.setText(QStringLiteral("p_month"), QString::number(today.month()) + u'月');
    band.setText(QStringLiteral("p_day"), QString::number(today.day()) + u'日');
    band.setText(QStringLiteral("p_week"), chinese.dayName(today.dayOfWeek()));
    band.setText(QStringLiteral("p_time"), now.toString(QStringLiteral("H:mm:ss")));
}

void stampHeader(FormattedBand &band)
{
    if (band.section.kind == SectionKind::PageHeader)
        stampDate(band);
}

} // namespace

void stampFooter(FormattedBand &band)
{
    stampNumber(band);
    if (band.section.kind == SectionKind::PageFooter)
        stampDate(band);
}

ReportFamily reportFamilyA()
{
    return {};
}

ReportFamily reportFamilyB()
{
    return {true, {&stampNumber}};
}

ReportFamily reportFamilyC()
{
    return {true, {&stampFooter}};
}

ReportFamily reportFamilyD()
{
    return {true, {&stampHeader}};
}

} // namespace tradewick
