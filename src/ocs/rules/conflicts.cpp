#include "ocs/rules/conflicts.h"

#include <algorithm>
#include <map>
#include <set>
#include <span>
#include <string>

#include "ocs/rules/pair_rules.h"

namespace qob {
namespace {

std::string matings(std::int64_t n) {
  return std::to_string(n) + (n == 1 ? " mating" : " matings");
}

class Contradictions {
 public:
  Contradictions(const PlanGround& ground, const RuleSet& set)
      : ground_(ground),
        candidates_(ground.candidates),
        set_(set),
        pairs_(set, ground.candidates, ground.relationship),
        least_(candidates_.ncands, nullptr),
        most_(candidates_.ncands, nullptr),
        decided_(candidates_.ncands, 0) {}

  std::vector<RuleFault> find() {
    count_decided();
    compare_decided();
    find_limits();
    compare_limits();
    find_partners();
    find_doubly_limited();
    std::stable_sort(faults_.begin(), faults_.end(),
                     [](const RuleFault& a, const RuleFault& b) { return a.line < b.line; });
    return std::move(faults_);
  }

 private:
  void count_decided();
  void compare_decided();
  void find_limits();
  void compare_limits();
  void find_partners();
  void find_doubly_limited();
  using Limiting = std::map<std::int32_t, const Rule*>;
  std::vector<Limiting> limits_by_group() const;
  static const Rule* clash(const Limiting& a, const Limiting& b);
  bool has_partner(std::int32_t i) const;
  bool may_be_used(std::int32_t i) const {
    return candidates_.max_matings(i) > 0 && (most_(i) == nullptr || most_(i)->n > 0);
  }
  std::string name(std::int32_t i) const { return std::to_string(candidates_.old_id(i)); }
  void fault(const Rule& rule, std::string text) {
    faults_.push_back({rule.line, std::move(text)});
  }

  const PlanGround& ground_;
  const Candidates& candidates_;
  const RuleSet& set_;
  PairRules pairs_;
  Table<const Rule*> least_, most_;  // by candidate: the strictest
  Table<std::int32_t> decided_;
  std::vector<RuleFault> faults_;
};

// Against the limits of the data, as many as the rows up to there decide.
void Contradictions::count_decided() {
  std::int64_t all = 0;
  const Rule* last = nullptr;
  for (const MatingRule& rule : set_.rules) {
    if (rule.kind() != RuleKind::kFix || !rule.applies()) continue;
    for (const std::int32_t i : {rule.a, rule.b}) {
      const std::int64_t before = decided_(i), limit = candidates_.max_matings(i);
      if (before <= limit && before + rule.told.n > limit)
        fault(rule.told, matings(before + rule.told.n) + " of '" + name(i) +
                             "' are decided : the data file allows " + std::to_string(limit));
      decided_(i) = static_cast<std::int32_t>(
          std::min<std::int64_t>(before + rule.told.n, MatingLimits::kNone));
    }
    if (all <= ground_.nmatings && all + rule.told.n > ground_.nmatings)
      fault(rule.told, matings(all + rule.told.n) +
                           " are decided : nmatings = " + std::to_string(ground_.nmatings));
    all += rule.told.n;
    last = &rule.told;
  }
  const std::int64_t others = ground_.nmatings - all;
  if (last != nullptr && others > 0 && others % ground_.unit != 0)
    fault(*last, matings(others) + " are not decided : expected units of " +
                     std::to_string(ground_.unit) + " matings of a male (limitmalematings)");
}

void Contradictions::compare_decided() {
  const auto broken = breaches(set_, candidates_, ground_.relationship, ground_.decided);
  for (std::size_t k = 0; k < broken.size(); ++k) {
    const MatingRule& rule = set_.rules[k];
    if (broken[k] == 0 || rule.kind() == RuleKind::kMin || rule.kind() == RuleKind::kFix) continue;
    fault(rule.told, "the decided matings break this rule by " + std::to_string(broken[k]));
  }
}

void Contradictions::find_limits() {
  for (const MatingRule& rule : set_.rules) {
    if (!rule.applies()) continue;
    const Rule* told = &rule.told;
    if (rule.kind() == RuleKind::kMin && (!least_(rule.a) || least_(rule.a)->n < told->n))
      least_(rule.a) = told;
    if (rule.kind() == RuleKind::kMax && (!most_(rule.a) || most_(rule.a)->n > told->n))
      most_(rule.a) = told;
  }
}

void Contradictions::compare_limits() {
  for (const MatingRule& rule : set_.rules) {
    if (rule.kind() != RuleKind::kMin || !rule.applies()) continue;
    const std::int32_t i = rule.a, least = rule.told.n;
    const std::string wanted = "at least " + matings(least) + " of '" + name(i) + "' : ";
    const std::int32_t limit = candidates_.max_matings(i);
    if (least > limit) fault(rule.told, wanted + "the data file allows " + std::to_string(limit));
    if (most_(i) != nullptr && least > most_(i)->n)
      fault(rule.told, wanted + "line " + std::to_string(most_(i)->line) + " allows " +
                           std::to_string(most_(i)->n));
    if (least > ground_.nmatings)
      fault(rule.told, wanted + "nmatings = " + std::to_string(ground_.nmatings));
  }
}

bool Contradictions::has_partner(std::int32_t i) const {
  const bool is_male = candidates_.is_male(i);
  const int other = is_male ? kFemale : kMale;
  for (std::int32_t k = candidates_.first(other); k <= candidates_.last(other); ++k) {
    if (may_be_used(k) && pairs_.most(is_male ? i : k, is_male ? k : i) > 0) return true;
  }
  return false;
}

void Contradictions::find_partners() {
  for (std::int32_t i = 1; i <= candidates_.ncands; ++i) {
    if (least_(i) == nullptr || least_(i)->n <= decided_(i) || has_partner(i)) continue;
    fault(*least_(i), "'" + name(i) + "' has no permitted partner for " + matings(least_(i)->n));
  }
}

// By group from 1: the first rule that limits the matings of each sire, or of all (0), with it.
std::vector<Contradictions::Limiting> Contradictions::limits_by_group() const {
  std::vector<Limiting> limits(set_.groups.size() + 1);
  for (const MatingRule& rule : set_.rules) {
    if (rule.kind() != RuleKind::kMaxPerGroup || !rule.applies()) continue;
    const std::size_t first = rule.b == 0 ? 1 : static_cast<std::size_t>(rule.b);
    const std::size_t last = rule.b == 0 ? set_.groups.size() : first;
    for (std::size_t group = first; group <= last; ++group)
      limits[group].try_emplace(rule.a, &rule.told);
  }
  return limits;
}

// The later of two rules that limit one sire's matings with both groups; null if there are none.
const Rule* Contradictions::clash(const Limiting& a, const Limiting& b) {
  const auto later = [](const Rule* one, const Rule* other) {
    return one->line < other->line ? other : one;
  };
  if (a.empty() || b.empty()) return nullptr;
  if (a.contains(0)) return later(a.at(0), b.begin()->second);
  if (b.contains(0)) return later(b.at(0), a.begin()->second);
  for (const auto& [sire, rule] : a)
    if (b.contains(sire)) return later(rule, b.at(sire));
  return nullptr;
}

// The matings of a sire with such a dam would count in two limits.
void Contradictions::find_doubly_limited() {
  if (pairs_.gates() == 0) return;
  const std::vector<Limiting> limits = limits_by_group();
  std::set<std::pair<std::int32_t, std::int32_t>> seen;
  const auto group = [&](std::int32_t g) {
    return "'" + printable(set_.groups[static_cast<std::size_t>(g) - 1]) + "'";
  };
  for (std::int32_t dam = candidates_.nmcands + 1; dam <= candidates_.ncands; ++dam) {
    const std::vector<std::int32_t>& its = set_.groups_of(dam);
    for (const std::int32_t g : its) {
      for (const std::int32_t h : its) {
        if (g >= h || !seen.emplace(g, h).second) continue;
        const Rule* rule =
            clash(limits[static_cast<std::size_t>(g)], limits[static_cast<std::size_t>(h)]);
        if (rule != nullptr)
          fault(*rule, "'" + name(dam) + "' is in the groups " + group(g) + " and " + group(h) +
                           " : expected one that is limited for the same sire");
      }
    }
  }
}

class Conflict {
 public:
  Conflict(const PlanGround& ground, const RuleSet& set) : ground_(ground), tried_(set) {}

