#include <algorithm>
#include <cmath>
#include <random>
#include <set>
#include <sstream>
#include <vector>

#include "analysis/qobrelshipmatrix.h"
#include "ocs/qobocs.h"
#include "support/program.h"

namespace qob::test {
namespace {

using Column = std::vector<std::int32_t>;

bool has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

class OcsTest : public ModelTest {
 protected:
  OcsTest() {
    model.parameters.data.resultsdirectory = folder / "r_";
    model.parameters.algorithm.seed_rng = 4711;
  }
  // Males, then females, each with its mating limit; unrelated, of merit 0.
  void candidates(const Column& males, const Column& females) {
    Candidates& c = model.candidates;
    c.nmcands = static_cast<std::int32_t>(males.size());
    c.nfcands = static_cast<std::int32_t>(females.size());
    c.ncands = c.nmcands + c.nfcands;
    const std::int64_t n = c.ncands;
    for (auto* table : {&c.cands, &c.max_matings, &c.old_id, &model.relationship.nrm_id}) {
      table->assign(n, 0);
    }
    std::copy(males.begin(), males.end(), c.max_matings.begin());
    std::copy(females.begin(), females.end(), c.max_matings.begin() + c.nmcands);
    c.merit.assign(n, 0.0);
    c.age.assign(n, 1);
    model.goal.apv2.assign(n, 0.0);
    model.relationship.nnrm = c.ncands;
    model.relationship.nrm.assign(n * (n + 1) / 2, 0.0);
    for (std::int32_t i = 1; i <= n; ++i) {
      c.cands(i) = model.relationship.nrm_id(i) = c.old_id(i) = i;
      model.relationship.nrm(ute(i, i)) = 1.0;
    }
  }
  void sizes(std::int32_t nmatings, std::int32_t unit, std::int32_t popsize,
             std::int32_t offspring) {
    model.parameters.ocs.nmatings = nmatings;
    model.parameters.ocs.limitmalematings = unit;
    model.parameters.algorithm.popsize = popsize;
    model.parameters.algorithm.n_offspring = offspring;
  }
  void probabilities(double crossover, double mutation, double directed) {
    AlgorithmParameters& p = model.parameters.algorithm;
    p.crossover_probability = crossover;
    p.mutate_probability = mutation;
    p.directed_mutation_probability = directed;
  }
  void expect_stop(const std::string& message, auto action) {
    try {
      action();
      ADD_FAILURE() << "no stop: " << message;
    } catch (const Stopped& stopped) {
      EXPECT_EQ(stopped.text, " Program terminated. Check file qob.log");
      EXPECT_EQ(stopped.status, 1);
    }
    EXPECT_TRUE(has(log, message)) << log << "\nexpected: " << message;
    EXPECT_TRUE(has(out, message));
  }
  static Column entries(Mateset m) { return {&m.entry(1), &m.entry(1) + 2 * m.nmatings()}; }
  static void set(Mateset m, const Column& column) {
    std::copy(column.begin(), column.end(), &m.entry(1));
  }
};

// --- parameters ---

class SearchParameters : public OcsTest {};

TEST_F(SearchParameters, AreCheckedInOrder) {
  const std::string divided =
      "ERROR: NMatings cannot be divided by LimitMaleMatings. MOD(NMatings,LimitMaleMatings)/=0 Value of error:     0";
  const std::string range =
      "ERROR: LimitMaleMatings should be 1 <= LimitMaleMatings <= NMatings Value of error:     0";
  struct Case {
    std::int32_t nmatings, unit, popsize, n_offspring, generations;
    std::string message;  // none: accepted
  };
  for (const Case& c : std::vector<Case>{{10, 3, 0, 0, 1, divided},
                                         {10, 0, 0, 0, 1, range},
                                         {10, -3, 0, 0, 1, divided},
                                         {10, -5, 10, 1, 1, range},
                                         {10, 20, 10, 1, 1, divided},
                                         {0, 1, 10, 1, 1, range},
                                         {10, 5, 0, 1, -1, "PopSize should be at least 1"},
                                         {10, 5, 1, 1, 0, "PopSize should be at least 2"},
                                         {10, 5, 2, 0, 0, "N_Offspring should be"},
                                         {10, 5, 2, 3, 0, "N_Offspring should be"},
                                         {10, 5, 2, 2, 0, ""},
                                         {10, 10, 1, 7, -1, ""}}) {
    log.clear();
    sizes(c.nmatings, c.unit, c.popsize, c.n_offspring);
    model.parameters.algorithm.generations = c.generations;
    if (c.message.empty()) {
      EXPECT_NO_THROW(initialize_qob(model)) << log;
    } else {
      expect_stop(c.message, [&] { initialize_qob(model); });
      EXPECT_TRUE(has(log, "Value of error:     0"));
    }
    EXPECT_TRUE(has(log, "Evolutionary Algorithm initialising"));
  }
}

TEST_F(OcsTest, WithoutALegalSolution_TheReportEndsTheRun) {
  candidates({1}, {1});
  sizes(1, 1, 2, 1);
  model.search.best_mating.assign(1, 1);
  expect_stop("WARNING : A legal solution was NOT found, check parameters",
              [&] { report_best_mateset(model); });
  const std::string lines =
      " " + std::string(75, '-') +
      "\n WARNING : A legal solution was NOT found, \n WARNING :   Check parameters\n";
  EXPECT_EQ(summary, lines);
  EXPECT_EQ(out.substr(0, lines.size()), lines);
}

// --- base population ---

class BasePopulation : public OcsTest {
 protected:
  BasePopulation() : before_(std::filesystem::current_path()) {
    std::filesystem::current_path(folder / "");
    candidates({2, 0, 4, 2}, {1, 3, 0, 2, 2});
    sizes(4, 2, 4, 1);
  }
  ~BasePopulation() override { std::filesystem::current_path(before_); }
  Search& create(std::int32_t seed) {
    model.random.zigset(seed);
    base_population(model);
    return model.search;
  }

