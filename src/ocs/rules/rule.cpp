#include "ocs/rules/rule.h"

#include <array>

#include "core/csv_row.h"
#include "core/namelist.h"

namespace qob {
namespace {

using enum RuleCell;

constexpr std::array<RuleForm, 9> kForms = {{
    {RuleKind::kFix, "fix", kSire, kDam, kNumber},
    {RuleKind::kMin, "min", kAnimal, kNothing, kMatings},
    {RuleKind::kMax, "max", kAnimal, kNothing, kMatings},
    {RuleKind::kForbid, "forbid", kSire, kDam, kNothing},
    {RuleKind::kGroup, "group", kAnimal, kGroup, kNothing},
    {RuleKind::kForbidGroups, "forbid-groups", kGroup, kGroup, kNothing},
    {RuleKind::kMaxPair, "max-pair", kNothing, kNothing, kNumber},
    {RuleKind::kMaxPerGroup, "max-per-group", kSireOrAll, kGroupOrAll, kMatings},
    {RuleKind::kMaxF, "max-f", kNothing, kNothing, kInbreeding},
}};

}  // namespace

std::span<const RuleForm> rule_forms() { return kForms; }

const RuleForm& form_of(RuleKind kind) { return kForms[static_cast<std::size_t>(kind)]; }

std::string Rule::text() const {
  const RuleForm& form = form_of(kind);
  const std::string value = form.value == kNothing      ? ""
                            : form.value == kInbreeding ? literal(f)
                                                        : literal(n);
  std::string row = csv_row({form.name, a, b, value});
  row.pop_back();
  return row;
}

}  // namespace qob
