// The candidates' mean relationships element by element: the judge of the fast form.
#pragma once
#include "ocs/candidates.h"

namespace qob::plain {
struct Mean {
  double sum = 0.0, divisor = 0.0;
  void add(double a, double weight) { sum += weight * a, divisor += weight; }
  double value() const { return divisor == 0.0 ? 0.0 : sum / divisor; }
};
struct Relationships {
  Mean sexes[4][2][2];  // with own, without; the same weighted; by sex of i; by sex of j
  Table<double> to_others[3];
};
inline Relationships relationships_of(const Relationship& relationship, const Candidates& c) {
  Relationships result;
  for (Table<double>& table : result.to_others) table.assign(c.ncands, 0.0);
  for (std::int32_t i = 1; i <= c.ncands; ++i) {
    const int r = c.is_male(i) ? 0 : 1;
    Mean to_others[3];
    for (std::int32_t j = 1; j <= c.ncands; ++j) {
      const int s = c.is_male(j) ? 0 : 1;
      const double a = cnrm(relationship, c, i, j);
      const double w = 1.0 * c.max_matings(i) * c.max_matings(j);
      for (int k = 0; k < 4; k += i == j ? 2 : 1) result.sexes[k][r][s].add(a, k < 2 ? 1.0 : w);
      if (i == j) continue;
      for (int k : {s, 2}) to_others[k].add(a, 1.0);
    }
    for (int s : {0, 1, 2}) result.to_others[s](i) = to_others[s].value();
  }
  return result;
}
}  // namespace qob::plain