 private:
  std::filesystem::path before_;
};

TEST_F(BasePopulation, FaultyOldSolutionsEndTheRun) {
  const std::string reading = "ERROR when reading file with old solution _null_";
  const std::string range =
      "ERROR Candidate number out of range in file with old solution _null_ , row";
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"h\n1 5\n1 6\n3 6\n", reading},
      {"", reading},
      {"h\n1 5\n1 x\n3 6\n3 8\n", reading},
      {"h\n1 5\n0 6\n3 6\n3 8\n", range + "            2"},
      {"h\n1 5\n3 6\n5 6\n3 8\n", range},
      {"h\n1 4\n3 6\n3 6\n3 8\n", range},
      {"h\n1 5\n1 6\n3 6\n3 10\n", range + "            4"}};
  for (const auto& [contents, message] : cases) {
    log.clear();
    folder.write("_null_", contents);
    expect_stop(message, [&] { create(1); });
    if (message == reading) {
      const bool letters = has(contents, "x");
      EXPECT_TRUE(has(log, letters ? "Value of error:  5010" : "Value of error:    -1")) << log;
    }
  }
  std::filesystem::remove("_null_");
  std::filesystem::create_directory("_null_");
  expect_stop("ERROR opening file with old solution _null_", [&] { create(1); });
}

TEST_F(BasePopulation, AnIllegalFirstRandomSolution_HasSolutionOneRepaired) {
  candidates({1, 1, 1, 1}, {1, 1, 2});  // no male may have a slot of two
  create(9);
  for (const char* k : {"1", "2", "3", "4"}) {
    EXPECT_TRUE(has(log, "Base pop solution not legal :           " + std::string(k) + "\n"));
  }
  folder.write("_null_", "h\n1 5\n2 5\n1 5\n2 5\n");  // female 5 is used four times
  log.clear();
  const Mateset old = create(9).pop(1);
  for (std::int32_t f = 5; f <= 7; ++f) {
    EXPECT_LE(std::count(&old.female(1), &old.female(4) + 1, f), model.candidates.max_matings(f));
  }
  EXPECT_FALSE(has(log, "not legal :           1\n"));
  EXPECT_TRUE(has(log, "not legal :           2\n"));
}

// --- recombination ---

class Recombine : public OcsTest {
 protected:
  Column offspring(const Column& parent1, const Column& parent2) {
    MatesetTable table;
    table.assign(3, static_cast<std::int64_t>(parent1.size()) / 2);
    set(table(1), parent1);
    set(table(2), parent2);
    recombine(model, table(1), table(2), table(3));
    EXPECT_EQ(entries(table(1)), parent1);
    EXPECT_EQ(entries(table(2)), parent2);
    return entries(table(3));
  }
  void crossover(double probability) { probabilities(probability, 0.0, 0.0); }
};

