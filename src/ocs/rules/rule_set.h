// Rules with their animals and groups found among the candidates.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ocs/candidates.h"
#include "ocs/rules/rules_file.h"
#include "pedigree/pedigree.h"

namespace qob {

inline constexpr std::int32_t kNoCandidate = -1;

struct MatingRule {
  Rule told;                  // as the file has it
  std::int32_t a = 0, b = 0;  // candidates, or groups from 1; 0: none is named

  RuleKind kind() const { return told.kind; }
  // Whether the animals that it names are candidates.
  bool applies() const { return a != kNoCandidate && b != kNoCandidate; }
};

struct RuleSet {
  std::vector<MatingRule> rules;               // in the order of the file, but members of groups
  std::vector<std::string> groups;             // names
  Table<std::vector<std::int32_t>> groups_of;  // by candidate: numbers of groups, ascending

  bool empty() const { return rules.empty(); }
  bool is_in(std::int32_t candidate, std::int32_t group) const;
};

// pedigree: with the sexes and identifiers of all animals. What animals or groups do not fit is
// added to the faults.
RuleSet rule_set(const RulesFile& file, const Pedigree& pedigree, const Candidates& candidates,
                 std::vector<RuleFault>& faults);

}  // namespace qob
