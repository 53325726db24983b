// The value of a mateset.
//
// The parents of a mateset contribute to the next generation by their rows: c(i) = uses(i) / 2n for
// n matings. What the search weighs follows from these contributions (Meuwissen 1997, J. Anim. Sci.
// 75:934; overlapping generations: Grundy, Villanueva & Woolliams 2000, Anim. Sci. 70:373):
//
//   merit:         c'EBV, and the same in standard deviations of each sex, less its expectation
//   relationship:  (y + c)'A(y + c) / L^2, the average relationship of the coming generation
//   rate:          (relationship - last_rel) L / (2 - last_rel), of inbreeding per generation
//
// with A the relationships, y the contributions that earlier time steps have made and L the
// generation interval. The fitness folds merit and relationship into one number, as the objective
// says. Who is paired with whom only enters the inbreeding of the offspring, half the relationship
// of each pair.
#pragma once

#include <array>
#include <cstddef>

#include "core/watches.h"
#include "ocs/kernels/quadratic_forms.h"
#include "ocs/kernels/row_cache.h"
#include "ocs/mateset.h"
#include "ocs/objective.h"
#include "ocs/population.h"

namespace qob {

// Whether no candidate is used beyond its mating limit and every male in whole slots. The mateset
// has no empty entry.
bool is_legal(const Selection& selection, Mateset mateset);

// The average relationship of the next generation when candidate i contributes c(i), earlier
// contributions included.
double average_relationship(const Selection& selection, const Relationship& relationship,
                            const Table<double>& c);

// Evaluates the matesets of one search. The arguments must outlive it and are read at each call.
class Evaluator {
 public:
  Evaluator(const Problem& problem, const Standing& standing, RowCache& rows, Journal& journal);

  // Fills all fields of `value`.
  void evaluation(Mateset mateset, MatesetValue& value);

  // The same for several matesets, whose relationships are summed up at once: a value may lack its
  // rate, relationship and fitness until `finish`, and must last until then. An evaluation that may
  // write to the log is finished before `add` returns.
  void add(Mateset mateset, MatesetValue& value);
  void finish();

  // Sets the fitness from the other fields, by the criterion. An illegal mateset that would
  // overtake the best one under the penalty gets 0.9 of the best fitness.
  void compute_fitness(MatesetValue& value);

 private:
  struct Pending {
    ParentShares parents;
    MatesetValue* value = nullptr;
  };
  void finish_pending();
  double fitness_below_best() const;

  const Problem& problem_;
  const Standing& standing_;
  RowCache& rows_;
  Journal& journal_;
  Uses uses_;  // all 0 between calls
  std::array<Pending, kParentSets> pending_;
  std::size_t count_ = 0;
};

// The value of one mateset, by no search's standing.
MatesetValue value_of(const Problem& problem, RowCache& rows, Mateset mateset, Journal& journal);

}  // namespace qob
