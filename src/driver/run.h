// A run from the command line to its end, step by step.
#pragma once

#include "core/qobtypestools.h"

namespace qob {

// What a run that lacks memory ends with, unless a phase has a message of its own.
inline constexpr const char* kOutOfMemory = "Allocation would exceed memory limit";

// Runs the job that the parameter file describes. `argument` is the first command argument, none
// when nullptr. Ends by a stop, never by returning.
[[noreturn]] void run(Run& run, const char* argument);

}  // namespace qob
