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
  std::string pairing;           // "mai", "least" or "random"; "" when nothing was paired
  std::string rules;             // "3 rules, broken by 0"; "" when the run had none
  std::vector<std::int32_t> restarts;
  bool has_plan() const { return !pairing.empty(); }
};

// Finds and reads the log behind `prefix`. Stops when there is none, or it is no run's that ended.
LogOfRun read_log(const FileNames& names, const std::string& prefix);

// By identifiers in the data file.
struct ListedMating {
  std::int32_t sire = 0, dam = 0;
  double f = kNaN;  // of the offspring, five decimals
};

// The mating list at `path`, line by line. Stops when a line is none of a mating list.
std::vector<ListedMating> read_mating_list(const std::string& path);

// The two files of convergence. A file or a line that cannot be read is left out.
std::vector<SearchRow> read_convergence(const FileNames& names, const std::string& prefix);

}  // namespace qob
