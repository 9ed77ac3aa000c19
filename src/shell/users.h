// Users, their passwords and their rights.
#pragma once

#include "common/record_form_spec.h"

namespace tradewick
{

RecordFormSpec sys_QXSZ();

} // namespace tradewick
