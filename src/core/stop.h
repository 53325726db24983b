// The only place where the process ends.
#pragma once

#include <string_view>

namespace qob {

inline constexpr int kSuccess = 0;
inline constexpr int kFailure = 1;

// What `stop` does with its text and exit status. A handler must not return.
using StopHandler = void (*)(std::string_view text, int status);

// Installs `handler` for this thread and returns the one before. The first one of a thread writes
// the text to standard error and exits with the status; tests, and what goes on after a run,
// install ones that throw.
StopHandler set_stop_handler(StopHandler handler);

// Ends the process with `text`.
[[noreturn]] void stop(std::string_view text, int status = kFailure);

}  // namespace qob
