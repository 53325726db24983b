// Bounds and plans against all plans of small herds.
#include "frontier/possible.h"

#include <gtest/gtest.h>

#include "analysis/pedigree_products.h"
#include "frontier/kernels/definiteness.h"
#include "ocs/exchanges.h"
#include "ocs/rules/set_up_rules.h"
#include "ocs/selection_fixture.h"
#include "support/random_pedigree.h"

namespace qob::test {
namespace {

constexpr int kMales = 4, kFemales = 5;

// What the parents of one sex add to a plan.
struct Part {
  std::vector<double> contributions;
  double merit = 0.0, scaled = 0.0, relationship = 0.0;
};

// How close a kind of herds has come.
struct Closeness {
  int herds = 0, best_by_greed = 0, best_found = 0;
  int bound_reached = 0;  // by the best plan, to a thousandth of the way from the base
};

class PossibleTest : public SelectionTest {
 protected:
  // Candidates among the last animals of a pedigree, some of them parents of others; limits that
  // are no multiples of a male's unit.
  void draw_herd(int k, bool by_file) {
    rng.seed(static_cast<unsigned>(k));
    const int unit = 1 + draw(rng, 3);
    const int nmatings = unit * (1 + draw(rng, 6 / unit));
    std::vector<int> males, females;
    for (int i = 0; i < kMales; ++i) males.push_back(unit + draw(rng, 2 * nmatings));
    for (int i = 0; i < kFemales; ++i) females.push_back(1 + draw(rng, nmatings));
    males[0] += nmatings, females[0] += nmatings;  // room for all
    set_candidates(males, females, nmatings, unit);
    Stream data(static_cast<std::uint32_t>(k) + 1);
    draw_data(data);
    if (draw(rng, 2) == 0) objective.w_relationship *= 30.0;
    by_file ? relate_by_file() : relate_by_pedigree(k);
    selection.rules = {};
    if (k % 2 == 0) draw_rules();
  }
  // Decided matings, and a candidate of each sex that must be used more or less than it might be.
  void draw_rules() {
    PlanRules& rules = selection.rules;
    rules.set.groups_of.assign(candidates.ncands, {});
    const auto add = [&](RuleKind kind, int a, int b, int n) {
      rules.set.rules.push_back({{kind, "", "", n, 0.0, 0}, a, b});
    };
    const int unit = selection.limitmalematings, others = selection.nmatings - unit;
    rules.file = "rules";
    if (draw(rng, 2) == 0) add(RuleKind::kFix, 1 + draw(rng, kMales), kMales + 1, unit);
    rules.decided = decided_matings(rules.set, selection.nmatings);
    add(draw(rng, 2) == 0 ? RuleKind::kMin : RuleKind::kMax, 1 + draw(rng, kMales), 0,
        draw(rng, others + 1));
    add(draw(rng, 2) == 0 ? RuleKind::kMin : RuleKind::kMax, kMales + 2 + draw(rng, kFemales - 1),
        0, draw(rng, others + 1));
    apply_rules(true, relationship, selection);
  }
  void relate_by_pedigree(int k) {
    relationship.pedsource = true;
    pedigree.newped = random_pedigree(k, rng);
    pedigree.maxid = static_cast<std::int32_t>(pedigree.newped.columns());
    inbreeding_coefficients(pedigree.newped, pedigree.f, run.journal.units.out, run.parallel);
    pedigree.matings.assign(pedigree.maxid, 0);
    relationship.nrm_id.assign(pedigree.maxid, 0);
    std::vector<int> last(80);
    for (int i = 0; i < 80; ++i) last[static_cast<std::size_t>(i)] = pedigree.maxid - i;
    std::shuffle(last.begin(), last.end(), rng);
    for (int i = 1; i <= candidates.ncands; ++i) {
      const int animal = last[static_cast<std::size_t>(i)];
      candidates.cands(i) = animal;
      relationship.nrm_id(animal) = i;
      pedigree.matings(animal) = candidates.max_matings(i);
    }
    Table<double> column(pedigree.maxid, 0.0);
    for (int i = 1; i <= candidates.ncands; ++i) {
      column.fill(0.0);
      column(candidates.cands(i)) = 1.0;
      ak(pedigree.newped, pedigree.f, column, pedigree.maxid);
      for (int j = 1; j <= i; ++j) relate(i, j, column(candidates.cands(j)));
    }
  }
  // As markers might: of any sign, and with eigenvalues below 0.
  void relate_by_file() {
    relationship.pedsource = false;
    for (int i = 1; i <= candidates.ncands; ++i) {
      for (int j = 1; j <= i; ++j)
        relate(i, j, i == j ? 0.2 + 0.1 * draw(rng, 9) : 0.1 * (draw(rng, 17) - 8));
    }
  }

