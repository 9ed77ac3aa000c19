// The forms of the document set.
#pragma once

#include "common/record_form_spec.h"
#include "data/connection.h"

class QWidget;

namespace tradewick
{

RecordFormSpec YY_DZ_MXB(); // detail sheets: all that the documents of one shipment print

// Prints the document that a text chooses, of the sheet with that number; a text that is none of them does nothing.
// Where the tax invoice is chosen it asks how.
void printSheet(const QString &choice, const QString &number, QWidget *parent);

// Copies a sheet and its goods, all of them or nothing, under another number and with today as its date. Two desktops
// that copy at the same time wait for each other. Throws DataError, where the number has a sheet or goods already too.
void copySheet(Connection &connection, const QString &from, const QString &to);

} // namespace tradewick
