// Directed mutation of a mateset: the best replacement of single parents, even if it is no gain.
#pragma once

#include <optional>

#include "core/random.h"
#include "core/watches.h"
#include "ocs/evaluation.h"
#include "ocs/kernels/parent_sums.h"
#include "ocs/kernels/row_cache.h"
#include "ocs/kernels/twins.h"
#include "ocs/mateset.h"
#include "ocs/objective.h"

namespace qob {

// What a search keeps of the matrix from mateset to mateset.
struct SearchCaches {
  // parallel: the threads that share the work on rows, if any.
  SearchCaches(const Relationship& relationship, const Candidates& candidates,
               std::size_t row_memory = RowCache::kMostBytes, Parallel* parallel = nullptr)
      : rows(relationship, candidates, row_memory, parallel) {}

  RowCache rows;
  ParentSums sums[2];          // of relationships to the parents of a mateset, by sex
  std::optional<Twins> twins;  // found when first wanted
};

// Replaces, each with this probability, the male of a slot or the female of a row by the candidate
// of its sex that improves the objective most; the lowest-numbered of equally good ones. The caches
// and the evaluator must be those of the problem.
void directed_mutation(const Problem& problem, double probability, Mateset mateset, Random& random,
                       SearchCaches& caches, Evaluator& evaluator, Journal& journal);

}  // namespace qob
