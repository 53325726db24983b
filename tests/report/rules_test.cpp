// What rules cost, against all plans of tiny herds.
#include "report/rules.h"

#include <algorithm>
#include <functional>
#include <optional>

#include "ocs/rules/pairing.h"
#include "ocs/rules/set_up_rules.h"
#include "ocs/selection_fixture.h"

namespace qob::test {
namespace {

constexpr int kMales = 3, kFemales = 4, kMatings = 3;

class RuleCostsTest : public SelectionTest {
 protected:
  void draw_herd(Stream& data) {
    set_candidates({3, 3, 3}, {2, 2, 2, 2}, kMatings);
    draw_data(data);
    objective.w_merit = 1.0 + data.uni();
    objective.w_relationship = -10.0 * data.uni();
  }
  static MatingRule rule(RuleKind kind, int a, int b, int n, double f = 0.0) {
    MatingRule made;
    made.told.kind = kind;
    made.told.n = n;
    made.told.f = f;
    made.a = a;
    made.b = b;
    return made;
  }
  // Of six kinds, each with an even chance.
  static std::vector<MatingRule> drawn_rules(Stream& data) {
    std::vector<MatingRule> rules;
    for (const MatingRule& one :
         {rule(RuleKind::kMax, 1, 0, 1), rule(RuleKind::kMin, 6, 0, 1),
          rule(RuleKind::kFix, 3, 5, 1), rule(RuleKind::kForbid, 2, 4, 0),
          rule(RuleKind::kMaxPair, 0, 0, 1), rule(RuleKind::kMaxF, 0, 0, 0, 0.15)}) {
      if (data.uni() < 0.5) rules.push_back(one);
    }
    return rules;
  }
  void for_each_plan(const std::function<void(const Rows&)>& use) {
    Rows rows;
    const std::function<void()> mate = [&] {
      if (std::ssize(rows) == kMatings) return use(rows);
      for (int m = 1; m <= kMales; ++m) {
        for (int f = kMales + 1; f <= kMales + kFemales; ++f) {
          rows.emplace_back(m, f);
          mate();
          rows.pop_back();
        }
      }
    };
    mate();
  }

  struct Best {
    MatesetValue value;  // of most fitness, and of those of least inbreeding
    Rows rows;
  };
  // Of all plans that keep these rules; none: there is no plan.
  std::optional<Best> best(const std::vector<MatingRule>& rules) {
    std::optional<Best> found;
    const RuleSet set{rules, {}, {}};
    for_each_plan([&](const Rows& rows) {
      const auto broken = breaches(set, candidates, relationship, pairs_of(mateset(rows)));
      if (std::any_of(broken.begin(), broken.end(), [](std::int64_t n) { return n > 0; })) return;
      const MatesetValue value = dense_value(rows);
      if (!value.legal) return;
      const double more = found ? value.fitness - found->value.fitness : 1.0;
      if (more > 1e-9 || (more > -1e-9 && value.inbreeding < found->value.inbreeding))
        found = Best{value, rows};
    });
    return found;
  }
  // As of a run that has ended with this plan.
  ReportedRules reported(const std::vector<MatingRule>& rules, const Rows& plan) {
    FinishedRun finished;
    OCSParameters& p = finished.run.parameters.ocs;
    p.optimise = "penalty";
    p.w_merit = objective.w_merit;
    p.w_relationship = objective.w_relationship;
    selection.rules = {};
    selection.rules.file = "rules.csv";
    selection.rules.set.rules = rules;
    selection.rules.decided = decided_matings(selection.rules.set, selection.nmatings);
    apply_rules(false, relationship, selection);
    finished.planned.emplace();
    finished.planned->relationship = relationship;
    finished.planned->selection = selection;
    finished.planned->matings.assign(1, selection.nmatings);
    finished.planned->mateset().copy_from(mateset(plan));
    selection.rules = {};
    return reported_rules(finished, {});
  }
};

TEST_F(RuleCostsTest, ARuleCostsWhatTheBestOfAllPlansGainsWithoutIt) {
  int tried = 0, costly = 0;
  for (std::uint32_t seed = 1; seed <= 40; ++seed) {
    Stream data(seed);
    draw_herd(data);
    const std::vector<MatingRule> rules = drawn_rules(data);
    const std::optional<Best> with_all = best(rules);
    if (!with_all || rules.empty()) continue;
    const ReportedRules found = reported(rules, with_all->rows);
    ASSERT_EQ(found.list.size(), rules.size());
    EXPECT_NEAR(found.with_all.value, with_all->value.fitness, 1e-9) << seed;
    EXPECT_NEAR(found.with_all.inbreeding, with_all->value.inbreeding, 1e-9) << seed;
    for (std::size_t k = 0; k < rules.size(); ++k) {
      std::vector<MatingRule> others = rules;
      others.erase(others.begin() + static_cast<std::ptrdiff_t>(k));
      const MatesetValue value = best(others)->value;
      const PlanFigures& gain = found.list[k].gain;
      EXPECT_NEAR(gain.value, value.fitness - with_all->value.fitness, 1e-9) << seed << " " << k;
      EXPECT_NEAR(gain.merit, value.merit - with_all->value.merit, 1e-9) << seed << " " << k;
      EXPECT_NEAR(gain.rate, value.rate - with_all->value.rate, 1e-9) << seed << " " << k;
      EXPECT_NEAR(gain.inbreeding, value.inbreeding - with_all->value.inbreeding, 1e-9)
          << seed << " " << k;
      EXPECT_EQ(found.list[k].broken, 0);
      ++tried;
      costly += gain.value > 1e-6;
    }
  }
  EXPECT_GT(tried, 60);
  EXPECT_GT(costly, 10);
}

// Of males in units of two a decided mating cannot fall away alone.
TEST_F(RuleCostsTest, WhatCannotBeKnownIsNoNumber) {
  set_candidates({4, 4}, {2, 2, 2}, kMatings, 2);
  const ReportedRules found = reported(
      {rule(RuleKind::kFix, 1, 3, 1), rule(RuleKind::kMax, 3, 0, 0)}, {{1, 3}, {2, 4}, {2, 5}});
  EXPECT_TRUE(std::isnan(found.with_all.value));  // the plan itself breaks a rule
  EXPECT_EQ(found.list[1].broken, 1);
  const ReportedRules kept = reported(
      {rule(RuleKind::kFix, 1, 3, 1), rule(RuleKind::kMax, 2, 0, 2)}, {{1, 3}, {2, 4}, {2, 5}});
  EXPECT_TRUE(std::isnan(kept.list[0].gain.value));
  EXPECT_EQ(kept.list[1].gain.value, 0.0);
}

TEST_F(RuleCostsTest, OfManyRulesDecidedMatingsAreLeftOutFirst) {
  set_candidates({90}, {90}, 90);
  std::vector<MatingRule> rules(10, rule(RuleKind::kFix, 1, 2, 1));
  rules.resize(80, rule(RuleKind::kMax, 1, 0, 90));
  const ReportedRules found = reported(rules, Rows(90, {1, 2}));
  EXPECT_EQ(found.left_out, 20);
  EXPECT_TRUE(std::isnan(found.list[9].gain.value));
  EXPECT_FALSE(std::isnan(found.list[69].gain.value));
  EXPECT_TRUE(std::isnan(found.list[70].gain.value));
}

}  // namespace
}  // namespace qob::test
