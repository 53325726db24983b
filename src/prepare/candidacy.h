// Who of a herd may be mated.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "prepare/herd.h"
#include "prepare/time_steps.h"

namespace qob {

inline constexpr std::int32_t kCompletenessGenerations = 5;

struct LeftOutText {
  std::string_view name;  // for programs
  std::string_view text;  // behind a number of animals
};
const LeftOutText& text_of(LeftOut rule);

// What is told of the candidates of a sex, and of those whom a rule left out.
struct Candidacy {
  std::int64_t count = 0, both_parents_known = 0, matings = 0;
  double completeness = 0.0;                              // mean of the candidates
  std::array<std::int64_t, kLeftOutCount> left_out = {};  // by rule
};

// Sets the herd's matings to those that the rules leave, who is left out by which, and the breeding
// values of candidates that have none to what the options say; without such an option they are
// faults. completeness: pedigree completeness index by animal.
std::array<Candidacy, 2> choose_candidates(Book& book, const TimeSteps& steps,
                                           const Table<double>& completeness);

// How many matings to plan: as many as asked for, else one for each female, as far as the
// candidates may have so many, which is told if not; -1 where there are no candidates of a sex.
std::int64_t planned_matings(Book& book, const std::array<Candidacy, 2>& candidates);

// Pedigree completeness indices over five generations (analysis/animal_statistics), by animal.
Table<double> completeness_of(const Herd& herd);

}  // namespace qob
