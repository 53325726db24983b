// Searches at the same time on one selection, and the threads of one search.
#include <thread>

#include "ocs/selection_fixture.h"

namespace qob::test {
namespace {

class SearchThreads : public SelectionTest {
 protected:
  // Searches with this seed, in a run of its own; returns all that it leaves.
  std::string search(int seed, const std::string& prefix, int threads = 1) const {
    qob::Run own;
    own.parallel = Parallel(threads, 0);
    std::string told;
    own.journal.units.out.open_memory(&told);
    own.journal.units.log.open_memory(&told);
    own.parameters.data.resultsdirectory = prefix;
    start_watches(own.journal.watches);
    AlgorithmParameters settings;
    settings.generations = 60;
    settings.popsize = 12;
    settings.restart_interval = 15;
    settings.exchange_algorithm = 7;
    settings.mutate_probability = settings.directed_mutation_probability = 0.05;
    settings.crossover_probability = 0.3;
    settings.seed_rng = seed;
    Objective goals = objective;
    goals.criterion = seed % 2 == 0 ? Criterion::kPenalty : Criterion::kConstraint;
    const Problem problem{selection, relationship, goals};
    Search search(problem, settings, own);
    for (bool more = search.begin(); more;) more = search.generation();
    Plan plan = search.finish();
    for (const auto& [male, female] : rows_of(plan.best())) told += format_list(male, female);
    return told + format_list(plan.best_value.fitness, plan.random.uni()) +
           folder.read(prefix + "qob_best.txt") + folder.read(prefix + "qob_conv.txt");
  }
};

TEST_F(SearchThreads, EachLeavesTheBytesThatItLeavesAlone) {
  set_candidates(std::vector<int>(12, 4), std::vector<int>(30, 2), 20, 2);
  Stream data(7);
  draw_data(data);
  objective.constraint = 0.3;
  std::vector<std::string> alone, together(4);
  for (int k = 0; k < 4; ++k) alone.push_back(search(k + 1, "alone" + std::to_string(k)));
  std::vector<std::thread> threads;
  for (int k = 0; k < 4; ++k) {
    threads.emplace_back([&, k] {
      together[static_cast<std::size_t>(k)] = search(k + 1, "together" + std::to_string(k));
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(together, alone);
  EXPECT_NE(alone[0], alone[2]);
  EXPECT_NE(alone[0].find("Mutating solutions"), std::string::npos);
}

// With rows of integers, and of doubles.
TEST_F(SearchThreads, OneSearchLeavesTheSameBytesWithAnyNumberOfThreads) {
  for (const double steps : {8.0, 1e9}) {
    set_candidates(std::vector<int>(40, 4), std::vector<int>(80, 2), 40, 2);
    Stream data(7);
    draw_data(data);
    objective.constraint = 0.3;
    for (double& a : relationship.nrm) a = std::round(a * steps) / steps;
    for (const int seed : {1, 2}) {
      const std::string name = std::to_string(steps) + std::to_string(seed);
      const std::string alone = search(seed, name + "_1_");
      for (const int threads : {2, 3, 16}) {
        EXPECT_EQ(search(seed, name + "_" + std::to_string(threads) + "_", threads), alone);
      }
    }
  }
}

}  // namespace
}  // namespace qob::test
