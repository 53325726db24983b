#include "ocs/rules/pair_rules.h"

namespace qob {

void MatingLimits::add(std::int32_t n) {
  limits_.insert(std::lower_bound(limits_.begin(), limits_.end(), n), n);
  bound_ = std::min(bound_, n);
}

std::int32_t MatingLimits::below(std::int32_t n) const {
  return static_cast<std::int32_t>(std::lower_bound(limits_.begin(), limits_.end(), n) -
                                   limits_.begin());
}

PairRules::PairRules(const RuleSet& set, const Candidates& candidates,
                     const Relationship& relationship)
    : males_(candidates.nmcands), females_(static_cast<std::size_t>(candidates.nfcands)) {
  for (const MatingRule& rule : set.rules)
    if (rule.applies()) take(set, rule, candidates, relationship);
  if (gates() > 0) groups_of_ = set.groups_of;
}

void PairRules::take(const RuleSet& set, const MatingRule& rule, const Candidates& candidates,
                     const Relationship& relationship) {
  switch (rule.kind()) {
    case RuleKind::kForbid:
      return break_pair(rule.a, rule.b);
    case RuleKind::kForbidGroups:
      return forbid_groups(set, rule, candidates);
    case RuleKind::kMaxF:
      return forbid_inbred(rule.told.f, candidates, relationship);
    case RuleKind::kMaxPair:
      return of_pair_.add(rule.told.n);
    case RuleKind::kMaxPerGroup:
      return limit_groups(set, rule);
    default:
      return;
  }
}

// Beyond 255 they are counted no further.
void PairRules::break_pair(std::int32_t male, std::int32_t female) {
  if (broken_.empty()) broken_.assign(static_cast<std::size_t>(males_) * females_, 0);
  std::uint8_t& broken = broken_[place(male, female)];
  if (broken < std::numeric_limits<std::uint8_t>::max()) ++broken;
}

void PairRules::forbid_inbred(double limit, const Candidates& candidates,
                              const Relationship& relationship) {
  for (std::int32_t m = 1; m <= candidates.nmcands; ++m) {
    for (std::int32_t f = candidates.nmcands + 1; f <= candidates.ncands; ++f)
      if (is_too_inbred(candidates, relationship, m, f, limit)) break_pair(m, f);
  }
}

void PairRules::forbid_groups(const RuleSet& set, const MatingRule& rule,
                              const Candidates& candidates) {
  std::vector<std::int32_t> in_a, in_b;  // females
  for (std::int32_t f = candidates.nmcands + 1; f <= candidates.ncands; ++f) {
    const bool a = set.is_in(f, rule.a), b = set.is_in(f, rule.b);
    if (b) in_b.push_back(f);
    if (a && !b) in_a.push_back(f);
  }
  for (std::int32_t m = 1; m <= candidates.nmcands; ++m) {
    const bool a = set.is_in(m, rule.a), b = set.is_in(m, rule.b);
    for (const std::int32_t f : in_a)
      if (b) break_pair(m, f);
    for (const std::int32_t f : in_b)
      if (a || (b && set.is_in(f, rule.a))) break_pair(m, f);
  }
}

void PairRules::limit_groups(const RuleSet& set, const MatingRule& rule) {
  if (gate_at_.rows() == 0) {
    gate_at_.assign(std::ssize(set.groups), males_, 0);
    gates_of_.assign(males_, {});
    has_dam_.assign(set.groups.size() + 1, 0);
    for (std::int64_t f = males_ + 1; f <= set.groups_of.last(); ++f)
      for (const std::int32_t group : set.groups_of(f))
        has_dam_[static_cast<std::size_t>(group)] = 1;
  }
  const std::int32_t first = rule.a != 0 ? rule.a : 1, last = rule.a != 0 ? rule.a : males_;
  for (std::int32_t sire = first; sire <= last; ++sire) {
    for (std::int32_t group = 1; group <= std::ssize(set.groups); ++group) {
      if ((rule.b != 0 && rule.b != group) || has_dam_[static_cast<std::size_t>(group)] == 0)
        continue;
      std::int32_t& number = gate_at_(group, sire);
      if (number == 0) {
        gates_.push_back({sire, group, {}});
        number = gates();
        gates_of_(sire).push_back(number);
      }
      gates_[static_cast<std::size_t>(number) - 1].limits.add(rule.told.n);
    }
  }
}

std::int32_t PairRules::gate_of(std::int32_t male, std::int32_t female) const {
  if (gates_.empty()) return 0;
  for (const std::int32_t group : groups_of_(female)) {
    const std::int32_t number = gate_at_(group, male);
    if (number != 0) return number;
  }
  return 0;
}

std::vector<std::vector<std::int32_t>> PairRules::by_group(
    std::span<const std::int32_t> dams) const {
  if (gates_.empty()) return {};
  std::vector<std::vector<std::int32_t>> places(static_cast<std::size_t>(gate_at_.rows()) + 1);
  for (std::size_t d = 0; d < dams.size(); ++d) {
    for (const std::int32_t group : groups_of_(dams[d]))
      places[static_cast<std::size_t>(group)].push_back(static_cast<std::int32_t>(d));
  }
  return places;
}

std::int32_t PairRules::most(std::int32_t male, std::int32_t female) const {
  if (!exceptions_.empty()) {
    const auto found = exceptions_.find({male, female});
    if (found != exceptions_.end()) return found->second;
  }
  return broken(male, female) > 0 ? 0 : of_pair_.bound();
}

void PairRules::yield_to(std::span<const Pair> matings) {
  std::map<Pair, std::int32_t> count;
  std::map<std::int32_t, std::int32_t> through;
  for (const Pair& pair : matings) {
    ++count[pair];
    ++through[gate_of(pair.first, pair.second)];
  }
  for (const auto& [pair, n] : count)
    if (n > most(pair.first, pair.second)) exceptions_[pair] = n;
  for (const auto& [gate, n] : through)
    if (gate != 0) gates_[static_cast<std::size_t>(gate) - 1].limits.yield_to(n);
}

}  // namespace qob
