// The rules that a breeder sets for a plan, as the file of rules has them: a CSV file with the
// header kind,a,b,value and a rule a line.
//
//   kind           a        b        value
//   fix            sire     dam      n      these matings are decided: they are part of the plan
//   min            animal            n      at least n matings
//   max            animal            n      at most n
//   forbid         sire     dam             these two never
//   group          animal   name            it belongs to that group, and maybe to others
//   forbid-groups  name     name            no mating of one of the first with one of the second
//   max-pair                         n      at most n matings of one pair
//   max-per-group  sire     name     n      at most n matings of the sire with dams of the group;
//                                           no sire: of each sire; no name: with each group
//   max-f                            f      no mating whose offspring are more inbred than that
//
// All rules hold for all matings of a plan, decided ones included.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace qob {

enum class RuleKind : std::uint8_t {
  kFix,
  kMin,
  kMax,
  kForbid,
  kGroup,
  kForbidGroups,
  kMaxPair,
  kMaxPerGroup,
  kMaxF
};

// What a cell of a rule names or tells.
enum class RuleCell : std::uint8_t {
  kNothing,
  kAnimal,
  kSire,
  kDam,
  kSireOrAll,
  kGroup,
  kGroupOrAll,
  kMatings,  // 0 or more
  kNumber,   // 1 or more
  kInbreeding
};

struct RuleForm {
  RuleKind kind;
  std::string_view name;
  RuleCell a, b, value;
};
// Of every kind, in the order of the kinds.
std::span<const RuleForm> rule_forms();
const RuleForm& form_of(RuleKind kind);

constexpr bool names_animal(RuleCell cell) {
  return cell == RuleCell::kAnimal || cell == RuleCell::kSire || cell == RuleCell::kDam ||
         cell == RuleCell::kSireOrAll;
}

struct Rule {
  RuleKind kind = RuleKind::kGroup;
  std::string a, b;       // as they stand in the file; "" for nothing
  std::int32_t n = 0;     // matings
  double f = 0.0;         // inbreeding of offspring
  std::int64_t line = 0;  // of the file, from 1

  // As it stands in a file.
  std::string text() const;
};

}  // namespace qob
