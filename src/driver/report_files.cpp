#include "driver/report_files.h"

#include <algorithm>
#include <utility>

#include "core/parameters.h"
#include "core/text.h"
#include "driver/sheet_file.h"
#include "system/input_file.h"
#include "system/paths.h"

namespace qob {
namespace {

constexpr std::size_t kMostTold = 8;

// Prefixes of results in a folder, as they are to be typed.
std::string prefixes_in(const std::string& folder, std::string_view name) {
  const std::vector<std::string> files = entries_of(folder, std::string(name));
  std::string told;
  for (std::size_t k = 0; k < std::min(files.size(), kMostTold); ++k) {
    told += k == 0 ? "" : ", ";
    told += printable(files[k].substr(0, files[k].size() - name.size()));
  }
  return told + (files.size() > kMostTold ? ", ..." : "");
}

// Whether one of the lines of a file that can be read holds what `is_mark` says, or it has none: an
// interrupted report leaves an empty file.
template <class IsMark>
bool is_empty_or_has(const std::string& path, IsMark is_mark) {
  InputFile file;
  std::string_view line;
  if (file.open(path) != 0) return false;
  bool is_empty = true;
  for (; file.next_line(line) == 0; is_empty = false) {
    if (is_mark(line)) return true;
  }
  return is_empty;
}

// The page holds the JSON, and that begins with its format.
bool is_report(std::string_view line) {
  return line.find("{\"format\":\"qob-") != std::string_view::npos;
}

void refuse_input(const std::vector<std::string>& inputs, const std::string& path) {
  for (const std::string& input : inputs) {
    if (are_same_path(input, path)) refuse(path, "it is an input : expected another file");
  }
}

[[noreturn]] void refuse_foreign(const std::string& path) {
  if (is_folder(path)) refuse(path, "it is a folder : expected the name of a file");
  refuse(
      path,
      "it is there, and not from qob-report : expected --force to write over it, or another name");
}

}  // namespace

void expect_results(const std::string& prefix) {
  const FileNames names;
  const std::string_view summary = names.fsummaryfile.trimmed();
  if (path_exists(prefix + std::string(summary))) return;
  const std::size_t end = prefix.find_last_of('/');
  const std::string folder = is_folder(prefix)          ? prefix
                             : end == std::string::npos ? "."
                                                        : prefix.substr(0, end);
  const std::string there = prefixes_in(folder, summary);
  refuse(prefix, "no results of a run begin with this : expected the prefix of their names, " +
                     (there.empty() ? "resultsdirectory in the parameter file" : "here " + there));
}

void Outputs::expect_report(const std::string& path) const {
  refuse_input(inputs, path);
  if ((!force || is_folder(path)) && path_exists(path) && !is_empty_or_has(path, is_report))
    refuse_foreign(path);
}

void Outputs::expect_table(const std::string& path, std::string_view headings) const {
  refuse_input(inputs, path);
  if (force || !path_exists(path)) return;
  bool first = true;
  const bool own = is_empty_or_has(
      path, [&](std::string_view line) { return std::exchange(first, false) && line == headings; });
  if (!own) refuse_foreign(path);
}

void Outputs::expect_workbook(const std::string& path, const std::string& table) const {
  refuse_input(inputs, path);
  if (!force && path_exists(path) && !path_exists(table)) refuse_foreign(path);
}

}  // namespace qob
