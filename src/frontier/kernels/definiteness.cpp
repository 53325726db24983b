#include "frontier/kernels/definiteness.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "core/lanes.h"

namespace qob {
namespace {

constexpr double kFirstShift = 1.0e-6;  // of the largest relationship of a candidate with itself
constexpr double kLargerShift = 16.0;
constexpr std::size_t kTile = 48;  // rows that stay in the processor's cache
constexpr std::size_t kWide = 8;

QOB_VECTOR_CLONES
double product(const double* a, const double* b, std::size_t n) {
  double sums[kWide] = {};
  std::size_t k = 0;
  for (; k + kWide <= n; k += kWide) {
    for (std::size_t l = 0; l < kWide; ++l) sums[l] += a[k + l] * b[k + l];
  }
  double sum = 0.0;
  for (const double part : sums) sum += part;
  for (; k < n; ++k) sum += a[k] * b[k];
  return sum;
}

// Rows of the lower triangle, the first with one element.
using Triangle = std::vector<std::vector<double>>;

Triangle triangle_of(const Relationship& relationship, const Candidates& candidates) {
  Triangle rows(static_cast<std::size_t>(candidates.ncands));
  for (std::int32_t i = 1; i <= candidates.ncands; ++i) {
    std::vector<double>& row = rows[static_cast<std::size_t>(i - 1)];
    row.reserve(static_cast<std::size_t>(i));
    for (std::int32_t j = 1; j <= i; ++j) row.push_back(cnrm(relationship, candidates, i, j));
  }
  return rows;
}

// Whether the matrix with `shift` on its diagonal has a Cholesky factor.
bool has_factor(const Relationship& relationship, const Candidates& candidates, double shift) {
  Triangle a = triangle_of(relationship, candidates);
  const std::size_t n = a.size();
  for (std::size_t from = 0; from < n; from += kTile) {
    const std::size_t to = std::min(from + kTile, n);
    for (std::size_t of = 0; of <= from; of += kTile) {
      for (std::size_t i = from; i < to; ++i) {
        for (std::size_t j = of; j < std::min(of + kTile, i); ++j)
          a[i][j] = (a[i][j] - product(a[i].data(), a[j].data(), j)) / a[j][j];
        if (of != from) continue;
        const double square = a[i][i] + shift - product(a[i].data(), a[i].data(), i);
        if (!(square > 0.0)) return false;
        a[i][i] = std::sqrt(square);
      }
    }
  }
  return true;
}

}  // namespace

double shift_to_definite(const Relationship& relationship, const Candidates& candidates) {
  const auto n = static_cast<double>(candidates.ncands);
  double trace = 0.0, largest = 0.0;
  for (std::int32_t i = 1; i <= candidates.ncands; ++i) {
    trace += std::abs(cnrm(relationship, candidates, i, i));
    for (std::int32_t j = 1; j <= i; ++j)
      largest = std::max(largest, std::abs(cnrm(relationship, candidates, i, j)));
  }
  const double enough = 2.0 * largest * n;  // by the sums of rows
  double shift = kFirstShift * largest;
  while (shift < enough) {
    // What rounding may hide of a negative eigenvalue (Rump 2006, BIT 46:433).
    const double hidden =
        2.0 * (n + 2.0) * std::numeric_limits<double>::epsilon() * (trace + n * shift);
    if (hidden < shift && has_factor(relationship, candidates, shift - hidden)) break;
    shift *= kLargerShift;
  }
  return shift;
}

}  // namespace qob
