#include "ocs/rules/set_up_rules.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "core/text.h"
#include "ocs/rules/conflicts.h"
#include "ocs/rules/pairing.h"
#include "system/process.h"

namespace qob {
namespace {

constexpr std::int64_t kMostDecided = 10'000'000;  // more than any plan has

// As it is named.
std::string file_of(const Run& run) {
  return std::string(adjustl_trim(run.parameters.rules.rulesfile));
}

void tell(Units& units, const std::string& text) {
  units.err.write_line(text);
  units.log.write_line(text);
}

std::string count_of(std::int64_t n, const std::string& what) {
  return std::to_string(n) + " " + what + (n == 1 ? "" : "s");
}

std::string at_line(const std::string& file, std::int64_t line, const std::string& text) {
  return printable(file) + ":" + std::to_string(line) + ": " + text;
}
std::string row_of(const std::string& file, const MatingRule& rule) {
  return at_line(file, rule.told.line, printable(rule.told.text()));
}

void stop_at(Run& run, std::vector<RuleFault> faults) {
  if (faults.empty()) return;
  std::stable_sort(faults.begin(), faults.end(),
                   [](const RuleFault& a, const RuleFault& b) { return a.line < b.line; });
  faults.erase(std::unique(faults.begin(), faults.end()), faults.end());
  Units& units = run.journal.units;
  for (const RuleFault& fault : faults) tell(units, at_line(file_of(run), fault.line, fault.text));
  handle_error(units, "ERROR in file of rules " + printable(file_of(run)) + " : " +
                          count_of(std::ssize(faults), "fault"));
}

void stop_at_units(const Selection& selection, Units& units) {
  const std::int64_t others = selection.rows();
  if (others % selection.limitmalematings == 0) return;
  handle_error(units, "ERROR: ", others, " matings that are not decided do not fit into units of ",
               selection.limitmalematings, " matings of a male (LimitMaleMatings)");
}

PlanGround ground_of(const Selection& selection, const Relationship& relationship) {
  return {selection.candidates, relationship, selection.nmatings, selection.limitmalematings,
          selection.rules.decided};
}

[[noreturn]] void stop_at_conflict(const PlanGround& ground, const PlanRules& rules, Units& units) {
  const std::vector<MatingRule> conflict = conflicting_rules(ground, rules.set);
  if (conflict.empty())
    handle_error(units, "ERROR: There is no plan of ", ground.nmatings,
                 " matings within the limits of the data and the decided matings");
  tell(units, printable(rules.file) + ": rules that cannot hold together" +
                  (ground.decided.empty() ? ":" : ", with the decided matings:"));
  for (const MatingRule& rule : conflict) tell(units, row_of(rules.file, rule));
  handle_error(units, "ERROR in file of rules ", printable(rules.file),
               " : no plan keeps all rules");
}

// What the rules say of a candidate's matings, and how far they give way to the plan.
void set_uses(const Selection& selection, bool give_way, PlanRules& rules) {
  const Candidates& candidates = selection.candidates;
  Table<std::int32_t> uses(candidates.ncands, 0);
  rules.decided_uses.assign(candidates.ncands, 0);
  rules.least.assign(candidates.ncands, 0);
  rules.most = candidates.max_matings;
  for (const auto& [male, female] : rules.decided) {
    ++rules.decided_uses(male);
    ++rules.decided_uses(female);
  }
  for (const auto& [male, female] : rules.plan) {
    ++uses(male);
    ++uses(female);
  }
  for (const MatingRule& rule : rules.set.rules) {
    if (!rule.applies()) continue;
    const std::int32_t n = rule.told.n;
    if (rule.kind() == RuleKind::kMin)
      rules.least(rule.a) = std::max(rules.least(rule.a), give_way ? std::min(n, uses(rule.a)) : n);
    if (rule.kind() == RuleKind::kMax)
      rules.most(rule.a) = std::min(rules.most(rule.a), give_way ? std::max(n, uses(rule.a)) : n);
  }
}

// Whole units besides the decided matings; entries for those that must be used.
void lock_entries(const Selection& selection, PlanRules& rules) {
  rules.locked_males.clear();
  rules.locked_females.clear();
  for (std::int32_t i = 1; i <= selection.candidates.ncands; ++i) {
    const std::int32_t unit = selection.unit(i), decided = rules.decided_uses(i);
    const std::int32_t units = (std::max(rules.least(i) - decided, 0) + unit - 1) / unit;
    rules.least(i) = decided + units * unit;
    rules.most(i) = decided + (rules.most(i) - decided) / unit * unit;
    auto& locked = selection.candidates.is_male(i) ? rules.locked_males : rules.locked_females;
    locked.insert(locked.end(), static_cast<std::size_t>(units), i);
  }
}

std::int64_t total(const std::vector<std::int64_t>& broken) {
  std::int64_t sum = 0;
  for (const std::int64_t n : broken) sum += n;
  return sum;
}

}  // namespace

FoundRules find_rules(Run& run, const Pedigree& pedigree, const Candidates& candidates) {
  if (!run.parameters.rules.has_file()) return {};
  RulesFile file;
  const int status = read_rules(run.files.path(file_of(run)), file);
  if (status != 0)
    handle_error(run.journal.units, "ERROR: The file of rules ", printable(file_of(run)),
                 " cannot be read : ", error_text(status));
  RuleSet set = rule_set(file, pedigree, candidates, file.faults);
  return {std::move(set), std::move(file.faults)};
}

std::vector<Pair> decided_matings(const RuleSet& set, std::int32_t nmatings) {
  std::vector<Pair> decided;
  for (const MatingRule& rule : set.rules) {
    if (rule.kind() != RuleKind::kFix || !rule.applies()) continue;
    if (std::ssize(decided) > kMostDecided) break;
    const std::int64_t n = std::min<std::int64_t>(rule.told.n, std::int64_t{nmatings} + 1);
    decided.insert(decided.end(), static_cast<std::size_t>(n), {rule.a, rule.b});
  }
  std::sort(decided.begin(), decided.end());
  return decided;
}

LeastBroken apply_rules(bool give_way, const Relationship& relationship, Selection& selection) {
  constexpr std::int64_t kAny = std::numeric_limits<std::int32_t>::max();
  PlanRules& rules = selection.rules;
  LeastBroken found =
      fewest_violations(ground_of(selection, relationship), rules.set, give_way ? kAny : 0);
  rules.plan = found.matings;
  const bool is_broken = !rules.plan.empty() && found.violations > 0;
  rules.violations = is_broken ? found.violations : 0;
  set_uses(selection, is_broken, rules);
  lock_entries(selection, rules);
  if (selection.free_slots() < 0 || selection.free_rows() < 0) return {};
  rules.pairs = PairRules(rules.set, selection.candidates, relationship);
  if (is_broken) rules.pairs.yield_to(rules.plan);
  return found;
}

void set_up_rules(Run& run, FoundRules found, const Relationship& relationship,
                  Selection& selection) {
  const MatingRules& wanted = run.parameters.rules;
  if (!wanted.has_file()) return;
  Units& units = run.journal.units;
  PlanRules& rules = selection.rules;
  rules.file = file_of(run);
  rules.set = std::move(found.set);
  rules.decided = decided_matings(rules.set, selection.nmatings);
  const PlanGround ground = ground_of(selection, relationship);
  for (RuleFault& fault : contradictions(ground, rules.set))
    found.faults.push_back(std::move(fault));
  stop_at(run, std::move(found.faults));
  stop_at_units(selection, units);
  const LeastBroken least = apply_rules(!wanted.keep_all, relationship, selection);
  if (least.known == Known::kNone) stop_at_conflict(ground, rules, units);
  if (least.matings.empty() || least.violations == 0) return;
  tell(units, printable(rules.file) + ": no plan keeps all rules : planned with " +
                  count_of(least.violations, "violation") +
                  (least.known == Known::kBest ? "" : ", perhaps not the fewest"));
}

std::int64_t tell_breaches(const Selection& selection, const Relationship& relationship,
                           Mateset mateset, Units& units) {
  const PlanRules& rules = selection.rules;
  if (rules.empty()) return 0;
  const auto broken = breaches(rules.set, selection.candidates, relationship, pairs_of(mateset));
  for (Unit* unit : {&units.out, &units.log}) {
    unit->write_line(printable(rules.file) + ": " + count_of(std::ssize(broken), "rule") +
                     ", broken by " + std::to_string(total(broken)));
    for (std::size_t k = 0; k < broken.size(); ++k) {
      if (broken[k] > 0)
        unit->write_line(row_of(rules.file, rules.set.rules[k]) + " : broken by " +
                         std::to_string(broken[k]));
    }
  }
  return total(broken);
}

}  // namespace qob
