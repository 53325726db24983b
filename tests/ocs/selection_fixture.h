// A selection for tests: candidates set by hand, values of matesets by their definition over a
// dense matrix, and a stream of random numbers of its own that foretells the draws.
#pragma once

#include <algorithm>
#include <cmath>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ocs/allowances.h"
#include "ocs/mutation.h"
#include "ocs/qobocs.h"
#include "ocs/recombination.h"
#include "ocs/repair.h"
#include "support/run_fixture.h"

namespace qob::test {

using Rows = std::vector<std::pair<int, int>>;  // the male and the female of each mating
using Dense = std::map<std::pair<int, int>, double>;

class Stream {
 public:
  explicit Stream(std::uint32_t seed) : state_(seed) {}
  double uni() {
    const std::uint32_t before = state_;
    state_ ^= state_ << 13;
    state_ ^= state_ >> 17;
    state_ ^= state_ << 5;
    return 0.5 + static_cast<std::int32_t>(before + state_) * 2.328306e-10;
  }
  int ceiling(int n) { return static_cast<int>(std::ceil(uni() * n)); }

 private:
  std::uint32_t state_;
};

// The first number, counted from `first`, at which the running total of the weights reaches r.
inline int wheel(const std::vector<int>& weights, int r, int first = 1) {
  for (std::size_t i = 0; (r -= weights[i]) > 0; ++i) ++first;
  return first;
}

class SelectionTest : public RunTest {
 protected:
  // Unrelated candidates with these mating limits, of merit 0 and age 1; the seed starts the draws.
  void set_candidates(std::vector<int> limits, const std::vector<int>& females, int nmatings,
                      int slot_rows = 1, int seed = 1) {
    Candidates& c = candidates;
    c.nmcands = static_cast<int>(limits.size());
    limits.insert(limits.end(), females.begin(), females.end());
    c.ncands = static_cast<int>(limits.size());
    c.nfcands = c.ncands - c.nmcands;
    for (auto* t : {&c.cands, &c.max_matings, &relationship.nrm_id}) t->assign(c.ncands, 0);
    for (auto* t : {&c.merit, &goal.apv2}) t->assign(c.ncands, 0.0);
    c.age.assign(c.ncands, 1);
    relationship.nrm.assign(c.ncands * (c.ncands + 1) / 2, 0.0);
    for (int i = 1; i <= c.ncands; ++i) {
      c.cands(i) = relationship.nrm_id(i) = i;
      c.max_matings(i) = limits[static_cast<std::size_t>(i - 1)];
      for (int j = 1; j <= i; ++j) relate(i, j, i == j);
    }
    selection.nmatings = nmatings;
    selection.limitmalematings = slot_rows;
    random.zigset(seed);
  }
  // i >= j. What was derived from the matrix as it was is forgotten.
  void relate(int i, int j, double value) {
    tools_.reset();
    relationship.nrm(i * (i - 1) / 2 + j) = herd[{i, j}] = herd[{j, i}] = value;
  }
  // Fills relationships, merits and the goal with drawn numbers.
  void draw_data(Stream& data) {
    for (int i = 1; i <= candidates.ncands; ++i) {
      for (int j = 1; j <= i; ++j) relate(i, j, (i == j) + 0.5 * data.uni());
      candidates.merit(i) = 10.0 * data.uni();
      candidates.age(i) = data.ceiling(4);
      goal.apv2(i) = data.uni();
    }
    for (double* x : {&goal.vpapv, &goal.last_rel, &goal.expmerit}) *x = data.uni();
    for (double* x : {&goal.last_genint, &goal.k_factor[0], &goal.k_factor[1]})
      *x = 1.5 - data.uni();
    objective.w_merit = data.uni();
    objective.w_relationship = -20.0 * data.uni();
  }
  Mateset mateset(const Rows& rows) {
    entries_.emplace_back(2 * rows.size());
    const Mateset view(entries_.back().data(), static_cast<std::int64_t>(rows.size()));
    std::int64_t j = 0;
    for (const auto& [male, female] : rows) view.male(++j) = male, view.female(j) = female;
    return view;
  }
  static Rows rows_of(Mateset view) {
    Rows rows;
    for (std::int64_t j = 1; j <= view.nmatings(); ++j)
      rows.emplace_back(view.male(j), view.female(j));
    return rows;
  }

