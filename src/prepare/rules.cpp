#include "prepare/rules.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>

#include "core/identifier_index.h"
#include "core/letters.h"

namespace qob {
namespace {

IdentifierIndex index_of(const Herd& herd) {
  std::vector<Named> names;
  for (std::int32_t i = 1; i <= herd.count(); ++i) names.emplace_back(herd.identifier(i), i);
  sort_by_identifier(names);
  return IdentifierIndex(std::move(names));
}

const std::array<std::string, 3> kSexes = {" is of unknown sex", " is a male", " is a female"};

bool asks_for_matings(const Rule& rule) {
  return rule.kind == RuleKind::kFix || (rule.kind == RuleKind::kMin && rule.n > 0);
}

class Search {
 public:
  Search(const Herd& herd, std::vector<RuleFault> faults)
      : herd_(herd), known_(index_of(herd)), faults_(std::move(faults)) {}

  std::vector<HerdRule> find(const std::vector<Rule>& file) {
    std::vector<HerdRule> rules;
    for (const Rule& rule : file) {
      const RuleForm& form = form_of(rule.kind);
      const std::size_t before = faults_.size();
      const std::int32_t a = animal(rule, form.a, rule.a), b = animal(rule, form.b, rule.b);
      if (faults_.size() == before) rules.push_back({rule, a, b});
    }
    return rules;
  }

  const std::vector<RuleFault>& faults_by_line() {
    std::stable_sort(faults_.begin(), faults_.end(),
                     [](const RuleFault& a, const RuleFault& b) { return a.line < b.line; });
    return faults_;
  }

 private:
  std::int32_t animal(const Rule& rule, RuleCell cell, std::string_view name) {
    if (!names_animal(cell) || name.empty()) return 0;
    const std::int32_t i = known_.find(without_blanks(name));  // as cells of the herd book are
    const std::string fault = i == 0 ? " is not in the herd book : expected one of its identifiers"
                                     : fault_of(rule, cell, i);
    if (!fault.empty()) faults_.push_back({rule.line, "\"" + excerpt(name) + "\"" + fault});
    return i;
  }

  std::string fault_of(const Rule& rule, RuleCell cell, std::int32_t i) const {
    const int expected = cell == RuleCell::kAnimal ? 0 : cell == RuleCell::kDam ? 2 : 1;
    const int sex = herd_.sex(i);
    if (expected != 0 && sex != expected) {
      return kSexes[static_cast<std::size_t>(sex)] + " : expected a " +
             (expected == 1 ? "sire" : "dam");
    }
    return asks_for_matings(rule) && herd_.matings(i) == 0
               ? " is no candidate : expected one that may have matings"
               : "";
  }

  const Herd& herd_;
  IdentifierIndex known_;
  std::vector<RuleFault> faults_;
};

}  // namespace

std::vector<HerdRule> find_rules(Book& book) {
  if (!book.options.mating_rules) return {};
  const auto& [name, file] = *book.options.mating_rules;
  Search search(book.herd, file.faults);
  std::vector<HerdRule> rules;
  if (book.herd.count() > 0) rules = search.find(file.rules);
  for (const RuleFault& fault : search.faults_by_line()) {
    book.findings.add(
        {Kind::kRule, 0, 0, "", name + ":" + std::to_string(fault.line) + ": " + fault.text, ""});
  }
  return rules;
}

}  // namespace qob
