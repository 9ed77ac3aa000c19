#include "papers/report_rules.h"

#include "data/date_text.h"

namespace tradewick
{

namespace
{

void stampPriceList(FormattedBand &band)
{
    stampFooter(band);
    if (band.section.kind == SectionKind::PageHeader)
        band.setText("lbl_dATE", dateText(reportClock().date()));
}

// The two certificates spell kilograms each in its own way.
void fillQuantity(FormattedBand &band, const QString &figure, const QString &unit, const QString &kilograms)
{
    const bool isQuantity = band.value("lysl").toBool();
    band.setText(figure, printedText(band.value(isQuantity ? "sl" : "zmz"), {}));
    band.setText(unit, isQuantity ? band.value("dw").toString() : kilograms);
}

void fillCertificate(FormattedBand &band)
{
    if (band.section.kind == SectionKind::Detail)
        fillQuantity(band, "Field16", "Field15", "Kgs");
}

void fillFormA(FormattedBand &band)
{
    if (band.section.kind != SectionKind::Detail)
        return;
    band.setText("L_gC", band.value("qbgc").toBool() ? "P" : "W");
    fillQuantity(band, "L_sL", "L_DW", "KgS");
}

void numberHead(FormattedBand &band)
{
    if (band.section.kind == SectionKind::PageHeader)
        band.setText("L_Pages", QString::number(band.page));
}

// Goods with foreign parts are under the second criterion, whatever else is ticked.
void fillFormAApplication(FormattedBand &band)
{
    if (band.section.kind == SectionKind::GroupHeader)
        band.setText("L_PW", band.value("hjkcf").toBool() ? "2" : band.value("qbgc").toBool() ? "1" : "3");
}

void fillShippingAdvice(FormattedBand &band)
{
    if (band.section.kind != SectionKind::PageHeader)
        return;
    band.setText("L_ps", QString::number(band.page));
    band.setPicture("Image1", band.value("logo").toString().trimmed());
}

void fillTaxInvoiceOverlay(FormattedBand &band)
{
    if (band.section.kind != SectionKind::PageHeader)
        return;
    const QDate date = dateFromText(dateText(band.value("djrq")));
    if (!date.isValid())
        return;
    band.setText("L_Year", QString::number(date.year()));
    band.setText("L_month", QString::number(date.month()));
    band.setText("L_day", QString::number(date.day()));
}

// Containers that were not used, and trucks without a charge, leave their place in the total white.
void blankZeroTotals(FormattedBand &band)
{
    stampFooter(band);
    static const QStringList counted{"escg", "sscg", "sscgg", "sswcg", "pcfy"};
    if (band.section.kind != SectionKind::GroupFooter || band.section.level != 1)
        return;
    for (const ReportObject &object : band.section.objects)
        if (counted.contains(object.dataField, Qt::CaseInsensitive) && band.text(object.name).trimmed() == u"0")
            band.setText(object.name, {});
}

} // namespace

FormatRule dispatchTotals()
{
    return {&blankZeroTotals};
}

ReportFamily generalBillFamily()
{
    return {true, {&numberHead, {}, {"L_Pages"}}};
}

ReportFamily priceListFamily()
{
    return {true, {&stampPriceList}};
}

ReportFamily certificateFamily()
{
    return {true, {&fillCertificate, {"lysl", "sl", "zmz", "dw"}}};
}

ReportFamily formAFamily()
{
    return {true, {&fillFormA, {"lysl", "qbgc", "sl", "zmz", "dw"}, {"L_gC", "L_sL", "L_DW"}}};
}

ReportFamily formAApplicationFamily()
{
    return {true, {&fillFormAApplication, {"qbgc", "hjkcf"}, {"L_PW"}}};
}

ReportFamily shippingAdviceFamily()
{
    return {true, {&fillShippingAdvice, {"logo"}, {"L_ps"}}};
}

ReportFamily taxInvoiceOverlayFamily()
{
    return {true, {&fillTaxInvoiceOverlay, {"djrq"}, {"L_Year", "L_month", "L_day"}}};
}

} // namespace tradewick
