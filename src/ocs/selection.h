// The selection: among whom, how often, by which rules, and what the population brings along. Set
// up once and constant from then on, so that any number of searches can work on one selection at
// the same time.
#pragma once

#include <cstdint>
#include <iterator>

#include "core/tables.h"
#include "ocs/candidates.h"
#include "ocs/mateset.h"
#include "ocs/rules/plan_rules.h"

namespace qob {

// The population as it stands, the ground on which a mateset is judged.
struct Goal {
  double last_f = 0.0;                // mean inbreeding of the last time step's animals
  double last_merit = 0.0;            // their mean breeding value
  double last_genint = 1.0;           // generation interval, time steps
  double last_rel = 0.0;              // average relationship of the last generation
  double vpapv = 0.0;                 // what earlier contributions add to the average relationship,
  Table<double> apv2;                 // and the linear term by candidate
  double mean_merit[2] = {0.0, 0.0};  // by sex, weighted by max_matings
  double k_factor[2] = {1.0, 1.0};    // scale of merit by sex
  double expmerit = 0.0;              // scaled merit when all are used in proportion to max_matings
};

// Rules lock entries of every mateset, and no operator of a search replaces those. Decided matings
// are its last rows; of the others the last male slots and the last females are those of candidates
// that must be used:
//
//   row    1  2  3  4  5  6 | 7  8        slots of two rows: 1 and 4, 2 and 5, 3 and 6
//   male   .  .  A  .  .  A | D  D        A: at least 2 matings
//   female .  .  .  .  b  b | d  e        b: at least 2; D x d and D x e are decided
struct Selection {
  Candidates candidates;
  Goal goal;
  std::int32_t nmatings = 0;          // rows of every mateset
  std::int32_t limitmalematings = 1;  // a male is used in multiples of so many rows
  PlanRules rules = {};

  // Rows that are not decided.
  std::int64_t rows() const { return nmatings - std::ssize(rules.decided); }
  // The male slots of a mateset: slot j is the rows j, j+S, j+2S, ..., which hold one male.
  std::int64_t male_slots() const { return rows() / limitmalematings; }
  std::int32_t unit(std::int32_t i) const { return candidates.is_male(i) ? limitmalematings : 1; }

  // The matings of a candidate in every plan: decided, at least and at most.
  std::int32_t decided(std::int32_t i) const { return rules.empty() ? 0 : rules.decided_uses(i); }
  std::int32_t least(std::int32_t i) const { return rules.empty() ? 0 : rules.least(i); }
  std::int32_t most(std::int32_t i) const {
    return rules.empty() ? candidates.max_matings(i) : rules.most(i);
  }

  // Male slots 1..free_slots() and females of rows 1..free_rows() are not locked.
  std::int64_t free_slots() const { return male_slots() - std::ssize(rules.locked_males); }
  std::int64_t free_rows() const { return rows() - std::ssize(rules.locked_females); }
  bool is_free(std::int64_t row, int sex) const {
    return row <= rows() &&
           (sex == kMale ? (row - 1) % male_slots() < free_slots() : row <= free_rows());
  }
  // The last row with an entry that is not locked.
  std::int64_t last_free_row() const;
  // Enters parents in ascending order, males slot by slot, behind what is locked. False: there are
  // not enough.
  bool enter(const Uses& uses, Mateset mateset) const;
  // Writes the locked entries.
  void lock(Mateset mateset) const;
  // Writes a male into the rows of slot j.
  void fill_slot(Mateset mateset, std::int64_t j, std::int32_t male) const;
};

}  // namespace qob
