// Makes forms for tables of them: those that are a declaration, and those with rules of their own.
#pragma once

#include "common/record_form.h"

#include <memory>

namespace tradewick::test
{

using MakeForm = std::unique_ptr<RecordForm> (*)();

template <const RecordFormSpec &Spec> std::unique_ptr<RecordForm> declared()
{
    return std::make_unique<RecordForm>(Spec);
}
template <class Form> std::unique_ptr<RecordForm> own()
{
    return std::make_unique<Form>();
}

} // namespace tradewick::test
