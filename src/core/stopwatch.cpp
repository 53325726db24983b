#include "core/stopwatch.h"

#include <chrono>
#include <cmath>

#include "core/record.h"
#include "core/ziggurat.h"

namespace qob {
namespace {

constexpr std::size_t kLongestName = 132;
constexpr std::array<std::string_view, kClocks> kLabels = {"  cpu=", " user=", "  sys=", " wall="};

// Seconds since the first call: small numbers keep their hundredths in single precision.
float wall_second() {
  using WallClock = std::chrono::steady_clock;
  static const WallClock::time_point first = WallClock::now();
  return std::chrono::duration<float>(WallClock::now() - first).count();
}

std::array<float, kClocks> read_clocks() {
  std::array<float, kClocks> now{};
  cpu_second(now[0], now[1], now[2]);
  now[3] = wall_second();
  return now;
}

}  // namespace

void Stopwatch::create_watch(Watch& watch, std::string_view name) {
  watch = Watch{std::string(name.substr(0, kLongestName)), true, {}};
  for (std::size_t clock = 0; clock < kClocks; ++clock) {
    if (!options_.default_clocks[clock]) watch.clocks[clock].state = ClockState::kOmitted;
  }
  if (name.size() > kLongestName) {
    warn("create_watch", watch.name, "Name shortened to 132 characters.");
  }
}

void Stopwatch::destroy_watch(Watch& watch) {
  if (usable(watch, "destroy_watch", "Watch not destroyed.")) watch = Watch{};
}

void Stopwatch::start_watch(Watch& watch) {
  if (!usable(watch, "start_watch", "Watch not started.")) return;
  const auto now = read_clocks();
  for (std::size_t clock = 0; clock < kClocks; ++clock) {
    Watch::Reading& reading = watch.clocks[clock];
    if (reading.state == ClockState::kStopped) {
      reading.state = ClockState::kRunning;
      reading.start = now[clock];
    } else if (reading.state != ClockState::kOmitted) {
      warn("start_watch", watch.name, "is in the wrong state for this operation.",
           "Watch not started.");
      return;
    }
  }
}

void Stopwatch::stop_watch(Watch& watch) {
  if (!usable(watch, "stop_watch", "Watch not stopped.")) return;
  const auto now = read_clocks();
  for (std::size_t clock = 0; clock < kClocks; ++clock) {
    Watch::Reading& reading = watch.clocks[clock];
    if (reading.state == ClockState::kOmitted) continue;
    if (reading.state == ClockState::kStopped) {
      warn("stop_watch", watch.name, "is in the wrong state for this operation.",
           "Watch not stopped.");
      return;
    }
    if (reading.state == ClockState::kRunning) reading.elapsed += now[clock] - reading.start;
    reading.state = ClockState::kStopped;
  }
}

void Stopwatch::print_watch(const Watch& watch) {
  if (usable(watch, "print_watch", "Watch not printed.")) print_times(watch);
}

void Stopwatch::print_watches(const std::vector<const Watch*>& watches) {
  if (options_.print_unit == nullptr) return;
  write(*options_.print_unit, "(a)", "  Times printed by StopWatch:");
  for (const Watch* watch : watches) print_watch(*watch);
}

void Stopwatch::print_times(const Watch& watch) {
  if (options_.print_unit == nullptr) return;
  write(*options_.print_unit, "(a2,a,a1)", "  ", watch.name, ":");
  const auto now = read_clocks();
  for (std::size_t clock = 0; clock < kClocks; ++clock) {
    const Watch::Reading& reading = watch.clocks[clock];
    if (reading.state == ClockState::kOmitted) continue;
    const bool running = reading.state == ClockState::kRunning;
    const float run = running ? now[clock] - reading.start : 0.0F;
    options_.print_unit->write_line(time_text(kLabels[clock], reading.elapsed + run));
  }
}

// Rounded to hundredths before it is split, so that no part shows a 60 or a whole second as its
// fraction.
std::string Stopwatch::time_text(std::string_view label, float seconds) const {
  const auto total = static_cast<std::int64_t>(std::llround(static_cast<double>(seconds) * 100.0));
  const double fraction = static_cast<double>(total % 100) / 100.0;
  const std::int64_t s = total / 100 % 60;
  const std::int64_t m = total / 6000 % 60;
  const std::int64_t h = total / 360000;
  switch (options_.form) {
    case PrintForm::kSec:
      if (total >= 10000000) return format_record("(a6,f13.2)", label, seconds);
      return format_record("(a6,f8.2)", label, seconds);
    case PrintForm::kHhMmSs:
      return format_record("(a6,i4,\":\",i2.2,\":\",i2.2,f3.2)", label, h, m, s, fraction);
    case PrintForm::kShortest:
      break;
  }
  const std::string hours = h > 0 ? format_record("(i4,a1)", h, ":") : std::string{};
  return format_record("(a6,a5,i2,\":\",i2.2,f3.2)", label, hours, m, s, fraction);
}

bool Stopwatch::usable(const Watch& watch, std::string_view routine, std::string_view outcome) {
  if (!watch.created) warn(routine, {}, "Watch needs to be created.", outcome);
  return watch.created;
}

void Stopwatch::warn(std::string_view routine, std::string_view name, std::string_view message,
                     std::string_view outcome) {
  if (options_.error_unit == nullptr) return;
  Unit& unit = *options_.error_unit;
  unit.write_line("***** WARNING from StopWatch routine  *****");
  write(unit, "(1x,a)", routine);
  if (!name.empty()) write(unit, "(1x,a,1x,a)", "Watch named", name);
  write(unit, "(1x,a)", message);
  if (!outcome.empty()) write(unit, "(1x,a)", outcome);
  unit.write_line("*******************************************");
}

}  // namespace qob
