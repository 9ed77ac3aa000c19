// The forms of settlement and tax.
#pragma once

#include "common/record_form_spec.h"

namespace tradewick
{

RecordFormSpec CY_HXD_Djb(); // export verification forms: lots, returns, issues

} // namespace tradewick
