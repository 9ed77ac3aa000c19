// The code of single reports: what they make of their records and pages beyond what their templates say.
#pragma once

#include "reporting/report_family.h"

namespace tradewick
{

// The price list tells in its head of what day it is.
ReportFamily priceListFamily();

// The certificates of origin show of each row its quantity or, by a flag, its gross weight; Form A also whether it is
// of this country entirely.
ReportFamily certificateFamily();
ReportFamily formAFamily();
// The application for Form A names the criterion of origin by its digit.
ReportFamily formAApplicationFamily();

// The shipping advice numbers its pages in the head, and takes the letterhead's picture from its own record.
ReportFamily shippingAdviceFamily();

// The preprinted tax invoice has a place of its own for year, month and day.
ReportFamily taxInvoiceOverlayFamily();

// The general bill of lading numbers its pages in the head.
ReportFamily generalBillFamily();

// The statistics of dispatches print no zero in the totals of a company, and have the stamp of family C.
FormatRule dispatchTotals();

} // namespace tradewick
