#pragma once
// What a displayed message is, seen from whoever shows it: a severity and the
// final text. The server hands both to one sink; `qv` prints, tests capture.
#include <functional>
#include <string>
#include <string_view>

namespace Qv {

enum class MsgSeverity { Information, Warning, Error };

// Lower-case word for the severity, as printed by the default sink ("warning").
std::string_view toString(MsgSeverity severity);

using MsgSink = std::function<void(MsgSeverity severity, std::string const& text)>;

} // namespace Qv
