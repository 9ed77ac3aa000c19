// What shipping lines and trucking firms share: two registers of one shape, each with a logo.
#pragma once

#include "common/record_form_spec.h"

namespace tradewick
{

// The declaration of a register.
//   kind: "船" or "拖车", the first word of its captions.
//   lookup: statement of its numbers.
RecordFormSpec carrierRegister(const QString &name, const QString &caption, const char *statement, const QString &kind,
                               const char *lookup);

} // namespace tradewick
