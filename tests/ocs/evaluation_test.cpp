// The value of a mateset.
#include <random>

#include "ocs/qobocs.h"
#include "support/model_fixture.h"

namespace qob::test {
namespace {

// Males 1, 2 and females 3, 4, 5. All numbers are sums of few powers of 2, so that values are
// exact.
class Evaluation : public ModelTest {
 protected:
  static constexpr double kA[5][5] = {{1, 0.25, 0.5, 0, 0.25},
                                      {0.25, 1.25, 0, 0.25, 0.5},
                                      {0.5, 0, 1, 0.5, 0},
                                      {0, 0.25, 0.5, 1, 0.125},
                                      {0.25, 0.5, 0, 0.125, 1.5}};
  static constexpr double kLinear[] = {0.5, 1, 0, 0.25, 0.125};

  // The candidates are animals 11..15; their relationships stand in the reverse order.
  Evaluation() {
    constexpr int kMatings[] = {4, 2, 3, 1, 2}, kAge[] = {1, 3, 2, 2, 4};
    constexpr double kMerit[] = {8, 4, 2, 6, -2};
    Candidates& c = model.candidates;
    Goal& goal = model.goal;
    c.nmcands = 2;
    c.nfcands = 3;
    c.ncands = 5;
    c.cands.assign(5, 0);
    c.max_matings = c.cands;
    c.age.assign(5, 0);
    c.merit.assign(5, 0.0);
    goal.apv2 = c.merit;
    model.relationship.nrm_id.assign(15, 0);
    model.relationship.nrm.assign(15, 0.0);
    for (int i = 1; i <= 5; ++i) {
      c.cands(i) = i + 10;
      c.max_matings(i) = kMatings[i - 1];
      c.age(i) = kAge[i - 1];
      c.merit(i) = kMerit[i - 1];
      goal.apv2(i) = kLinear[i - 1];
      model.relationship.nrm_id(i + 10) = 6 - i;
      for (int j = 1; j <= i; ++j) model.relationship.nrm(ute(6 - i, 6 - j)) = kA[i - 1][j - 1];
    }
    goal.vpapv = goal.last_rel = 0.25;
    goal.last_genint = 2.0;
    goal.expmerit = 0.5;
    goal.k_factor[0] = 2.0;
    goal.k_factor[1] = 4.0;
    goal.constraint = 0.28125;
    model.parameters.ocs.w_merit = 2.0;
    model.parameters.ocs.w_relationship = -4.0;
  }