  std::vector<MatingRule> find() {
    std::vector<MatingRule> rules;
    std::copy_if(
        tried_.rules.begin(), tried_.rules.end(), std::back_inserter(rules),
        [](const MatingRule& rule) { return rule.kind() != RuleKind::kFix && rule.applies(); });
    std::vector<MatingRule> kept;
    if (!holds(kept)) return {};
    rules = needed(kept, false, rules);
    std::sort(rules.begin(), rules.end(),
              [](const MatingRule& a, const MatingRule& b) { return a.told.line < b.told.line; });
    return rules;
  }

 private:
  bool holds(const std::vector<MatingRule>& rules) {
    tried_.rules = rules;
    return can_be_kept(ground_, tried_);
  }
  // Those of `rules` that are needed for a conflict with `kept`. is_changed: since that was tried.
  std::vector<MatingRule> needed(std::vector<MatingRule>& kept, bool is_changed,
                                 std::span<const MatingRule> rules) {
    if (is_changed && !holds(kept)) return {};
    if (rules.size() == 1) return {rules.front()};
    const auto first = rules.first(rules.size() / 2), second = rules.subspan(rules.size() / 2);
    const std::size_t before = kept.size();
    kept.insert(kept.end(), first.begin(), first.end());
    std::vector<MatingRule> found = needed(kept, true, second);
    kept.resize(before);
    kept.insert(kept.end(), found.begin(), found.end());
    const std::vector<MatingRule> of_first = needed(kept, !found.empty(), first);
    kept.resize(before);
    found.insert(found.end(), of_first.begin(), of_first.end());
    return found;
  }

  const PlanGround& ground_;
  RuleSet tried_;
};

}  // namespace

std::vector<RuleFault> contradictions(const PlanGround& ground, const RuleSet& set) {
  return Contradictions(ground, set).find();
}

std::vector<MatingRule> conflicting_rules(const PlanGround& ground, const RuleSet& set) {
  return Conflict(ground, set).find();
}

}  // namespace qob