  double rel(int i, int j) { return herd[{candidates.cands(i), candidates.cands(j)}]; }
  static std::map<int, double> contributions(const Rows& rows) {
    std::map<int, double> c;
    for (const auto& [m, f] : rows) {
      for (const int i : {m, f}) c[i] += 0.5 / static_cast<double>(rows.size());
    }
    return c;
  }
  // (y + c)'A(y + c) / L^2, with the earlier contributions y in vpapv and apv2.
  double average_relationship(const std::map<int, double>& c) {
    double sum = goal.vpapv;
    for (const auto& [i, c_i] : c) {
      sum += goal.apv2(i) * c_i;
      for (const auto& [j, c_j] : c) sum += c_i * c_j * rel(i, j);
    }
    return sum / (goal.last_genint * goal.last_genint);
  }
  // The value by its definition; no demotion of an illegal mateset.
  MatesetValue dense_value(const Rows& rows) {
    const double n = static_cast<double>(rows.size());
    const std::map<int, double> c = contributions(rows);
    MatesetValue v;
    v.relationship = average_relationship(c);
    v.rate = (v.relationship - goal.last_rel) * goal.last_genint / (2.0 - goal.last_rel);
    for (const auto& [m, f] : rows) v.inbreeding += 0.5 * rel(m, f) / n;
    v.legal = true;
    v.scaled_merit = -goal.expmerit;
    for (const auto& [i, share] : c) {
      const long used = std::lround(share * 2.0 * n);
      const bool male = i <= candidates.nmcands;
      v.merit += share * candidates.merit(i);
      v.scaled_merit += share * candidates.merit(i) / goal.k_factor[male ? 0 : 1];
      v.age += share * static_cast<double>(candidates.age(i));
      if (used > candidates.max_matings(i) || (male && used % selection.limitmalematings != 0))
        v.legal = false;
    }
    v.fitness = objective.w_merit * v.scaled_merit + objective.w_relationship * v.relationship;
    if (objective.criterion == Criterion::kMerit) v.fitness = v.merit;
    const double excess = std::max(0.0, v.relationship - objective.constraint);
    if (objective.criterion == Criterion::kConstraint) v.fitness = v.scaled_merit - 1000.0 * excess;
    return v;
  }

  // What a search works with, on the selection as it is now.
  struct Tools {
    Tools(const Problem& p, const Standing& standing, Journal& journal)
        : problem(p),
          caches(p.relationship, p.selection.candidates),
          evaluator(problem, standing, caches.rows, journal) {}

    Problem problem;
    SearchCaches caches;
    Evaluator evaluator;
  };
  Tools& tools() {
    const Problem problem{selection, relationship, objective};
    if (!tools_) tools_ = std::make_unique<Tools>(problem, standing, run.journal);
    tools_->problem.objective = objective;
    return *tools_;
  }
  // The operators, with all that they need besides the mateset.
  void directed_mutation(Mateset rows, double probability = 1.0) {
    Tools& t = tools();
    qob::directed_mutation(t.problem, probability, rows, random, t.caches, t.evaluator,
                           run.journal);
  }
  void repair_mateset(Mateset rows) { qob::repair_mateset(selection, rows, random, run.journal); }
  void recombine(Mateset parent1, Mateset parent2, Mateset child, double probability = 0.0) {
    qob::recombine(selection, probability, parent1, parent2, child, random, run.journal);
  }

  Selection selection;
  Candidates& candidates = selection.candidates;
  Goal& goal = selection.goal;
  Relationship relationship;
  Objective objective;
  Standing standing;
  Random random;
  Dense herd;  // relationships of the animals

 private:
  std::unique_ptr<Tools> tools_;
  std::deque<std::vector<std::int32_t>> entries_;
};

}  // namespace qob::test