  // Of a mateset given as its males and its females.
  ValueRecord value_of(std::vector<std::int32_t> entries, std::string_view optimise = "penalty") {
    model.parameters.ocs.optimise = Text<10>(optimise);
    ValueRecord value;
    evaluation(model, Mateset(entries.data(), static_cast<std::int64_t>(entries.size() / 2)),
               value);
    return value;
  }
};

// Male 1 and female 3 have three of the four matings each, 2 and 4 one:
//   c'Ac = (9 + 1.25 + 9 + 1 + 2*(3*0.25 + 9*0.5 + 0.25 + 3*0.5)) / 64 = 34.25 / 64
//   linear (3*0.5 + 1 + 0.25) / 8, so R = 34.25/64 + 2.75/8 + 0.25 = 1.12890625
TEST_F(Evaluation, FieldsAreThoseWorkedByHand) {
  const ValueRecord value = value_of({1, 1, 2, 1, 3, 3, 4, 3});
  EXPECT_EQ(value.inbreeding, 0.5 * (3 * 0.5 + 0.25) / 4);
  EXPECT_EQ(value.relationship, 1.12890625 / 4);
  EXPECT_EQ(value.rate, (1.12890625 / 4 - 0.25) * 2.0 / 1.75);
  EXPECT_EQ(value.merit, (24 + 4 + 6 + 6) / 8.0);
  EXPECT_EQ(value.scaled_merit, (12 + 2 + 1.5 + 1.5) / 8.0 - 0.5);
  EXPECT_EQ(value.age, (3 + 3 + 6 + 2) / 8.0);
  EXPECT_TRUE(value.legal);
}

TEST_F(Evaluation, FitnessFollowsTheCriterion) {
  const std::vector<std::int32_t> mateset = {1, 1, 2, 1, 3, 3, 4, 3};
  EXPECT_EQ(value_of(mateset, "  Penalty").fitness, 2.0 * 1.625 - 1.12890625);
  EXPECT_EQ(value_of(mateset, "MERIT").fitness, 5.0);
  // The excess of 2^-10 costs 1000 a unit.
  EXPECT_EQ(value_of(mateset, "constraint").fitness, 1.625 - 0.9765625);
  model.goal.constraint = 1.12890625 / 4;
  EXPECT_EQ(value_of(mateset, "constraint").fitness, 1.625);
  try {
    value_of(mateset, "best");
    ADD_FAILURE() << "no stop";
  } catch (const Stopped&) {
    EXPECT_EQ(log, "ERROR in evaluation Value of error:     0\n");
  }
}

TEST_F(Evaluation, RelationshipIsTheQuadraticFormOfTheContributions) {
  std::mt19937 rng(7);
  for (std::size_t n = 1; n <= 30; ++n) {
    std::vector<std::int32_t> entries;
    double c[5] = {}, expected = 0.25, coancestry = 0.0;
    for (std::size_t p = 0; p < 2 * n; ++p) {
      entries.push_back(static_cast<std::int32_t>(p < n ? 1 + rng() % 2 : 3 + rng() % 3));
      c[entries.back() - 1] += 0.5 / static_cast<double>(n);
    }
    for (int i = 0; i < 5; ++i) {
      expected += kLinear[i] * c[i];
      for (int j = 0; j < 5; ++j) expected += c[i] * kA[i][j] * c[j];
    }
    for (std::size_t j = 0; j < n; ++j) coancestry += kA[entries[j] - 1][entries[j + n] - 1] / 2;
    const ValueRecord value = value_of(entries);
    EXPECT_NEAR(value.relationship, expected / 4.0, 1e-13);
    EXPECT_NEAR(value.inbreeding, coancestry / static_cast<double>(n), 1e-13);
  }
}

TEST_F(Evaluation, LegalMatesetsKeepTheLimitsAndUseMalesInWholeUnits) {
  const struct {
    int unit;
    std::vector<std::int32_t> entries;
    bool legal;
  } cases[] = {
      {1, {1, 1, 1, 1, 3, 3, 3, 4}, true},  {2, {1, 1, 1, 1, 3, 3, 3, 4}, true},
      {2, {1, 1, 2, 2, 3, 3, 3, 4}, true},  {2, {1, 1, 1, 2, 3, 3, 3, 4}, false},
      {3, {1, 1, 1, 1, 3, 3, 3, 4}, false}, {1, {2, 2, 2, 1, 3, 3, 3, 4}, false},
      {1, {1, 1, 2, 2, 3, 3, 4, 4}, false}, {1, {1, 1, 2, 2, 3, 3, 3, 3}, false},
      {2, {1, 1, 1, 3, 3, 3}, false},       {2, {1, 1, 3, 3}, true},
  };
  for (const auto& c : cases) {
    model.parameters.ocs.limitmalematings = c.unit;
    EXPECT_EQ(value_of(c.entries, "merit").legal, c.legal) << ::testing::PrintToString(c.entries);
  }
}

// The mateset of the worked example: its fitness under "penalty" is 2.12109375.
TEST_F(Evaluation, IllegalMatesetNeverOvertakesTheBest) {
  const std::vector<std::int32_t> mateset = {1, 1, 2, 1, 3, 3, 4, 3};
  const struct {
    int unit;
    double best;
    const char* optimise;
    double fitness;
    const char* log;
  } cases[] = {{2, 2.0, "penalty", 0.9 * 2.0, " evaluation not legal          17\n"},
               {2, -1.0, "penalty", -0.9, " evaluation not legal          17\n"},
               {2, 2.12109375, "penalty", 2.12109375, ""},
               {1, 2.0, "penalty", 2.12109375, ""},
               {2, 2.0, "merit", 5.0, ""},
               {2, 0.5, "constraint", 0.6484375, ""}};
  model.search.igeneration = 17;
  for (const auto& c : cases) {
    log.clear();
    model.parameters.ocs.limitmalematings = c.unit;
    model.search.best_value.fitness = c.best;
    EXPECT_EQ(value_of(mateset, c.optimise).fitness, c.fitness) << c.optimise << c.best;
    EXPECT_EQ(log, c.log);
  }
}

TEST_F(Evaluation, EmptyEntryStopsTheRun) {
  for (const std::vector<std::int32_t>& mateset : {std::vector{1, 2, 3, 0}, {1, 0, 3, 4}}) {
    try {
      value_of(mateset);
      ADD_FAILURE() << "no stop";
    } catch (const Stopped& stopped) {
      EXPECT_EQ(stopped.text, "ERROR: NRM accessed with index 0");
      EXPECT_EQ(stopped.status, kFailure);
    }
  }
}

}  // namespace
}  // namespace qob::test
