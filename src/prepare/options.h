// How a herd book is to be read and who in it may be mated.
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ocs/rules/rules_file.h"
#include "prepare/findings.h"
#include "prepare/words.h"

namespace qob {

// Units of time steps. kAuto: years if they part every parent from its offspring, else months if
// they do, else the depth of the pedigree.
enum class Step : std::uint8_t { kAuto, kYear, kSeason, kQuarter, kMonth, kDays, kGeneration };
// As --step names them, where days have a number for a name.
inline constexpr std::array<std::string_view, 7> kStepNames = {
    "auto", "year", "season", "quarter", "month", "days", "generation"};

// What 3/4/2001 is.
enum class DayOrder : std::uint8_t { kByColumn, kDayFirst, kMonthFirst };

enum class MissingEbv : std::uint8_t { kIsAFault, kIsTheMean, kNoneIsRead };

// Who of a sex is a candidate: how many matings it may have, and its age when the offspring are
// born, in whole years, or in steps where these are no parts of years.
struct AgeRule {
  std::optional<std::int32_t> matings;  // none: as its column says
  std::int32_t youngest = 0, oldest = std::numeric_limits<std::int32_t>::max();

  bool has_ages() const {
    return youngest > 0 || oldest < std::numeric_limits<std::int32_t>::max();
  }
};

// The breeder's rules of matings, in which animals have the identifiers of the herd book.
struct MatingRulesOption {
  std::string name;  // of their file, for what is wrong in it
  RulesFile file;
};

struct PrepareOptions {
  std::vector<std::pair<Field, std::string>> columns;  // headings given by name, or positions
  bool header = true;                                  // false: columns have positions alone
  std::vector<std::string> unknown;                    // more words for an unknown parent
  DayOrder day_order = DayOrder::kByColumn;
  bool decimals = false;  // marks before three digits part decimals, not thousands
  Step step = Step::kAuto;
  std::int32_t days = 0;                                     // of Step::kDays
  std::array<std::optional<AgeRule>, 2> rules;               // of males, of females
  std::optional<std::pair<std::string, std::string>> alive;  // column and value of candidates
  double min_completeness = 0.0;                             // over five generations, 0 to 1
  bool parents_known = false;                                // of every candidate
  MissingEbv missing_ebv = MissingEbv::kIsAFault;
  std::int32_t matings = 0;  // to plan; 0: one for each female, as far as the males' suffice
  std::optional<MatingRulesOption> mating_rules;
  std::vector<Kind> accepted;
};

}  // namespace qob
