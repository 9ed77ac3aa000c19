// Ports where goods are loaded and discharged; their names stand on the export documents.
#pragma once

#include "common/record_form.h"

namespace tradewick
{

extern const RecordFormSpec Sys_GKSZ;

} // namespace tradewick
