// The relationship matrix times eight vectors at once, through the pedigree.
//
// Each lane of a row belongs to one vector and goes through the operations of `ax` or `ak` in
// their order, so that every product has the bits that it has alone. Plain over fast, measured for
// the relationship matrix of 10,000 candidates (plain: their columns alone, over all animals):
//
//   of 100,000 animals, 30 years      39
//   of 1,000,000 animals, 40 years    171
#pragma once

#include <cstdint>

#include "analysis/kernels/ancestry.h"
#include "core/lanes.h"
#include "core/tables.h"

namespace qob {

class ProductLanes {
 public:
  static constexpr int kLanes = 8;

  // A row is made of the widest vectors for which compilers have comparisons.
#ifdef __x86_64__
  static constexpr int kPart = 4;
#else
  static constexpr int kPart = 2;
#endif
  struct Row {
    alignas(sizeof(double) * kLanes) Lanes<double, kPart> part[kLanes / kPart];
    double& operator[](int lane) { return reinterpret_cast<double*>(this)[lane]; }
    double operator[](int lane) const { return reinterpret_cast<const double*>(this)[lane]; }
  };

  // passed_on_above: only values above it are passed on to offspring (0 in `ax`, 1e-8 in `ak`).
  explicit ProductLanes(double passed_on_above) : passed_on_above_(passed_on_above) {}

  // Takes up these animals with all vectors 0. `ancestry`, numbered from `newped`, stays as it is
  // while this is in use. f: by animal of `newped`, -1 at index 0.
  void start(const Ancestry& ancestry, const Table2<std::int32_t>& newped,
             const Table<double, 0>& f);

  // Adds to an element of a vector. Vectors are 0 again after each product.
  void add(std::int32_t number, int lane, double value) {
    if (set_.insert(number) == 0) row_(number) = Row{};
    row_(number)[lane] += value;
  }
  // Computes the products over the numbers 1..last; no element behind `last` has been added to.
  void multiply(std::int32_t last);
  // An element of the product, to be read before the next `add`.
  double operator()(std::int32_t number, int lane) const { return row_(number)[lane]; }

 private:
  double passed_on_above_;
  const Ancestry* ancestry_ = nullptr;
  DescendingSet set_;          // the rows in use
  Table<double, 0> variance_;  // Mendelian sampling variance, by number
  Table<Row, 0> row_;          // row 0 takes what goes to unknown parents
};

}  // namespace qob
