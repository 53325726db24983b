#include "report/candidates.h"

#include <algorithm>
#include <cmath>
#include <tuple>

#include "mating/list_columns.h"
#include "report/choices.h"

namespace qob {
namespace {

ReportedCandidate describe(const FinishedRun::Planned& planned,
                           const PopulationMeasures& population, std::int32_t i,
                           std::int32_t matings, const ListColumns& relationships) {
  const Candidates& candidates = planned.selection.candidates;
  const std::int32_t animal = candidates.cands(i);
  ReportedCandidate c;
  c.merit = candidates.merit(i);
  c.max_matings = candidates.max_matings(i);
  c.matings = matings;
  c.offspring = candidates.previous_offspring(i);
  c.relationship =
      (candidates.nmcands * relationships.males + candidates.nfcands * relationships.females) /
      candidates.ncands;
  c.to_chosen = 0.5 * (relationships.males_sel + relationships.females_sel);
  const double own = matings / (2.0 * planned.selection.nmatings);
  c.to_others = (c.to_chosen - own * cnrm(planned.relationship, candidates, i, i)) / (1.0 - own);
  c.mean_kinship = population.mean_kinship(animal);
  c.contribution_so_far = population.contribution_so_far(animal);
  c.contribution_wanted = own;
  c.unknown_parent = candidates.has_unknown_parent(i);
  return c;
}

// What is no number comes last.
double order_of(double lacking) {
  return std::isnan(lacking) ? std::numeric_limits<double>::infinity() : lacking;
}

bool comes_before(const ReportedCandidate& a, const ReportedCandidate& b) {
  const auto key = [](const ReportedCandidate& c) {
    return std::tuple(-c.matings, c.matings > 0 ? 0.0 : order_of(c.lacking_value), -c.merit);
  };
  return key(a) < key(b);
}

}  // namespace

std::vector<ReportedCandidate> reported_candidates(FinishedRun& finished,
                                                   const PopulationMeasures& population,
                                                   AnimalList& animals) {
  FinishedRun::Planned& planned = *finished.planned;
  const Candidates& candidates = planned.selection.candidates;
  const Mateset mateset = planned.mateset();
  const Uses uses = uses_of(candidates, mateset);
  const Table<ListColumns> columns = list_columns(planned.relationship, candidates, mateset);
  std::vector<ReportedCandidate> list;
  Table<double> to_chosen(candidates.ncands);
  for (std::int32_t i = 1; i <= candidates.ncands; ++i) {
    list.push_back(describe(planned, population, i, uses(i), columns(i)));
    list.back().animal = animals.place(candidates.cands(i));
    to_chosen(i) = list.back().to_chosen;
  }
  const Problem problem{planned.selection, planned.relationship,
                        objective_of(finished.run.parameters.ocs, planned.selection.goal)};
  const std::vector<Choice> why = choices(problem, mateset, planned.value, to_chosen);
  for (std::size_t k = 0; k < list.size(); ++k) {
    list[k].lack = why[k].lack;
    list[k].lacking_value = why[k].value;
    list[k].lacking_merit = why[k].merit;
  }
  std::stable_sort(list.begin(), list.end(), comes_before);
  for (std::size_t k = 0; k < list.size(); ++k) list[k].rank = static_cast<std::int32_t>(k + 1);
  return list;
}

}  // namespace qob
