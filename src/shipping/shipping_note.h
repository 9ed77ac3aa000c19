// What booking notes and bills of lading have in common: both are told under two numbers, carry goods, and are printed
// on the paper of one of twenty lines.
#pragma once

#include "common/record_form_spec.h"

namespace tradewick
{

// What the two differ in, beside their fields, lines and picks.
struct ShippingNote {
    QString name, caption; // of the form
    const char *statement = nullptr;
    NumberRule numbering;
    QString lineNumber; // the column of the number that the carrier gives
    QString numberField;
    QString kind; // of the papers: "订舱单"
    QString choiceCaption;
};

// The declaration without fields, lines and picks. Its key is Text(0), which the clerk never sees: the number that the
// carrier gives stands in its place.
RecordFormSpec shippingNote(const ShippingNote &note);

// The goods of either, without their statements and what a line starts with.
LinesSpec shippedGoods(const QVector<GridColumn> &columns);

} // namespace tradewick
