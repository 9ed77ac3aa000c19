// What reports do beyond their templates: most belong to one of a few families, which differ in the stamp they put on
// each page and in whether their preview writes workbooks.
#pragma once

#include "reporting/layout.h"

namespace tradewick
{

struct ReportFamily {
    bool excelTool = true; // whether its preview offers the export to a workbook
    FormatRule rule{};     // what it does with its bands
};

// Toolbar only.
ReportFamily reportFamilyA();
// The page's number in p_number of the page footer.
ReportFamily reportFamilyB();
// Number, date, weekday and time in the page footer.
ReportFamily reportFamilyC();
// Date, weekday and time in the page header.
ReportFamily reportFamilyD();
// A report with a rule of its own, family E, is {true, {&itsRule, columns it reads, labels it writes}}. F has nothing
// but its template: {false}.

// The stamp of family C, for a rule that does more.
void stampFooter(FormattedBand &band);

// Where page stamps take date and time from: the system's clock, unless a test sets its own.
extern QDateTime (*reportClock)();

} // namespace tradewick
