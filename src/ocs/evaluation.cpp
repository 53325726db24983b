// The value of a mateset. Reads the candidates, their relationships, the goal and the parameters.
#include <cmath>
#include <vector>

#include "ocs/qobocs.h"

namespace qob {
namespace {

// Whether no candidate is used beyond its mating limit and every male in whole mating units.
bool is_legal(const Model& model, const Allowances& matings) {
  const Candidates& candidates = model.candidates;
  const std::int32_t unit = model.parameters.ocs.limitmalematings;
  for (std::int32_t i = 1; i <= candidates.ncands; ++i) {
    if (matings(i) < 0) return false;
    if (candidates.is_male(i) && (candidates.max_matings(i) - matings(i)) % unit != 0) return false;
  }
  return true;
}

}  // namespace

double average_relationship(const Model& model, const Table<double>& c, double threshold) {
  const Candidates& candidates = model.candidates;
  const Goal& goal = model.goal;
  std::vector<std::int32_t> used;
  for (std::int32_t i = 1; i <= candidates.ncands; ++i) {
    if (c(i) >= threshold) used.push_back(i);
  }
  double sum = goal.vpapv;
  for (std::size_t m = 0; m < used.size(); ++m) {
    const std::int32_t i = used[m];
    const double twice = 2.0 * c(i);
    sum += cnrm(model.relationship, candidates, i, i) * (c(i) * c(i)) + goal.apv2(i) * c(i);
    for (std::size_t n = m + 1; n < used.size(); ++n) {
      const std::int32_t k = used[n];
      sum += twice * c(k) * cnrm(model.relationship, candidates, k, i);
    }
  }
  return sum / (goal.last_genint * goal.last_genint);
}

void evaluation(Model& model, Mateset mateset, ValueRecord& value) {
  const Timed timed(model.watches.stopwatch, model.watches.eval);
  const Candidates& candidates = model.candidates;
  const Goal& goal = model.goal;
  const std::int64_t n = mateset.nmatings();
  const double h = 1.0 / static_cast<double>(2 * n);
  Allowances matings = mating_limits(candidates);
  Table<double> c(candidates.ncands, 0.0);
  double ages = 0.0, merits = 0.0, scaled_merits = 0.0, inbreeding = 0.0;
  for (std::int64_t j = 1; j <= n; ++j) {
    inbreeding += 0.5 * cnrm(model.relationship, candidates, mateset.male(j), mateset.female(j));
    for (int sex = kMale; sex <= kFemale; ++sex) {
      const std::int32_t i = mateset(j, sex);
      --matings(i);
      c(i) += 1.0;
      ages += static_cast<double>(candidates.age(i));
      merits += candidates.merit(i);
      scaled_merits += candidates.merit(i) / goal.k_factor[sex - 1];
    }
  }
  for (double& share : c) share *= h;
  value.age = ages * h;
  value.inbreeding = inbreeding / static_cast<double>(single(n));
  value.scaled_merit = scaled_merits * h - goal.expmerit;
  value.merit = merits * h;
  value.relationship = average_relationship(model, c, 1.0 / static_cast<double>(3 * n));
  value.rate = (value.relationship - goal.last_rel) * goal.last_genint / (2.0 - goal.last_rel);
  value.legal = is_legal(model, matings);
  compute_fitness(model, value);
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
