// Units of measure that goods are sold and packed in.
#pragma once

#include "common/record_form.h"

namespace tradewick
{

extern const RecordFormSpec Sys_JLDW;

} // namespace tradewick
