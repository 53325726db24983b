#include "report/reporting.h"

#include <algorithm>
#include <map>

#include "core/parameters.h"
#include "core/stop.h"
#include "frontier/possible.h"
#include "report/candidates.h"
#include "report/plan.h"
#include "report/rules.h"
#include "report/warnings.h"

namespace qob {
namespace {

// Who lives: as the herd book says, or else who is as young as the oldest candidate.
Table<char> living(const FinishedRun& finished, const Names& names, ReportedPopulation& told) {
  const Pedigree& pedigree = finished.pedigree;
  const bool by_column = names.tells_living();
  std::int32_t oldest = *std::max_element(pedigree.btime.begin(), pedigree.btime.end());
  for (std::int32_t i = 1; i <= pedigree.maxid; ++i) {
    if (pedigree.matings(i) > 0 && birth_time_is_known(pedigree.btime(i)))
      oldest = std::min(oldest, pedigree.btime(i));
  }
  Table<char> lives(pedigree.maxid, 0);
  for (std::int32_t i = 1; i <= pedigree.maxid; ++i) {
    const bool does =
        by_column ? names.alive(pedigree.oldped(i, 1)) == Alive::kYes : pedigree.btime(i) >= oldest;
    lives(i) = does ? 1 : 0;
  }
  told.living_by = by_column ? "column" : "birth time";
  told.living_since = oldest;
  return lives;
}

Table<char> chosen(FinishedRun& finished) {
  Table<char> table(finished.pedigree.maxid, 0);
  if (!finished.planned) return table;
  const Candidates& candidates = finished.planned->selection.candidates;
  const Uses uses = uses_of(candidates, finished.planned->mateset());
  for (std::int32_t i = 1; i <= candidates.ncands; ++i)
    table(candidates.cands(i)) = uses(i) > 0 ? 1 : 0;
  return table;
}

// The herd book's word for each time step, where all its animals were born at one such time.
template <class Rows>
void name_times(const FinishedRun& finished, const Names& names, Rows& rows) {
  std::map<std::int32_t, std::string> word;
  for (std::int32_t i = 1; names.count() > 0 && i <= finished.pedigree.maxid; ++i) {
    const std::string_view birth = names.birth(finished.pedigree.oldped(i, 1));
    const auto [at, is_new] = word.try_emplace(finished.pedigree.btime(i), birth);
    if (!is_new && at->second != birth) at->second.clear();
  }
  for (auto& row : rows) {
    const auto at = word.find(row.birth_time);
    if (at != word.end() && !at->second.empty()) row.birth = at->second;
  }
}

ReportedSearch reported_search(const FinishedRun& finished) {
  ReportedSearch search;
  search.rows = read_convergence(finished.run.parameters.files, finished.prefix);
  search.restarts = finished.log.restarts;
  for (const SearchRow& row : search.rows) {
    if (row.best != search.rows.back().best) continue;
    search.found = row.generation;
    break;
  }
  if (!search.rows.empty()) search.ended = search.rows.back().generation;
  return search;
}

void tell_parameters(const FinishedRun& finished, Making& making) {
  Parameters p = finished.as_run;
  for (const Group& group : groups_of(p)) {
    if (group.name == group_of(p.contrib).name || group.name == group_of(p.mating).name) continue;
    if (group.name == group_of(p.improvement).name && !p.improvement.is_wanted()) continue;
    if (group.name == group_of(p.rules).name && !p.rules.is_wanted()) continue;
    for (const Key& key : group.keys)
      making.parameters.push_back({std::string(group.name), std::string(key.name), key.show()});
  }
}

// Whether the parameter file at `path` is that of the run: one that leads from its data to its
// results.
bool is_parameter_file(const FinishedRun& finished, const std::string& path) {
  NamelistFile file;
  DataParameters its;
  if (file.open(path) != 0 || file.read(group_of(its)) != 0) return false;
  const DataParameters& p = finished.run.parameters.data;
  return its.datafile == p.datafile && its.resultsdirectory == p.resultsdirectory;
}

void tell_files(const FinishedRun& finished, Making& making) {
  const Parameters& p = finished.run.parameters;
  for (const std::string& path : finished.parameter_files())
    if (is_parameter_file(finished, path)) making.files.push_back({"parameters", path, "", 0});
  making.files.push_back({"data", finished.input(p.data.datafile), "", 0});
  if (finished.planned && !finished.planned->relationship.pedsource)
    making.files.push_back({"relationships", finished.input(p.relationship.gfile), "", 0});
  if (p.rules.has_file())
    making.files.push_back({"rules", finished.input(p.rules.rulesfile), "", 0});
  for (const std::string& path : finished.results())
    if (InputFile::exists(path)) making.files.push_back({"result", path, "", 0});
  making.files.push_back({"result", finished.log.path, "", 0});
}

Making reported_making(const FinishedRun& finished) {
  Making making;
  making.run_program = finished.log.program;
  making.run_started = finished.log.started;
  making.prefix = finished.prefix;
  making.seed = finished.run.parameters.algorithm.seed_rng;
  tell_parameters(finished, making);
  tell_files(finished, making);
  return making;
}

// Numbers alone tell the names of another herd, too.
void remark_on_names(const FinishedRun& finished, const Names& names, std::string& told) {
  const Pedigree& pedigree = finished.pedigree;
  std::int64_t named = 0;
  for (std::int32_t i = 1; i <= pedigree.maxid; ++i)
    named += !names.identifier(pedigree.oldped(i, 1)).empty();
  if (names.count() == named && (named == 0 || named == pedigree.maxid)) return;
  told += "The names file has " + std::to_string(named) + " of the " +
          std::to_string(pedigree.maxid) + " animals of the data, and " +
          std::to_string(names.count() - named) +
          " others : it may be another herd's, and then all names here are wrong\n";
}

std::string title_of(const FinishedRun& finished) {
  std::string name(adjustl_trim(finished.run.parameters.data.datafile));
  name = name.substr(name.find_last_of('/') + 1);
  return name.ends_with(".dat") ? name.substr(0, name.size() - 4) : name;
}

void tell_reach(FinishedRun& finished, Report& report) {
  const FinishedRun::Planned& planned = *finished.planned;
  Possible possible(planned.selection, planned.relationship, finished.pedigree);
  const std::optional<Reach> reach =
      possible.reach(objective_of(finished.run.parameters.ocs, planned.selection.goal));
  if (!reach) return;
  report.plan.bound = reach->bound;
  report.plan.share = reach->share(report.plan.value.fitness);
  for (GivenPlan& given : report.given) {
    if (given.faults.empty() && given.matings.size() == report.plan.matings.size())
      given.share = reach->share(given.value.fitness);
  }
}

}  // namespace

Reported report_on(FinishedRun& finished, const Names& names, const GivenList* given) {
  Reported reported;
  Report& report = reported.report;
  AnimalList animals(finished.pedigree, finished.statistics, names);
  ReportedPopulation who;
  const Table<char> lives = living(finished, names, who), in_plan = chosen(finished);
  reported.population =
      measure_population({finished.pedigree, finished.statistics, lives, in_plan,
                          [&](std::int32_t animal) { return animals.place(animal); }});
  report.population = reported.population.reported;
  report.population.living_by = who.living_by;
  report.population.living_since = who.living_since;
  name_times(finished, names, report.population.trend);
  name_times(finished, names, report.population.ages);
  report.title = title_of(finished);
  report.has_names = names.count() > 0;
  report.has_plan = finished.planned.has_value();
  report.search = reported_search(finished);
  if (report.has_plan) {
    report.planned_birth_time = finished.planned->selection.candidates.birth_time;
    report.plan = reported_plan(finished, animals);
    report.plan.rules = reported_rules(finished, names);
    report.candidates = reported_candidates(finished, reported.population, animals);
  }
  remark_on_names(finished, names, finished.told);
  report.warnings = warnings_of(finished, report, animals);
  if (given != nullptr) {
    if (!report.has_plan) stop(finished.log.path + ": a run without matings : nothing to compare");
    report.given.push_back(value_given_plan(finished, names, *given, animals));
  }
  if (report.has_plan) tell_reach(finished, report);
  report.making = reported_making(finished);
  report.animals = animals.told();
  return reported;
}

}  // namespace qob
