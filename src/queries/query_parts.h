// What the query screens share: how they print and write what was found.
#pragma once

#include "common/query_spec.h"
#include "papers/papers.h"
#include "papers/queries.h"

namespace tradewick
{

// A statistic that is printed in one of two groupings.
struct GroupedPrint {
    const char *question;
    const char *yes, *no; // names of the documents
    // Before the question, having told why. Without it dates that are turned round refuse the print behind the
    // question.
    std::function<bool(QueryScreen &screen)> isRefused{};
    MessageIcon icon = MessageIcon::Question;
};

// The button that prints it.
QueryButton groupedPrint(const QString &caption, const GroupedPrint &print, bool waits = true);

// Prints a statistic of what stands in the criteria. Its conditions stay in the screen. With its second range of dates
// also where nothing was found, if it has one.
void printStatistic(QueryScreen &screen, const QString &name);
// Fills it with something else than what stands there. Both tell why nothing is printed.
void showStatistic(QueryScreen &screen, const QString &name, const Criteria &criteria);

// The button that prints the record that is shown.
QueryButton recordPrint(const QString &name, const QString &caption, const QString &document);

// The button that writes the list that is shown into a workbook, as it is shown.
QueryButton workbook();

// The rows of the list that is shown, in its order, for a report.
std::function<std::unique_ptr<RowSource>()> shownRows(QueryScreen &screen);

// The ranges of dates of most screens; those of contracts and credits have a second one.
QVector<DateRange> periodAndValidity(const QString &caption);
QVector<DateRange> period(const QString &caption, const QString &toCaption = QStringLiteral("至"));

} // namespace tradewick
