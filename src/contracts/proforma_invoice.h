// The proforma invoice of an export contract, in both its forms.
#pragma once

#include "data/connection.h"
#include "reporting/report.h"

namespace tradewick
{

// Fills the report, "YY_Xsfp_Rpt" or "yy_XsFp_dJRPT", for one contract: the labels, the logo (a picture that is missing
// is passed over) and the source. Throws DataError, for a contract that is not there too.
Report &proformaInvoice(const QString &report, Connection &connection, const QString &contract);

} // namespace tradewick
