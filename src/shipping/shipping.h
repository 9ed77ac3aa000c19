// The forms of shipping.
#pragma once

#include "common/record_form_spec.h"

namespace tradewick
{

RecordFormSpec CY_Pcd_Djb();  // truck dispatch notes
RecordFormSpec CY_Dcd_Rpt();  // booking notes
RecordFormSpec cy_HYtD_DjB(); // bills of lading

} // namespace tradewick
