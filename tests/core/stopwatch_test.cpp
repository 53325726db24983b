#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "core/full_stopwatch.h"

namespace qob::test {
namespace {

// A warning with these lines.
std::string framed(const std::string& lines) {
  return "***** WARNING from StopWatch routine  *****\n" + lines +
         "\n*******************************************\n";
}

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
  FullStopwatch stopwatch;
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
  a.times->clocks[3].elapsed = 3725.996F;
  b.times->clocks[3].elapsed = 59.25F;
  stopwatch.print_watch(a, {}, "hh:mm:ss");
  stopwatch.print_watch({&a, &b}, {"wall", "cpu"}, "[[hh:]mm:]ss");
  stopwatch.print_watch(a);
  EXPECT_EQ(text,
            "  first:\n wall=   1:02:06.00\n  Times printed by StopWatch:\n  first:\n"
            " wall=   1: 2:06.00\n  second:\n wall=      0:59.25\n  first:\n wall= 3726.00\n");
}

TEST_F(Stopwatches, WarnOfWhatIsNotDone) {
  Unit closed{12};
  Watch gone;
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
      {[&] { return stopwatch.option_stopwatch({.error_unit = &closed}); },
       " option_stopwatch\n I/O unit number 12 is not open for writing.\n"
       " I/O unit number for errors not reset as requested."},
      {[&] { return stopwatch.join_watchgroup("none", a); },
       " join_watchgroup\n Group needs to be created.\n Watch not added to group."},
      {[&] {
         return stopwatch.create_watchgroup("pair", {&a, &gone});
       },
       " create_watchgroup\n Watch needs to be created.\n Watch(es) not added to group."},
      {[&] {
         return stopwatch.leave_watchgroup("pair", {&a, &b});
       },
       " leave_watchgroup\n Watch named second\n not found in given group.\n"
       " Watch not removed from group."},
      {[&] { return stopwatch.destroy_watchgroup("pair") && stopwatch.print_watch("pair"); },
       " print_watch\n Group needs to be created.\n Watch values not printed."}};
  for (const auto& [operation, lines] : cases) {
    text.clear();
    EXPECT_FALSE(operation());
    EXPECT_EQ(text, framed(lines));
  }
  EXPECT_NE(a.times->clocks[0].state, b.times->clocks[0].state);  // stopped and running
}

TEST_F(Stopwatches, LeaveAClockInAnUnknownStateAlone) {
  stopwatch.create_watch(a, {"first"}, {"cpu", "wall"});
  a.times->clocks[0] = {.state = ClockState{7}, .start = 0.0F, .elapsed = 5.0F};
  std::vector<float> seconds;
  EXPECT_FALSE(stopwatch.read_watch(seconds, a));
  EXPECT_EQ(seconds, (std::vector<float>{0.0F, 0.0F}));
  EXPECT_FALSE(stopwatch.reset_watch(a));
  EXPECT_FALSE(stopwatch.print_watch(a));
  const std::string unknown = " Watch named first\n cpu clock is in an unknown state.\n";
  EXPECT_EQ(
      text,
      framed(" read_watch\n" + unknown + " Returning 0.0 for value of cpu clock.") +
          framed(" reset_watch\n" + unknown + " Watch's cpu clock not reset.") + "  first:\n" +
          framed(" print_watch\n" + unknown + " Requested action not performed on cpu clock.") +
          " wall=    0.00\n");
  EXPECT_EQ(a.times->clocks[0].elapsed, 5.0F);
}

TEST_F(Stopwatches, StandInAGroupOnce_AndNoLongerThanTheyLive) {
  const auto printed = [&] {
    text.clear();
    EXPECT_TRUE(stopwatch.print_watch("search", {"user"}));
    return text;
  };
  const std::string header = "  Times printed by StopWatch:\n";
  const std::string first = "  first:\n user=    0.00\n", second = "  second:\n user=    0.00\n";
  stopwatch.create_watch({&a, &b}, {"first", "second"});
  EXPECT_TRUE(stopwatch.create_watchgroup("search"));
  EXPECT_EQ(printed(), header);
  EXPECT_TRUE(stopwatch.join_watchgroup("search", {&b, &b}));
  EXPECT_TRUE(stopwatch.join_watchgroup("search", {&a, &b}));
  {
    Watch passing;
    stopwatch.create_watch(passing, {"passing"});
    EXPECT_TRUE(stopwatch.join_watchgroup("search", passing));
  }
  EXPECT_EQ(printed(), header + second + first);
  stopwatch.destroy_watch(a);
  EXPECT_EQ(printed(), header + second);
  stopwatch.create_watch(a, {"first"});  // another watch
  EXPECT_EQ(printed(), header + second);
  EXPECT_TRUE(stopwatch.leave_watchgroup("search", b));
  EXPECT_EQ(printed(), header);
}

}  // namespace
}  // namespace qob::test
