// The icon beside a message.
#pragma once

namespace tradewick
{

enum class MessageIcon { None, Information, Exclamation, Question, Critical };

} // namespace tradewick
