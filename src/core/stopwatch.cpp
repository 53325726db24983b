#include "core/stopwatch.h"

#include <algorithm>
#include <cmath>

#include "core/format.h"
#include "core/random.h"
#include "core/stop.h"

namespace qob {
namespace {

constexpr std::size_t kLongestName = 132;
constexpr std::array<std::string_view, kClocks> kNames = {"cpu", "user", "sys", "wall"};
constexpr std::array<std::string_view, kClocks> kLabels = {"  cpu=", " user=", "  sys=", " wall="};
constexpr std::array<std::string_view, 3> kForms = {"sec", "hh:mm:ss", "[[hh:]mm:]ss"};

// The process's time costs a call of the system, as much as a short operation of the search. Within
// so many seconds of a reading it goes on like the wall clock, as it does while one thread works.
constexpr double kSoon = 20e-6;

// The place of `name` in the list, its size if it does not stand there.
std::size_t index_of(std::span<const std::string_view> list, std::string_view name) {
  return static_cast<std::size_t>(std::find(list.begin(), list.end(), name) - list.begin());
}

std::string not_open(const Unit& unit) {
  return "I/O unit number " + std::to_string(unit.number()) + " is not open for writing.";
}

// Rounded to hundredths before it is split, so that no part shows a 60 or a whole second as its
// fraction.
std::string time_text(std::string_view label, float seconds, std::string_view form) {
  const auto total = static_cast<std::int64_t>(std::llround(static_cast<double>(seconds) * 100.0));
  const double fraction = static_cast<double>(total % 100) / 100.0;
  const std::int64_t s = total / 100 % 60;
  const std::int64_t m = total / 6000 % 60;
  const std::int64_t h = total / 360000;
  if (form == "sec") {
    if (total >= 10000000) return formatted("(a6,f13.2)", label, seconds);
    return formatted("(a6,f8.2)", label, seconds);
  }
  if (form == "hh:mm:ss") {
    return formatted("(a6,i4,\":\",i2.2,\":\",i2.2,f3.2)", label, h, m, s, fraction);
  }
  const std::string hours = h > 0 ? formatted("(i4,a1)", h, ":") : std::string{};
  return formatted("(a6,a5,i2,\":\",i2.2,f3.2)", label, hours, m, s, fraction);
}

}  // namespace

std::array<float, kClocks> Stopwatch::Clocks::read() {
  const double wall = wall_seconds();
  if (wall - read_ > kSoon) {
    float user, sys;
    cpu_second(read_cpu_, user, sys);
    read_ = wall;
  }
  cpu_ = std::max(cpu_, read_cpu_ + static_cast<float>(wall - read_));  // never goes back
  return {cpu_, 0.0F, 0.0F, static_cast<float>(wall - first_)};
}

bool Stopwatch::option_stopwatch(const StopwatchOptions& options) {
  bool good = set_unit(options_.print_unit, options.print_unit,
                       "I/O unit number for printing not reset as requested.");
  good &= set_unit(options_.error_unit, options.error_unit,
                   "I/O unit number for errors not reset as requested.");
  if (options.print_errors) options_.print_errors = options.print_errors;
  if (options.abort_on_errors) options_.abort_on_errors = options.abort_on_errors;
  if (options.default_clocks) good &= set_default_clocks(*options.default_clocks);
  if (options.form) good &= set_form(*options.form);
  return good;
}

bool Stopwatch::set_unit(Unit*& unit, Unit* requested, std::string_view outcome) {
  if (requested == nullptr) return true;
  if (!requested->is_open()) return warn("option_stopwatch", {}, not_open(*requested), outcome);
  unit = requested;
  return true;
}

bool Stopwatch::set_default_clocks(const NameList& names) {
  const auto chosen = choose("option_stopwatch", names, "Default not changed.",
                             "That clock not included in the default clocks.");
  if (!chosen) return false;
  NameList known;
  for (const std::size_t clock : *chosen) {
    if (clock < kClocks && !names.empty()) known.push_back(kNames[clock]);
  }
  options_.default_clocks = known;
  if (known.empty()) return warn("option_stopwatch", {}, "There are no default clocks.");
  return chosen->good;
}

bool Stopwatch::set_form(std::string_view form) {
  const std::size_t known = index_of(kForms, form);
  if (known == kForms.size()) {
    return warn("option_stopwatch", {}, "Illegal output form", "Default not changed.");
  }
  options_.form = kForms[known];
  return true;
}

bool Stopwatch::create_watch(const WatchList& watches, const NameList& names,
                             const NameList& clocks) {
  constexpr Operation kCreate{"create_watch", "Watch not created.", "Watches not created."};
  const std::string_view refused = kCreate.outcome(watches);
  if (names.size() != watches.size()) {
    return warn(kCreate.routine, {}, "Number of names is not equal to number of watches.", refused);
  }
  const NameList& wanted = clocks.empty() ? *options_.default_clocks : clocks;
  if (wanted.empty()) return warn(kCreate.routine, {}, "There are no default clocks.", refused);
  const auto chosen = choose(kCreate.routine, wanted, refused);
  if (!chosen) return false;
  bool good = chosen->good;
  auto name = names.begin();
  for (Watch* watch : watches) {
    watch->times = std::make_shared<Watch::Times>(
        Watch::Times{std::string(name->substr(0, kLongestName)), {}});
    for (const std::size_t clock : *chosen) {
      if (clock < kClocks) watch->times->clocks[clock].state = ClockState::kStopped;
    }
    if (name->size() > kLongestName) {
      good = warn(kCreate.routine, watch->times->name, "Name shortened to 132 characters.");
    }
    ++name;
  }
  return good;
}

bool Stopwatch::destroy_watch(const WatchList& watches) {
  bool good = true;
  for (Watch* watch : watches) {
    good &= created("destroy_watch", *watch, "Watch not destroyed.");
    watch->times.reset();
  }
  return good;
}

bool Stopwatch::start_watch(const WatchList& watches, const NameList& clocks) {
  return apply({"start_watch",
                "Watch not started.",
                "Watches not started.",
                "Watch's * clock not started.",
                {ClockState::kStopped},
                ClockState::kRunning},
               watches, clocks);
}

bool Stopwatch::stop_watch(const WatchList& watches, const NameList& clocks) {
  return apply({"stop_watch",
                "Watch not stopped.",
                "Watches not stopped.",
                "Watch's * clock not stopped.",
                {ClockState::kRunning, ClockState::kPaused},
                ClockState::kStopped},
               watches, clocks);
}

bool Stopwatch::print_watch(const WatchList& watches, const NameList& clocks,
                            std::string_view form) {
  constexpr Operation kPrint{"print_watch", "Watch not printed.", "Watch values not printed.",
                             "Requested action not performed on * clock.", kAnyState};
  if (options_.print_unit == nullptr) return true;
  Unit& unit = *options_.print_unit;
  if (!unit.is_open()) return warn(kPrint.routine, {}, not_open(unit), kPrint.watches);
  const auto chosen = choose(kPrint.routine, clocks, kPrint.outcome(watches));
  if (!chosen) return false;
  bool good = chosen->good;
  if (form.empty()) form = *options_.form;
  if (index_of(kForms, form) == kForms.size()) {
    good = warn(kPrint.routine, {}, "Illegal output form", "Using form 'sec'");
    form = kForms[0];
  }
  if (watches.several()) write(unit, "(a)", "  Times printed by StopWatch:");
  for (const Watch* watch : watches) {
    good &=
        created(kPrint.routine, *watch, kPrint.watch) && print_times(kPrint, *watch, *chosen, form);
  }
  return good;
}

bool Stopwatch::print_times(const Operation& print, const Watch& watch, const Chosen& chosen,
                            std::string_view form) {
  Unit& unit = *options_.print_unit;
  write(unit, "(a2,a,a1)", "  ", watch.times->name, ":");
  const auto now = clocks_.read();
  bool good = true;
  for (const std::size_t k : chosen) {
    if (k == kClocks || watch.times->clocks[k].state == ClockState::kOmitted) continue;
    const bool fit = fits(print, watch, k);
    if (fit) unit.write_line(time_text(kLabels[k], watch.times->clocks[k].seconds(now[k]), form));
    good &= fit;
  }
  return good;
}

bool Stopwatch::apply(const Operation& operation, const WatchList& watches,
                      const NameList& clocks) {
  const auto chosen = choose(operation.routine, clocks, operation.outcome(watches));
  if (!chosen) return false;
  const auto now = clocks_.read();
  bool good = chosen->good;
  for (Watch* watch : watches) {
    const bool known = created(operation.routine, *watch, operation.watch);
    good &= known;
    for (const std::size_t clock : *chosen) {
      if (known && clock < kClocks) good &= act(operation, *watch, clock, now[clock]);
    }
  }
  return good;
}

bool Stopwatch::act(const Operation& operation, const Watch& watch, std::size_t clock, float now) {
  Watch::Clock& acted_on = watch.times->clocks[clock];
  if (acted_on.state == ClockState::kOmitted) return true;
  if (!fits(operation, watch, clock)) return false;
  acted_on.elapsed = operation.to ? acted_on.seconds(now) : 0.0F;
  acted_on.start = now;
  acted_on.state = operation.to.value_or(acted_on.state);
  return true;
}

bool Stopwatch::fits(const Operation& operation, const Watch& watch, std::size_t clock) {
  const ClockState state = watch.times->clocks[clock].state;
  const auto& from = operation.from;
  if (std::find(from.begin(), from.end(), state) != from.end()) return true;
  const bool known = state >= ClockState::kStopped && state <= ClockState::kOmitted;
  const std::string name(kNames[clock]);
  std::string outcome(operation.clock);
  return warn(operation.routine, watch.times->name,
              name + (known ? " clock is in the wrong state for this operation."
                            : " clock is in an unknown state."),
              outcome.replace(outcome.find('*'), 1, name));
}

std::optional<Stopwatch::Chosen> Stopwatch::choose(std::string_view routine, const NameList& clocks,
                                                   std::string_view all_refused,
                                                   std::string_view one_refused) {
  Chosen chosen;
  if (clocks.empty()) return chosen;
  if (clocks.size() > kClocks) {
    warn(routine, {}, "Too many clocks specified at clock type " + std::string(clocks[kClocks]),
         all_refused);
    return std::nullopt;
  }
  chosen.count = 0;
  for (const std::string_view name : clocks) {
    const std::size_t clock = index_of(kNames, name);
    chosen.clocks[chosen.count++] = clock;
    if (clock == kClocks) {
      chosen.good = warn(routine, {}, "Invalid clock type " + std::string(name) + ".", one_refused);
    }
  }
  return chosen;
}

bool Stopwatch::created(std::string_view routine, const Watch& watch, std::string_view refused) {
  return watch.times != nullptr || warn(routine, {}, "Watch needs to be created.", refused);
}

bool Stopwatch::warn(std::string_view routine, std::string_view name, std::string_view message,
                     std::string_view outcome) {
  if (*options_.print_errors) write_warning(routine, name, message, outcome);
  if (*options_.abort_on_errors) {
    stop("Program aborting: user request to abort on errors in StopWatch.");
  }
  return false;
}

void Stopwatch::write_warning(std::string_view routine, std::string_view name,
                              std::string_view message, std::string_view outcome) {
  const auto is_open = [](const Unit* unit) { return unit != nullptr && unit->is_open(); };
  if (!is_open(options_.error_unit)) {
    if (!is_open(options_.print_unit)) return;
    options_.error_unit = options_.print_unit;
    options_.print_unit->write_line("***** WARNING from StopWatch error handler *****");
    write_list(*options_.print_unit, "Unable to write to error I/O unit");
    write_list(*options_.print_unit, "Switching error output to printed output unit");
  }
  Unit& unit = *options_.error_unit;
  unit.write_line("***** WARNING from StopWatch routine  *****");
  write(unit, "(1x,a)", routine);
  if (!name.empty()) write(unit, "(1x,a,1x,a)", "Watch named", name);
  write(unit, "(1x,a)", message);
  if (!outcome.empty()) write(unit, "(1x,a)", outcome);
  unit.write_line("*******************************************");
}

}  // namespace qob
