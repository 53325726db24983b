// The value of a mateset. Reads the candidates, their relationships, the goal and the parameters.
#include <algorithm>

#include "ocs/qobocs.h"

namespace qob {
namespace {

bool is_legal(const Model& model, Mateset mateset, const std::vector<std::int32_t>& uses) {
  const Candidates& candidates = model.candidates;
  const std::int32_t unit = model.parameters.ocs.limitmalematings;
  for (std::int64_t j = 1; j <= mateset.nmatings(); ++j) {
    const std::int32_t male_uses = uses[static_cast<std::size_t>(mateset.male(j))];
    const std::int32_t female_uses = uses[static_cast<std::size_t>(mateset.female(j))];
    if (male_uses > candidates.max_matings(mateset.male(j)) || male_uses % unit != 0) return false;
    if (female_uses > candidates.max_matings(mateset.female(j))) return false;
  }
  return true;
}

// Moves the numbers of uses into contributions and leaves 0.
void collect(std::vector<std::int32_t>& uses, double h, Contributions& contributions) {
  std::vector<std::int32_t>& used = contributions.candidate;
  used.resize(uses.size());
  std::size_t n = 0;
  for (std::size_t i = 0; i < uses.size(); ++i) {
    used[n] = static_cast<std::int32_t>(i);
    n += uses[i] > 0;
  }
  used.resize(n);
  contributions.c.resize(n);
  for (std::size_t k = 0; k < n; ++k) {
    contributions.c[k] = static_cast<double>(uses[static_cast<std::size_t>(used[k])]) * h;
  }
}

}  // namespace

bool is_legal(const Model& model, Mateset mateset) {
  std::vector<std::int32_t> uses(static_cast<std::size_t>(model.candidates.ncands) + 1, 0);
  for (std::int64_t p = 1; p <= 2 * mateset.nmatings(); ++p) {
    ++uses[static_cast<std::size_t>(mateset.entry(p))];
  }
  return is_legal(model, mateset, uses);
}

double average_relationship(const Model& model, const Table<double>& c, double threshold) {
  Contributions contributions;
  for (std::int32_t i = 1; i <= model.candidates.ncands; ++i) {
    if (!(c(i) >= threshold)) continue;
    contributions.candidate.push_back(i);
    contributions.c.push_back(c(i));
  }
  const Contributions* const set = &contributions;
  RelationshipRows rows;
  double result;
  average_relationships(model, {&set, 1}, rows, RelationshipRows::Keep::kNothing, &result);
  return result;
}

Evaluations::Evaluations(Model& model)
    : model_(model), uses_(static_cast<std::size_t>(model.candidates.ncands) + 1, 0) {}

void Evaluations::add(Mateset mateset, ValueRecord& value) {
  const Timed timed(model_.watches.stopwatch, model_.watches.eval);
  const Candidates& candidates = model_.candidates;
  const Goal& goal = model_.goal;
  const std::int64_t n = mateset.nmatings();
  const double h = 1.0 / static_cast<double>(2 * n);
  double ages = 0.0, merits = 0.0, scaled_merits = 0.0, inbreeding = 0.0;
  for (std::int64_t j = 1; j <= n; ++j) {
    inbreeding += 0.5 * cnrm(model_.relationship, candidates, mateset.male(j), mateset.female(j));
    for (int sex = kMale; sex <= kFemale; ++sex) {
      const std::int32_t i = mateset(j, sex);
      ++uses_[static_cast<std::size_t>(i)];
      ages += static_cast<double>(candidates.age(i));
      merits += candidates.merit(i);
      scaled_merits += candidates.merit(i) / goal.k_factor[sex - 1];
    }
  }
  Pending& pending = pending_[count_++];
  pending.value = &value;
  collect(uses_, h, pending.contributions);
  value.age = ages * h;
  value.inbreeding = inbreeding / static_cast<double>(single(n));
  value.scaled_merit = scaled_merits * h - goal.expmerit;
  value.merit = merits * h;
  value.legal = is_legal(model_, mateset, uses_);
  for (const std::int32_t i : pending.contributions.candidate)
    uses_[static_cast<std::size_t>(i)] = 0;
  const bool may_log = !value.legal && option_text(model_.parameters.ocs.optimise) == "penalty";
  if (may_log || count_ == kContributionSets) finish_pending();
}

void Evaluations::finish() {
  const Timed timed(model_.watches.stopwatch, model_.watches.eval);
  finish_pending();
}

void Evaluations::finish_pending() {
  const Goal& goal = model_.goal;
  std::array<const Contributions*, kContributionSets> sets;
  std::array<double, kContributionSets> relationship;
  for (std::size_t l = 0; l < count_; ++l) sets[l] = &pending_[l].contributions;
  average_relationships(model_, {sets.data(), count_}, model_.rows, RelationshipRows::Keep::kOften,
                        relationship.data());
  for (std::size_t l = 0; l < count_; ++l) {
    ValueRecord& value = *pending_[l].value;
    value.relationship = relationship[l];
    value.rate = (value.relationship - goal.last_rel) * goal.last_genint / (2.0 - goal.last_rel);
    compute_fitness(model_, value);
  }
  count_ = 0;
}

void evaluation(Model& model, Mateset mateset, ValueRecord& value) {
  Evaluations one(model);
  one.add(mateset, value);
  one.finish();
}

void compute_fitness(Model& model, ValueRecord& value) {
  const OCSParameters& p = model.parameters.ocs;
  const std::string optimise = option_text(p.optimise);
  if (optimise == "constraint") {
    const double excess = value.relationship - model.goal.constraint;
    value.fitness = value.scaled_merit;
    if (value.relationship > model.goal.constraint) value.fitness -= excess * 1000.0;
  } else if (optimise == "merit") {
    value.fitness = value.merit;
  } else if (optimise == "penalty") {
    value.fitness = p.w_merit * value.scaled_merit + p.w_relationship * value.relationship;
    const double best = model.search.best_value.fitness;
    if (!value.legal && value.fitness > best) {
      write_list(model.units.log, "evaluation not legal", model.search.igeneration);
      value.fitness = 0.9 * best;
    }
  } else {
    handle_error(model, "ERROR in evaluation", 0);
  }
}

}  // namespace qob
