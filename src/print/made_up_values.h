// What columns and labels hold in the trade, by name.
#pragma once

#include <QString>

namespace tradewick
{

struct MadeUpValue {
    QString typical, longest;
    bool number = false;
};

// Of a column or, with its "L_", a label, or of "report.label", in any case of its letters; nullptr for a name that is
// not known.
const MadeUpValue *madeUpValue(const QString &name);

} // namespace tradewick
