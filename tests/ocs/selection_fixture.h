// Models of a selection for tests: candidates set by hand, values of matesets by their definition
// over a dense matrix, and a stream of random numbers of its own that foretells the draws.
#pragma once

#include <algorithm>
#include <cmath>
#include <deque>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "ocs/qobocs.h"
#include "support/model_fixture.h"

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

class SelectionTest : public ModelTest {
 protected:
  // Unrelated candidates with these mating limits, of merit 0 and age 1; the seed starts the draws.
  void set_candidates(std::vector<int> limits, const std::vector<int>& females, int nmatings,
                      int unit = 1, int seed = 1) {
    Candidates& c = model.candidates;
    c.nmcands = static_cast<int>(limits.size());
    limits.insert(limits.end(), females.begin(), females.end());
    c.ncands = static_cast<int>(limits.size());
    c.nfcands = c.ncands - c.nmcands;
    for (auto* t : {&c.cands, &c.max_matings, &model.relationship.nrm_id}) t->assign(c.ncands, 0);
    for (RelationshipSums& sums : model.sums) sums = {};
    for (auto* t : {&c.merit, &model.goal.apv2}) t->assign(c.ncands, 0.0);
    c.age.assign(c.ncands, 1);
    model.relationship.nrm.assign(c.ncands * (c.ncands + 1) / 2, 0.0);
    for (int i = 1; i <= c.ncands; ++i) {
      c.cands(i) = model.relationship.nrm_id(i) = i;
      c.max_matings(i) = limits[static_cast<std::size_t>(i - 1)];
      for (int j = 1; j <= i; ++j) relate(i, j, i == j);
    }
    model.parameters.ocs.nmatings = nmatings;
    model.parameters.ocs.limitmalematings = unit;
    model.random.zigset(seed);
  }
  // i >= j. What was derived from the matrix as it was is forgotten.
  void relate(int i, int j, double value) {
    model.rows = RelationshipRows{};
    model.relationship.nrm(i * (i - 1) / 2 + j) = herd[{i, j}] = herd[{j, i}] = value;
  }
  // Fills relationships, merits and the goal with drawn numbers.
  void draw_data(Stream& random) {
    Goal& goal = model.goal;
    for (int i = 1; i <= model.candidates.ncands; ++i) {
      for (int j = 1; j <= i; ++j) relate(i, j, (i == j) + 0.5 * random.uni());
      model.candidates.merit(i) = 10.0 * random.uni();
      model.candidates.age(i) = random.ceiling(4);
      goal.apv2(i) = random.uni();
    }
    for (double* x : {&goal.vpapv, &goal.last_rel, &goal.expmerit}) *x = random.uni();
    for (double* x : {&goal.last_genint, &goal.k_factor[0], &goal.k_factor[1]})
      *x = 1.5 - random.uni();
    model.parameters.ocs.w_merit = random.uni();
    model.parameters.ocs.w_relationship = -20.0 * random.uni();
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

  double rel(int i, int j) { return herd[{model.candidates.cands(i), model.candidates.cands(j)}]; }
  static std::map<int, double> contributions(const Rows& rows) {
    std::map<int, double> c;
    for (const auto& [m, f] : rows) {
      for (const int i : {m, f}) c[i] += 0.5 / static_cast<double>(rows.size());
    }
    return c;
  }
  // (y + c)'A(y + c) / L^2, with the earlier contributions y in vpapv and apv2.
  double relationship(const std::map<int, double>& c) {
    double sum = model.goal.vpapv;
    for (const auto& [i, c_i] : c) {
      sum += model.goal.apv2(i) * c_i;
      for (const auto& [j, c_j] : c) sum += c_i * c_j * rel(i, j);
    }
    return sum / (model.goal.last_genint * model.goal.last_genint);
  }
  // The value by its definition; no demotion of an illegal mateset.
  ValueRecord dense_value(const Rows& rows) {
    const Candidates& candidates = model.candidates;
    const Goal& goal = model.goal;
    const OCSParameters& p = model.parameters.ocs;
    const double n = static_cast<double>(rows.size());
    const std::map<int, double> c = contributions(rows);
    ValueRecord v;
    v.relationship = relationship(c);
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
      if (used > candidates.max_matings(i) || (male && used % p.limitmalematings != 0))
        v.legal = false;
    }
    v.fitness = p.w_merit * v.scaled_merit + p.w_relationship * v.relationship;
    if (p.optimise == "merit") v.fitness = v.merit;
    const double excess = std::max(0.0, v.relationship - goal.constraint);
    if (p.optimise == "constraint") v.fitness = v.scaled_merit - 1000.0 * excess;
    return v;
  }

  Dense herd;  // relationships of the animals

 private:
  std::deque<std::vector<std::int32_t>> entries_;
};

}  // namespace qob::test