  // All ways to give a sex its matings.
  std::vector<Part> parts(int sex) {
    std::vector<Part> all;
    std::vector<int> uses;
    fill(sex, selection.nmatings, uses, all);
    return all;
  }
  void fill(int sex, int left, std::vector<int>& uses, std::vector<Part>& all) {
    const std::int32_t i = candidates.first(sex) + static_cast<std::int32_t>(uses.size());
    if (i > candidates.last(sex)) {
      if (left == 0) all.push_back(part(sex, uses));
      return;
    }
    for (int n = selection.least(i); n <= std::min(left, selection.most(i));
         n += selection.unit(i)) {
      uses.push_back(n);
      fill(sex, left - n, uses, all);
      uses.pop_back();
    }
  }
  Part part(int sex, const std::vector<int>& uses) {
    Part p;
    const std::int32_t first = candidates.first(sex);
    for (std::size_t a = 0; a < uses.size(); ++a) {
      const auto i = first + static_cast<std::int32_t>(a);
      const double c = 0.5 * uses[a] / selection.nmatings;
      p.contributions.push_back(c);
      p.merit += c * candidates.merit(i);
      p.scaled += c * candidates.merit(i) / goal.k_factor[sex - 1];
      p.relationship += c * goal.apv2(i);
      for (std::size_t b = 0; b < uses.size(); ++b)
        p.relationship += c * 0.5 * uses[b] / selection.nmatings *
                          nrmelement(relationship, i, first + static_cast<std::int32_t>(b));
    }
    return p;
  }
  double relationship_of(const Part& males, const Part& females) {
    double between = 0.0;
    for (int i = 0; i < kMales; ++i) {
      for (int j = 0; j < kFemales; ++j)
        between += males.contributions[static_cast<std::size_t>(i)] *
                   females.contributions[static_cast<std::size_t>(j)] *
                   relationship.nrm((kMales + j) * (kMales + j + 1) / 2 + i + 1);
    }
    return (goal.vpapv + males.relationship + females.relationship + 2.0 * between) /
           (goal.last_genint * goal.last_genint);
  }
  double value_of_parts(const Part& males, const Part& females) {
    const double scaled = males.scaled + females.scaled - goal.expmerit;
    const double average = relationship_of(males, females);
    if (objective.criterion == Criterion::kMerit) return males.merit + females.merit;
    if (objective.criterion == Criterion::kPenalty)
      return objective.w_merit * scaled + objective.w_relationship * average;
    return scaled - objective.breach * std::max(0.0, average - objective.constraint);
  }
  double best_of_all() {
    double best = -1e300;
    for (const Part& m : male_parts_) {
      for (const Part& f : female_parts_) best = std::max(best, value_of_parts(m, f));
    }
    return best;
  }
  void draw_constraint() {
    const double a = relationship_of(male_parts_.front(), female_parts_.back());
    const double b = relationship_of(male_parts_.back(), female_parts_.front());
    objective.constraint = std::min(a, b) + std::abs(a - b) * 0.1 * draw(rng, 10);
    objective.breach = draw(rng, 2) == 0 ? 1000.0 : 5.0;
  }
  double value_of_uses(const Uses& uses) {
    const std::vector<int> counts(&uses(1), &uses(candidates.ncands) + 1);
    return value_of_parts(part(kMale, {counts.begin(), counts.begin() + kMales}),
                          part(kFemale, {counts.begin() + kMales, counts.end()}));
  }

  void judge(Closeness& closeness) {
    Possible possible(selection, relationship, pedigree);
    const double best = best_of_all();
    const std::optional<Reach> reach = possible.reach(objective);
    ASSERT_TRUE(reach);
    EXPECT_GE(reach->bound, best);
    const Problem problem{selection, relationship, objective};
    RowCache rows(relationship, candidates);
    const Weights weights = greedy_weights(problem, rows);
    Uses uses = greedy_uses(problem, weights, rows);
    ++closeness.herds;
    closeness.best_by_greed += value_of_uses(uses) > best - 1e-9;
    exchange_until_best(problem, weights, rows, uses);
    EXPECT_LE(value_of_uses(uses), best + 1e-9);
    closeness.best_found += value_of_uses(uses) > best - 1e-9;
    closeness.bound_reached += reach->share(best) > 0.999;
  }
  void judge_all(Criterion criterion, bool by_file, Closeness& closeness) {
    for (int k = 0; k < 100; ++k) {
      SCOPED_TRACE(k);
      draw_herd(k, by_file);
      male_parts_ = parts(kMale), female_parts_ = parts(kFemale);
      draw_constraint();
      objective.criterion = criterion;
      judge(closeness);
    }
  }

  std::mt19937 rng;
  std::vector<Part> male_parts_, female_parts_;  // all ways to give each sex its matings
};

TEST_F(PossibleTest, NoPlanExceedsTheBoundAndExchangesFindTheBest) {
  Closeness by_pedigree, by_file;
  for (const Criterion c : {Criterion::kPenalty, Criterion::kConstraint, Criterion::kMerit}) {
    judge_all(c, false, by_pedigree);
    judge_all(c, true, by_file);
  }
  EXPECT_GE(by_pedigree.best_found, 0.98 * by_pedigree.herds);
  EXPECT_GE(by_pedigree.best_by_greed, 0.85 * by_pedigree.herds);
  EXPECT_GE(by_pedigree.bound_reached, 0.75 * by_pedigree.herds);
  EXPECT_GE(by_file.best_by_greed, 0.7 * by_file.herds);
  EXPECT_GE(by_file.best_found, 0.95 * by_file.herds);
}

TEST_F(PossibleTest, WhatIsLeftWithoutOwnVariancesIsAVariance) {
  for (int k = 0; k < 30; ++k) {
    draw_herd(k, false);
    const Table<double> own = own_variances(pedigree);
    int shared = 0;
    for (int i = 1; i <= candidates.ncands; ++i) {
      const double variance = own(candidates.cands(i));
      shared += variance == 0.0;
      relate(i, i, relationship.nrm(i * (i + 1) / 2) - variance);
    }
    EXPECT_LT(shared, candidates.ncands) << k;
    EXPECT_LE(shift_to_definite(relationship, candidates), 1.0e-5) << k;
  }
}

}  // namespace
}  // namespace qob::test
