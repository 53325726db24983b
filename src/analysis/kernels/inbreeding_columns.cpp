#include "analysis/kernels/inbreeding_columns.h"

#include <algorithm>
#include <vector>

#include "analysis/kernels/product_lanes.h"

namespace qob {
namespace {

using Ids = std::vector<std::int32_t>;

// Each couple is one parent, the column, whose product is computed, and its mate.
class Columns {
 public:
  explicit Columns(InbreedingWork& work)
      : work_(work), ancestry_(work.parents.newped), offspring_(work.parents.count(), 0) {
    count_offspring();
    list_offspring();
  }

  // Computes the columns of `level` and of the next: neither needs a coefficient that the other
  // gives, as column and offspring are two levels from the animals that descend from both.
  void compute(std::int32_t level) {
    Ids columns;
    for (std::int32_t p = 1; p <= work_.parents.count(); ++p) {
      const std::int32_t own = work_.level(work_.parents.animal(p));
      if (first_(p) < first_(p + 1) && (own == level || own == level + 1)) columns.push_back(p);
    }
    for (auto batch = columns.begin(); batch != columns.end();) {
      const auto end =
          batch + std::min<std::ptrdiff_t>(ProductLanes::kLanes, columns.end() - batch);
      compute_batch({batch, end});
      batch = end;
    }
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

  // Calls action(i, mate) for the animals that have this column.
  template <class Action>
  void for_each_offspring(std::int32_t column, Action action) const {
    for (std::int32_t at = first_(column); at < first_(column + 1); ++at) {
      const std::int32_t i = list_[static_cast<std::size_t>(at)];
      action(i, mate_of(i, column));
    }
  }

  void compute_batch(const Ids& columns) {
    for (const std::int32_t column : columns) {
      ancestry_.add(column);
      for_each_offspring(column, [&](std::int32_t, std::int32_t mate) { ancestry_.add(mate); });
    }
    ancestry_.close();
    product_.start(ancestry_, work_.parents.newped, work_.parent_f);
    int lane = 0;
    for (const std::int32_t column : columns) product_.add(ancestry_.number(column), lane++, 1.0);
    product_.multiply(ancestry_.size());
    lane = 0;
    for (const std::int32_t column : columns) {
      for_each_offspring(column, [&](std::int32_t i, std::int32_t mate) {
        work_.set(i, 0.5 * product_(ancestry_.number(mate), lane));
      });
      ++lane;
    }
  }

  InbreedingWork& work_;
  Ancestry ancestry_;
  ProductLanes product_{0.0};
  Table<std::int32_t> offspring_;  // by parent: how many
  Table<std::int32_t, 0> first_;   // by column p: its animals are list_[first_(p)..first_(p+1)-1]
  Ids list_;
};

}  // namespace

void inbreeding_by_columns(InbreedingWork& work,
                           const std::function<void(std::int32_t level)>& finished) {
  Columns columns(work);
  for (std::int32_t level = 0; level < kExactLevel; level += 2) {
    columns.compute(level);
    finished(level + 2);
  }
}

}  // namespace qob
