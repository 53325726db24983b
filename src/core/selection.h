// The selection's own data: candidates, breeding goal, matesets and their values, and the
// population of the search. Filled by the optimisation; read by the mating afterwards.
#pragma once

#include <cstdint>

#include "core/relationship.h"
#include "core/tables.h"
#include "core/text.h"

namespace qob {

inline constexpr int kMale = 1;
inline constexpr int kFemale = 2;

// Relationships, contributions and spreads below it count as zero.
inline constexpr double kTiny = static_cast<double>(1.0e-8F);

// The selection candidates, males first (1..nmcands), then females, each in ascending animal
// number. All tables are indexed by candidate number.
struct Candidates {
  std::int32_t nmcands = 0, nfcands = 0, ncands = 0;
  Table<std::int32_t> cands;        // animal number
  Table<std::int32_t> max_matings;  // most matings it may have
  Table<double> merit;              // estimated breeding value
  Table<std::int64_t> age;          // age class, 1 = born in the last time step
  Table<std::int32_t> old_id;       // identifier in the data file
  Table<Text<15>> description;      // text in the data file
  std::int32_t birth_time = 0;      // time step of the generation to be planned
  std::int32_t nlast = 0;           // animals born in the time step before

  bool is_male(std::int64_t i) const { return i >= 1 && i <= nmcands; }
  bool is_female(std::int64_t i) const { return i > nmcands && i <= ncands; }
  // The candidates of a sex are first(sex)..last(sex).
  std::int32_t first(int sex) const { return sex == kMale ? 1 : nmcands + 1; }
  std::int32_t last(int sex) const { return sex == kMale ? nmcands : ncands; }
};

// What a mateset is judged against.
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
  double constraint = 0.0;            // largest average relationship allowed
};

// What a mateset is worth.
struct ValueRecord {
  double inbreeding = 0.0;    // 1: mean inbreeding of the offspring
  double rate = 0.0;          // 2: predicted rate of inbreeding per generation
  double relationship = 0.0;  // 3: average relationship of the next generation
  double merit = 0.0;         // 4: mean merit of the parents
  double scaled_merit = 0.0;  // 5: scaled mean merit less its expectation
  double fitness = 0.0;       // 6: larger is better
  double age = 0.0;           // 7: mean age class of the parents
  bool legal = false;         // 8: every mating limit is kept
};

// A view of nmatings rows: row j mates male(j) with female(j), both candidate numbers. The male
// column lies before the female column. An entry of 0 is empty.
class Mateset {
 public:
  Mateset(std::int32_t* entries, std::int64_t nmatings) : entries_(entries), nmatings_(nmatings) {}

  std::int32_t& male(std::int64_t j) const { return entries_[j - 1]; }
  std::int32_t& female(std::int64_t j) const { return entries_[nmatings_ + j - 1]; }
  std::int32_t& operator()(std::int64_t j, int sex) const {
    return sex == kMale ? male(j) : female(j);
  }
  // Entry p = 1..2*nmatings counted down the male column and on down the female column.
  std::int32_t& entry(std::int64_t p) const { return entries_[p - 1]; }
  std::int64_t nmatings() const { return nmatings_; }

  void fill(std::int32_t value) const {
    for (std::int64_t p = 1; p <= 2 * nmatings_; ++p) entry(p) = value;
  }
  void copy_from(const Mateset& other) const {
    for (std::int64_t p = 1; p <= 2 * nmatings_; ++p) entry(p) = other.entry(p);
  }

 private:
  std::int32_t* entries_;
  std::int64_t nmatings_;
};

// Matesets of equal size, numbered from 1.
class MatesetTable {
 public:
  void assign(std::int64_t count, std::int64_t nmatings) {
    entries_.assign(count * nmatings * 2, 0);
    nmatings_ = nmatings;
  }
  Mateset operator()(std::int64_t k) {
    return {entries_.data() + (k - 1) * 2 * nmatings_, nmatings_};
  }

 private:
  Table<std::int32_t> entries_;
  std::int64_t nmatings_ = 0;
};

// The evolutionary search.
struct Search {
  MatesetTable pop;              // popsize matesets
  Table<ValueRecord> pop_value;  // and their values
  bool allocated = false;
  MatesetTable best_mating;  // one mateset: the best so far
  ValueRecord best_value;
  std::int32_t igeneration = 0;
  std::int32_t last_gen_improved = 0;
  std::int32_t last_change = 1;  // generation of the last improvement or restart

  Mateset best() { return best_mating(1); }
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
