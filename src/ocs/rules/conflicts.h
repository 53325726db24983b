// Rules that cannot be kept: by themselves, or not together.
#pragma once

#include <vector>

#include "ocs/rules/fewest_violations.h"
#include "ocs/rules/rules_file.h"

namespace qob {

// What contradicts the data, the decided matings or another rule outright.
std::vector<RuleFault> contradictions(const PlanGround& ground, const RuleSet& set);

// Some of the rules, by ascending line, of which no plan keeps all, but one all others where any
// one is left out (Junker 2004, Proc. 19th Nat. Conf. Artificial Intelligence, 167). None where
// there is no plan even without rules. set: rules that cannot be kept. Decided matings always are.
std::vector<MatingRule> conflicting_rules(const PlanGround& ground, const RuleSet& set);

}  // namespace qob
