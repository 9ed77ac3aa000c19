// The conditions that narrow a statement, as boxes on the screen and as what they put behind it.
//
// Their {placeholders} are the names of the boxes.
#pragma once

#include "data/statement.h"

namespace tradewick
{

// A box among the criteria.
struct Criterion {
    QString name; // of the control
    QString caption;
    const char *offers = nullptr;   // it is a combo box, of the first column of these rows
    const char *fragment = nullptr; // put behind a statement where something stands in the box
    const char *printed = nullptr;  // the same where a report's statement calls the column otherwise
    QString frame{};                // caption of the frame that it stands in; empty: that of all criteria
};

// A condition as it was put together, with the texts that stood in the boxes then.
struct Fragment {
    QString text;
    Values values;
};

// The fragment of one criterion: empty where its box holds blanks alone.
//   criteria: what stands in the boxes, by their names.
Fragment fragmentOf(const Criterion &criterion, const Values &criteria, bool isPrinted = false);
QVector<Fragment> fragmentsOf(const QVector<Criterion> &all, const Values &criteria, bool isPrinted = false);
// Their texts one behind the other.
QString joined(const QVector<Fragment> &fragments);

// What is told where a statistic is asked for over a range of dates that begins behind its end.
inline QString reversedAtPrint()
{
    return QStringLiteral("起始日不能晚于截止日，请核对。");
}

} // namespace tradewick
