// Makes forms for tables of them.
#pragma once

#include "common/record_form.h"

#include <memory>

namespace tradewick::test
{

using MakeForm = std::unique_ptr<RecordForm> (*)();

template <RecordFormSpec (*Spec)()> std::unique_ptr<RecordForm> made()
{
    return std::make_unique<RecordForm>(Spec());
}

} // namespace tradewick::test
