// Repair, mutation and directed mutation of matesets.
#include "ocs/selection_fixture.h"

namespace qob::test {
namespace {

using Entries = std::vector<std::int32_t>;  // the males of the rows and then their females

class Operators : public SelectionTest {
 protected:
  void set_limits(int males, const std::vector<int>& limits) {
    set_candidates({limits.begin(), limits.begin() + males}, {limits.begin() + males, limits.end()},
                   1);
    stream = Stream(1);
  }
  Entries apply(auto change, Entries entries, int slot_rows) {
    const auto n = static_cast<std::int32_t>(entries.size() / 2);
    selection.nmatings = n;
    selection.limitmalematings = slot_rows;
    change(Mateset(entries.data(), n));
    return entries;
  }
  Entries repaired(const Entries& entries, int slot_rows) {
    return apply([&](Mateset rows) { repair_mateset(rows); }, entries, slot_rows);
  }
  Entries directed(const Entries& entries, int slot_rows, double probability = 1.0) {
    return apply([&](Mateset rows) { directed_mutation(rows, probability); }, entries, slot_rows);
  }
  // No draw was taken by one of the two streams only.
  void expect_same_stream() { ASSERT_EQ(random.uni(), stream.uni()); }

  Stream stream{1};
};

TEST_F(Operators, EvaluationAgreesWithTheDefinitionUnderEachCriterion) {
  for (int problem = 1; problem <= 60; ++problem) {
    Stream data(static_cast<std::uint32_t>(problem));
    set_candidates({2, 4, 3}, {1, 2, 3, 1}, 6, problem % 2 + 1, problem);
    draw_data(data);
    objective.constraint = data.uni();
    objective.criterion = criterion_of(problem % 3 == 0   ? "merit"
                                       : problem % 3 == 1 ? " Penalty"
                                                          : "constraint");
    Rows rows;
    for (int j = 0; j < 6; ++j) rows.emplace_back(data.ceiling(3), 3 + data.ceiling(4));
    MatesetValue expected = dense_value(rows), value;
    standing.best_value.fitness = expected.fitness - (problem % 5 == 0 ? 1.0 : -1.0);
    const bool demoted = problem % 3 == 1 && problem % 5 == 0 && !expected.legal;
    if (demoted) expected.fitness = 0.9 * standing.best_value.fitness;
    log.clear();
    tools().evaluator.evaluation(mateset(rows), value);
    EXPECT_EQ(log, demoted ? " evaluation not legal           0\n" : "");
    EXPECT_EQ(value.legal, expected.legal);
    for (double MatesetValue::*field :
         {&MatesetValue::inbreeding, &MatesetValue::rate, &MatesetValue::relationship,
          &MatesetValue::merit, &MatesetValue::scaled_merit, &MatesetValue::fitness,
          &MatesetValue::age}) {
      EXPECT_NEAR(value.*field, expected.*field, 1.0e-9) << problem;
    }
  }
}

TEST_F(Operators, RepairWithoutAnOverUsedFemaleOnlyRestoresTheMaleSlots) {
  const struct {
    int unit;
    std::vector<int> limits;  // males 1, 2, females 3, 4
    Entries before, after;
  } cases[] = {
      {2, {2, 4, 3, 1}, {2, 2, 2, 2, 3, 3, 4, 3}, {2, 2, 2, 2, 3, 3, 4, 3}},  // legal
      {1, {1, 4, 2, 2}, {1, 1, 1, 2, 3, 3, 4, 4}, {1, 1, 1, 2, 3, 3, 4, 4}},  // male over-used
      {2, {4, 4, 2, 2}, {1, 1, 2, 2, 3, 3, 4, 4}, {1, 1, 2, 2, 3, 3, 4, 4}},  // even rests
      {2, {3, 4, 2, 2}, {1, 1, 2, 2, 3, 3, 4, 4}, {1, 1, 1, 1, 3, 3, 4, 4}},  // odd rest of 1
      {2, {4, 4, 5, 2}, {1, 2, 2, 2, 1, 3, 3, 3, 4, 4}, {1, 2, 1, 2, 1, 3, 3, 3, 4, 4}},
      {2, {1, 1, 5, 2}, {1, 2, 2, 3, 3, 4}, {1, 1, 1, 3, 3, 4}},  // one slot
      {4, {1, 1, 5, 2}, {1, 2, 2, 3, 3, 4}, {1, 2, 2, 3, 3, 4}},  // no slot
  };
  for (const auto& c : cases) {
    set_limits(2, c.limits);
    EXPECT_EQ(repaired(c.before, c.unit), c.after) << ::testing::PrintToString(c.before);
    expect_same_stream();
  }
  EXPECT_EQ(log + out, "");
}

// Female 3 stands in rows 1, 2 and 4 and may have two; 4 has one mating left, 5 two.
TEST_F(Operators, RepairReplacesOneDrawnRowOfAnOverUsedFemale) {
  set_limits(2, {4, 4, 2, 1, 3});
  constexpr std::size_t kRow[] = {4, 5, 7};
  for (int repeat = 0; repeat < 100; ++repeat) {
    Entries expected = {1, 1, 2, 2, 3, 3, 5, 3};
    const Entries before = expected;
    const int occurrence = stream.ceiling(3);
    expected[kRow[occurrence - 1]] = stream.ceiling(3) == 1 ? 4 : 5;
    ASSERT_EQ(repaired(before, 1), expected);
  }
  expect_same_stream();
}

// Male 1 has all slots, rows 1, 4 and 2, 5 and 3, 6, but may have one: the first two are given to 2
// or 3, by their matings left. The female's row is drawn before, her replacement after that.
TEST_F(Operators, RepairGivesSurplusSlotsOfAMaleToOthers) {
  set_limits(3, {2, 4, 6, 2, 7});
  for (int repeat = 0; repeat < 100; ++repeat) {
    Entries expected = {1, 1, 1, 1, 1, 1, 4, 4, 4, 5, 5, 5};
    const Entries before = expected;
    expected[static_cast<std::size_t>(5 + stream.ceiling(3))] = 5;
    const int first = wheel({4, 6}, stream.ceiling(10), 2);
    expected[0] = expected[3] = first;
    expected[1] = expected[4] =
        wheel({first == 2 ? 2 : 4, first == 2 ? 6 : 4}, stream.ceiling(8), 2);
    stream.uni();
    ASSERT_EQ(repaired(before, 2), expected);
  }
  expect_same_stream();
}

// Four males, two rows: emptying row 1 of male 1 empties the first female entry too, and female 5,
// who stood there, does not get that mating back. Her draws go on until one finds row 2.
TEST_F(Operators, RepairOfFewRowsAndManyMalesEmptiesFemaleEntries) {
  set_limits(4, {1, 1, 2, 3, 1, 2, 1});
  for (int repeat = 0; repeat < 100; ++repeat) {
    while (stream.ceiling(2) != 1) continue;
    Entries expected = {wheel({1, 2, 3}, stream.ceiling(6), 2), 1, 0, 0};
    const int first = stream.ceiling(3) <= 2 ? 6 : 7;
    const int second = stream.ceiling(2);
    expected[2] = first;
    expected[3] = first == 6 && second == 2 ? 7 : 6;
    ASSERT_EQ(repaired({1, 1, 5, 5}, 1), expected);
  }
  expect_same_stream();
}

// Slots are rows 1, 3, 5 and 2, 4. Six male matings are free and four of females; a slot gives back
// two and a row one, so that draws are of 1..7 and 1..5.
TEST_F(Operators, MutationReplacesInProportionToTheFreeMatings) {
  set_limits(3, {5, 4, 2, 3, 4, 2});
  for (const double probability : {0.0, 0.5, 1.0}) {
    const auto change = [&](Mateset rows) {
      mutate(selection, probability, rows, random, run.journal.watches);
    };
    for (int repeat = 0; repeat < 60; ++repeat) {
      const Entries before = {1, 2, 1, 2, 1, 4, 4, 5, 5, 6};
      Entries expected = before;
      std::vector<int> males = {2, 2, 2}, females = {1, 2, 1};
      for (std::size_t j = 0; j < 2; ++j) {
        if (stream.uni() >= probability) continue;
        males[static_cast<std::size_t>(before[j] - 1)] += 2;
        const int m = wheel(males, stream.ceiling(7));
        males[static_cast<std::size_t>(m - 1)] -= 2;
        for (std::size_t row = j; row < 5; row += 2) expected[row] = m;
      }
      for (std::size_t row = 5; row < 10; ++row) {
        if (stream.uni() >= probability) continue;
        ++females[static_cast<std::size_t>(before[row] - 4)];
        const int f = wheel(females, stream.ceiling(5), 4);
        --females[static_cast<std::size_t>(f - 4)];
        expected[row] = f;
      }
      ASSERT_EQ(apply(change, before, 2), expected) << probability;
      ASSERT_TRUE(probability > 0.0 || expected == before);
    }
  }
  expect_same_stream();
}

class DirectedMutation : public Operators {};

// At last male 2 has the highest merit, but a single mating left where two are needed.
TEST_F(DirectedMutation, TakesTheFirstOfEqualsWithAWholeUnitLeftAndNeverAMeritThatIsNoNumber) {
  objective.criterion = Criterion::kMerit;
  set_limits(4, {3, 2, 2, 2, 3, 2, 2});
  EXPECT_EQ(directed({4, 4, 7, 7}, 1), (Entries{1, 1, 5, 5}));
  candidates.merit(1) = std::nan("");
  EXPECT_EQ(directed({4, 4, 7, 7}, 1), (Entries{2, 2, 5, 5}));
  candidates.max_matings(2) = 1;
  candidates.merit(2) = 5.0;
  EXPECT_EQ(directed({4, 4, 7, 7}, 2), (Entries{3, 3, 5, 5}));
}

// Male 1 is over-used, so that the evaluation at the end finds an illegal mateset.
TEST_F(DirectedMutation, WithoutAnEligibleCandidateTheMatesetStays_UnknownCriterionStopsTheRun) {
  set_limits(1, {1, 1, 1});
  candidates.merit(1) = 3.0;
  objective.w_merit = 10.0;
  EXPECT_EQ(directed({1, 1, 2, 3}, 1), (Entries{1, 1, 2, 3}));
  EXPECT_EQ(log, " evaluation not legal           0\n");
  log.clear();
  objective.criterion = criterion_of("best");
  EXPECT_THROW(directed({1, 1, 2, 3}, 1), Stopped);
  EXPECT_EQ(log, " ERROR in Subroutine Directed_Mutation\n");
}

TEST_F(DirectedMutation, DrawsOnceASlotAndRowUnlessItsProbabilityIsTiny) {
  set_limits(2, {4, 4, 4, 4});
  const Entries before = {1, 2, 1, 2, 3, 3, 4, 4};
  for (const double probability : {-1.0, 0.0, 9.999999e-9}) {
    EXPECT_EQ(directed(before, 2, probability), before);
    expect_same_stream();
  }
  EXPECT_EQ(directed(before, 2, 9.99999995e-9), before);  // no draw is as small
  for (int draws = 0; draws < 6; ++draws) stream.uni();
  expect_same_stream();
}

// Among many candidates, some of them over-used.
TEST_F(Operators, TheWheelStopsWhereTheRunningTotalFirstReachesTheDraw) {
  set_candidates({5}, std::vector<int>(200, 1), 1);
  Allowances matings = mating_limits(selection);
  Wheel females(candidates, matings, kFemale);
  for (int turn = 0; turn < 5000; ++turn) {
    females.add(stream.ceiling(201), stream.ceiling(7) - 4);
    const int r = stream.ceiling(260) - 30;
    std::int64_t total = 0;
    std::int32_t expected = 0;
    for (std::int32_t f = 2; f <= 201 && expected == 0; ++f) {
      if ((total += matings(f)) >= r) expected = f;
    }
    ASSERT_EQ(females.spin(r), expected) << turn;
  }
}

}  // namespace
}  // namespace qob::test
