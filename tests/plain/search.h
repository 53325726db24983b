// The evaluation and the directed mutation of a mateset in their plainest form, one relationship at
// a time in the order of the sums: the judge of the fast forms, bit for bit, and their yardstick.
#pragma once

#include <cmath>
#include <vector>

#include "core/numbers.h"
#include "ocs/allowances.h"
#include "ocs/evaluation.h"

namespace qob::plain {

inline double average_relationship(const Problem& problem, const Table<double>& c,
                                   double threshold) {
  const Candidates& candidates = problem.selection.candidates;
  const Goal& goal = problem.selection.goal;
  const auto a = [&](int i, int k) { return cnrm(problem.relationship, candidates, i, k); };
  std::vector<int> parents;
  for (int i = 1; i <= candidates.ncands; ++i) {
    if (c(i) >= threshold) parents.push_back(i);
  }
  double sum = goal.vpapv;
  for (auto i = parents.begin(); i != parents.end(); ++i) {
    sum += a(*i, *i) * (c(*i) * c(*i)) + goal.apv2(*i) * c(*i);
    for (auto k = i + 1; k != parents.end(); ++k) sum += 2.0 * c(*i) * c(*k) * a(*k, *i);
  }
  return sum / (goal.last_genint * goal.last_genint);
}

inline void evaluation(const Problem& problem, Evaluator& evaluator, Mateset mateset,
                       MatesetValue& value) {
  const Candidates& candidates = problem.selection.candidates;
  const Goal& goal = problem.selection.goal;
  const auto n = mateset.nmatings();
  const double h = 1.0 / static_cast<double>(2 * n);
  Allowances matings = mating_limits(problem.selection);
  Table<double> c(candidates.ncands, 0.0);
  value = {};
  for (std::int64_t j = 1; j <= n; ++j) {
    for (int sex = kMale; sex <= kFemale; ++sex) {
      const int i = mateset(j, sex);
      --matings(i);
      c(i) += 1.0;
      value.age += static_cast<double>(candidates.age(i));
      value.merit += candidates.merit(i);
      value.scaled_merit += candidates.merit(i) / goal.k_factor[sex - 1];
    }
    value.inbreeding +=
        0.5 * cnrm(problem.relationship, candidates, mateset.male(j), mateset.female(j));
  }
  for (double& share : c) share *= h;
  value.age *= h;
  value.inbreeding /= static_cast<double>(single(n));
  value.scaled_merit = value.scaled_merit * h - goal.expmerit;
  value.merit *= h;
  value.relationship = plain::average_relationship(problem, c, 1.0 / static_cast<double>(3 * n));
  value.rate = (value.relationship - goal.last_rel) * goal.last_genint / (2.0 - goal.last_rel);
  value.legal = true;
  for (int i = 1; i <= candidates.ncands; ++i) {
    const auto used = candidates.max_matings(i) - matings(i);
    if (matings(i) < 0) value.legal = false;
    if (candidates.is_male(i) && used % problem.selection.limitmalematings != 0)
      value.legal = false;
  }
  evaluator.compute_fitness(value);
}

class DirectedMutation {
 public:
  DirectedMutation(const Problem& problem, Evaluator& evaluator, Mateset mateset)
      : problem_(problem),
        evaluator_(evaluator),
        mateset_(mateset),
        matings_(remaining_matings(problem.selection, mateset)) {}

  void run(double probability, Random& random) {
    if (probability < kTiny) return;
    const std::int64_t rows[] = {problem_.selection.male_slots(), mateset_.nmatings()};
    for (int sex = kMale; sex <= kFemale; ++sex) {
      for (std::int64_t j = 1; j <= rows[sex - 1]; ++j) {
        if (probability > random.uni()) replace(j, sex);
      }
    }
    MatesetValue value;
    plain::evaluation(problem_, evaluator_, mateset_, value);
  }

 private:
  double a(int i, int k) const {
    return cnrm(problem_.relationship, problem_.selection.candidates, i, k);
  }

  double relationship_to_parents(int y) const {
    double sum = 0.0;
    for (const int j : parents_) sum += contribution_(j) * a(y, j);
    return sum;
  }

  void replace(std::int64_t j, int sex) {
    const Candidates& candidates = problem_.selection.candidates;
    const Goal& goal = problem_.selection.goal;
    const Objective& p = problem_.objective;
    const bool constraint = p.criterion == Criterion::kConstraint;
    if (constraint && !evaluated_) plain::evaluation(problem_, evaluator_, mateset_, value_);
    evaluated_ = true;
    const double d = 1.0 / static_cast<double>(2 * mateset_.nmatings());
    contribution_.assign(candidates.ncands, 0.0);
    for (std::int64_t e = 1; e <= 2 * mateset_.nmatings(); ++e) ++contribution_(mateset_.entry(e));
    parents_.clear();
    for (int i = 1; i <= candidates.ncands; ++i) {
      contribution_(i) *= d;
      if (contribution_(i) >= kTiny) parents_.push_back(i);
    }
    const int x = mateset_(j, sex);
    const std::int64_t needed = sex == kMale ? problem_.selection.limitmalematings : 1;
    const double a_x = relationship_to_parents(x);
    const bool too_related = constraint && value_.relationship > p.constraint;
    int best = 0;
    double best_score = 0.0, best_gain = 0.0, best_change = 0.0;
    for (int y = candidates.first(sex); y <= candidates.last(sex); ++y) {
      if (matings_(y) < needed) continue;
      const double change =
          (d * (goal.apv2(y) - goal.apv2(x)) + 2.0 * d * (relationship_to_parents(y) - a_x) +
           d * d * (a(y, y) + a(x, x) - 2.0 * a(y, x))) /
          (goal.last_genint * goal.last_genint);
      const double gain = (candidates.merit(y) - candidates.merit(x)) * d / goal.k_factor[sex - 1];
      const double predicted = change + value_.relationship;
      if (constraint && !too_related && predicted > p.constraint) continue;
      const double score = p.criterion == Criterion::kPenalty
                               ? p.w_merit * gain + p.w_relationship * change
                               : (too_related ? -predicted : gain);
      if (std::isnan(score) || (best != 0 && !(score > best_score))) continue;
      best = y, best_score = score, best_gain = gain, best_change = change;
    }
    if (best == 0) return;
    if (sex == kMale) problem_.selection.fill_slot(mateset_, j, best);
    if (sex == kFemale) mateset_.female(j) = best;
    matings_(x) += needed;
    matings_(best) -= needed;
    value_.scaled_merit += best_gain;
    value_.relationship = best_change + value_.relationship;
  }

  const Problem& problem_;
  Evaluator& evaluator_;
  Mateset mateset_;
  Allowances matings_;
  Table<double> contribution_;
  std::vector<int> parents_;
  MatesetValue value_;
  bool evaluated_ = false;
};

inline void directed_mutation(const Problem& problem, double probability, Mateset mateset,
                              Random& random, Evaluator& evaluator) {
  DirectedMutation(problem, evaluator, mateset).run(probability, random);
}

}  // namespace qob::plain
