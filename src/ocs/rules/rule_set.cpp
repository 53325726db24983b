#include "ocs/rules/rule_set.h"

#include <algorithm>
#include <map>
#include <utility>

#include "core/lexer.h"
#include "core/text.h"

namespace qob {
namespace {

std::string quoted(const std::string& text) { return "'" + printable(text) + "'"; }

class Finder {
 public:
  Finder(const Pedigree& pedigree, const Candidates& candidates, std::vector<RuleFault>& faults)
      : pedigree_(pedigree), faults_(faults), candidate_(pedigree.maxid, kNoCandidate) {
    for (std::int32_t i = 1; i <= candidates.ncands; ++i) candidate_(candidates.cands(i)) = i;
    set_.groups_of.assign(candidates.ncands, {});
  }

  RuleSet find(const std::vector<Rule>& rules);

 private:
  void take_member(const Rule& rule);
  std::int32_t find(const Rule& rule, RuleCell cell, const std::string& name);
  std::int32_t animal(const Rule& rule, RuleCell cell, const std::string& identifier);
  std::int32_t group(const Rule& rule, const std::string& name);
  void expect_new_pair(MatingRule& rule);
  std::int32_t fault(const Rule& rule, std::string text) {
    faults_.push_back({rule.line, std::move(text)});
    return kNoCandidate;
  }

  const Pedigree& pedigree_;
  std::vector<RuleFault>& faults_;
  Table<std::int32_t> candidate_;                                          // by animal
  std::map<std::string, std::int32_t> group_;                              // by name
  std::map<std::pair<std::int32_t, std::int32_t>, std::int64_t> decided_;  // lines, by pair
  RuleSet set_;
};

std::int32_t Finder::animal(const Rule& rule, RuleCell cell, const std::string& identifier) {
  std::int32_t id = 0;
  const bool is_number = to_integer(identifier, id) == 0;
  const IdTree::Found found = is_number ? pedigree_.ids.find(id) : IdTree::Found{};
  if (!found.in_tree || found.number < 1 || found.number > pedigree_.maxid)
    return fault(rule, quoted(identifier) + " is not in the data file");
  const std::int32_t sex = pedigree_.sex(found.number);
  if ((cell == RuleCell::kSire || cell == RuleCell::kSireOrAll) && sex == kFemale)
    return fault(rule, "sire " + quoted(identifier) + " is female : expected a male");
  if (cell == RuleCell::kDam && sex == kMale)
    return fault(rule, "dam " + quoted(identifier) + " is male : expected a female");
  const std::int32_t candidate = candidate_(found.number);
  const bool is_needed = rule.kind == RuleKind::kFix || (rule.kind == RuleKind::kMin && rule.n > 0);
  if (candidate == kNoCandidate && is_needed)
    return fault(rule, quoted(identifier) +
                           " is no candidate : expected one with matings above 0 in the data file");
  return candidate;
}

std::int32_t Finder::group(const Rule& rule, const std::string& name) {
  const auto found = group_.find(name);
  if (found != group_.end()) return found->second;
  return fault(rule, "no animal belongs to the group " + quoted(name) +
                         " : expected rows group,ANIMAL," + printable(name) + ",");
}

std::int32_t Finder::find(const Rule& rule, RuleCell cell, const std::string& name) {
  if (name.empty()) return 0;
  return names_animal(cell) ? animal(rule, cell, name) : group(rule, name);
}

void Finder::take_member(const Rule& rule) {
  const std::int32_t member = animal(rule, RuleCell::kAnimal, rule.a);
  const auto [at, is_new] =
      group_.try_emplace(rule.b, static_cast<std::int32_t>(group_.size()) + 1);
  if (is_new) set_.groups.push_back(rule.b);
  if (member == kNoCandidate) return;
  std::vector<std::int32_t>& groups = set_.groups_of(member);
  const auto place = std::lower_bound(groups.begin(), groups.end(), at->second);
  if (place == groups.end() || *place != at->second) groups.insert(place, at->second);
}

void Finder::expect_new_pair(MatingRule& rule) {
  if (rule.kind() != RuleKind::kFix || !rule.applies()) return;
  const auto [at, is_new] = decided_.try_emplace({rule.a, rule.b}, rule.told.line);
  if (!is_new)
    rule.a =
        fault(rule.told, "matings of these two are decided on line " + std::to_string(at->second) +
                             " already : expected one row a pair");
}

RuleSet Finder::find(const std::vector<Rule>& rules) {
  for (const Rule& rule : rules)
    if (rule.kind == RuleKind::kGroup) take_member(rule);
  for (const Rule& rule : rules) {
    if (rule.kind == RuleKind::kGroup) continue;
    const RuleForm& form = form_of(rule.kind);
    MatingRule found{rule, 0, 0};
    found.a = find(rule, form.a, rule.a);
    found.b = find(rule, form.b, rule.b);
    expect_new_pair(found);
    set_.rules.push_back(std::move(found));
  }
  return std::move(set_);
}

}  // namespace

bool RuleSet::is_in(std::int32_t candidate, std::int32_t group) const {
  const std::vector<std::int32_t>& its = groups_of(candidate);
  return std::binary_search(its.begin(), its.end(), group);
}

RuleSet rule_set(const RulesFile& file, const Pedigree& pedigree, const Candidates& candidates,
                 std::vector<RuleFault>& faults) {
  return Finder(pedigree, candidates, faults).find(file.rules);
}

}  // namespace qob
