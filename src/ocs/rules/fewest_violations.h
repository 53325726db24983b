// The plan that breaks rules least, and whether any keeps them all.
#pragma once

#include <cstdint>
#include <vector>

#include "analysis/relationship.h"
#include "ocs/candidates.h"
#include "ocs/rules/breaches.h"
#include "ocs/rules/rule_set.h"

namespace qob {

// What every plan keeps, whatever the rules: so many matings, the limits of the data, decided
// matings, and males in whole units besides those.
struct PlanGround {
  const Candidates& candidates;
  const Relationship& relationship;
  std::int32_t nmatings = 0, unit = 1;
  std::vector<Pair> decided;
};

enum class Known : std::uint8_t { kBest, kPerhapsNotBest, kNone };

struct LeastBroken {
  std::vector<Pair> matings;    // with the decided ones, which come first
  std::int64_t violations = 0;  // matings too many and too few, summed over the rules
  Known known = Known::kNone;   // kNone: there is no plan at all, or none was found
};

// A flow over all candidates in which what goes beyond a rule costs 1. Whole units of males are
// branched on (Land & Doig 1960, Econometrica 28:497), as long as that does not take too long.
// enough: plans with more violations are of no use.
LeastBroken fewest_violations(const PlanGround& ground, const RuleSet& set, std::int64_t enough);

// Whether there is a plan that keeps all of them; true also if that is not known.
bool can_be_kept(const PlanGround& ground, const RuleSet& set);

}  // namespace qob
