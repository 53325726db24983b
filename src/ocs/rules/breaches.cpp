#include "ocs/rules/breaches.h"

#include <algorithm>
#include <map>

namespace qob {
namespace {

constexpr double kRounding = 1.0e-9;  // of an inbreeding coefficient, however it was worked out

class Matings {
 public:
  Matings(const RuleSet& set, const Candidates& candidates, const Relationship& relationship,
          std::span<const Pair> matings)
      : set_(set),
        candidates_(candidates),
        relationship_(relationship),
        uses_(std::int64_t{candidates.ncands} + 1, 0) {
    for (const Pair& pair : matings) {
      ++count_[pair];
      ++uses_(pair.first);
      ++uses_(pair.second);
    }
  }

  std::int64_t breach(const MatingRule& rule) const;

 private:
  // The sum of action(pair, matings) over different pairs.
  template <class Action>
  std::int64_t over_pairs(Action action) const {
    std::int64_t sum = 0;
    for (const auto& [pair, n] : count_) sum += action(pair, std::int64_t{n});
    return sum;
  }
  std::int64_t of_pair(std::int32_t male, std::int32_t female) const {
    const auto found = count_.find({male, female});
    return found == count_.end() ? 0 : found->second;
  }
  bool is_between(const Pair& pair, std::int32_t a, std::int32_t b) const {
    const auto [male, female] = pair;
    return (set_.is_in(male, a) && set_.is_in(female, b)) ||
           (set_.is_in(male, b) && set_.is_in(female, a));
  }
  std::int64_t beyond_groups(const MatingRule& rule) const;

  const RuleSet& set_;
  const Candidates& candidates_;
  const Relationship& relationship_;
  std::map<Pair, std::int32_t> count_;
  Table<std::int32_t, 0> uses_;
};

// Of one sire or each, with dams of one group or of each.
std::int64_t Matings::beyond_groups(const MatingRule& rule) const {
  std::map<Pair, std::int64_t> matings;  // by sire and group
  for (const auto& [pair, n] : count_) {
    if (rule.a != 0 && rule.a != pair.first) continue;
    for (const std::int32_t group : set_.groups_of(pair.second))
      if (rule.b == 0 || rule.b == group) matings[{pair.first, group}] += n;
  }
  std::int64_t beyond = 0;
  for (const auto& [who, n] : matings) beyond += std::max<std::int64_t>(n - rule.told.n, 0);
  return beyond;
}

std::int64_t Matings::breach(const MatingRule& rule) const {
  if (!rule.applies()) return 0;
  const std::int64_t n = rule.told.n;
  const auto beyond = [&](std::int64_t matings) { return std::max<std::int64_t>(matings - n, 0); };
  switch (rule.kind()) {
    case RuleKind::kFix:
      return std::max<std::int64_t>(n - of_pair(rule.a, rule.b), 0);
    case RuleKind::kMin:
      return std::max<std::int64_t>(n - uses_(rule.a), 0);
    case RuleKind::kMax:
      return beyond(uses_(rule.a));
    case RuleKind::kForbid:
      return of_pair(rule.a, rule.b);
    case RuleKind::kForbidGroups:
      return over_pairs([&](const Pair& pair, std::int64_t matings) {
        return is_between(pair, rule.a, rule.b) ? matings : 0;
      });
    case RuleKind::kMaxPair:
      return over_pairs([&](const Pair&, std::int64_t matings) { return beyond(matings); });
    case RuleKind::kMaxPerGroup:
      return beyond_groups(rule);
    case RuleKind::kMaxF:
      return over_pairs([&](const Pair& pair, std::int64_t matings) {
        return is_too_inbred(candidates_, relationship_, pair.first, pair.second, rule.told.f)
                   ? matings
                   : 0;
      });
    case RuleKind::kGroup:
      break;
  }
  return 0;
}

}  // namespace

bool is_too_inbred(const Candidates& candidates, const Relationship& relationship,
                   std::int32_t male, std::int32_t female, double limit) {
  return 0.5 * cnrm(relationship, candidates, male, female) > limit + kRounding;
}

std::vector<std::int64_t> breaches(const RuleSet& set, const Candidates& candidates,
                                   const Relationship& relationship,
                                   std::span<const Pair> matings) {
  const Matings counted(set, candidates, relationship, matings);
  std::vector<std::int64_t> of_rule;
  for (const MatingRule& rule : set.rules) of_rule.push_back(counted.breach(rule));
  return of_rule;
}

}  // namespace qob
