// Departments of the company, in two levels.
#pragma once

#include "common/record_form.h"

namespace tradewick
{

// Top departments and, for each, those below it; the staff hang under the same tree.
extern const char *const countDepartments;
extern const char *const topDepartments;
extern const char *const departmentsBelow; // of {bmmc}

extern const RecordFormSpec Sys_bmsz;

} // namespace tradewick
