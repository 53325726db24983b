#include "ocs/rules/fewest_violations.h"

#include <algorithm>
#include <numeric>

#include "ocs/rules/pair_rules.h"
#include "ocs/rules/pairing_flow.h"

namespace qob {
namespace {

constexpr int kMostBranches = 400;
// The cost of a mating that leaves out one that must be.
constexpr std::int64_t kMust = std::int64_t{1} << 30;

// The limits of a candidate's matings, by rules and as far as the branch goes.
struct UseRange {
  MatingLimits least, most;
  std::int32_t low = 0, high = 0;  // that a plan of this branch must keep
  std::int32_t decided = 0;
};

// What goes beyond rules costs `unit` a mating. Those of a male in one unit cost the same, together
// what they break: so a plan in parts of units is never cheaper than those in whole ones about it.
class Violations {
 public:
  Violations(const PlanGround& ground, const RuleSet& set)
      : candidates_(ground.candidates),
        unit_(ground.unit),
        pairs_(set, ground.candidates, ground.relationship),
        uses_(ground.candidates.ncands) {
    for (std::int32_t i = 1; i <= candidates_.ncands; ++i)
      uses_(i).high = candidates_.max_matings(i);
    for (const auto& [male, female] : ground.decided) {
      ++uses_(male).decided;
      ++uses_(female).decided;
    }
    for (const MatingRule& rule : set.rules) {
      if (!rule.applies()) continue;
      if (rule.kind() == RuleKind::kMin) uses_(rule.a).least.add(rule.told.n);
      if (rule.kind() == RuleKind::kMax) uses_(rule.a).most.add(rule.told.n);
    }
    std::vector<std::int32_t> dams(static_cast<std::size_t>(candidates_.nfcands));
    std::iota(dams.begin(), dams.end(), candidates_.nmcands + 1);
    dams_of_ = pairs_.by_group(dams);
    for (const UseRange& use : uses_) most_minima_ = std::max(most_minima_, use.least.count());
  }

  UseRange& use(std::int32_t i) { return uses_(i); }

  std::int32_t sires() const { return candidates_.nmcands; }
  std::int32_t dams() const { return candidates_.nfcands; }
  std::int32_t gates() const { return pairs_.gates(); }
  const std::vector<std::int32_t>& gates_of(std::int32_t s) const {
    return pairs_.gates_of(male(s));
  }
  std::int32_t sire_of(std::int32_t gate) const { return pairs_.gate(gate).sire - 1; }
  const std::vector<std::int32_t>& dams_of(std::int32_t gate) const {
    return dams_of_[static_cast<std::size_t>(pairs_.gate(gate).group)];
  }
  bool counts_pairs() const { return pairs_.of_pair().count() > 0; }
  std::int32_t gate(std::int32_t s, std::int32_t d) const {
    return pairs_.gate_of(male(s), female(d));
  }
  std::int64_t of_sire(std::int32_t s, std::int32_t n) const {
    const UseRange& use = uses_(male(s));
    if (n > use.high) return kNoRoom;
    const std::int64_t first = n - (n - 1 - use.decided) % unit_;  // of its unit
    std::int64_t cost = 0;
    for (std::int64_t k = first; k < first + unit_; ++k)
      cost += of_use(use, static_cast<std::int32_t>(k));
    return cost;
  }
  std::int64_t of_dam(std::int32_t d, std::int32_t n) const {
    const UseRange& use = uses_(female(d));
    return n > use.high ? kNoRoom : unit_ * of_use(use, n);
  }
  std::int64_t of_pair(std::int32_t s, std::int32_t d, std::int32_t n) const {
    return unit_ * (pairs_.broken(male(s), female(d)) + pairs_.of_pair().below(n));
  }
  std::int64_t of_gate(std::int32_t gate, std::int32_t n) const {
    return unit_ * pairs_.gate(gate).limits.below(n);
  }

  std::int32_t male(std::int32_t s) const { return s + 1; }
  std::int32_t female(std::int32_t d) const { return candidates_.nmcands + d + 1; }

 private:
  // A mating that a minimum still lacks takes a violation away; so as not to cost less than nothing
  // all matings cost as much more.
  std::int64_t of_use(const UseRange& use, std::int32_t n) const {
    const std::int64_t lacking = use.least.count() - use.least.below(n);
    return (n > use.low ? kMust : 0) + most_minima_ - lacking + use.most.below(n);
  }

