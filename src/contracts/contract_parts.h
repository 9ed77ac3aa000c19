// What a contract copies of the own company that signs it.
#pragma once

#include "common/record_form_spec.h"

namespace tradewick
{

// The choice of the company: its columns go into those of the same names. Only the export contract takes the company's
// own mail address along.
PickSpec companyPick(const QString &combo, bool withMail);

} // namespace tradewick
