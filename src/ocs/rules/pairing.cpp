#include "ocs/rules/pairing.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <unordered_map>
#include <utility>

#include "ocs/rules/pairing_flow.h"

namespace qob {
namespace {

constexpr int kBits = 40;  // of the cost of an inbreeding coefficient of 1

// The limits of a pairing of given uses, at no cost unless costs are set.
class UseLimits {
 public:
  UseLimits(const Selection& selection, const Uses& uses)
      : rules_(selection.rules.pairs), uses_(uses), place_(uses.size(), -1) {
    const Candidates& candidates = selection.candidates;
    for (std::int32_t i = 1; i <= candidates.ncands; ++i) {
      if (uses(i) == 0) continue;
      std::vector<std::int32_t>& parents = candidates.is_male(i) ? sires_ : dams_;
      place_(i) = static_cast<std::int32_t>(parents.size());
      parents.push_back(i);
    }
    dams_of_ = rules_.by_group(dams_);
  }
  // cost(male, female): of a mating, 0 or more. repeat: of one that is not the pair's first,
  // besides.
  template <class Cost>
  void set_costs(Cost cost, std::int64_t repeat) {
    for (const std::int32_t sire : sires_)
      for (const std::int32_t dam : dams_) costs_.push_back(cost(sire, dam));
    repeat_ = repeat;
  }

  std::int32_t sires() const { return static_cast<std::int32_t>(sires_.size()); }
  std::int32_t dams() const { return static_cast<std::int32_t>(dams_.size()); }
  std::int32_t gates() const { return rules_.gates(); }
  const std::vector<std::int32_t>& gates_of(std::int32_t s) const {
    return rules_.gates_of(sire(s));
  }
  std::int32_t sire_of(std::int32_t gate) const { return place(rules_.gate(gate).sire); }
  const std::vector<std::int32_t>& dams_of(std::int32_t gate) const {
    return dams_of_[static_cast<std::size_t>(rules_.gate(gate).group)];
  }
  bool counts_pairs() const { return repeat_ > 0 || rules_.counts_pairs(); }
  std::int32_t gate(std::int32_t s, std::int32_t d) const {
    return rules_.gate_of(sire(s), dam(d));
  }
  std::int64_t of_sire(std::int32_t s, std::int32_t n) const {
    return n <= uses_(sire(s)) ? 0 : kNoRoom;
  }
  std::int64_t of_dam(std::int32_t d, std::int32_t n) const {
    return n <= uses_(dam(d)) ? 0 : kNoRoom;
  }
  std::int64_t of_pair(std::int32_t s, std::int32_t d, std::int32_t n) const {
    if (n > rules_.most(sire(s), dam(d))) return kNoRoom;
    if (costs_.empty()) return 0;
    const auto row = static_cast<std::size_t>(s) * dams_.size();
    return costs_[row + static_cast<std::size_t>(d)] + (n > 1 ? repeat_ : 0);
  }
  std::int64_t of_gate(std::int32_t gate, std::int32_t n) const {
    return n <= rules_.gate(gate).limits.bound() ? 0 : kNoRoom;
  }

  std::int32_t sire(std::int32_t s) const { return sires_[static_cast<std::size_t>(s)]; }
  std::int32_t dam(std::int32_t d) const { return dams_[static_cast<std::size_t>(d)]; }
  // Of a candidate; -1: it has no matings.
  std::int32_t place(std::int32_t i) const { return place_(i); }

