// What watches can do beyond the needs of a run: pauses, resetting, reading, and groups of watches
// that are printed and read together.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/stopwatch.h"

namespace qob {

class FullStopwatch : public Stopwatch {
 public:
  const StopwatchOptions& inquiry_stopwatch() const { return options_; }

  bool reset_watch(const WatchList& watches, const NameList& clocks = {});  // to 0, in any state
  bool pause_watch(const WatchList& watches, const NameList& clocks = {});  // running clocks pause
  bool end_pause_watch(const WatchList& watches,
                       const NameList& clocks = {});  // paused ones run again

  // Appends the clocks' seconds to `seconds`, watch by watch, up to now for a running clock; 0 for
  // a clock that was asked for and cannot be read.
  bool read_watch(std::vector<float>& seconds, const WatchList& watches,
                  const NameList& clocks = {});

  // A group is known by its name. It has each watch once, in the order in which they joined; a
  // watch that is destroyed, or whose scope ends, has left its groups.
  bool create_watchgroup(std::string_view group, const WatchList& watches = {});
  bool destroy_watchgroup(std::string_view group);
  bool join_watchgroup(std::string_view group, const WatchList& watches);
  bool leave_watchgroup(std::string_view group, const WatchList& watches);
  bool read_watch(std::vector<float>& seconds, std::string_view group, const NameList& clocks = {});
  bool print_watch(std::string_view group, const NameList& clocks = {}, std::string_view form = {});
  using Stopwatch::print_watch;

 private:
  using Group = std::vector<std::weak_ptr<Watch::Times>>;

  // The group with the watches that there still are; null, with a warning, if there is none.
  Group* find(std::string_view name, std::string_view routine, std::string_view refused);
  bool add(Group& group, const Operation& operation, const WatchList& watches);

  std::map<std::string, Group, std::less<>> groups_;
};

}  // namespace qob
