#include <algorithm>
#include <random>
#include <vector>

#include "core/sort.h"
#include "support/model_fixture.h"

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

TEST(Random, ExtremeIntegersStayInsideTheOpenInterval) {
  Random random;
  random.zigset(-762214582);
  EXPECT_NEAR(random.uni(), 0.0000000937, 1e-10);
  random.zigset(1720533402);
  EXPECT_NEAR(random.uni(), 0.9999999060, 1e-10);
}

TEST(Random, ADrawOfNIsOneToN) {
  Random random;
  random.zigset(-762214582);
  EXPECT_EQ(random.ceiling_of_draw(3), 1);
  random.zigset(1720533402);
  EXPECT_EQ(random.ceiling_of_draw(3), 3);
  EXPECT_EQ(random.ceiling_of_draw(0), 0);
  std::vector<int> count(4, 0);
  for (int i = 0; i < 30000; ++i) ++count.at(static_cast<std::size_t>(random.ceiling_of_draw(3)));
  for (std::size_t n = 1; n <= 3; ++n) EXPECT_NEAR(count[n], 10000, 500);
}

TEST(Random, SeedZero_IsTakenFromTheClock) {
  Random first, second;
  first.zigset(0);
  const std::int32_t draw = first.shr3();
  second.zigset(0);
  EXPECT_NE(draw, second.shr3());
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

TEST(QuickSort, EntriesOutsideTheRangeStay) {
  Table<double> key(4, 0.0);
  Table<std::int32_t> index(4, 0);
  for (std::int64_t k = 1; k <= 4; ++k) {
    key(k) = static_cast<double>(-k);
    index(k) = static_cast<std::int32_t>(k);
  }
  quick_sort(key, index, 2, 3);
  EXPECT_EQ(Indices(index.begin(), index.end()), (Indices{1, 3, 2, 4}));
}

// --- watches ---

class WatchesTest : public ::testing::Test {
 protected:
  WatchesTest() {
    print_unit.open_memory(&printed);
    error_unit.open_memory(&errors);
    option(PrintForm::kSec);
  }
  void option(PrintForm form) {
    stopwatch.option_stopwatch({{true, false, false, true}, &print_unit, &error_unit, form});
  }
  std::string print(const Watch& shown) {
    printed.clear();
    stopwatch.print_watch(shown);
    return printed;
  }
  ClockState state(Clock clock) const {
    return watch.clocks[static_cast<std::size_t>(clock)].state;
  }

  Unit print_unit{11}, error_unit{12};
  std::string printed, errors;
  Stopwatch stopwatch;
  Watch watch;
};

TEST_F(WatchesTest, AWatchNeverStartedPrintsZerosInEveryForm) {
  stopwatch.create_watch(watch, "idle");
  EXPECT_EQ(print(watch), "  idle:\n  cpu=    0.00\n wall=    0.00\n");
  option(PrintForm::kHhMmSs);
  EXPECT_EQ(print(watch), "  idle:\n  cpu=   0:00:00.00\n wall=   0:00:00.00\n");
  option(PrintForm::kShortest);
  EXPECT_EQ(print(watch), "  idle:\n  cpu=      0:00.00\n wall=      0:00.00\n");
  EXPECT_EQ(errors, "");
}

TEST_F(WatchesTest, TimesAreSplitIntoHoursMinutesSeconds) {
  stopwatch.create_watch(watch, "long");
  watch.clocks[0].elapsed = 59.999F;
  watch.clocks[3].elapsed = 7384.25F;  // 2 h 3 min 4.25 s
  option(PrintForm::kHhMmSs);
  EXPECT_EQ(print(watch), "  long:\n  cpu=   0:01:00.00\n wall=   2:03:04.25\n");
  option(PrintForm::kShortest);
  EXPECT_EQ(print(watch), "  long:\n  cpu=      1:00.00\n wall=   2: 3:04.25\n");
}

TEST_F(WatchesTest, StartingARunningWatch_WarnsAndLeavesItRunning) {
  stopwatch.create_watch(watch, "w");
  stopwatch.start_watch(watch);
  EXPECT_EQ(errors, "");
  stopwatch.start_watch(watch);
  for (const char* part : {"***** WARNING from StopWatch routine  *****", "start_watch",
                           "Watch named w", "is in the wrong state for this operation."}) {
    EXPECT_NE(errors.find(part), std::string::npos) << part;
  }
  EXPECT_EQ(state(Clock::kCpu), ClockState::kRunning);
  EXPECT_EQ(state(Clock::kWall), ClockState::kRunning);
  EXPECT_EQ(state(Clock::kUser), ClockState::kOmitted);
  errors.clear();
  stopwatch.stop_watch(watch);
  EXPECT_EQ(errors, "");
  stopwatch.stop_watch(watch);
  EXPECT_NE(errors.find("wrong state"), std::string::npos);
  EXPECT_EQ(state(Clock::kWall), ClockState::kStopped);
}

TEST_F(WatchesTest, RunsAddUp) {
  stopwatch.create_watch(watch, "w");
  float before = 0.0F;
  for (int run = 0; run < 2; ++run) {
    stopwatch.start_watch(watch);
    usleep(20000);
    stopwatch.stop_watch(watch);
    EXPECT_GE(watch.clocks[3].elapsed, before + 0.0199F);
    before = watch.clocks[3].elapsed;
  }
  EXPECT_LT(watch.clocks[3].elapsed, 2.0F);
}

TEST_F(WatchesTest, WatchesThatDoNotExist_AndLongNames_AreWarnedOf) {
  stopwatch.start_watch(watch);
  EXPECT_NE(errors.find("Watch needs to be created."), std::string::npos);
  EXPECT_EQ(print(watch), "");
  errors.clear();
  stopwatch.create_watch(watch, std::string(132, 'n'));
  EXPECT_EQ(errors, "");
  stopwatch.create_watch(watch, std::string(133, 'n'));
  EXPECT_NE(errors.find("Name shortened to 132 characters."), std::string::npos);
  EXPECT_EQ(watch.name, std::string(132, 'n'));
}

}  // namespace
}  // namespace qob::test
