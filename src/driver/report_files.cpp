#include "driver/report_files.h"

#include <algorithm>
#include <utility>

#include "core/parameters.h"
#include "core/stop.h"
#include "core/text.h"
#include "system/input_file.h"
#include "system/output_file.h"
#include "system/paths.h"
#include "system/process.h"

namespace qob {
namespace {

constexpr std::size_t kMostTold = 8;

[[noreturn]] void refuse(const std::string& path, const std::string& why) {
  stop(printable(path) + ": " + why);
}

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

// Whether one of the lines of a file that can be read holds what `is_mark` says.
template <class IsMark>
bool any_line(const std::string& path, IsMark is_mark) {
  InputFile file;
  std::string_view line;
  if (file.open(path) != 0) return false;
  while (file.next_line(line) == 0) {
    if (is_mark(line)) return true;
  }
  return false;
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
  refuse(path,
         "it is there, and not from qob-report : expected --force to write over it, or another name");
}

}  // namespace

void expect_results(const std::string& prefix) {
  const FileNames names;
  const std::string_view summary = names.fsummaryfile.trimmed();
  if (path_exists(prefix + std::string(summary))) return;
  const std::size_t end = prefix.find_last_of('/');
  const std::string folder = is_folder(prefix)            ? prefix
                             : end == std::string::npos ? "."
                                                          : prefix.substr(0, end);
  const std::string there = prefixes_in(folder, summary);
  refuse(prefix,
         "no results of a run begin with this : expected the prefix of their names, " +
             (there.empty() ? "resultsdirectory in the parameter file" : "here " + there));
}

void Outputs::expect_report(const std::string& path) const {
  refuse_input(inputs, path);
  if (!force && path_exists(path) && !any_line(path, is_report)) refuse_foreign(path);
}

void Outputs::expect_table(const std::string& path, std::string_view headings) const {
  refuse_input(inputs, path);
  if (force || !path_exists(path)) return;
  bool first = true;
  const bool own = any_line(path, [&](std::string_view line) {
    return std::exchange(first, false) && line == headings;
  });
  if (!own) refuse_foreign(path);
}

void Outputs::expect_new(const std::string& path) const {
  refuse_input(inputs, path);
  if (!force && path_exists(path)) refuse_foreign(path);
}

void write_whole(const std::string& path, std::string_view text) {
  OutputFile file;
  int status = file.open(path, OutputFile::Show::kWhenComplete);
  if (status == 0) status = file.write(text);
  const int closed = file.close();
  if (status == 0) status = closed;
  if (status != 0) refuse(path, error_text(status));
}

}  // namespace qob
