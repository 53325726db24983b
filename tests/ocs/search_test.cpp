// The search: its parameters, the base population, recombination and the way to the optimum.
#include "ocs/plan_report.h"
#include "ocs/selection_fixture.h"

namespace qob::test {
namespace {

class SearchTest : public SelectionTest {
 protected:
  SearchTest() { parameters.data.resultsdirectory = ""; }

  // The best fitness of all legal matesets of four matings, three candidates of each sex.
  double optimum() {
    double best = -1.0e300;
    for (int code = 0; code < 9 * 9 * 9 * 9; ++code) {
      Rows rows;
      for (int j = 0, rest = code; j < 4; ++j, rest /= 9) {
        rows.emplace_back(rest % 3 + 1, rest / 3 % 3 + 4);
      }
      const MatesetValue value = dense_value(rows);
      if (value.legal) best = std::max(best, value.fitness);
    }
    return best;
  }
  // Begins a search on the selection, which stays as it is while the search lasts.
  Search& begin() {
    problem_.emplace(Problem{selection, relationship, objective});
    search_.emplace(*problem_, parameters.algorithm, run);
    search_->begin();
    return *search_;
  }
  void sizes(std::int32_t popsize, std::int32_t n_offspring) {
    parameters.algorithm.popsize = popsize;
    parameters.algorithm.n_offspring = n_offspring;
  }

 private:
  std::optional<Problem> problem_;
  std::optional<Search> search_;
};

TEST_F(SearchTest, ParametersAreCheckedInOrder) {
  const std::string divided =
      "ERROR: NMatings cannot be divided by LimitMaleMatings. MOD(NMatings,LimitMaleMatings)/=0";
  const std::string range = "ERROR: LimitMaleMatings should be 1 <= LimitMaleMatings <= NMatings";
  struct Case {
    std::int32_t nmatings, slot_rows, popsize, n_offspring, generations;
    std::string message;  // none: accepted
  };
  const std::vector<Case> cases = {
      {10, 3, 0, 0, 1, divided},
      {10, 0, 0, 0, 1, range},
      {10, -3, 0, 0, 1, divided},
      {10, -5, 10, 1, 1, range},
      {0, 1, 10, 1, 1, range},
      {10, 5, 2, -1, 0, ""},
      {10, 5, 2, 3, 0, ""},
      {10, 10, 1, 7, -1, ""},
      {10, 5, 0, 1, -1, "ERROR: PopSize should be at least 1"},
      {10, 5, 1, 1, 0, "ERROR: PopSize should be at least 2 when Generations is 0 or more"}};
  for (const Case& c : cases) {
    parameters.ocs.nmatings = c.nmatings;
    parameters.ocs.limitmalematings = c.slot_rows;
    parameters.algorithm.generations = c.generations;
    sizes(c.popsize, c.n_offspring);
    if (c.message.empty()) {
      EXPECT_NO_THROW(initialize_qob(run)) << log;
    } else {
      expect_stop(c.message + " Value of error:     0", [&] { initialize_qob(run); });
    }
  }
}

TEST_F(SearchTest, FaultyOldSolutionsEndTheRun) {
  set_candidates({2, 0, 4, 2}, {1, 3, 0, 2, 2}, 4, 2);
  sizes(4, 1);
  const std::string reading = " ERROR when reading file with old solution _null_";
  const std::string range =
      " ERROR Candidate number out of range in file with old solution _null_ , row ";
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"h\n1 5\n1 6\n3 6\n", reading + " Value of error:    -1"},
      {"h\n1 5\n1 x\n3 6\n3 8\n", reading + " Value of error:  5010"},
      {"h\n1 5\n0 6\n3 6\n3 8\n", range + "           2"},
      {"h\n1 5\n3 6\n5 6\n3 8\n", range + "           3"},
      {"h\n1 4\n3 6\n3 6\n3 8\n", range + "           1"}};
  for (const auto& [contents, message] : cases) {
    folder.write("_null_", contents);
    expect_stop(message, [&] { begin(); });
  }
  memory_files().remove("_null_");
  folder.write("_null_/file", "");
  expect_stop(" ERROR opening file with old solution _null_ Value of error:    21",
              [&] { begin(); });
}

TEST_F(SearchTest, AnIllegalFirstRandomSolutionHasSolutionOneRepaired) {
  set_candidates({1, 1, 1, 1}, {1, 1, 2}, 4, 2);  // no male may have a slot of two
  sizes(4, 1);
  parameters.algorithm.seed_rng = 9;
  folder.write("_null_", "h\n1 5\n2 5\n1 5\n2 5\n");  // female 5 is used four times
  Population population = begin().population();
  std::map<std::int32_t, int> used;
  for (const auto& [male, female] : rows_of(population.pop(1))) ++used[female];
  for (const auto& [female, n] : used) EXPECT_LE(n, candidates.max_matings(female));
  EXPECT_EQ(log.find("not legal :           1\n"), std::string::npos);
  EXPECT_NE(log.find(" Base pop solution not legal :           2\n"), std::string::npos);
}

TEST_F(SearchTest, WhatNobodyCanFillIsLoggedAndTakenFromParentOne) {
  set_candidates({1}, {1, 1}, 2);
  const Mateset offspring = mateset({{0, 0}, {0, 0}});
  recombine(mateset({{1, 2}, {1, 3}}), mateset({{1, 3}, {1, 2}}), offspring);
  EXPECT_EQ(rows_of(offspring), (Rows{{1, 2}, {1, 3}}));
  EXPECT_EQ(log,
            " ERROR in subroutine Recombine\n Parent 1        Parent 2   Offspring\n"
            "            1           2           1           3           1           2\n"
            "            1           3           1           2           0           3\n");
}

TEST_F(SearchTest, WithoutALegalSolutionTheReportEndsTheRun) {
  set_candidates({1}, {1}, 1);
  Plan plan;
  plan.best_mating.assign(1, 1);
  expect_stop(" WARNING : A legal solution was NOT found, check parameters",
              [&] { report_best_mateset(parameters.ocs, candidates, plan, units); });
  EXPECT_EQ(summary,
            " " + std::string(75, '-') +
                "\n WARNING : A legal solution was NOT found, \n WARNING :   Check parameters\n");
}

TEST_F(SearchTest, EverySearchEndsAtTheOptimumAndNeverLosesTheBest) {
  for (int seed = 1; seed <= 6; ++seed) {
    set_candidates({2, 3, 2}, {1, 3, 2}, 4);
    Stream data(static_cast<std::uint32_t>(seed));
    draw_data(data);
    sizes(8, 2);
    AlgorithmParameters& p = parameters.algorithm;
    p.seed_rng = seed;
    p.generations = 120;
    p.crossover_probability = 0.3;
    p.mutate_probability = p.directed_mutation_probability = 1.0 / 16;
    run.files.outputs.clear();
    Search& search = begin();
    double before = -1.0e300;
    int generations = 0;
    for (bool more = true; more; ++generations) {
      const std::int32_t g = search.standing().igeneration;
      more = search.generation();
      const MatesetValue& best = search.standing().best_value;
      ASSERT_TRUE(best.legal);
      ASSERT_GE(best.fitness, before);
      EXPECT_EQ(g == 0 || best.fitness > before, search.standing().last_gen_improved == g);
      before = best.fitness;
    }
    EXPECT_EQ(generations, 121);
    Plan plan = search.finish();
    EXPECT_NEAR(before, dense_value(rows_of(plan.best())).fitness, 1e-9);
    EXPECT_NEAR(before, optimum(), 1e-9) << seed;
  }
}

}  // namespace
}  // namespace qob::test
