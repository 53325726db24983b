#include "core/full_stopwatch.h"

#include <algorithm>

namespace qob {
namespace {

// The watches of a group, for the operations on several.
class Members {
 public:
  explicit Members(const std::vector<std::weak_ptr<Watch::Times>>& group) {
    for (const auto& member : group) watches_.push_back({member.lock()});
    for (Watch& watch : watches_) list_.push_back(&watch);
  }
  std::span<Watch* const> list() const { return list_; }

 private:
  std::vector<Watch> watches_;
  std::vector<Watch*> list_;
};

// Where the group has the watch.
auto place_of(auto& group, const Watch& watch) {
  return std::find_if(group.begin(), group.end(),
                      [&](const auto& member) { return member.lock() == watch.times; });
}

}  // namespace

bool FullStopwatch::reset_watch(const WatchList& watches, const NameList& clocks) {
  return apply({"reset_watch", "Watch not reset.", "Watches not reset.",
                "Watch's * clock not reset.", kAnyState},
               watches, clocks);
}

bool FullStopwatch::pause_watch(const WatchList& watches, const NameList& clocks) {
  return apply({"pause_watch",
                "Watch not paused.",
                "Watches not paused.",
                "Watch's * clock not paused.",
                {ClockState::kRunning},
                ClockState::kPaused},
               watches, clocks);
}

bool FullStopwatch::end_pause_watch(const WatchList& watches, const NameList& clocks) {
  return apply({"end_pause_watch",
                "Watch not end_paused.",
                "Watches remain paused.",
                "Watch's * clock remains paused.",
                {ClockState::kPaused},
                ClockState::kRunning},
               watches, clocks);
}

bool FullStopwatch::read_watch(std::vector<float>& seconds, const WatchList& watches,
                               const NameList& clocks) {
  constexpr Operation kRead{"read_watch", "Returning 0.0 for all clocks on this watch.",
                            "Returning 0.0 for watch values.",
                            "Returning 0.0 for value of * clock.", kAnyState};
  const auto chosen = choose(kRead.routine, clocks, kRead.outcome(watches));
  if (!chosen) {
    seconds.insert(seconds.end(), clocks.size() * watches.size(), 0.0F);
    return false;
  }
  const auto now = clocks_.read();
  bool good = chosen->good;
  for (const Watch* watch : watches) {
    const bool known = created(kRead.routine, *watch, kRead.watch);
    good &= known;
    for (const std::size_t k : *chosen) {
      const bool has =
          known && k < kClocks && watch->times->clocks[k].state != ClockState::kOmitted;
      if (!has && clocks.empty()) continue;
      const bool fit = has && fits(kRead, *watch, k);
      good &= fit || !has;
      seconds.push_back(fit ? watch->times->clocks[k].seconds(now[k]) : 0.0F);
    }
  }
  return good;
}

bool FullStopwatch::create_watchgroup(std::string_view group, const WatchList& watches) {
  constexpr Operation kCreate{"create_watchgroup", "Watch not added to group.",
                              "Watch(es) not added to group."};
  const auto [at, is_new] = groups_.try_emplace(std::string(group));
  if (is_new) return add(at->second, kCreate, watches);
  return warn(kCreate.routine, {}, "There is a group of that name.", "Group not created.");
}

bool FullStopwatch::destroy_watchgroup(std::string_view group) {
  if (find(group, "destroy_watchgroup", {}) == nullptr) return false;
  groups_.erase(groups_.find(group));
  return true;
}

bool FullStopwatch::join_watchgroup(std::string_view group, const WatchList& watches) {
  constexpr Operation kJoin{"join_watchgroup", "Watch not added to group.",
                            "Watches not added to group."};
  Group* const found = find(group, kJoin.routine, kJoin.outcome(watches));
  if (found == nullptr) return false;
  if (watches.size() == 0) return warn(kJoin.routine, {}, "No watches added to group.");
  return add(*found, kJoin, watches);
}

bool FullStopwatch::leave_watchgroup(std::string_view group, const WatchList& watches) {
  constexpr Operation kLeave{"leave_watchgroup", "Watch not removed from group.",
                             "Watches not removed from group."};
  Group* const found = find(group, kLeave.routine, kLeave.outcome(watches));
  if (found == nullptr) return false;
  bool good = true;
  for (const Watch* watch : watches) {
    if (!created(kLeave.routine, *watch, kLeave.watch)) {
      good = false;
    } else if (const auto at = place_of(*found, *watch); at != found->end()) {
      found->erase(at);
    } else {
      good = warn(kLeave.routine, watch->times->name, "not found in given group.", kLeave.watch);
    }
  }
  return good;
}

bool FullStopwatch::read_watch(std::vector<float>& seconds, std::string_view group,
                               const NameList& clocks) {
  const Group* const found = find(group, "read_watch", "Returning 0.0 for watch values.");
  return found != nullptr && read_watch(seconds, Members(*found).list(), clocks);
}

bool FullStopwatch::print_watch(std::string_view group, const NameList& clocks,
                                std::string_view form) {
  const Group* const found = find(group, "print_watch", "Watch values not printed.");
  return found != nullptr && print_watch(Members(*found).list(), clocks, form);
}

FullStopwatch::Group* FullStopwatch::find(std::string_view name, std::string_view routine,
                                          std::string_view refused) {
  const auto at = groups_.find(name);
  if (at == groups_.end()) {
    warn(routine, {}, "Group needs to be created.", refused);
    return nullptr;
  }
  std::erase_if(at->second, [](const auto& member) { return member.expired(); });
  return &at->second;
}

bool FullStopwatch::add(Group& group, const Operation& operation, const WatchList& watches) {
  bool good = true;
  for (const Watch* watch : watches) {
    const bool known = created(operation.routine, *watch, operation.outcome(watches));
    good &= known;
    if (known && place_of(group, *watch) == group.end()) group.push_back(watch->times);
  }
  return good;
}

}  // namespace qob
