// The proforma invoice of an export contract, in both its forms.
#pragma once

#include "data/connection.h"
#include "reporting/report.h"

namespace tradewick
{

// What the invoice takes from the contract's head beside its rows.
struct ProformaHead {
    QString currency, clauses, logo; // logo: path of a picture file; one that is missing is passed over
};

// Writes the labels, the picture and the source of the report for one contract. Throws DataError.
void fillProformaInvoice(Report &report, Connection &connection, const QString &contract, const ProformaHead &head);

} // namespace tradewick
