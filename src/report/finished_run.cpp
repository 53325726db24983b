#include "report/finished_run.h"

#include <algorithm>

#include "analysis/inbreeding.h"
#include "analysis/qobrelshipmatrix.h"
#include "core/stop.h"
#include "ocs/evaluation.h"
#include "ocs/qobocs.h"
#include "ocs/remarks.h"
#include "pedigree/qobreadrecode.h"
#include "system/paths.h"
#include "system/process.h"

namespace qob {
namespace {

// Reads the echo of a group. False: the log has none.
bool read_echo(FinishedRun& finished, const Group& group) {
  NamelistFile& file = finished.run.parameter_file;
  int status = file.rewind();
  if (status == 0) status = file.read(group);
  if (status == kEndOfFile) return false;
  if (status != 0) {
    stop(finished.log.path + ": the parameters " + std::string(group.name) +
         " cannot be read : expected the log as the run wrote it");
  }
  return true;
}

std::string without_dot(std::string_view path) {
  return std::string(path.starts_with("./") ? path.substr(2) : path);
}

// Where names of the run's inputs begin.
std::string folder_of_run(const std::string& prefix, std::string_view resultsdirectory) {
  const std::string mine = without_dot(prefix), its = without_dot(adjustl_trim(resultsdirectory));
  if (its.starts_with('/') || !mine.ends_with(its)) return "";
  const std::string before = mine.substr(0, mine.size() - its.size());
  return before.substr(0, before.find_last_of('/') + 1);  // npos + 1 is 0
}

void take_up_parameters(FinishedRun& finished) {
  Run& run = finished.run;
  Parameters& p = run.parameters;
  const int status = run.parameter_file.open(finished.log.path);
  if (status != 0) stop(finished.log.path + ": " + error_text(status));
  const bool whole = read_echo(finished, group_of(p.data)) &&
                     read_echo(finished, group_of(p.history)) &&
                     read_echo(finished, group_of(p.relationship));
  const bool is_planned =
      read_echo(finished, group_of(p.ocs)) && read_echo(finished, group_of(p.algorithm));
  // Of runs that were asked for them.
  read_echo(finished, group_of(p.improvement));
  read_echo(finished, group_of(p.rules));
  if (!whole || (finished.log.has_plan() && !is_planned))
    stop(finished.log.path + ": no log of a run that has read its parameters");
  run.files.folder = folder_of_run(finished.prefix, p.data.resultsdirectory);
}

// Nothing is written: neither identifiers nor relationships.
void write_nothing(Parameters& p) {
  p.data.recodefile = "_null_";
  if (option_text(p.relationship.source) == "pedigree") p.relationship.gfile = "_null_";
}

void expect_file(const FinishedRun& finished, const std::string& path, std::string_view what) {
  if (InputFile::exists(path)) return;
  stop(printable(path) + ": no such file : expected the " + std::string(what) +
       " of the run behind " + printable(finished.prefix));
}

void take_up_pedigree(FinishedRun& finished) {
  Run& run = finished.run;
  expect_file(finished, finished.input(run.parameters.data.datafile), "data file");
  finished.pedigree = readrecode(run);
  inbreeding_coefficients(finished.pedigree.newped, finished.pedigree.f, run.journal.units.out,
                          run.parallel);
  finished.statistics =
      animal_statistics(finished.pedigree.newped, finished.pedigree.btime,
                        std::max<std::int32_t>(run.parameters.history.pci_ngen, 1));
}

// The candidate of that identifier and sex; 0 if there is none.
std::int32_t candidate_of(const Pedigree& pedigree, const Table<std::int32_t>& candidate,
                          std::int32_t id) {
  const IdTree::Found found = pedigree.ids.find(id);
  return found.in_tree && found.number >= 1 && found.number <= pedigree.maxid
             ? candidate(found.number)
             : 0;
}

void take_up_matings(FinishedRun& finished, FinishedRun::Planned& planned) {
  const std::string path = finished.result(finished.run.parameters.files.lst_file);
  const std::vector<ListedMating> list = read_mating_list(path);
  const Candidates& candidates = planned.selection.candidates;
  Table<std::int32_t> candidate(finished.pedigree.maxid, 0);
  for (std::int32_t i = 1; i <= candidates.ncands; ++i) candidate(candidates.cands(i)) = i;
  if (std::ssize(list) != planned.selection.nmatings) {
    stop(printable(path) + ": " + std::to_string(list.size()) + " matings : expected the " +
         std::to_string(planned.selection.nmatings) + " of the run");
  }
  planned.matings.assign(1, planned.selection.nmatings);
  const Mateset mateset = planned.mateset();
  for (std::int64_t j = 1; j <= mateset.nmatings(); ++j) {
    const auto& [sire, dam, f] = list[static_cast<std::size_t>(j - 1)];
    planned.listed_f.push_back(f);
    mateset.male(j) = candidate_of(finished.pedigree, candidate, sire);
    mateset.female(j) = candidate_of(finished.pedigree, candidate, dam);
    if (candidates.is_male(mateset.male(j)) && candidates.is_female(mateset.female(j))) continue;
    stop(printable(path) + ":" + std::to_string(j + 1) + ": " + std::to_string(sire) + " x " +
         std::to_string(dam) + " are no candidates : the data file is not the run's any more");
  }
}

void take_up_plan(FinishedRun& finished) {
  Run& run = finished.run;
  const MatingRules& rules = run.parameters.rules;
  if (rules.has_file()) expect_file(finished, finished.input(rules.rulesfile), "file of rules");
  // A relationship file changes the pedigree's inbreeding and candidates.
  Pedigree pedigree = finished.pedigree;
  finished.planned.emplace();
  FinishedRun::Planned& planned = *finished.planned;
  planned.relationship = relationships(run, pedigree);
  planned.selection = set_up_selection(run, std::move(pedigree), planned.relationship);
  take_up_matings(finished, planned);
  planned.value = value_of(finished, planned.mateset());
  remark_on_constraint(run.parameters.ocs, planned.value, run.journal.units);
  remark_on_unknown_parents(planned.selection.candidates, planned.mateset(), run.journal.units);
}

}  // namespace

std::vector<std::string> FinishedRun::results() const {
  const FileNames& names = run.parameters.files;
  std::vector<std::string> paths;
  for (const auto* name :
       {&names.lst_file, &names.candfile, &names.male_file, &names.fsummaryfile, &names.fcoefffile,
        &names.gcfile, &names.maxgcfile, &names.cnv1_file, &names.cnv2_file})
    paths.push_back(result(*name));
  return paths;
}

std::vector<std::string> FinishedRun::parameter_files() const {
  const std::string& folder = run.files.folder;
  return entries_of(folder.empty() ? "." : folder.substr(0, folder.size() - 1), ".prm");
}

void take_up_run(const std::string& prefix, FinishedRun& finished) {
  finished.prefix = prefix;
  finished.log = read_log(finished.run.parameters.files, prefix);
  finished.run.journal.units.err.open_memory(&finished.told);
  start_watches(finished.run.journal.watches);
  take_up_parameters(finished);
  finished.as_run = finished.run.parameters;
  write_nothing(finished.run.parameters);
  take_up_pedigree(finished);
  if (finished.log.has_plan()) take_up_plan(finished);
}

MatesetValue value_of(FinishedRun& finished, Mateset mateset) {
  FinishedRun::Planned& planned = *finished.planned;
  const Problem problem{planned.selection, planned.relationship,
                        objective_of(finished.run.parameters.ocs, planned.selection.goal)};
  RowCache rows(planned.relationship, planned.selection.candidates);
  return value_of(problem, rows, mateset, finished.run.journal);
}

}  // namespace qob
