// The process that a run is, and what the system says.
#pragma once

#include <string_view>

namespace qob {

// To be called first. Standard streams are open thereafter: one that was closed would be a file of
// the run, with its messages among the results. A closed pipe and a file beyond the user's limit
// are failed writes, which have their messages, and no signals. How a command ended can be asked,
// also where whoever started the process does not ask.
void prepare_process();

// Writes `text` to standard error as a line and ends the process. What was written to files that
// are open is kept.
[[noreturn]] void end_process(std::string_view text, int status);

// Whether a person sees standard output and standard error.
bool streams_are_terminals();

// What the system calls an error number. Valid until the next call.
const char* error_text(int status);

}  // namespace qob
