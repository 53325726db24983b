#include <algorithm>
#include <chrono>
#include <functional>
#include <random>
#include <vector>

#include "core/random.h"
#include "core/sort.h"
#include "support/run_fixture.h"

namespace qob::test {
namespace {

using Indices = std::vector<std::int32_t>;

// --- random numbers ---

TEST(Random, FollowsTheThreeShiftsFromItsInitialState) {
  Random random;
  for (const std::int32_t expected : {-1456542626, 658813981, -806076459, 775210481, -1592314570})
    EXPECT_EQ(random.shr3(), expected);
  random.zigset(123456789);
  EXPECT_DOUBLE_EQ(random.uni(), 0.1608723064628444);
  EXPECT_DOUBLE_EQ(random.uni(), 0.6533920544846186);
  random.zigset(-5);
  EXPECT_EQ(random.shr3(), 1269910);
}

// --- sorting ---

Indices sorted_indices(const std::vector<double>& keys) {
  const auto n = static_cast<std::int64_t>(keys.size());
  Table<double> key(n, 0.0);
  Table<std::int32_t> index(n, 0);
  std::copy(keys.begin(), keys.end(), key.begin());
  for (std::int64_t k = 1; k <= n; ++k) index(k) = static_cast<std::int32_t>(k);
  quick_sort(key, index, 1, n);
  EXPECT_TRUE(std::is_sorted(key.begin(), key.end()));
  for (std::int64_t k = 1; k <= n; ++k) {
    EXPECT_EQ(key(k), keys[static_cast<std::size_t>(index(k) - 1)]);
  }
  return {index.begin(), index.end()};
}

TEST(QuickSort, AnyKeysAreSorted_AndTheIndicesTravelAlong) {
  std::mt19937 engine(7);
  for (std::size_t n = 0; n <= 200; ++n) {
    std::vector<double> keys(n);
    const int values = n % 2 == 0 ? 5 : 100000;  // with and without many ties
    for (double& key : keys) key = std::uniform_int_distribution(-values, values)(engine);
    Indices indices = sorted_indices(keys);
    std::sort(indices.begin(), indices.end());
    for (std::size_t k = 0; k < n; ++k) ASSERT_EQ(indices[k], static_cast<std::int32_t>(k) + 1);
  }
}

TEST(QuickSort, TheOrderOfTiesIsThatOfTheMethod) {
  EXPECT_EQ(sorted_indices({3, 3, 1, 3, 2, 1}), (Indices{3, 6, 5, 4, 2, 1}));
  EXPECT_EQ(sorted_indices({4, 4, 4, 4, 4, 4, 4}), (Indices{7, 6, 5, 4, 3, 2, 1}));
  EXPECT_EQ(sorted_indices({2, 1, 2, 1, 2, 1, 2, 1}), (Indices{8, 6, 4, 2, 5, 3, 7, 1}));
}

// --- watches ---

class Stopwatches : public ::testing::Test {
 protected:
  Stopwatches() {
    unit.open_memory(&text);
    stopwatch.option_stopwatch({.print_unit = &unit, .error_unit = &unit});
  }
  // The seconds on the wall of both watches, once the clock has moved on.
  std::pair<float, float> read() {
    const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(5);
    while (std::chrono::steady_clock::now() < until) continue;
    std::vector<float> seconds;
    stopwatch.read_watch(seconds, {&a, &b}, {"wall", "user"});
    return {seconds.at(0), seconds.at(2)};
  }

  std::string text;
  Unit unit{11};
  Stopwatch stopwatch;
  Watch a, b;
};

TEST_F(Stopwatches, CountTheTimeInWhichTheyRun) {
  stopwatch.create_watch({&a, &b}, {"first", "second"}, {"wall", "user"});
  stopwatch.start_watch({&a, &b});
  const auto running = read();
  EXPECT_TRUE(running.first >= 0.004F && running.second >= 0.004F);
  stopwatch.stop_watch(a);
  stopwatch.pause_watch(b);
  const auto halted = read();
  EXPECT_EQ(read(), halted);
  stopwatch.end_pause_watch(b);
  stopwatch.start_watch(a);
  const auto again = read();
  EXPECT_TRUE(again.first >= halted.first + 0.004F && again.second >= halted.second + 0.004F);
  stopwatch.stop_watch({&a, &b});
  stopwatch.reset_watch(a, {"wall"});
  EXPECT_EQ(read().first, 0.0F);
  EXPECT_GT(read().second, 0.0F);
  EXPECT_EQ(text, "");
}

TEST_F(Stopwatches, PrintInThreeForms) {
  stopwatch.create_watch({&a, &b}, {"first", "second"}, {"wall"});
  a.clocks[3].elapsed = 3725.996F;
  b.clocks[3].elapsed = 59.25F;
  stopwatch.print_watch(a, {}, "hh:mm:ss");
  stopwatch.print_watch({&a, &b}, {"wall", "cpu"}, "[[hh:]mm:]ss");
  stopwatch.print_watch(a);
  EXPECT_EQ(text,
            "  first:\n wall=   1:02:06.00\n  Times printed by StopWatch:\n  first:\n"
            " wall=   1: 2:06.00\n  second:\n wall=      0:59.25\n  first:\n wall= 3726.00\n");
}

TEST_F(Stopwatches, WarnOfWhatIsNotDone) {
  Unit closed{12};
  const std::string state = " cpu clock is in the wrong state for this operation.\n";
  const std::pair<std::function<bool()>, std::string> cases[] = {
      {[&] { return stopwatch.start_watch(a); },
       " start_watch\n Watch needs to be created.\n Watch not started."},
      {[&] {
         stopwatch.create_watch({&a, &b}, {"first", "second"}, {"cpu"});
         return stopwatch.start_watch({&a, &b}) && stopwatch.start_watch(a);
       },
       " start_watch\n Watch named first\n" + state + " Watch's cpu clock not started."},
      {[&] { return stopwatch.end_pause_watch(b); },
       " end_pause_watch\n Watch named second\n" + state + " Watch's cpu clock remains paused."},
      {[&] {
         return stopwatch.stop_watch(a, {"day", "cpu"});
       },
       " stop_watch\n Invalid clock type day.\n Requested action not performed on this clock."},
      {[&] {
         return stopwatch.stop_watch({&b}, {"cpu", "cpu", "cpu", "cpu", "wall"});
       },
       " stop_watch\n Too many clocks specified at clock type wall\n Watches not stopped."},
      {[&] { return stopwatch.option_stopwatch({.error_unit = &closed}); },
       " option_stopwatch\n I/O unit number 12 is not open for writing.\n"
       " I/O unit number for errors not reset as requested."}};
  for (const auto& [operation, lines] : cases) {
    text.clear();
    EXPECT_FALSE(operation());
    EXPECT_EQ(text, "***** WARNING from StopWatch routine  *****\n" + lines +
                        "\n*******************************************\n");
  }
  EXPECT_NE(a.clocks[0].state, b.clocks[0].state);  // stopped and running
}

}  // namespace
}  // namespace qob::test
