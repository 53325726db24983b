#include "report/results.h"

#include <map>

#include "core/lexer.h"
#include "core/stop.h"
#include "core/text.h"
#include "system/input_file.h"
#include "system/process.h"
#include "system/shell.h"

namespace qob {
namespace {

constexpr std::size_t kLongestLine = 400;

[[noreturn]] void refuse(const std::string& path, const std::string& why) {
  stop(printable(path) + ": " + why);
}

// Calls action(line) for each line. Returns the status of the open.
template <class Action>
int for_each_line(const std::string& path, Action action) {
  InputFile file(kLongestLine);
  const int opened = file.open(path);
  std::string_view line;
  while (opened == 0 && file.next_line(line) == 0) action(line);
  return opened;
}

// Sets `value` to what stands behind the label. False: the line has no such label.
bool take(std::string_view line, std::string_view label, std::string& value) {
  const std::size_t at = line.find(label);
  if (at == std::string_view::npos) return false;
  value = adjustl_trim(line.substr(at + label.size()));
  return true;
}

std::string pairing_of(std::string_view strategy) {
  if (strategy.starts_with("MAI")) return "mai";
  return strategy.starts_with("LEAST") ? "least" : "random";
}

// "rules.csv: 3 rules, broken by 0" without the name of the file.
void take_rules(std::string_view line, std::string& rules) {
  for (const std::string_view mark : {" rules, broken by ", " rule, broken by "}) {
    const std::size_t at = line.find(mark);
    if (at != std::string_view::npos)
      rules = adjustl_trim(line.substr(line.substr(0, at).find_last_of(' ') + 1));
  }
}

void take_line(std::string_view line, LogOfRun& log, bool& ended) {
  std::string text;
  if (log.program.empty() && line.find(" QOB v") != std::string_view::npos)
    log.program = adjustl_trim(line);
  if (log.started.empty()) take(line, "QOB started", log.started);
  if (take(line, "MatingStrategy=", text)) log.pairing = pairing_of(text);
  if (line.find("MatingStrategy=MCAC") != std::string_view::npos) log.pairing = "random";
  take_rules(line, log.rules);
  if (take(line, "Mutating solutions to increase variance in generation", text)) {
    std::int32_t generation = 0;
    if (read_list(text, generation) == 0) log.restarts.push_back(generation);
  }
  ended = ended || line.find("Timing of QOB program") != std::string_view::npos;
}

}  // namespace

LogOfRun read_log(const FileNames& names, const std::string& prefix) {
  LogOfRun log;
  bool ended = false;
  int status = 0;
  const std::string name(names.logfile.trimmed());
  for (const std::string& start : {prefix, as_shell_reads(prefix)}) {
    log.path = start + name;
    status = for_each_line(log.path, [&](std::string_view line) { take_line(line, log, ended); });
    if (status == 0) break;
  }
  if (status != 0) {
    refuse(prefix + name, std::string(error_text(status)) +
                              " : expected the prefix of a run's results, its resultsdirectory");
  }
  if (log.program.empty()) refuse(log.path, "no log of a run");
  if (!ended) refuse(log.path, "a run that has not come to its end : its results are not complete");
  return log;
}

std::vector<ListedMating> read_mating_list(const std::string& path) {
  std::vector<ListedMating> matings;
  std::int64_t number = 0;
  const int status = for_each_line(path, [&](std::string_view line) {
    if (++number == 1) return;  // the headings
    ListedMating mating;
    std::int32_t nth = 0, nth_of_male = 0, nth_of_female = 0;
    double merit = 0.0;
    if (read_list(line, mating.sire, mating.dam) != 0)
      refuse(path + ":" + std::to_string(number), "no mating : expected sire and dam");
    if (read_list(line, mating.sire, mating.dam, nth, nth_of_male, nth_of_female, merit,
                  mating.f) != 0)
      mating.f = kNaN;  // a merit that its column does not hold
    matings.push_back(mating);
  });
  if (status != 0) refuse(path, error_text(status));
  return matings;
}

std::vector<SearchRow> read_convergence(const FileNames& names, const std::string& prefix) {
  std::map<std::int32_t, SearchRow> rows;
  const auto path = [&](const Text<80>& name) { return prefix + std::string(name.trimmed()); };
  for_each_line(path(names.cnv2_file), [&](std::string_view line) {
    SearchRow row;
    if (read_list(line, row.generation, row.best, row.median, row.worst, row.mean, row.sd) == 0)
      rows[row.generation] = row;
  });
  for_each_line(path(names.cnv1_file), [&](std::string_view line) {
    SearchRow row;
    if (read_list(line, row.generation, row.best, row.merit, row.relationship, row.rate) != 0)
      return;
    const auto at = rows.find(row.generation);
    if (at == rows.end()) return;
    at->second.merit = row.merit;
    at->second.relationship = row.relationship;
    at->second.rate = row.rate;
  });
  std::vector<SearchRow> list;
  for (const auto& [generation, row] : rows) list.push_back(row);
  return list;
}

}  // namespace qob
