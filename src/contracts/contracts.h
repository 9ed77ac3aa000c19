// The forms of contracts and credit.
#pragma once

#include "common/record_form_spec.h"

namespace tradewick
{

RecordFormSpec YY_WXHT();        // export contracts
RecordFormSpec YY_CGHT();        // purchase contracts
RecordFormSpec YY_XyZ_New_Rpt(); // letters of credit, each over any number of export contracts
RecordFormSpec YY_Yh_XYZ();      // the older register: each over one export contract, with its goods

} // namespace tradewick
