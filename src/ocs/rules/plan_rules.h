// What rules ask of every plan, worked out once for a selection.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/tables.h"
#include "ocs/rules/breaches.h"
#include "ocs/rules/pair_rules.h"
#include "ocs/rules/rule_set.h"

namespace qob {

struct PlanRules {
  std::string file;  // as it is named; "": there are none
  RuleSet set;
  std::vector<Pair> decided;         // matings, as often as they are
  Table<std::int32_t> decided_uses;  // by candidate: its decided matings,
  Table<std::int32_t> least, most;   // and all of them, of males in whole units besides the decided
  // Candidates that must be used besides, a male once a slot.
  std::vector<std::int32_t> locked_males, locked_females;
  PairRules pairs;
  std::int64_t violations = 0;  // of a plan that breaks as few as possible
  std::vector<Pair> plan;       // that one, with the decided matings; none if none is known

  bool empty() const { return file.empty(); }
};

}  // namespace qob
