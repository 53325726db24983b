// What makes an offspring's inbreeding, and what a candidate lacks: against their definitions.
#include <cmath>
#include <functional>
#include <map>
#include <random>
#include <set>
#include <vector>

#include "ocs/rules/set_up_rules.h"
#include "ocs/selection_fixture.h"
#include "report/choices.h"
#include "report/common_ancestors.h"

namespace qob::test {
namespace {

using Shares = std::map<std::int32_t, double>;

// Wright's sum over pairs of paths, path by path.
class Paths {
 public:
  explicit Paths(const Pedigree& pedigree) : pedigree_(pedigree) {}

  Shares of(std::int32_t sire, std::int32_t dam) {
    Shares shares;
    each_path(sire, {}, [&](const std::set<std::int32_t>& passed, std::int32_t a) {
      each_path(dam, {}, [&](const std::set<std::int32_t>& other, std::int32_t b) {
        if (a != b) return;
        for (const std::int32_t i : passed)
          if (other.contains(i)) return;
        const auto steps = static_cast<double>(passed.size() + other.size());
        shares[a] += std::pow(0.5, steps + 1.0) * (1.0 + pedigree_.f(a));
      });
    });
    return shares;
  }

 private:
  // Calls end(animals on the way, last) for every path up from `i`.
  void each_path(std::int32_t i, std::set<std::int32_t> passed, const auto& end) {
    if (i == 0) return;
    end(passed, i);
    passed.insert(i);
    const std::function<void(std::int32_t)> up = [&](std::int32_t p) { each_path(p, passed, end); };
    up(pedigree_.sire(i));
    up(pedigree_.dam(i));
  }

