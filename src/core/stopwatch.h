// Watches that time the phases of a run: what a run uses of them. (Pauses, reading and groups of
// watches are in core/full_stopwatch.h.) A watch carries up to four clocks, named "cpu" (the
// process's time, of all its threads), "user", "sys" (always 0 here) and "wall"; each is stopped,
// running or paused.
//
// A fault (an operation that does not fit a clock's state, say) is reported as a framed warning on
// the error unit, the clock is left as it was and the run goes on, unless the options say to abort.
#pragma once

#include <array>
#include <cstddef>
#include <initializer_list>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/unit.h"
#include "system/clock.h"

namespace qob {

inline constexpr std::size_t kClocks = 4;  // cpu, user, sys, wall

enum class ClockState { kStopped = 1, kRunning = 2, kPaused = 3, kOmitted = 4 };

// A handle: it has its times from the watch's creation until it is destroyed or its scope ends.
struct Watch {
  struct Clock {
    ClockState state = ClockState::kOmitted;
    float start = 0.0F;    // the clock at the last start, seconds
    float elapsed = 0.0F;  // accumulated, seconds

    float seconds(float now) const {
      return elapsed + (state == ClockState::kRunning ? now - start : 0.0F);
    }
  };
  struct Times {
    std::string name;
    std::array<Clock, kClocks> clocks;
  };
  std::shared_ptr<Times> times = {};
};

// What an operation works on: a watch, or several in order.
class WatchList {
 public:
  WatchList(Watch& watch) : one_(&watch), watches_(&one_, 1), several_(false) {}
  WatchList(std::initializer_list<Watch*> watches) : watches_(watches.begin(), watches.size()) {}
  WatchList(std::span<Watch* const> watches) : watches_(watches) {}
  WatchList(const WatchList&) = delete;
  WatchList& operator=(const WatchList&) = delete;

  auto begin() const { return watches_.begin(); }
  auto end() const { return watches_.end(); }
  std::size_t size() const { return watches_.size(); }
  bool several() const { return several_; }

 private:
  Watch* one_ = nullptr;
  std::span<Watch* const> watches_;
  bool several_ = true;
};

using ClockNames = std::vector<std::string_view>;

// The options that all watches share.
struct StopwatchOptions {
  std::optional<ClockNames> default_clocks = {};
  Unit* print_unit = nullptr;
  Unit* error_unit = nullptr;
  std::optional<bool> print_errors = {};
  std::optional<bool> abort_on_errors = {};
  // "sec", "hh:mm:ss", or "[[hh:]mm:]ss" with the hours only when there are any.
  std::optional<std::string_view> form = {};
};

// Operations take the clocks to act on, by default all that the watch has; a clock that the watch
// does not have is passed over. They return false when something was at fault.
class Stopwatch {
 public:
  // Sets the options that are given and keeps the others. At the start: all clocks, no units,
  // errors are printed and do not abort, form "sec".
  bool option_stopwatch(const StopwatchOptions& options);

  // Watches with these names (132 characters at most) and clocks, by default those of the options,
  // all stopped at zero. What a watch held before is lost.
  bool create_watch(const WatchList& watches, const ClockNames& names,
                    const ClockNames& clocks = {});
  bool destroy_watch(const WatchList& watches);

  // Stopped clocks run; running and paused ones stop.
  bool start_watch(const WatchList& watches, const ClockNames& clocks = {});
  bool stop_watch(const WatchList& watches, const ClockNames& clocks = {});

  // Prints the clocks to the print unit, several watches under a heading; by default in the
  // options' form.
  bool print_watch(const WatchList& watches, const ClockNames& clocks = {},
                   std::string_view form = {});

 protected:
  // An operation and what its warnings say was left undone.
  struct Operation {
    std::string_view routine;
    std::string_view watch;       // to one watch
    std::string_view watches;     // to several
    std::string_view clock = {};  // to a clock, its name for the *
    std::array<ClockState, 3> from = {};
    std::optional<ClockState> to = {};  // none: the clock goes on from zero

    std::string_view outcome(const WatchList& list) const {
      return list.several() ? watches : watch;
    }
  };

  static constexpr std::array kAnyState = {ClockState::kStopped, ClockState::kRunning,
                                           ClockState::kPaused};

  // The clocks that were asked for; kClocks stands for one that there is not.
  struct Chosen {
    std::array<std::size_t, kClocks> clocks = {0, 1, 2, 3};
    std::size_t count = kClocks;
    bool good = true;

    auto begin() const { return clocks.begin(); }
    auto end() const { return clocks.begin() + count; }
  };

  // Seconds of the process, and since the clocks began: small numbers keep their hundredths in
  // single precision.
  class Clocks {
   public:
    std::array<float, kClocks> read();

   private:
    double first_ = wall_seconds();
    double read_ = -1.0;     // when the process's time was read
    float read_cpu_ = 0.0F;  // and what it was
    float cpu_ = 0.0F;       // what was last given as it
  };

  bool apply(const Operation& operation, const WatchList& watches, const ClockNames& clocks);
  // The clocks with these names, by default all; none when there are more than clocks.
  std::optional<Chosen> choose(
      std::string_view routine, const ClockNames& clocks, std::string_view all_refused,
      std::string_view one_refused = "Requested action not performed on this clock.");
  // Whether the watch has been created, and whether the operation fits the clock's state. They warn
  // if not.
  bool created(std::string_view routine, const Watch& watch, std::string_view refused);
  bool fits(const Operation& operation, const Watch& watch, std::size_t clock);
  // Writes a warning and aborts the run if the options say so. Returns false.
  bool warn(std::string_view routine, std::string_view name, std::string_view message,
            std::string_view outcome = {});

  Clocks clocks_;
  StopwatchOptions options_ = {
      ClockNames{"cpu", "user", "sys", "wall"}, nullptr, nullptr, true, false, "sec"};

 private:
  bool set_unit(Unit*& unit, Unit* requested, std::string_view outcome);
  bool set_default_clocks(const ClockNames& names);
  bool set_form(std::string_view form);
  bool act(const Operation& operation, const Watch& watch, std::size_t clock, float now);
  bool print_times(const Operation& print, const Watch& watch, const Chosen& chosen,
                   std::string_view form);
  void write_warning(std::string_view routine, std::string_view name, std::string_view message,
                     std::string_view outcome);
};

}  // namespace qob
