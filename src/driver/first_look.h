// A look at the whole parameter file before anything is written: which files a run is going to
// read, and what would else be found out late, or never.
#pragma once

#include "core/qobtypestools.h"

namespace qob {

// Takes up the parameter file and the files that it names as inputs. Tells nothing. False: the file
// does not tell which they are.
bool know_inputs(Run& run);

// Tells of groups that a phase of this run will miss or cannot read, of groups that no phase knows,
// and of values that are not taken as they stand. A name of a file that is longer than names may be
// stops the run: what is left of it names another file.
void look_through_parameters(Run& run);

}  // namespace qob
