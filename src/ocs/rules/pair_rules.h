// Who may be mated with whom, and how often.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <map>
#include <span>
#include <vector>

#include "analysis/relationship.h"
#include "core/tables.h"
#include "ocs/candidates.h"
#include "ocs/rules/breaches.h"
#include "ocs/rules/rule_set.h"

namespace qob {

// Limits of one number of matings, by several rules.
class MatingLimits {
 public:
  static constexpr std::int32_t kNone = std::numeric_limits<std::int32_t>::max();

  void add(std::int32_t n);
  // Gives way, so that a plan with n matings keeps them.
  void yield_to(std::int32_t n) { bound_ = std::max(bound_, n); }

  // The most that a plan may have; of limits from below the greatest is what it must have.
  std::int32_t bound() const { return bound_; }
  std::int32_t greatest() const { return limits_.empty() ? 0 : limits_.back(); }
  // How many of them are below n: rules that the n-th mating goes beyond.
  std::int32_t below(std::int32_t n) const;
  std::int32_t count() const { return static_cast<std::int32_t>(limits_.size()); }

 private:
  std::vector<std::int32_t> limits_;  // ascending
  std::int32_t bound_ = kNone;
};

// A limit of a sire's matings with the dams of a group.
struct Gate {
  std::int32_t sire = 0, group = 0;
  MatingLimits limits;
};

class PairRules {
 public:
  // All pairs are permitted.
  PairRules() = default;
  PairRules(const RuleSet& set, const Candidates& candidates, const Relationship& relationship);

  bool any() const { return !broken_.empty() || of_pair_.count() > 0 || !gates_.empty(); }
  // The rules that each mating of the two breaks.
  std::int32_t broken(std::int32_t male, std::int32_t female) const {
    return broken_.empty() ? 0 : broken_[place(male, female)];
  }
  const MatingLimits& of_pair() const { return of_pair_; }
  bool counts_pairs() const { return of_pair_.count() > 0 || !exceptions_.empty(); }
  // Gates are numbered from 1. 0: the pair goes through none.
  std::int32_t gates() const { return static_cast<std::int32_t>(gates_.size()); }
  std::int32_t gate_of(std::int32_t male, std::int32_t female) const;
  // The places in `dams`, from 0, of those that are in each group, by group from 1.
  std::vector<std::vector<std::int32_t>> by_group(std::span<const std::int32_t> dams) const;
  const Gate& gate(std::int32_t number) const {
    return gates_[static_cast<std::size_t>(number) - 1];
  }
  const std::vector<std::int32_t>& gates_of(std::int32_t male) const {
    static const std::vector<std::int32_t> none;
    return gates_.empty() ? none : gates_of_(male);
  }
  // The matings of the two that a plan may have.
  std::int32_t most(std::int32_t male, std::int32_t female) const;

  // Gives way where these matings break rules, and as far as they do.
  void yield_to(std::span<const Pair> matings);

 private:
  std::size_t place(std::int32_t male, std::int32_t female) const {
    return static_cast<std::size_t>(male - 1) * females_ +
           static_cast<std::size_t>(female - males_ - 1);
  }
  void take(const RuleSet& set, const MatingRule& rule, const Candidates& candidates,
            const Relationship& relationship);
  void forbid_inbred(double limit, const Candidates& candidates, const Relationship& relationship);
  void forbid_groups(const RuleSet& set, const MatingRule& rule, const Candidates& candidates);
  void limit_groups(const RuleSet& set, const MatingRule& rule);
  void break_pair(std::int32_t male, std::int32_t female);

  std::int32_t males_ = 0;
  std::size_t females_ = 0;
  std::vector<std::uint8_t> broken_;  // by male and female; none where no rule forbids a pair
  MatingLimits of_pair_;
  std::vector<Gate> gates_;
  Table<std::vector<std::int32_t>> gates_of_;   // by male: their numbers
  Table2<std::int32_t> gate_at_;                // by group and male: its number
  Table<std::vector<std::int32_t>> groups_of_;  // by candidate
  std::vector<char> has_dam_;                   // by group, from 1: a female candidate
  std::map<Pair, std::int32_t> exceptions_;     // matings of pairs to which rules give way
};

}  // namespace qob
