#include "analysis/inbreeding.h"

#include <algorithm>

#include "analysis/kernels/inbreeding_columns.h"
#include "analysis/kernels/inbreeding_walks.h"
#include "core/format.h"
#include "core/progress.h"

namespace qob {
namespace {

Table<std::int32_t, 0> levels(const Table2<std::int32_t>& newped) {
  Table<std::int32_t, 0> level(newped.columns() + 1, -1);
  for (std::int64_t i = 1; i <= newped.columns(); ++i) {
    level(i) = std::max(level(newped(1, i)), level(newped(2, i))) + 1;
  }
  return level;
}

// Reports every 1000 animals, in animal order.
class FinishedAnimals {
 public:
  FinishedAnimals(const InbreedingWork& work, Unit& out) : work_(work), out_(out) {}

  // The animals up to this level, and those with an unknown parent, have their coefficients.
  void report(std::int32_t level) {
    progress_.show(static_cast<double>(next_) / static_cast<double>(work_.level.size()));
    for (; next_ < work_.level.size(); ++next_) {
      if (work_.level(next_) > level && work_.both_parents_known(next_)) return;
      if (next_ % 1000 == 0) write_list(out_, "Finished ", next_, " animals");
    }
  }

 private:
  const InbreedingWork& work_;
  Unit& out_;
  std::int32_t next_ = 1;
  Progress progress_{"Inbreeding"};
};

}  // namespace

// Up to kExactLevel as half the relationship of the parents, above it as the sum over the
// ancestors: the same to the bit. In one plain loop: tests/plain/inbreeding.h.
void inbreeding_coefficients(const Table2<std::int32_t>& newped, Table<double, 0>& f, Unit& out,
                             Parallel& parallel) {
  f.assign(newped.columns() + 1, 0.0);
  f(0) = -1.0;  // gives a founder d = 1, and d = 0.75 - 0.25 F(p) with one known parent p
  InbreedingWork work{newped, f, pedigree_of_parents(newped), levels(newped), {}};
  work.parent_f.assign(std::int64_t{work.parents.count()} + 1, 0.0);
  work.parent_f(0) = -1.0;
  FinishedAnimals animals(work, out);
  const auto finished = [&](std::int32_t level) { animals.report(level); };
  inbreeding_by_columns(work, parallel, finished);
  inbreeding_by_walks(work, kExactLevel, parallel, finished);
}

}  // namespace qob
