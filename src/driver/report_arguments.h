// The command line of qob-report.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace qob {

struct ReportArguments {
  std::vector<std::string> prefixes;  // of the results: one, or the two or three to compare
  std::string names;                  // "": the names beside the data file, if they are there
  std::string output;                 // the page, or under `json` the result as JSON
  std::string tables;                 // folder of the tables; "": none are wanted
  std::string given;                  // a list of matings to be valued; "": none
  bool json = false;
  bool force = false;
};

// None when there is nothing to do but to end with `status`: help and version were shown, or what
// is wrong with the arguments (status 2).
std::optional<ReportArguments> report_arguments(int argc, char** argv, int& status);

}  // namespace qob
