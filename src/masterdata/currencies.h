// Currencies and their rates; the base currency is the one with rate 1.
#pragma once

#include "common/record_form.h"

namespace tradewick
{

extern const RecordFormSpec Sys_bzsz;

} // namespace tradewick
