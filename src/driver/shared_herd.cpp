#include "driver/shared_herd.h"

#include <algorithm>
#include <utility>

#include "analysis/qobpophistory.h"
#include "analysis/qobrelshipmatrix.h"
#include "core/stop.h"
#include "driver/run.h"
#include "ocs/qobocs.h"
#include "pedigree/qobreadrecode.h"
#include "system/process.h"

namespace qob {
namespace {

constexpr std::size_t kPiece = std::size_t{1} << 16U;  // bytes written at once

void open_parameters(Run& run, const char* parameter_file) {
  run.parameters.files.qobparmfile = parameter_file;
  const std::string path = run.files.path(parameter_file);
  const int status = run.parameter_file.open(path);
  if (status != 0) stop(path + ": " + error_text(status));
  read_group(run, group_of(run.parameters.data));
}

void write_again(Unit& unit, const std::string& lines) {
  for (std::size_t begin = 0; begin < lines.size();) {
    const std::size_t end = lines.find('\n', std::min(begin + kPiece, lines.size() - 1));
    unit.write_line(std::string_view(lines).substr(begin, end - begin));
    begin = end + 1;
  }
}

// The summary stays open.
void write_again(Run& run, const KeptResult& result) {
  const FileNames& names = run.parameters.files;
  const bool is_summary = result.name == names.fsummaryfile.trimmed();
  Unit other(18);
  Unit& unit = is_summary ? run.journal.units.summary : other;
  openresultsfile(run, run.parameters.data.resultsdirectory, result.name, unit,
                  is_summary ? OutputFile::Show::kEachLine : OutputFile::Show::kWhenComplete);
  write_again(unit, result.lines);
  if (!is_summary) closeresultsfile(run.journal.units, unit);
}

void carry_out(const SharedHerd& herd, Run& run, const char* parameter_file) {
  Unit& log = run.journal.units.log;
  start(run, {parameter_file});
  write_again(log, herd.of_data);
  end_initialisation(run.journal);
  for (const KeptResult& result : herd.results) write_again(run, result);
  write_again(log, herd.of_analysis);
  if (matings_are_wanted(run)) {
    write_again(log, herd.of_selection);
    plan_matings(run, herd.selection, herd.relationship);
  }
  finish(run);
}

}  // namespace

std::string ToldRun::last_words() const {
  const std::string_view told = std::string_view(out).substr(0, out.find_last_not_of(" \n") + 1);
  return printable(adjustl_trim(told.substr(told.rfind('\n') + 1)));  // npos + 1 is 0
}

void read_herd(Run& run, const char* parameter_file, SharedHerd& herd) {
  Units& units = run.journal.units;
  std::string own;  // what each run writes by itself
  run.files.kept = &herd.results;
  start_watches(run.journal.watches);
  open_parameters(run, parameter_file);
  units.log.open_memory(&herd.of_data);
  herd.pedigree = readrecode(run);
  units.log.open_memory(&own);
  end_initialisation(run.journal);
  units.log.open_memory(&herd.of_analysis);
  pophistory(run, herd.pedigree);
  std::optional<Relationship> relationship = setup_nrm(run, herd.pedigree);
  units.log.open_memory(&own);
  if (!relationship || !matings_are_wanted(run)) {
    handle_error(units,
                 "ERROR: no matings are asked for : timesteps and nmatings are to be 0 or more");
  }
  herd.relationship = *std::move(relationship);
  units.log.open_memory(&herd.of_selection);
  herd.selection = set_up_selection(run, herd.pedigree, herd.relationship);
  closeresultsfile(units, units.summary);
}

void run_with(const SharedHerd& herd, Run& run, const char* parameter_file) {
  if (!memory_suffices([&] { carry_out(herd, run, parameter_file); }))
    both_list(run.journal.units.log, run.journal.units.out, kOutOfMemory);
  stop(kOutOfMemory);
}

}  // namespace qob
