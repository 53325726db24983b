// A run from the command line to its end, step by step.
#pragma once

#include <vector>

#include "core/qobtypestools.h"

namespace qob {

using Arguments = std::vector<const char*>;

// What a run that lacks memory ends with, unless a phase has a message of its own.
inline constexpr const char* kOutOfMemory = "Allocation would exceed memory limit";

// Runs the job that the parameter file describes, which the first of the command's arguments names.
// "--quiet" and "--threads N" may stand anywhere among them. Ends by a stop, never by returning.
[[noreturn]] void run(Run& run, const Arguments& arguments);

}  // namespace qob