 private:
  const PairRules& rules_;
  const Uses& uses_;
  std::int64_t repeat_ = 0;
  std::vector<std::int32_t> sires_, dams_;          // candidates with matings
  Table<std::int32_t, 0> place_;                    // among them
  std::vector<std::int64_t> costs_;                 // by sire and dam
  std::vector<std::vector<std::int32_t>> dams_of_;  // by group
};

// Decided matings first. `first` are made before all others, as far as that costs nothing.
std::vector<Pair> pairs_by_flow(const Selection& selection, const Uses& uses,
                                std::span<const Pair> first, const UseLimits& limits) {
  PairingFlow flow(limits);
  for (const auto& [male, female] : selection.rules.decided)
    flow.stand(limits.place(male), limits.place(female));
  for (const auto& [male, female] : first) {
    const std::int32_t s = limits.place(male), d = limits.place(female);
    if (s >= 0 && d >= 0) flow.place(s, d);
  }
  for (std::int32_t s = 0; s < limits.sires(); ++s) {
    while (flow.matings(s) < uses(limits.sire(s)))
      if (!flow.add(s)) return {};
  }
  std::vector<Pair> pairs = selection.rules.decided;
  flow.for_each_pair([&](std::int32_t s, std::int32_t d, std::int32_t n) {
    pairs.insert(pairs.end(), static_cast<std::size_t>(n), {limits.sire(s), limits.dam(d)});
  });
  return pairs;
}

// Those that are not decided.
std::vector<Pair> without_decided(const Selection& selection, std::span<const Pair> pairs) {
  std::map<Pair, std::int32_t> decided;
  for (const Pair& pair : selection.rules.decided) ++decided[pair];
  std::vector<Pair> others;
  for (const Pair& pair : pairs) {
    const auto found = decided.find(pair);
    if (found == decided.end() || found->second == 0) {
      others.push_back(pair);
    } else {
      --found->second;
    }
  }
  return others;
}

// Matings as they are added and taken away, as far as rules of pairs count them.
class PairCounts {
 public:
  explicit PairCounts(const PairRules& rules) : rules_(rules) {}

  // Whether there is room for another mating of the two.
  bool has_room(std::int32_t male, std::int32_t female) const {
    const std::int32_t most = rules_.most(male, female);
    if (most == 0 || (most < MatingLimits::kNone && most <= count(matings_, key(male, female))))
      return false;
    const std::int32_t gate = rules_.gate_of(male, female);
    return gate == 0 || count(through_, gate) < rules_.gate(gate).limits.bound();
  }
  void add(std::int32_t male, std::int32_t female, std::int32_t by = 1) {
    if (rules_.counts_pairs()) matings_[key(male, female)] += by;
    const std::int32_t gate = rules_.gate_of(male, female);
    if (gate != 0) through_[gate] += by;
  }

 private:
  using Counts = std::unordered_map<std::int64_t, std::int32_t>;
  static std::int64_t key(std::int32_t male, std::int32_t female) {
    return std::int64_t{male} << 32 | female;
  }
  static std::int32_t count(const Counts& counts, std::int64_t of) {
    const auto found = counts.find(of);
    return found == counts.end() ? 0 : found->second;
  }