  const Pedigree& pedigree_;
};

class CommonAncestorsTest : public RunTest {
 protected:
  Shares shares(std::int32_t sire, std::int32_t dam) {
    Shares found;
    for (const auto& [a, f] : CommonAncestors(pedigree, {sire, dam}).of(sire, dam).shares)
      found[a] = f;
    return found;
  }
};

//   1   2        3 and 4: full sibs; 5: half sib of both; 6 = 3 x 4; 7 = 6 x 5
//   |\ /|\       8 = 6 x 7, whose sire is the dam's sire
TEST_F(CommonAncestorsTest, FamiliesHaveTheSharesOfTheirTextbook) {
  read_animals(
      "1 0 0 1 1 0 0\n2 0 0 2 1 0 0\n3 1 2 1 2 0 0\n4 1 2 2 2 0 0\n5 1 0 2 2 0 0\n"
      "6 3 4 1 3 0 0\n7 6 5 2 4 0 0\n");
  EXPECT_EQ(shares(3, 4), (Shares{{1, 0.125}, {2, 0.125}}));
  EXPECT_EQ(shares(3, 5), (Shares{{1, 0.125}}));
  EXPECT_EQ(shares(6, 5), (Shares{{1, 0.125}}));
  // 6 has F = 1/4; by 5 there are the paths 6-3-1-5-7 and 6-4-1-5-7.
  EXPECT_EQ(shares(6, 7), (Shares{{6, 0.25 * 1.25}, {1, 0.0625}}));
}

TEST_F(CommonAncestorsTest, SharesAreThoseOfAllPathsAndSumToF) {
  for (unsigned seed = 1; seed <= 30; ++seed) {
    std::mt19937 rng(seed);
    constexpr int kAnimals = 26;
    pedigree.maxid = kAnimals;
    pedigree.newped.assign(2, kAnimals, 0);
    for (int i = 4; i <= kAnimals; ++i)
      for (int k = 1; k <= 2; ++k)
        pedigree.newped(k, i) = std::max(0, i - 1 - static_cast<int>(rng() % 5)) % i;
    inbreeding_coefficients(pedigree.newped, pedigree.f, units.out, run.parallel);
    Paths paths(pedigree);
    const std::int32_t sire = 17, dam = 15 + static_cast<int>(rng() % 6);
    const Shares found = shares(sire, dam), expected = paths.of(sire, dam);
    ASSERT_EQ(found.size(), expected.size()) << seed;
    for (const auto& [a, f] : expected) EXPECT_NEAR(found.at(a), f, 1e-12) << seed;
  }
}

// What a candidate lacks is what the best of all exchanges for it loses, by the definition of
// value.
TEST_F(SelectionTest, NoExchangeIsBetterThanWhatIsSaidToBeLacking) {
  for (int seed = 1; seed <= 30; ++seed) {
    Stream data(static_cast<std::uint32_t>(seed));
    const int unit = seed % 2 + 1;
    set_candidates(std::vector<int>(6, 9), std::vector<int>(9, 2), 8, unit);
    draw_data(data);
    objective.criterion = static_cast<Criterion>(seed % 3);
    const bool is_loose = seed % 2 == 0;  // a constraint that no plan comes near
    objective.constraint = data.uni() + (is_loose ? 100.0 : 0.0);
    const bool only_merit_counts = objective.criterion == Criterion::kMerit ||
                                   (objective.criterion == Criterion::kConstraint && is_loose);
    Rows rows;
    for (int j = 0; j < 8; ++j)
      rows.emplace_back(1 + j / unit % 2, candidates.nmcands + 1 + j % (2 + seed % 3));
    const MatesetValue value = dense_value(rows);
    Table<double> to_chosen(candidates.ncands, 0.0);
    for (int i = 1; i <= candidates.ncands; ++i)
      for (const auto& [j, c] : contributions(rows)) to_chosen(i) += c * rel(i, j);
    const auto found = choices(tools().problem, mateset(rows), value, to_chosen);
    for (int i = 1; i <= candidates.ncands; ++i) {
      const bool male = i <= candidates.nmcands;
      const auto used = contributions(rows);
      const Choice& choice = found[static_cast<std::size_t>(i - 1)];
      ASSERT_EQ(choice.lack == Lack::kChosen, used.contains(i));
      if (used.contains(i)) continue;
      double least = std::numeric_limits<double>::infinity();
      for (const auto& [j, c] : used) {
        if ((j <= candidates.nmcands) != male) continue;
        Rows changed = rows;
        int left = male ? unit : 1;
        for (auto& [m, f] : changed)
          if ((male ? m : f) == j && left-- > 0) (male ? m : f) = i;
        least = std::min(least, value.fitness - dense_value(changed).fitness);
      }
      EXPECT_NEAR(choice.value, std::max(least, 0.0), 1e-9) << seed << " " << i;
      EXPECT_EQ(choice.lack == Lack::kNothing, least <= 1e-12);
      EXPECT_TRUE(!only_merit_counts || least <= 1e-9 || choice.lack == Lack::kMerit);
    }
  }
}

// Who must have its matings, or may have no more, takes part in no exchange.
TEST_F(SelectionTest, WhatRulesForbidIsLackingNothingThatIsKnown) {
  set_candidates({9, 9, 9}, {1, 1, 1}, 2);
  const Rows rows = {{1, 4}, {1, 5}};
  const auto lack_of = [&](RuleKind kind, std::int32_t who, std::int32_t n, std::size_t male) {
    MatingRule rule;
    rule.told.kind = kind;
    rule.told.n = n;
    rule.a = who;
    selection.rules = {};
    selection.rules.file = "rules.csv";
    selection.rules.set.rules = {rule};
    apply_rules(false, relationship, selection);
    return choices(tools().problem, mateset(rows), dense_value(rows),
                   Table<double>(6, 0.0))[male - 1]
        .lack;
  };
  EXPECT_EQ(lack_of(RuleKind::kMin, 1, 2, 2), Lack::kNotKnown);
  EXPECT_NE(lack_of(RuleKind::kMin, 1, 1, 2), Lack::kNotKnown);
  EXPECT_EQ(lack_of(RuleKind::kMax, 2, 0, 2), Lack::kNotKnown);
  EXPECT_NE(lack_of(RuleKind::kMax, 2, 0, 3), Lack::kNotKnown);
}

// With the merit that it is said to lack, a candidate is as good as those who were chosen.
TEST_F(SelectionTest, TheMeritThatIsLackingIsWhatMakesUpForTheLoss) {
  set_candidates({9, 9}, {1, 1, 1}, 2);
  Stream data(7);
  draw_data(data);
  candidates.merit(1) = 9.0, candidates.merit(2) = 5.0;
  const Rows rows = {{1, 3}, {1, 4}};
  Table<double> to_chosen(5, 0.0);
  for (int i = 1; i <= 5; ++i)
    for (const auto& [j, c] : contributions(rows)) to_chosen(i) += c * rel(i, j);
  const auto lacking = [&](std::size_t at) {
    return choices(tools().problem, mateset(rows), dense_value(rows), to_chosen)[at];
  };
  const Choice before = lacking(1);
  ASSERT_GT(before.merit, 0.0);
  candidates.merit(2) += before.merit * 0.999;
  EXPECT_GT(lacking(1).value, 0.0);
  candidates.merit(2) += before.merit * 0.002;
  EXPECT_EQ(lacking(1).lack, Lack::kNothing);
}

}  // namespace
}  // namespace qob::test
