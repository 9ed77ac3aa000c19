// Payment methods: how money is remitted.
#pragma once

#include "common/record_form.h"

namespace tradewick
{

extern const RecordFormSpec Sys_zffs;

} // namespace tradewick
