// A run from the command line to its end, step by step.
#pragma once

#include "core/qobtypestools.h"

namespace qob {

// Runs the job that the parameter file describes. `argument` is the first command argument, none
// when nullptr. Ends by a stop, never by returning.
[[noreturn]] void run(Model& model, const char* argument);

}  // namespace qob
