#include "reporting/report_table.h"

#include <QLocale>

#include <algorithm>
#include <iterator>

namespace tradewick
{

QDateTime (*reportClock)() = &QDateTime::currentDateTime;

namespace
{

void numberIn(FormattedBand &band, SectionKind kind, const char *label)
{
    if (band.section.kind == kind)
        band.setText(QLatin1String(label), QString::number(band.page));
}

void dateIn(FormattedBand &band, SectionKind kind)
{
    if (band.section.kind != kind)
        return;
    static const QLocale chinese(QLocale::Chinese, QLocale::China);
    const QDateTime now = reportClock();
    const QDate today = now.date();
    band.setText(QStringLiteral("p_year"), QString::number(today.year()) + u'年');
    band.setText(QStringLiteral("p_month"), QString::number(today.month()) + u'月');
    band.setText(QStringLiteral("p_day"), QString::number(today.day()) + u'日');
    band.setText(QStringLiteral("p_week"), chinese.dayName(today.dayOfWeek()));
    band.setText(QStringLiteral("p_time"), now.toString(QStringLiteral("H:mm:ss")));
}

void footerNumber(FormattedBand &band)
{
    numberIn(band, SectionKind::PageFooter, "p_number");
}

void headerNumber(FormattedBand &band)
{
    numberIn(band, SectionKind::PageHeader, "L_Pages");
}

void footerStamp(FormattedBand &band)
{
    footerNumber(band);
    dateIn(band, SectionKind::PageFooter);
}

void headerStamp(FormattedBand &band)
{
    dateIn(band, SectionKind::PageHeader);
}

// A report with rules of its own is {true, &itsRule}.
[[maybe_unused]] constexpr ReportFamily A{true, nullptr};
constexpr ReportFamily B{true, &footerNumber};
[[maybe_unused]] constexpr ReportFamily BInHeader{true, &headerNumber};
[[maybe_unused]] constexpr ReportFamily C{true, &footerStamp};
[[maybe_unused]] constexpr ReportFamily CWithoutTool{false, &footerStamp};
[[maybe_unused]] constexpr ReportFamily D{true, &headerStamp};
[[maybe_unused]] constexpr ReportFamily F{false, nullptr};

constexpr ReportEntry entries[] = {
    {u"YY_Xsfp_Rpt", B},
    {u"yy_XsFp_dJRPT", B},
};

} // namespace

const ReportEntry *reportEntry(const QString &name)
{
    const auto *found = std::find_if(std::begin(entries), std::end(entries),
                                     [&name](const ReportEntry &entry) { return entry.name == name; });
    return found == std::end(entries) ? nullptr : found;
}

QStringList reportNames()
{
    QStringList names;
    for (const ReportEntry &entry : entries)
        names.append(entry.name.toString());
    return names;
}

} // namespace tradewick
