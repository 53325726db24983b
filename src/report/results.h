// The result files of a run that has ended: what the report takes from them.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "core/parameters.h"
#include "report/report.h"

namespace qob {

// What the log's copy tells.
struct LogOfRun {
  std::string path;
  std::string program, started;  // as in its first lines
  std::string pairing;           // "mai" or "random"; "" when nothing was paired
  std::vector<std::int32_t> restarts;
};

// Finds and reads the log behind `prefix`. Stops when there is none, or it is no run's that ended.
LogOfRun read_log(const FileNames& names, const std::string& prefix);

// Sires and dams of the mating list at `path`, by their identifiers in the data file, line by line.
// Stops when a line is none of a mating list.
using Pairs = std::vector<std::pair<std::int32_t, std::int32_t>>;
Pairs read_mating_list(const std::string& path);

// The two files of convergence. A file or a line that cannot be read is left out.
std::vector<SearchRow> read_convergence(const FileNames& names, const std::string& prefix);

}  // namespace qob
