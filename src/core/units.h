// The units of a run, and the way in which a fault ends it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/format.h"
#include "core/unit.h"

namespace qob {

// What stands behind the first of `count` remarks of one kind.
inline std::string and_more(std::int64_t count) {
  return count > 1 ? " ... and " + std::to_string(count - 1) + " more" : "";
}

struct Units {
  Unit out{6};       // standard output
  Unit err{0};       // standard error: what ends the run, and what the log has no place for
  Unit log{11};      // the log
  Unit summary{12};  // the population-history summary, open from the history to the end
  bool quiet = false;

  // A fault of the log is told on standard error alone, as it ends the program: the disk that
  // refuses the log may well refuse what standard output goes to, and leave half a line there.
  Units() {
    out.tell_faults_to(&log, nullptr);
    take_up(err);
    take_up(summary);
  }
  Units(const Units&) = delete;
  Units& operator=(const Units&) = delete;

  // Tells what the user had better know but did not ask for, on standard error.
  void tell(std::string_view remark) {
    if (!quiet) err.write_line(remark);
  }

  // The same of values of a file that its columns could not show.
  void tell_unshown(const Unit& unit);

  // A refused write to `unit` is told on the log and on standard output before it ends the program.
  void take_up(Unit& unit) { unit.tell_faults_to(&log, &out); }
};

// The value that a failed operation gave: its status, most often.
struct ErrorValue {
  int value;
};

// Writes the message, cut at 255 characters, and the value if there is one to the log and to
// standard output (to standard error, too, unless a person sees both), and stops the run with
// status 1.
[[noreturn]] void stop_with_message(Units& units, std::string_view message,
                                    std::optional<ErrorValue> value = std::nullopt);

// The same for a message of these items, as a line without format.
template <class... Items>
[[noreturn]] void handle_error(Units& units, const Items&... items) {
  stop_with_message(units, format_list(items...));
}
template <class... Items>
[[noreturn]] void handle_error(Units& units, ErrorValue value, const Items&... items) {
  stop_with_message(units, format_list(items...), value);
}

}  // namespace qob
