// All report objects: a report is its template and one line here.
#pragma once

#include "reporting/layout.h"

#include <QStringView>

namespace tradewick
{

// What a report does beyond its template.
struct ReportFamily {
    bool excelTool;      // whether its preview offers the export to a workbook
    FormatHook atFormat; // called for each band before it is placed; nullptr for none
};

// Toolbar only.
extern const ReportFamily reportFamilyA;
// The page's number in p_number of the page footer, or in L_Pages of the page header.
extern const ReportFamily reportFamilyB, reportFamilyBInHeader;
// Number, date, weekday and time in the page footer.
extern const ReportFamily reportFamilyC, reportFamilyCWithoutTool;
// Date, weekday and time in the page header.
extern const ReportFamily reportFamilyD;
// A report with rules of its own, family E, is {true, &itsRule}. F has nothing but its template.
extern const ReportFamily reportFamilyF;

struct ReportEntry {
    QStringView name; // also of its template, :/templates/<name>.xml
    ReportFamily family;
};

// The report of that name, to the letter; nullptr when there is none.
const ReportEntry *reportEntry(const QString &name);
// The names of all reports.
QStringList reportNames();

// Where page stamps take date and time from: the system's clock, unless a test sets its own.
extern QDateTime (*reportClock)();

} // namespace tradewick
