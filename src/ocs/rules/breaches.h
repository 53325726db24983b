// Whether matings keep rules.
#pragma once

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "analysis/relationship.h"
#include "ocs/candidates.h"
#include "ocs/rules/rule_set.h"

namespace qob {

// A male and a female, by their candidate numbers.
using Pair = std::pair<std::int32_t, std::int32_t>;

// Of each rule the matings by which it is broken, too many or too few; 0: it is kept.
std::vector<std::int64_t> breaches(const RuleSet& set, const Candidates& candidates,
                                   const Relationship& relationship, std::span<const Pair> matings);

// Whether offspring of the two are more inbred than the limit.
bool is_too_inbred(const Candidates& candidates, const Relationship& relationship,
                   std::int32_t male, std::int32_t female, double limit);

}  // namespace qob