  const PairRules& rules_;
  Counts matings_, through_;
};

bool keep_pair_rules(const PairRules& rules, std::span<const Pair> pairs) {
  PairCounts counts(rules);
  for (const auto& [male, female] : pairs) {
    if (!counts.has_room(male, female)) return false;
    counts.add(male, female);
  }
  return true;
}

}  // namespace

std::vector<Pair> pairs_of(Mateset mateset) {
  std::vector<Pair> pairs;
  for (std::int64_t j = 1; j <= mateset.nmatings(); ++j)
    pairs.emplace_back(mateset.male(j), mateset.female(j));
  return pairs;
}

void mend_pairs(const Selection& selection, Mateset mateset) {
  if (!selection.rules.pairs.any()) return;
  PairCounts counts(selection.rules.pairs);
  std::vector<std::int64_t> broken;
  for (std::int64_t j = mateset.nmatings(); j >= 1; --j) {  // what is locked first
    const bool is_kept = counts.has_room(mateset.male(j), mateset.female(j));
    if (!is_kept && selection.is_free(j, kFemale)) broken.push_back(j);
    counts.add(mateset.male(j), mateset.female(j));
  }
  // Whether the rows are kept when their females have changed places.
  const auto swap = [&](std::int64_t j, std::int64_t k) {
    const std::int32_t m = mateset.male(j), f = mateset.female(j);
    const std::int32_t n = mateset.male(k), g = mateset.female(k);
    counts.add(m, f, -1);
    counts.add(n, g, -1);
    const bool has_room = counts.has_room(m, g);
    counts.add(m, g);
    const bool is_kept = has_room && counts.has_room(n, f);
    if (is_kept) {
      counts.add(n, f);
      std::swap(mateset.female(j), mateset.female(k));
    } else {
      counts.add(m, g, -1);
      counts.add(m, f);
      counts.add(n, g);
    }
    return is_kept;
  };
  for (const std::int64_t j : broken) {
    for (std::int64_t k = 1; k <= selection.free_rows(); ++k)
      if (k != j && swap(j, k)) break;
  }
}

bool can_be_paired(const Selection& selection, const Uses& uses, std::vector<Pair>& matings) {
  if (!selection.rules.pairs.any()) return true;
  std::vector<Pair> pairs = pairs_by_flow(selection, uses, without_decided(selection, matings),
                                          UseLimits(selection, uses));
  if (std::ssize(pairs) != selection.nmatings) return false;
  matings = std::move(pairs);
  return true;
}

bool can_be_paired(const Selection& selection, Mateset mateset) {
  if (!selection.rules.pairs.any()) return true;
  std::vector<Pair> pairs = pairs_of(mateset);
  return keep_pair_rules(selection.rules.pairs, pairs) ||
         can_be_paired(selection, uses_of(selection.candidates, mateset), pairs);
}

std::vector<Pair> least_inbred_pairs(const Selection& selection, const Relationship& relationship,
                                     bool repeatedmatings, Mateset mateset) {
  const Candidates& candidates = selection.candidates;
  const auto inbreeding = [&](std::int32_t male, std::int32_t female) {
    return 0.5 * cnrm(relationship, candidates, male, female);
  };
  double least = 0.0, most = 1.0;  // relationships from a file may lie beyond
  for (std::int64_t j = 1; !relationship.pedsource && j <= mateset.nmatings(); ++j) {
    for (std::int64_t k = 1; k <= mateset.nmatings(); ++k) {
      const double f = inbreeding(mateset.male(j), mateset.female(k));
      least = std::min(least, f);
      most = std::max(most, f);
    }
  }
  const int bits = kBits - std::max(std::ilogb(most), std::ilogb(std::max(-least, 1.0)));
  const auto cost = [&](double f) { return std::llround(std::ldexp(f, bits)); };
  const Uses uses = uses_of(candidates, mateset);
  UseLimits limits(selection, uses);
  limits.set_costs(
      [&](std::int32_t male, std::int32_t female) {
        return cost(inbreeding(male, female)) - cost(least);
      },
      repeatedmatings ? 0 : cost(2.0));
  return pairs_by_flow(selection, uses, {}, limits);
}

std::vector<Pair> random_pairs(const Selection& selection, Mateset mateset, Random& random) {
  std::vector<Pair> pairs = without_decided(selection, pairs_of(mateset));
  for (std::size_t j = pairs.size(); j > 1; --j) {
    const auto k = static_cast<std::size_t>(random.ceiling_of_draw(static_cast<std::int64_t>(j)));
    std::swap(pairs[j - 1].second, pairs[k - 1].second);
  }
  const Uses uses = uses_of(selection.candidates, mateset);
  return pairs_by_flow(selection, uses, pairs, UseLimits(selection, uses));
}

void enter_pairs(const Selection& selection, const std::vector<Pair>& pairs, Mateset mateset) {
  std::map<std::int32_t, std::vector<std::int32_t>> females;  // by male
  for (const auto& [male, female] : without_decided(selection, pairs))
    females[male].push_back(female);
  for (std::int64_t j = 1; j <= selection.rows(); ++j) {
    std::vector<std::int32_t>& his = females[mateset.male(j)];
    mateset.female(j) = his.back();
    his.pop_back();
  }
}

}  // namespace qob
