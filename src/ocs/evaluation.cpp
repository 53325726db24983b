#include "ocs/evaluation.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "core/numbers.h"
#include "ocs/rules/pairing.h"

namespace qob {
namespace {

bool uses_least(const Selection& selection, const Uses& uses) {
  for (std::int32_t i = 1; !selection.rules.empty() && i <= selection.candidates.ncands; ++i)
    if (uses(i) < selection.least(i)) return false;
  return true;
}

bool is_legal(const Selection& selection, Mateset mateset, const Uses& uses) {
  for (std::int64_t j = 1; j <= mateset.nmatings(); ++j) {
    const std::int32_t male = mateset.male(j);
    const std::int32_t female = mateset.female(j);
    const std::int32_t in_units = uses(male) - selection.decided(male);
    if (uses(male) > selection.most(male) || in_units % selection.limitmalematings != 0)
      return false;
    if (uses(female) > selection.most(female)) return false;
  }
  return uses_least(selection, uses) && can_be_paired(selection, mateset);
}

}  // namespace

bool is_legal(const Selection& selection, Mateset mateset) {
  return is_legal(selection, mateset, uses_of(selection.candidates, mateset));
}

double average_relationship(const Selection& selection, const Relationship& relationship,
                            const Table<double>& c) {
  ParentShares parents;
  for (std::int32_t i = 1; i <= selection.candidates.ncands; ++i) {
    parents.candidate.push_back(i);
    parents.c.push_back(c(i));
  }
  RowCache rows(relationship, selection.candidates);
  return average_relationship(selection.goal, parents, rows);
}

Evaluator::Evaluator(const Problem& problem, const Standing& standing, RowCache& rows,
                     Journal& journal)
    : problem_(problem),
      standing_(standing),
      rows_(rows),
      journal_(journal),
      uses_(std::int64_t{problem.selection.candidates.ncands} + 1, 0) {}

void Evaluator::evaluation(Mateset mateset, MatesetValue& value) {
  add(mateset, value);
  finish();
}

void Evaluator::add(Mateset mateset, MatesetValue& value) {
  const Timed timed(journal_.watches, journal_.watches.eval);
  const Candidates& candidates = problem_.selection.candidates;
  const Goal& goal = problem_.selection.goal;
  const std::int64_t n = mateset.nmatings();
  const double h = 1.0 / static_cast<double>(2 * n);
  double ages = 0.0, merits = 0.0, scaled_merits = 0.0, inbreeding = 0.0;
  for (std::int64_t j = 1; j <= n; ++j) {
    inbreeding += 0.5 * cnrm(problem_.relationship, candidates, mateset.male(j), mateset.female(j));
    for (int sex = kMale; sex <= kFemale; ++sex) {
      const std::int32_t i = mateset(j, sex);
      ages += static_cast<double>(candidates.age(i));
      merits += candidates.merit(i);
      scaled_merits += candidates.merit(i) / goal.k_factor[sex - 1];
    }
  }
  count_uses(mateset, uses_);
  Pending& pending = pending_[count_++];
  pending.value = &value;
  take_shares(uses_, h, pending.parents);
  value.age = ages * h;
  value.inbreeding = inbreeding / static_cast<double>(single(n));
  value.scaled_merit = scaled_merits * h - goal.expmerit;
  value.merit = merits * h;
  value.legal = is_legal(problem_.selection, mateset, uses_);
  for (const std::int32_t i : pending.parents.candidate) uses_(i) = 0;
  const bool may_log = !value.legal && problem_.objective.criterion == Criterion::kPenalty &&
                       problem_.selection.rules.empty();
  if (may_log || count_ == kParentSets) finish_pending();
}

void Evaluator::finish() {
  const Timed timed(journal_.watches, journal_.watches.eval);
  finish_pending();
}

void Evaluator::finish_pending() {
  const Goal& goal = problem_.selection.goal;
  std::array<const ParentShares*, kParentSets> sets;
  std::array<double, kParentSets> relationship;
  for (std::size_t l = 0; l < count_; ++l) sets[l] = &pending_[l].parents;
  average_relationships(goal, {sets.data(), count_}, rows_, relationship.data());
  for (std::size_t l = 0; l < count_; ++l) {
    MatesetValue& value = *pending_[l].value;
    value.relationship = relationship[l];
    value.rate = (value.relationship - goal.last_rel) * goal.last_genint / (2.0 - goal.last_rel);
    compute_fitness(value);
  }
  count_ = 0;
}

// By rules most matesets may be illegal, and none of them is to crowd out the best.
double Evaluator::fitness_below_best() const {
  const double best = standing_.best_value.fitness;
  return best - 0.1 * std::abs(best);
}

// An illegal mateset gets 0.9 of a negative best fitness as well, which ranks it above the best: so
// because nothing but its legality keeps it from replacing the best, and the factor asks no sign.
void Evaluator::compute_fitness(MatesetValue& value) {
  const Objective& objective = problem_.objective;
  Units& units = journal_.units;
  if (objective.criterion == Criterion::kUnknown)
    stop_with_message(units, "ERROR in evaluation", ErrorValue{0});
  value.fitness = fitness_of(objective, value.scaled_merit, value.merit, value.relationship);
  if (value.legal || !(value.fitness > standing_.best_value.fitness)) return;
  if (!problem_.selection.rules.empty()) {
    value.fitness = fitness_below_best();
  } else if (objective.criterion == Criterion::kPenalty) {
    write_list(units.log, "evaluation not legal", standing_.igeneration);
    value.fitness = 0.9 * standing_.best_value.fitness;
  }
}

MatesetValue value_of(const Problem& problem, RowCache& rows, Mateset mateset, Journal& journal) {
  Standing standing;
  standing.best_value.fitness = std::numeric_limits<double>::infinity();  // none is above it
  MatesetValue value;
  Evaluator(problem, standing, rows, journal).evaluation(mateset, value);
  return value;
}

}  // namespace qob
