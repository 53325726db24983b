// Watches that time the phases of a run. A watch carries a clock for the process's CPU time and
// one for the time on the wall; each is stopped, running or paused.
//
// A fault (an operation that does not fit a clock's state, say) is reported as a framed warning on
// the error unit; the clock is left as it was and the run goes on.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/unit.h"

namespace qob {

enum class Clock : std::size_t { kCpu, kUser, kSys, kWall };
inline constexpr std::size_t kClocks = 4;

enum class ClockState { kStopped = 1, kRunning = 2, kPaused = 3, kOmitted = 4 };

enum class PrintForm { kSec, kHhMmSs, kShortest };  // "sec", "hh:mm:ss", "[[hh:]mm:]ss"

// The options that all watches share.
struct StopwatchOptions {
  std::array<bool, kClocks> default_clocks = {true, true, true, true};  // by Clock
  Unit* print_unit = nullptr;                                           // none: nothing is printed
  Unit* error_unit = nullptr;  // none: no warning is written
  PrintForm form = PrintForm::kSec;
};

struct Watch {
  struct Reading {
    ClockState state = ClockState::kStopped;
    float start = 0.0F;    // the clock at the last start, seconds
    float elapsed = 0.0F;  // accumulated, seconds
  };
  std::string name;
  bool created = false;
  std::array<Reading, kClocks> clocks;  // by Clock
};

class Stopwatch {
 public:
  void option_stopwatch(const StopwatchOptions& options) { options_ = options; }
  const StopwatchOptions& inquiry_stopwatch() const { return options_; }

  // A watch with the default clocks, all stopped at zero. A name over 132 characters is cut, with
  // a warning. A watch that `watch` held before is replaced.
  void create_watch(Watch& watch, std::string_view name);
  void destroy_watch(Watch& watch);

  // Stopped clocks run.
  void start_watch(Watch& watch);
  // Running and paused clocks stop; running ones add the time since their start.
  void stop_watch(Watch& watch);

  // Prints the watch's times to the print unit.
  void print_watch(const Watch& watch);
  // The same for several watches under one heading.
  void print_watches(const std::vector<const Watch*>& watches);

 private:
  bool usable(const Watch& watch, std::string_view routine, std::string_view outcome);
  void warn(std::string_view routine, std::string_view name, std::string_view message,
            std::string_view outcome = {});
  void print_times(const Watch& watch);
  std::string time_text(std::string_view label, float seconds) const;

  StopwatchOptions options_;
};

// Runs a watch from its construction to the end of its scope, so that no early return leaves the
// watch running.
class Timed {
 public:
  Timed(Stopwatch& stopwatch, Watch& watch) : stopwatch_(stopwatch), watch_(watch) {
    stopwatch_.start_watch(watch_);
  }
  Timed(const Timed&) = delete;
  Timed& operator=(const Timed&) = delete;
  ~Timed() { stopwatch_.stop_watch(watch_); }

 private:
  Stopwatch& stopwatch_;
  Watch& watch_;
};

}  // namespace qob