  const Candidates& candidates_;
  std::int64_t unit_;
  PairRules pairs_;
  Table<UseRange> uses_;
  std::vector<std::vector<std::int32_t>> dams_of_;  // by group
  std::int32_t most_minima_ = 0;                    // of one candidate
};

class Search {
 public:
  Search(const PlanGround& ground, const RuleSet& set, std::int64_t enough)
      : ground_(ground), set_(set), costs_(ground, set) {
    best_.violations = enough + 1;
    for (std::int32_t m = 1; m <= ground.candidates.nmcands; ++m) round_to_units(m, enough == 0);
  }

  LeastBroken run() {
    branch();
    if (best_.known == Known::kNone) {
      if (branches_ > kMostBranches) best_.known = Known::kPerhapsNotBest;
    } else if (branches_ > kMostBranches && best_.violations > 0) {
      best_.known = Known::kPerhapsNotBest;
    }
    return best_;
  }

 private:
  // Narrows the range of a male to whole units, and where all rules are to be kept, to those.
  void round_to_units(std::int32_t male, bool keep_all);
  // The matings of a plan of this branch, males in parts of units; none if there is no plan.
  std::vector<Pair> flow() const;
  std::int64_t violations(std::span<const Pair> matings) const {
    const auto broken = breaches(set_, ground_.candidates, ground_.relationship, matings);
    return std::accumulate(broken.begin(), broken.end(), std::int64_t{0});
  }
  void branch();
  void branch_on(std::int32_t male, std::int32_t uses);
  bool is_over() const {
    return (best_.known != Known::kNone && best_.violations == 0) || branches_ > kMostBranches;
  }

  const PlanGround& ground_;
  const RuleSet& set_;
  Violations costs_;
  LeastBroken best_;
  int branches_ = 0;
};

void Search::round_to_units(std::int32_t male, bool keep_all) {
  UseRange& range = costs_.use(male);
  const std::int32_t unit = ground_.unit, decided = range.decided;
  if (keep_all) {
    const std::int32_t lacking = std::max(range.least.greatest() - decided, 0);
    range.high = std::min(range.high, range.most.bound());
    range.low = decided + (lacking / unit + (lacking % unit != 0)) * unit;
  }
  range.high = decided + (range.high - decided) / unit * unit;
}

std::vector<Pair> Search::flow() const {
  PairingFlow flow(costs_);
  const std::int32_t males = ground_.candidates.nmcands;
  for (const auto& [male, female] : ground_.decided) flow.stand(male - 1, female - males - 1);
  for (auto n = std::ssize(ground_.decided); n < ground_.nmatings; ++n)
    if (!flow.add()) return {};
  std::vector<Pair> matings = ground_.decided;
  flow.for_each_pair([&](std::int32_t s, std::int32_t d, std::int32_t n) {
    matings.insert(matings.end(), static_cast<std::size_t>(n), {costs_.male(s), costs_.female(d)});
  });
  return matings;
}

void Search::branch() {
  if (is_over() || ++branches_ > kMostBranches) return;
  const std::vector<Pair> matings = flow();
  if (std::ssize(matings) != ground_.nmatings) return;
  const std::int64_t broken = violations(matings);
  if (broken >= best_.violations) return;
  Table<std::int32_t> uses(ground_.candidates.nmcands, 0);
  for (const auto& [male, female] : matings) ++uses(male);
  for (std::int32_t m = 1; m <= ground_.candidates.nmcands; ++m) {
    const UseRange& range = costs_.use(m);
    if (uses(m) < range.low) return;  // what must be cannot be
    if ((uses(m) - range.decided) % ground_.unit != 0) return branch_on(m, uses(m));
  }
  best_ = {matings, broken, Known::kBest};
}

// One more unit than there are whole ones, or no more than those.
void Search::branch_on(std::int32_t male, std::int32_t uses) {
  const UseRange whole = costs_.use(male);
  const std::int32_t units = (uses - whole.decided) / ground_.unit;
  const std::int32_t below = whole.decided + units * ground_.unit;
  costs_.use(male).low = below + ground_.unit;
  if (costs_.use(male).low <= whole.high) branch();
  costs_.use(male) = whole;
  costs_.use(male).high = below;
  branch();
  costs_.use(male) = whole;
}

}  // namespace

LeastBroken fewest_violations(const PlanGround& ground, const RuleSet& set, std::int64_t enough) {
  return Search(ground, set, enough).run();
}

bool can_be_kept(const PlanGround& ground, const RuleSet& set) {
  return fewest_violations(ground, set, 0).known != Known::kNone;
}

}  // namespace qob
