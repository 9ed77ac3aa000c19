// The tree of departments, which the staff's stands on.
#pragma once

#include "common/record_form_spec.h"

namespace tradewick
{

inline constexpr int departmentKeyLength = 5;

// The two levels of departments; a third stands in the table alone.
//   find: column that a click on a department searches; empty: a click finds nothing.
//   below: what stands under each department, beside the departments below it.
TreeSpec departmentTree(const QString &root, const QString &find, const std::vector<BranchSpec> &below = {});

} // namespace tradewick
