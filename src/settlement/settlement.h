// The forms of settlement and tax.
#pragma once

#include "common/record_form_spec.h"

namespace tradewick
{

RecordFormSpec CY_HXD_Djb();  // export verification forms: lots, returns, issues
RecordFormSpec YY_SsPj_DJB(); // tax documents: the three papers that a refund takes for one export invoice

} // namespace tradewick
