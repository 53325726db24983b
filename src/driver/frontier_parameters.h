// Parameter files of the runs of a frontier: that of the herd with other goals and searches.
#pragma once

#include <string>
#include <vector>

#include "core/parameters.h"

namespace qob {

// All groups of a parameter file, as a run takes them. Names of files begin in the working folder.
struct GivenParameters {
  Parameters groups;
  std::vector<Contrib> requests;
};

// Stops with what is wrong with the file.
GivenParameters read_parameters(const std::string& path);

// What the names of results begin with in the folder of a run: the end of the herd's own prefix.
std::string results_prefix(const GivenParameters& given);

// What of a parameter file is said by a run of its own.
struct RunParameters {
  OCSParameters goal;
  AlgorithmParameters algorithm;
  Improvement improvement;
};

// The parameter file `qob.prm` of a run in `folder` (with its "/"): the herd's, but for these
// groups, and what the runs must not share: results stand in the folder, and neither identifiers
// nor relationships are written. Stops if a name is too long from there.
std::string parameter_file(const GivenParameters& given, const RunParameters& run,
                           const std::string& folder);

}  // namespace qob
