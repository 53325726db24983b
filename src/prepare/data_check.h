// All at once what a run says of a data file, and what would stop it.
#pragma once

#include <string>

#include "core/units.h"

namespace qob {

// Reads the data file at `path` as a run does, but behind faults goes on: tells faults (a run stops
// at the first kind it meets), then remarks, each sorted by kind, with file and line. Returns
// whether there is no fault; 1 line tells how many there are. A file that cannot be read ends the
// program.
bool check_data_file(const std::string& path, Units& units);

}  // namespace qob
