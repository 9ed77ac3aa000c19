// Sheets and lists of the registers: one customer or supplier in full, or all of them; the price list.
#pragma once

#include "data/connection.h"
#include "reporting/report.h"

namespace tradewick
{

// Fills one of the reports "YY_KhZl_XX_Rpt" (a customer), "khzl_rpt" (all customers), "Yy_Gys_xxZl" (a supplier),
// "YY_Gys_JMZL" (all suppliers) and "Sys_Cpzlb_rpt" (the price list). key is the code of the customer or supplier;
// the others pass over it. Throws DataError, for a record that is not there too, std::invalid_argument for another
// report.
Report &masterReport(const QString &report, Connection &connection, const QString &key = {});

} // namespace tradewick
