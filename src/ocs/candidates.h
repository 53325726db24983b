// The selection candidates and the relationships among them.
//
// Candidates are numbered 1..ncands, males first (1..nmcands), then females, each sex in ascending
// animal number. A mateset names its parents by these numbers, and every table of the selection is
// indexed by them. They are filled when the selection is set up and constant from then on.
#pragma once

#include <cstdint>

#include "analysis/relationship.h"
#include "core/tables.h"
#include "core/text.h"

namespace qob {

inline constexpr int kMale = 1;
inline constexpr int kFemale = 2;

struct Candidates {
  std::int32_t nmcands = 0, nfcands = 0, ncands = 0;
  Table<std::int32_t> cands;               // animal number
  Table<std::int32_t> max_matings;         // most matings it may have
  Table<double> merit;                     // estimated breeding value
  Table<std::int64_t> age;                 // age class, 1 = born in the last time step
  Table<double> f;                         // inbreeding coefficient
  Table<char> unknown_parents;             // 1: at least one, by a pedigree that relates it
  Table<std::int32_t> previous_offspring;  // in the pedigree, as a sire or as a dam by its sex
  Table<std::int32_t> old_id;              // identifier in the data file
  Table<Text<15>> description;             // text in the data file
  std::int32_t birth_time = 0;             // time step of the generation to be planned
  std::int32_t nlast = 0;                  // animals born in the time step before

  bool is_male(std::int64_t i) const { return i >= 1 && i <= nmcands; }
  bool is_female(std::int64_t i) const { return i > nmcands && i <= ncands; }
  bool has_unknown_parent(std::int32_t i) const { return unknown_parents(i) != 0; }
  // The candidates of a sex are first(sex)..last(sex).
  std::int32_t first(int sex) const { return sex == kMale ? 1 : nmcands + 1; }
  std::int32_t last(int sex) const { return sex == kMale ? nmcands : ncands; }
};

// The relationship of candidates a and b (1 + F for a candidate with itself). Candidate 0 stops
// the run.
inline double cnrm(const Relationship& relationship, const Candidates& candidates, std::int32_t a,
                   std::int32_t b) {
  if (a == 0 || b == 0) stop_at_index_zero();
  return nrmelement(relationship, relationship.nrm_id(candidates.cands(a)),
                    relationship.nrm_id(candidates.cands(b)));
}

}  // namespace qob
