// The files of qob-report by name: where results are, and what may be written.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qob {

// Stops unless results of a run begin with `prefix`. Whoever has named a parameter file, a folder
// or a result file instead is told which prefixes there are.
void expect_results(const std::string& prefix);

// What may be written to.
struct Outputs {
  std::vector<std::string> inputs;  // are never written over
  bool force = false;               // everything else may be

  // Stops if the page or JSON may not be written to `path`: without force, when something is there
  // that is neither.
  void expect_report(const std::string& path) const;
  // The same for a table whose first line is to be `headings`.
  void expect_table(const std::string& path, std::string_view headings) const;
  // The same for the tables as one workbook, whose bytes do not tell whose it is: it is taken for
  // our own if it stands beside our own `table`.
  void expect_workbook(const std::string& path, const std::string& table) const;
};

}  // namespace qob