TEST_F(Recombine, WhatNobodyCanFill_IsLogged_AndTakenFromParentOne) {
  candidates({1}, {1, 1});
  sizes(2, 1, 2, 1);
  crossover(0.0);
  EXPECT_EQ(offspring({1, 1, 2, 3}, {1, 1, 3, 2}), (Column{1, 1, 2, 3}));
  EXPECT_EQ(log,
            " ERROR in subroutine Recombine\n Parent 1        Parent 2   Offspring\n"
            "            1           2           1           3           1           2\n"
            "            1           3           1           2           0           3\n");
}

// --- generations ---

class Generations : public OcsTest {
 protected:
  // Six candidates with random merits and relationships.
  void herd(unsigned seed) {
    candidates({2, 3, 2}, {1, 3, 2});
    std::mt19937 engine(seed);
    std::uniform_real_distribution<double> draw(0.0, 1.0);
    for (double& merit : model.candidates.merit) merit = draw(engine);
    for (std::int32_t i = 1; i <= 6; ++i) {
      for (std::int32_t j = 1; j < i; ++j) model.relationship.nrm(ute(i, j)) = 0.6 * draw(engine);
    }
    sizes(4, 1, 8, 2);
    model.random.zigset(static_cast<std::int32_t>(seed));
    model.parameters.ocs.w_merit = 1.0;
    model.parameters.ocs.w_relationship = -1.5;
    probabilities(0.3, 1.0 / 16, 1.0 / 16);
    model.search.best_value = {};
    model.search.last_gen_improved = model.search.last_change = 0;
    base_population(model);
  }
  void generation(std::int32_t number) {
    model.search.igeneration = number;
    mate_and_select(model);
  }
  // Merit and relationship of contributions by the number of matings.
  double fitness(const Column& used) const {
    double merit = 0.0, relationship = 0.0;
    for (std::int32_t i = 1; i <= 6; ++i) {
      const double c = used[static_cast<std::size_t>(i - 1)] / 8.0;
      merit += c * model.candidates.merit(i);
      for (std::int32_t j = 1; j <= 6; ++j) {
        relationship +=
            c * used[static_cast<std::size_t>(j - 1)] / 8.0 * model.relationship.nrm(ute(i, j));
      }
    }
    return merit - 1.5 * relationship;
  }
  double optimum() const {
    double best = -1.0e300;
    const auto& limit = model.candidates.max_matings;
    Column used(6, 0);
    for (used[0] = 0; used[0] <= limit(1); ++used[0]) {
      for (used[1] = 0; used[1] <= limit(2); ++used[1]) {
        for (used[3] = 0; used[3] <= limit(4); ++used[3]) {
          for (used[4] = 0; used[4] <= limit(5); ++used[4]) {
            used[2] = 4 - used[0] - used[1];
            used[5] = 4 - used[3] - used[4];
            if (used[2] < 0 || used[2] > limit(3) || used[5] < 0 || used[5] > limit(6)) continue;
            best = std::max(best, fitness(used));
          }
        }
      }
    }
    return best;
  }
};

TEST_F(Generations, AllSearchesEndAtTheOptimum_AndNeverLoseTheBest) {
  for (unsigned seed = 1; seed <= 10; ++seed) {
    herd(seed);
    double before = -1.0e300;
    for (std::int32_t g = 0; g <= 120; ++g) {
      generation(g);
      const ValueRecord& best = model.search.best_value;
      ASSERT_TRUE(best.legal);
      ASSERT_GE(best.fitness, before);
      EXPECT_EQ(g == 0 || best.fitness > before, model.search.last_gen_improved == g);
      before = best.fitness;
      for (const ValueRecord& value : model.search.pop_value) {
        ASSERT_TRUE(!value.legal || value.fitness <= best.fitness);
      }
    }
    Column used(6, 0);
    for (const std::int32_t i : entries(model.search.best()))
      ++used[static_cast<std::size_t>(i - 1)];
    EXPECT_NEAR(model.search.best_value.fitness, fitness(used), 1e-12);
    EXPECT_NEAR(model.search.best_value.fitness, optimum(), 1e-12) << seed;
  }
}

}  // namespace
}  // namespace qob::test
