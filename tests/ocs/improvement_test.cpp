// What is done besides the search: greedy plans and exchanges, as a run uses them.
#include "ocs/improvement.h"

#include "ocs/evaluation.h"
#include "ocs/greedy_plan.h"
#include "ocs/plan_report.h"
#include "ocs/selection_fixture.h"

namespace qob::test {
namespace {

class ImprovementTest : public SelectionTest {
 protected:
  void draw_herd(std::uint32_t seed) {
    set_candidates({6, 9, 4, 12, 3, 6}, {1, 2, 3, 1, 2, 1, 4, 2, 1, 3}, 12, 3, 7);
    Stream data(seed);
    draw_data(data);
  }
  Plan worst_plan() {
    Plan plan;
    plan.best_mating.assign(1, 12);
    Rows rows;
    const int females[] = {7, 8, 8, 9, 9, 9, 10, 11, 11, 12, 13, 13};
    for (int j = 0; j < 12; ++j) rows.emplace_back(j % 4 + 1, females[j]);
    plan.best().copy_from(mateset(rows));
    plan.best_value = value(plan.best());
    return plan;
  }
  MatesetValue value(Mateset rows) {
    RowCache cache(relationship, candidates);
    return value_of({selection, relationship, objective}, cache, rows, run.journal);
  }
  void expect_sound(Mateset rows, const MatesetValue& told) {
    const MatesetValue defined = dense_value(rows_of(rows));
    EXPECT_TRUE(defined.legal);
    EXPECT_TRUE(told.legal);
    EXPECT_NEAR(told.fitness, defined.fitness, 1e-9);
    EXPECT_NEAR(told.inbreeding, defined.inbreeding, 1e-7);
  }
};

TEST_F(ImprovementTest, ExchangesLeavePairsOfTheParentsThatStay) {
  for (std::uint32_t seed = 1; seed <= 30; ++seed) {
    draw_herd(seed);
    Plan plan = worst_plan();
    const Rows before = rows_of(plan.best());
    const double fitness = plan.best_value.fitness;
    exchange_on_best({selection, relationship, objective}, plan, run);
    expect_sound(plan.best(), plan.best_value);
    EXPECT_GT(plan.best_value.fitness, fitness);
    const Rows after = rows_of(plan.best());
    for (const int sex : {kMale, kFemale}) {
      std::map<int, int> uses[2];
      const auto parent = [&](const std::pair<int, int>& row) {
        return sex == kMale ? row.first : row.second;
      };
      int changed = 0, gone = 0;
      for (std::size_t j = 0; j < 12; ++j) {
        ++uses[0][parent(before[j])], ++uses[1][parent(after[j])];
        changed += parent(before[j]) != parent(after[j]);
      }
      for (const auto& [i, n] : uses[0]) gone += std::max(0, n - uses[1][i]);
      EXPECT_EQ(changed, gone);
    }
  }
}

TEST_F(ImprovementTest, ABreachThatPaysGivesWayToThePlanWithin) {
  objective.criterion = Criterion::kConstraint;
  for (std::uint32_t seed = 1; seed <= 30; ++seed) {
    draw_herd(seed);
    objective.breach = 0.5;  // little for each unit
    objective.constraint = value(worst_plan().best()).relationship;
    Plan plan = worst_plan();
    exchange_on_best({selection, relationship, objective}, plan, run);
    EXPECT_LE(plan.best_value.relationship, objective.constraint);
    EXPECT_NEAR(plan.best_value.fitness, plan.best_value.scaled_merit, 1e-9);
    expect_sound(plan.best(), plan.best_value);
  }
}

TEST_F(ImprovementTest, GreedyPlansAreLegalAndTheirPairsDrawn) {
  int pairs_differ = 0;
  for (std::uint32_t seed = 1; seed <= 30; ++seed) {
    draw_herd(seed);
    RowCache rows(relationship, candidates);
    MatesetTable plans;
    plans.assign(2, 12);
    for (const int k : {1, 2})
      EXPECT_TRUE(greedy_plan({selection, relationship, objective}, rows, random, plans(k)));
    expect_sound(plans(1), value(plans(1)));
    EXPECT_EQ(contributions(rows_of(plans(1))), contributions(rows_of(plans(2))));
    pairs_differ += rows_of(plans(1)) != rows_of(plans(2));
  }
  EXPECT_GT(pairs_differ, 25);
  for (const int i : {1, 2, 4}) candidates.max_matings(i) = 2;
  candidates.max_matings(6) = 5;
  RowCache rows(relationship, candidates);  // 18 matings, but 3 slots of 3
  EXPECT_FALSE(
      greedy_plan({selection, relationship, objective}, rows, random, worst_plan().best()));
}

}  // namespace
}  // namespace qob::test
