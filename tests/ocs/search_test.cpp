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
  // Whether the mateset is complete, keeps all mating limits and holds its males in slots.
  void expect_legal(Mateset m) {
    Column used(static_cast<std::size_t>(model.candidates.ncands) + 1, 0);
    const std::int64_t slots = m.nmatings() / model.parameters.ocs.limitmalematings;
    for (std::int64_t j = 1; j <= m.nmatings(); ++j) {
      ASSERT_TRUE(model.candidates.is_male(m.male(j)));
      ASSERT_TRUE(model.candidates.is_female(m.female(j)));
      ++used[static_cast<std::size_t>(m.male(j))];
      ++used[static_cast<std::size_t>(m.female(j))];
      EXPECT_EQ(m.male(j), m.male((j - 1) % slots + 1));
    }
    for (std::int32_t i = 1; i <= model.candidates.ncands; ++i) {
      EXPECT_LE(used[static_cast<std::size_t>(i)], model.candidates.max_matings(i)) << i;
    }
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

TEST_F(SearchParameters, WeightsFollowTheCriterion) {
  struct Case {
    std::string given;
    double relationship, constraint;
    std::string optimise;
    double w_merit, w_relationship, dfconstraint;
    std::string line;
  };
  const std::string penalty = "  Optimization is with a penalty on average relationships :";
  const std::string constraint =
      "  Optimization is with a constraint on expected rate of inbreeding :";
  for (const Case& c : std::vector<Case>{
           {"Merit", -2.0, 0.5, "merit", 1.0, 0.0, 1.0,
            "  Optimization is maximisation of genetic merit"},
           {" CONSTRAIN", -2.0, 0.01, "penalty", 0.25, -2.0, 1.0, penalty + "       -2.00"},
           {"constraint", -2.0, 0.01, "constraint", 1.0, 0.0, 0.01, constraint + "  0.0100"},
           {"Constraint", 3.0, 0.0, "constraint", 1.0, 0.0, 1.0e-5, constraint + "  0.0000"},
           {"constraint", 0.0, 1.5, "constraint", 1.0, 0.0, 1.0, constraint + "  1.0000"},
           {"xyz", 0.5, 0.5, "penalty", 0.25, -1.0, 1.0, penalty + "       -1.00"},
           {"penalty", 0.0, 1.5, "penalty", 0.25, 0.0, 1.0, penalty + "        0.00"}}) {
    OCSParameters& p = model.parameters.ocs;
    sizes(10, 1, 10, 2);
    p.optimise = c.given;
    p.w_merit = 0.25;
    p.w_relationship = c.relationship;
    p.dfconstraint = c.constraint;
    log.clear();
    initialize_qob(model);
    EXPECT_EQ(p.optimise.trimmed(), c.optimise) << c.given;
    EXPECT_EQ(p.w_merit, c.w_merit) << c.given;
    EXPECT_EQ(p.w_relationship, c.w_relationship) << c.given;
    EXPECT_EQ(p.dfconstraint, c.dfconstraint) << c.given;
    EXPECT_TRUE(has(log, c.line + "\n")) << log;
  }
}

TEST_F(SearchParameters, NegativeProbabilitiesAreDerived_OthersStay) {
  sizes(25, 1, 10, 2);
  initialize_qob(model);
  const AlgorithmParameters& p = model.parameters.algorithm;
  EXPECT_EQ(p.mutate_probability, 0.01);
  EXPECT_EQ(p.directed_mutation_probability, 0.01);
  EXPECT_EQ(p.crossover_probability, 0.30000001192092896);
  probabilities(0.0, 0.5, 1.0);
  initialize_qob(model);
  EXPECT_EQ(p.mutate_probability, 0.5);
  EXPECT_EQ(p.directed_mutation_probability, 1.0);
  EXPECT_EQ(p.crossover_probability, 0.0);
}

// --- a whole optimisation ---

class Optimisation : public OcsTest {
 protected:
  // Founders 1 to 3 and full sibs 4 to 7: each sex at most 6 matings in all.
  void run(std::int32_t generations, std::int32_t without_improvement) {
    read_animals(
        "1 0 0 1 2000 1 1.0\n2 0 0 2 2000 2 0.5\n3 0 0 2 2000 1 0.2\n4 1 2 1 2001 2 2.0\n"
        "5 1 2 1 2001 3 1.5\n6 1 2 2 2001 2 1.7\n7 1 2 2 2001 1 0.1\n");
    model.parameter_file.open(folder.write("p.prm", "&RelationshipMatrix /"));
    setup_nrm(model);
    sizes(4, 1, 6, 2);
    model.parameters.algorithm.generations = generations;
    model.parameters.algorithm.ngenerationsnoimprovement = without_improvement;
    ocs(model);
  }
};

TEST_F(Optimisation, GenerationZero_IsOneGeneration) {
  run(0, 10000);
  EXPECT_EQ(model.search.igeneration, 0);
  EXPECT_EQ(model.search.last_gen_improved, 0);
  EXPECT_TRUE(std::filesystem::exists(folder / "r_qob_conv.txt"));
  EXPECT_TRUE(has(out, " QOB initialised: starting Evolutionary Algorithm\n"));
  EXPECT_TRUE(out.ends_with("\n Optimal contribution selection finished\n"));
}

TEST_F(Optimisation, NoGeneration_LeavesTheBestOfTheBasePopulation) {
  run(-1, 10000);
  EXPECT_FALSE(std::filesystem::exists(folder / "r_qob_best.txt"));
  double best = -1.0e300;
  for (const ValueRecord& value : model.search.pop_value) {
    if (value.legal) best = std::max(best, value.fitness);
  }
  EXPECT_EQ(model.search.best_value.fitness, best);
  EXPECT_TRUE(model.search.best_value.legal);
}

TEST_F(Optimisation, EndsAtTheLastGeneration) {
  run(5, 10000);
  EXPECT_EQ(model.search.igeneration, 5);
}

TEST_F(Optimisation, EndsSomeGenerationsAfterTheLastImprovement) {
  run(500, 7);
  EXPECT_EQ(model.search.igeneration - model.search.last_gen_improved, 7);
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

TEST_F(BasePopulation, RandomSolutionsKeepTheLimits_AndUseEveryCandidateThatMayMate) {
  std::set<std::int32_t> used;
  for (std::int32_t seed = 1; seed <= 60; ++seed) {
    Search& search = create(seed);
    for (std::int64_t k = 1; k <= 3; ++k) {
      expect_legal(search.pop(k));
      EXPECT_TRUE(search.pop_value(k).legal);
      for (const std::int32_t i : entries(search.pop(k))) used.insert(i);
    }
  }
  EXPECT_EQ(used, (std::set<std::int32_t>{1, 3, 4, 5, 6, 8, 9}));
  EXPECT_TRUE(has(log, "!!!! No file with previous solution was found !!!!!!"));
}

TEST_F(BasePopulation, DrawsWalkTheRemainingLimits) {
  candidates({2, 1, 3}, {1, 4, 1});
  sizes(3, 1, 2, 1);
  Search& search = create(123456789);  // u = .161 .653 .312 .680 .129 .098
  // males: ceil(.161*6)=1 -> 1; ceil(.312*5)=2 of 1,1,3 -> 2; ceil(.129*4)=1 of 1,0,3 -> 1
  // females: ceil(.653*6)=4 -> 5; ceil(.680*5)=4 of 1,3,1 -> 5; ceil(.098*4)=1 of 1,2,1 -> 4
  EXPECT_EQ(entries(search.pop(1)), (Column{1, 2, 1, 5, 5, 4}));
}

TEST_F(BasePopulation, TheLastSolutionUsesTheBestByMerit) {
  double merit = 0.0;
  for (const std::int32_t i : {2, 4, 3, 1, 7, 6, 9, 8, 5}) model.candidates.merit(i) = merit += 1.0;
  Search& search = create(3);  // males 1 (2 matings), 3 (4); females 5 (1), 8 (2), 9 (2)
  EXPECT_EQ(entries(search.pop(4)), (Column{1, 1, 3, 3, 5, 8, 8, 9}));
  EXPECT_DOUBLE_EQ(search.pop_value(4).merit, (2 * (4.0 + 3.0) + 9.0 + 2 * 8.0 + 7.0) / 8.0);
  EXPECT_FALSE(has(log, "Base pop solution not legal :"));
  candidates({1, 1}, {1, 1});
  sizes(4, 1, 1, 1);
  // Rows for which nobody is left stay empty; to use them ends the run.
  EXPECT_THROW(create(3), Stopped);
}
TEST_F(BasePopulation, AnOldSolutionIsTakenAsItStands) {
  folder.write("_null_", "male female\n3 6\n 1, 6\n3 9 more\n1 9\n");
  Search& search = create(5);
  EXPECT_EQ(entries(search.pop(1)), (Column{3, 1, 3, 1, 6, 6, 9, 9}));
  EXPECT_EQ(search.pop_value(1).relationship, 0.0);
  EXPECT_FALSE(search.pop_value(1).legal);
  EXPECT_FALSE(has(log, "previous solution was found"));
  EXPECT_TRUE(search.pop_value(2).legal);
  sizes(4, 2, 1, 1);  // the solution by merit takes its place
  EXPECT_NE(entries(create(5).pop(1)), (Column{3, 1, 3, 1, 6, 6, 9, 9}));
}

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

TEST_F(Recombine, ParentsChangeWithTheCrossoverProbability) {
  candidates({2, 2, 2}, {2, 2, 2});
  sizes(3, 1, 2, 1);
  const Column parent1 = {1, 1, 2, 4, 5, 6};
  const Column parent2 = {3, 2, 3, 5, 5, 4};
  crossover(0.0);
  EXPECT_EQ(offspring(parent1, parent2), parent1);
  crossover(1.0);  // males from parent 2, females from parent 1
  EXPECT_EQ(offspring(parent1, parent2), (Column{3, 2, 3, 4, 5, 6}));
}

TEST_F(Recombine, AnExhaustedCandidateHandsOverToTheOtherParent) {
  candidates({1, 2, 1}, {3, 1, 1});
  sizes(3, 1, 2, 1);
  crossover(0.0);
  // row 2: male 1 is used up, so male 2, and on from parent 2: female 5; male 3, female 6
  EXPECT_EQ(offspring({1, 1, 2, 4, 4, 4}, {2, 2, 3, 4, 5, 6}), (Column{1, 2, 3, 4, 5, 6}));
  // row 2: both parents' males are used up; filled from what the parents have left
  EXPECT_EQ(offspring({1, 1, 2, 4, 4, 4}, {3, 1, 2, 4, 5, 6}), (Column{1, 2, 2, 4, 4, 4}));
}

TEST_F(Recombine, LegalParentsHaveLegalOffspring_OfTheirOwnGenes) {
  candidates({2, 3, 6, 4}, {1, 2, 3, 1, 2, 2});
  for (const std::int32_t unit : {1, 2}) {
    if (unit == 2) candidates({2, 4, 6, 4}, {1, 2, 3, 1, 2, 2});
    sizes(6, unit, 3, 1);
    crossover(0.4);
    for (std::int32_t seed = 1; seed <= 100; ++seed) {
      model.random.zigset(seed);
      base_population(model);
      const Column parent1 = entries(model.search.pop(1));
      const Column parent2 = entries(model.search.pop(2));
      MatesetTable child;
      child.assign(1, 6);
      set(child(1), offspring(parent1, parent2));
      for (std::int64_t j = 4; unit == 2 && j <= 6; ++j) {
        EXPECT_EQ(child(1).male(j), child(1).male(j - 3));
      }
      if (unit == 2) continue;
      expect_legal(child(1));
      for (std::int32_t i = 1; i <= 10; ++i) {
        const auto used = [i](const Column& c) { return std::count(c.begin(), c.end(), i); };
        EXPECT_LE(used(entries(child(1))), used(parent1) + used(parent2));
      }
    }
  }
}

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
      expect_legal(model.search.best());
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

TEST_F(Generations, OffspringReplaceTheSolutionsOfLowestFitness) {
  herd(1);
  model.parameters.algorithm.n_offspring = 3;
  const double order[] = {-7, -2, -9, -1, -8, -3, -5, -4};  // lowest: 3, 5, 1
  for (std::int64_t k = 1; k <= 8; ++k) {
    model.search.pop_value(k).fitness = order[k - 1];
    model.search.pop_value(k).age = -77.0;
  }
  generation(1);
  for (std::int64_t k = 1; k <= 8; ++k) {
    EXPECT_EQ(model.search.pop_value(k).age != -77.0, k == 1 || k == 3 || k == 5) << k;
  }
}

TEST_F(Generations, TheWorstSolutionIsNoParent_AndTheBestIsDrawnTwiceAsOftenAsTheSecond) {
  herd(1);
  sizes(4, 1, 3, 1);
  base_population(model);
  probabilities(0.0, 0.0, 0.0);  // the offspring is its first parent
  const Column best = entries(model.search.pop(1));
  const Column second = entries(model.search.pop(3));
  ASSERT_NE(best, second);
  int copies = 0;
  for (int n = 0; n < 600; ++n) {
    for (std::int32_t k = 1; k <= 3; ++k) model.search.pop_value(k).fitness = k == 2 ? -9 : -k;
    generation(1);
    const Column child = entries(model.search.pop(2));
    ASSERT_TRUE(child == best || child == second);
    copies += child == best ? 1 : 0;
  }
  EXPECT_NEAR(copies, 400, 46);
}

TEST_F(Generations, OnlyLegalSolutionsBecomeTheBest) {
  herd(2);
  Table<double> key;
  Table<std::int32_t> index;
  Search& search = model.search;
  for (std::int64_t k = 1; k <= 8; ++k) {
    search.pop_value(k).fitness = static_cast<double>(-k);
    search.pop_value(k).legal = false;
  }
  search.igeneration = 0;
  EXPECT_FALSE(update_best(model, key, index));  // the lowest stands in
  EXPECT_EQ(search.best_value.fitness, -8.0);
  search.pop_value(7).legal = true;
  search.pop_value(3).legal = true;
  search.igeneration = 4;
  EXPECT_TRUE(update_best(model, key, index));
  EXPECT_EQ(search.best_value.fitness, -3.0);
  EXPECT_EQ(entries(search.best()), entries(search.pop(3)));
  EXPECT_EQ(search.last_gen_improved, 4);
  search.igeneration = 5;
  search.pop_value(6).legal = true;
  search.pop_value(6).fitness = -3.0;  // no better
  EXPECT_FALSE(update_best(model, key, index));
  EXPECT_EQ(search.last_gen_improved, 4);
  EXPECT_EQ(index(1), 8);
  EXPECT_EQ(key(1), -8.0);
}

TEST_F(Generations, ConvergenceIsWrittenEveryHundred_AndAtImprovements) {
  herd(3);
  log.clear();
  std::set<std::int32_t> expected;
  for (std::int32_t g = 0; g <= 250; ++g) {
    generation(g);
    if (g % 100 == 0 || model.search.last_gen_improved == g) expected.insert(g);
  }
  for (Unit* unit : {&model.units.cnv1, &model.units.cnv2}) unit->close();
  const std::string files[] = {read_file(folder / "r_qob_best.txt"),
                               read_file(folder / "r_qob_conv.txt"), log};
  const std::string heads[] = {
      "Generation    Evaluation         Merit       Avg.rel            dF    Genint",
      "Generation       Best        Median         Worst          Mean           Std"};
  for (std::size_t f = 0; f < 3; ++f) {
    std::istringstream lines(files[f]);
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(line, heads[f == 0 ? 0 : 1]);
    std::set<std::int32_t> written;
    while (std::getline(lines, line)) {
      if (!has(line, "evaluation not legal")) written.insert(std::stoi(line.substr(0, 10)));
    }
    EXPECT_EQ(written, expected);
  }
}

TEST_F(Generations, ConvergenceShowsThePopulation) {
  herd(4);
  generation(0);
  log.clear();
  generation(100);
  Search& search = model.search;
  std::vector<double> sorted;
  for (const ValueRecord& value : search.pop_value) sorted.push_back(value.fitness);
  std::sort(sorted.begin(), sorted.end());
  double mean = 0.0, squares = 0.0;
  for (const double x : sorted) mean += x / 8.0;
  for (const double x : sorted) squares += (x - mean) * (x - mean);
  std::istringstream numbers(log.substr(log.rfind("       100")));
  for (const double expected :
       {100.0, search.best_value.fitness, sorted[3], sorted[0], mean, std::sqrt(squares / 7)}) {
    double number = 0.0;
    numbers >> number;
    EXPECT_NEAR(number, expected, 1e-5 * std::abs(expected));
  }
}

TEST_F(Generations, ARestartBringsTheBestBack_AndIsCounted) {
  herd(5);
  generation(0);
  Search& search = model.search;
  AlgorithmParameters& p = model.parameters.algorithm;
  p.restart_interval = 3;
  const auto generation_after = [&](std::int32_t number, std::int32_t last_change) {
    search.best_value.fitness = 99.0;  // out of reach
    search.last_change = last_change;
    log.clear();
    generation(number);
    return has(log, " Mutating solutions to increase variance in generation");
  };
  EXPECT_FALSE(generation_after(13, 10));
  EXPECT_EQ(search.last_change, 10);
  EXPECT_TRUE(generation_after(14, 10));
  EXPECT_TRUE(has(log, "in generation           14\n"));
  EXPECT_EQ(search.last_change, 14);
  EXPECT_EQ(p.mutate_probability, 1.0 / 16);
  EXPECT_EQ(entries(search.pop(1)), entries(search.best()));
  EXPECT_EQ(search.pop_value(1).fitness, 99.0);
}

TEST_F(Generations, TheExchangeImprovesTheWorstSolution) {
  herd(6);
  for (std::int32_t i = 1; i <= 6; ++i) model.candidates.merit(i) = i;
  model.candidates.max_matings.fill(4);
  model.parameters.ocs.optimise = "merit";
  sizes(4, 1, 3, 1);
  model.parameters.algorithm.exchange_algorithm = 5;
  probabilities(0.0, 0.0, 0.0);
  const Column low = {1, 1, 1, 1, 4, 4, 4, 4};
  const Column middle = {2, 2, 2, 2, 5, 5, 5, 5};
  for (const std::int32_t g : {4, 5}) {
    base_population(model);
    set(model.search.pop(1), low);
    set(model.search.pop(3), middle);
    for (const int k : {1, 3}) evaluation(model, model.search.pop(k), model.search.pop_value(k));
    model.search.pop_value(2).fitness = -9.0;  // replaced by a copy of one of the others
    generation(g);
    EXPECT_EQ(entries(model.search.pop(1)), g == 5 ? (Column{3, 3, 3, 3, 6, 6, 6, 6}) : low);
    EXPECT_EQ(entries(model.search.pop(3)), middle);
    EXPECT_EQ(model.search.pop_value(1).merit, g == 5 ? 4.5 : 2.5);
    EXPECT_EQ(model.parameters.algorithm.directed_mutation_probability, 0.0);
  }
}

}  // namespace
}  // namespace qob::test
