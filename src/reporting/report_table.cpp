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

// The price list tells in its head of what day it is.
void priceListStamp(FormattedBand &band)
{
    footerStamp(band);
    if (band.section.kind == SectionKind::PageHeader)
        band.setText(QStringLiteral("lbl_dATE"), reportClock().date().toString(Qt::ISODate));
}

} // namespace

const ReportFamily reportFamilyA{true, nullptr};
const ReportFamily reportFamilyB{true, &footerNumber};
const ReportFamily reportFamilyBInHeader{true, &headerNumber};
const ReportFamily reportFamilyC{true, &footerStamp};
const ReportFamily reportFamilyCWithoutTool{false, &footerStamp};
const ReportFamily reportFamilyD{true, &headerStamp};
const ReportFamily reportFamilyF{false, nullptr};

namespace
{

const ReportEntry entries[] = {
    {u"YY_Xsfp_Rpt", reportFamilyB},
    {u"yy_XsFp_dJRPT", reportFamilyB},
    {u"khzl_rpt", reportFamilyC},
    {u"YY_KhZl_XX_Rpt", reportFamilyD},
    {u"YY_Gys_JMZL", reportFamilyC},
    {u"Yy_Gys_xxZl", reportFamilyD},
    {u"Sys_Cpzlb_rpt", {true, &priceListStamp}},
    {u"YY_FormA_rpt", reportFamilyA},
    {u"yy_BgD_rPt", reportFamilyA},
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
