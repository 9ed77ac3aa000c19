// All report objects: each is its template and one line here.
#pragma once

#include "reporting/report.h"

#include <QVector>

namespace tradewick
{

struct ReportEntry {
    QString name; // also of its template, :/templates/<name>.xml
    ReportFamily family;
};

const QVector<ReportEntry> &reportEntries();
// The report of that name, to the letter; nullptr when there is none.
const ReportEntry *reportEntry(const QString &name);
// The names of all reports.
QStringList reportNames();

// The one report object of that name, made at first use. Throws DataError when there is no such report, to the letter,
// or its template is damaged.
Report &report(const QString &name);

} // namespace tradewick
