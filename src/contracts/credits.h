// What both registers of letters of credit have in common.
#pragma once

#include "common/record_form_spec.h"

namespace tradewick
{

// Partial shipment and transhipment are allowed or not.
FieldType allowance();

// The form without its table, fields and lines.
//   lookup: of the month's highest number.
RecordFormSpec creditRegister(const char *lookup);

} // namespace tradewick
