#include "analysis/kernels/inbreeding_columns.h"

#include <iterator>
#include <memory>
#include <span>
#include <vector>

#include "analysis/kernels/product_lanes.h"

namespace qob {
namespace {

using Ids = std::vector<std::int32_t>;

// What a worker computes columns with.
struct Batch {
  explicit Batch(const ParentPedigree& parents) : ancestry(parents.newped) {}

  Ancestry ancestry;
  ProductLanes product{0.0};
};

// Each couple is one parent, the column, whose product is computed, and its mate.
class Columns {
 public:
  Columns(InbreedingWork& work, Parallel& parallel)
      : work_(work),
        parallel_(parallel),
        batches_(parallel, [&] { return std::make_unique<Batch>(work.parents); }),
        offspring_(work.parents.count(), 0) {
    count_offspring();
    list_offspring();
    list_columns();
  }

  // Computes the columns of `level`, which is even, and of the next: neither needs a coefficient
  // that the other gives, as column and offspring are two levels from the animals that descend from
  // both.
  void compute(std::int32_t level) {
    const Ids& columns = columns_[static_cast<std::size_t>(level / 2)];
    const std::int64_t most = std::ssize(columns) * work_.parents.count();
    parallel_.for_each_block(std::span(columns), ProductLanes::kLanes, most,
                             [&](std::span<const std::int32_t> block, int worker) {
                               compute_batch(block, batches_(worker));
                             });
    for (const std::int32_t column : columns) take_up(column);
  }

 private:
  bool concerned(std::int64_t i) const {
    return work_.both_parents_known(i) && work_.level(i) <= kExactLevel;
  }

  // The parent with more offspring, to have few columns.
  std::int32_t column_of(std::int64_t i) const {
    const std::int32_t sire = work_.parent(1, i);
    const std::int32_t dam = work_.parent(2, i);
    return offspring_(sire) >= offspring_(dam) ? sire : dam;
  }

  std::int32_t mate_of(std::int32_t i, std::int32_t column) const {
    const std::int32_t sire = work_.parent(1, i);
    return sire == column ? work_.parent(2, i) : sire;
  }

  void count_offspring() {
    for (std::int64_t i = 1; i <= work_.newped.columns(); ++i) {
      if (!concerned(i)) continue;
      ++offspring_(work_.parent(1, i));
      ++offspring_(work_.parent(2, i));
    }
  }

  void list_offspring() {
    const std::int64_t n = work_.newped.columns();
    first_.assign(std::int64_t{work_.parents.count()} + 2, 0);
    for (std::int64_t i = 1; i <= n; ++i) {
      if (concerned(i)) ++first_(column_of(i) + 1);
    }
    for (std::int64_t p = 1; p <= first_.last(); ++p) first_(p) += first_(p - 1);
    list_.resize(static_cast<std::size_t>(first_(first_.last())));
    Table<std::int32_t, 0> next = first_;
    for (std::int32_t i = 1; i <= n; ++i) {
      if (concerned(i)) list_[static_cast<std::size_t>(next(column_of(i))++)] = i;
    }
  }

  void list_columns() {
    columns_.resize(kExactLevel / 2);
    for (std::int32_t p = 1; p <= work_.parents.count(); ++p) {
      if (first_(p) == first_(p + 1)) continue;
      const std::int32_t level = work_.level(work_.parents.animal(p));
      columns_[static_cast<std::size_t>(level / 2)].push_back(p);
    }
  }

  std::span<const std::int32_t> offspring_of(std::int32_t column) const {
    return std::span(list_).subspan(static_cast<std::size_t>(first_(column)),
                                    static_cast<std::size_t>(first_(column + 1) - first_(column)));
  }

  // Sets f of the columns' offspring.
  void compute_batch(std::span<const std::int32_t> columns, Batch& batch) const {
    auto& [ancestry, product] = batch;
    for (const std::int32_t column : columns) {
      ancestry.add(column);
      for (const std::int32_t i : offspring_of(column)) ancestry.add(mate_of(i, column));
    }
    ancestry.close();
    product.start(ancestry, work_.parents.newped, work_.parent_f);
    int lane = 0;
    for (const std::int32_t column : columns) product.add(ancestry.number(column), lane++, 1.0);
    product.multiply(ancestry.size());
    lane = 0;
    for (const std::int32_t column : columns) {
      for (const std::int32_t i : offspring_of(column)) {
        work_.f(i) = 0.5 * product(ancestry.number(mate_of(i, column)), lane);
      }
      ++lane;
    }
  }

  // Only when no other column of the level is at work: it reads them of its mates' ancestors,
  // though they do not count.
  void take_up(std::int32_t column) {
    for (const std::int32_t i : offspring_of(column)) work_.set(i, work_.f(i));
  }

  InbreedingWork& work_;
  Parallel& parallel_;
  PerWorker<Batch> batches_;
  Table<std::int32_t> offspring_;  // by parent: how many
  Table<std::int32_t, 0> first_;   // by column p: its animals are list_[first_(p)..first_(p+1)-1]
  Ids list_;
  std::vector<Ids> columns_;  // by half their level
};

}  // namespace

void inbreeding_by_columns(InbreedingWork& work, Parallel& parallel,
                           const std::function<void(std::int32_t level)>& finished) {
  Columns columns(work, parallel);
  for (std::int32_t level = 0; level < kExactLevel; level += 2) {
    columns.compute(level);
    finished(level + 2);
  }
}

}  // namespace qob
