// The forms of contracts and credit.
#pragma once

#include "common/record_form_spec.h"

namespace tradewick
{

RecordFormSpec YY_WXHT(); // export contracts
RecordFormSpec YY_CGHT(); // purchase contracts

} // namespace tradewick
