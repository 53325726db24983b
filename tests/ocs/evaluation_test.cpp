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
  Evaluation() {
    constexpr int kMatings[] = {4, 2, 3, 1, 2}, kAge[] = {1, 3, 2, 2, 4};
    constexpr double kMerit[] = {8, 4, 2, 6, -2}, kLinear[] = {0.5, 1, 0, 0.25, 0.125};
    constexpr double kRelationship[5][5] = {{1, 0.25, 0.5, 0, 0.25},
                                            {0.25, 1.25, 0, 0.25, 0.5},
                                            {0.5, 0, 1, 0.5, 0},
                                            {0, 0.25, 0.5, 1, 0.125},
                                            {0.25, 0.5, 0, 0.125, 1.5}};
    resize(2, 3);
    for (int i = 1; i <= 5; ++i) {
      model.candidates.max_matings(i) = kMatings[i - 1];
      model.candidates.age(i) = kAge[i - 1];
      model.candidates.merit(i) = kMerit[i - 1];
      model.goal.apv2(i) = kLinear[i - 1];
      for (int j = 1; j <= i; ++j) relate(i, j, kRelationship[i - 1][j - 1]);
    }
    Goal& goal = model.goal;
    goal.vpapv = 0.25;
    goal.last_rel = 0.25;
    goal.last_genint = 2.0;
    goal.expmerit = 0.5;
    goal.k_factor[0] = 2.0;
    goal.k_factor[1] = 4.0;
    goal.constraint = 0.28125;
    model.parameters.ocs.w_merit = 2.0;
    model.parameters.ocs.w_relationship = -4.0;
  }

  // The candidates' rows stand in the reverse order of the candidates.
  void resize(int males, int females) {
    Candidates& c = model.candidates;
    const int n = males + females;
    c.nmcands = males;
    c.nfcands = females;
    c.ncands = model.relationship.nnrm = n;
    c.cands.assign(n, 0);
    c.max_matings.assign(n, 1);
    c.age.assign(n, 1);
    c.merit.assign(n, 0.0);
    model.goal.apv2.assign(n, 0.0);
    model.relationship.nrm_id.assign(n + 10, 0);
    model.relationship.nrm.assign(n * (n + 1) / 2, 0.0);
    for (int i = 1; i <= n; ++i) {
      c.cands(i) = i + 10;
      model.relationship.nrm_id(i + 10) = n + 1 - i;
    }
  }
  void relate(int i, int j, double a) {
    const std::int64_t n = model.relationship.nnrm;
    model.relationship.nrm(ute(n + 1 - i, n + 1 - j)) = a;
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
  const auto draw = [&](int n) { return static_cast<int>(rng() % static_cast<unsigned>(n)); };
  constexpr int kMales = 9, kAll = 25, kRows = 30;
  resize(kMales, kAll - kMales);
  Table2<double> a(kAll, kAll);
  for (int i = 1; i <= kAll; ++i) {
    for (int j = 1; j <= i; ++j) {
      a(i, j) = a(j, i) = (i == j ? 1.0 : 0.0) + draw(1000) / 2000.0;
      relate(i, j, a(i, j));
    }
    model.goal.apv2(i) = draw(1000) / 500.0;
  }
  for (int repeat = 0; repeat < 20; ++repeat) {
    std::vector<std::int32_t> entries;
    std::vector<double> c(kAll + 1, 0.0);
    for (int p = 0; p < 2 * kRows; ++p) {
      entries.push_back(p < kRows ? 1 + draw(kMales) : kMales + 1 + draw(kAll - kMales));
      c[static_cast<std::size_t>(entries.back())] += 1.0 / (2 * kRows);
    }
    double expected = 0.25, coancestry = 0.0;
    for (int i = 1; i <= kAll; ++i) {
      const double c_i = c[static_cast<std::size_t>(i)];
      expected += model.goal.apv2(i) * c_i;
      for (int j = 1; j <= kAll; ++j) expected += c_i * a(i, j) * c[static_cast<std::size_t>(j)];
    }
    for (std::size_t j = 0; j < kRows; ++j) coancestry += a(entries[j], entries[j + kRows]) / 2;
    const ValueRecord value = value_of(entries);
    EXPECT_NEAR(value.relationship, expected / 4.0, 1e-12);
    EXPECT_NEAR(value.inbreeding, coancestry / kRows, 1e-12);
  }
}

TEST_F(Evaluation, ContributionsBelowTheThresholdAreLeftOut) {
  Table<double> c(5, 0.0);
  c(1) = c(3) = 0.5;
  c(2) = 0.125;
  const double used = 0.25 + (0.25 + 0.25 + 2 * 0.25 * 0.5) + 0.25;
  EXPECT_EQ(average_relationship(model, c, 0.25), used / 4);
  EXPECT_EQ(average_relationship(model, c, 0.125),
            (used + 1.25 / 64 + 2 * 0.5 * 0.125 * 0.25 + 0.125) / 4);
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
