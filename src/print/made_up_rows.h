// Rows and label texts for looking at a template before anything in the program fills it.
#pragma once

#include "reporting/layout.h"

namespace tradewick
{

// How much the made-up texts and numbers take: as the trade has them on most days, or the longest that it meets.
enum class MadeUp { Typical, Longest };

// The columns of the tables or views of those names. A name that the database has not gives false and the error.
bool columnsOf(const QStringList &sources, QStringList *columns, QString *error);

// count rows for a template: the columns of its sources, and without sources those that its fields name. A column that
// a group stands on changes now and then, unless it is the key of the source: of a document there is one.
std::unique_ptr<RowSource> madeUpRows(const ReportTemplate &report, const QStringList &sources, int count, MadeUp how);

// A text for each free label by its name; for one that is not known its name, so that its place is seen.
QHash<QString, QString> madeUpLabels(const ReportTemplate &report, MadeUp how);

// Whether the label of that name is filled with a number.
bool showsNumber(const QString &label);

} // namespace tradewick
