// Rules from their file to what they ask of every plan.
#pragma once

#include "core/qobtypestools.h"
#include "ocs/rules/fewest_violations.h"
#include "ocs/rules/rule_set.h"
#include "ocs/selection.h"
#include "pedigree/pedigree.h"

namespace qob {

struct FoundRules {
  RuleSet set;
  std::vector<RuleFault> faults;
};

// Reads the rules of the run, if it has any, and finds their animals.
FoundRules find_rules(Run& run, const Pedigree& pedigree, const Candidates& candidates);

// Works out what they ask of a selection that is complete otherwise. Stops with all faults and
// contradictions, and with rules that cannot hold together, unless these may give way to a plan of
// fewest violations, which is told.
void set_up_rules(Run& run, FoundRules found, const Relationship& relationship,
                  Selection& selection);

// Sets what rules ask of the selection, which are in its rules by now: their file, the set and the
// decided matings. give_way: rules that cannot hold together give way to the plan that breaks them
// least. Returns what was found of that.
LeastBroken apply_rules(bool give_way, const Relationship& relationship, Selection& selection);
// The matings that a set of rules decides; of each row no more than one beyond nmatings.
std::vector<Pair> decided_matings(const RuleSet& set, std::int32_t nmatings);

// Tells of each rule that these matings break, on standard output and in the log. Returns by how
// many matings they do in all.
std::int64_t tell_breaches(const Selection& selection, const Relationship& relationship,
                           Mateset mateset, Units& units);

}  // namespace qob
