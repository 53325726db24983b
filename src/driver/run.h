// A run from the command line to its end, step by step.
#pragma once

#include <vector>

#include "analysis/relationship.h"
#include "core/qobtypestools.h"
#include "ocs/selection.h"

namespace qob {

using Arguments = std::vector<const char*>;

// What a run that lacks memory ends with, unless a phase has a message of its own.
inline constexpr const char* kOutOfMemory = "Allocation would exceed memory limit";

// Runs the job that the parameter file describes, which the first of the command's arguments names.
// "--quiet" and "--threads N" may stand anywhere among them. Ends by a stop, never by returning.
[[noreturn]] void run(Run& run, const Arguments& arguments);

// What a run does beside reading its herd, in this order; standard output and standard error are
// open. Opens the log and the parameter file, and reads where the data are.
void start(Run& run, const Arguments& arguments);
// Whether OCSParameters asks for matings. Reads it, and how to search them, and checks both.
bool matings_are_wanted(Run& run);
// The plan, its pairs, and all lists of it.
void plan_matings(Run& run, const Selection& selection, const Relationship& relationship);
// Writes how long all took. The copy of the log is the last file that comes.
[[noreturn]] void finish(Run& run);

}  // namespace qob
