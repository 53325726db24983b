// The mean relationships of the candidates, element by element: the judge of the fast form.
#pragma once

#include "core/selection.h"

namespace qob::plain {

struct Mean {
  double sum = 0.0;
  double divisor = 0.0;
  double value() const { return divisor == 0.0 ? 0.0 : sum / divisor; }
};

struct RelationshipTable {
  Mean with_own[2][2];
  Mean without_own[2][2];
};

struct Relationships {
  RelationshipTable plain;
  RelationshipTable weighted;
  Table<double> to_others[3];
};

inline Relationships relationships_of(const Relationship& relationship,
                                      const Candidates& candidates) {
  const std::int32_t n = candidates.ncands;
  Relationships result;
  for (Table<double>& table : result.to_others) table.assign(n, 0.0);
  for (std::int32_t i = 1; i <= n; ++i) {
    const int r = candidates.is_male(i) ? 0 : 1;
    Mean to_others[3];
    for (std::int32_t j = 1; j <= n; ++j) {
      const int s = candidates.is_male(j) ? 0 : 1;
      const double a = cnrm(relationship, candidates, i, j);
      const double w = static_cast<double>(candidates.max_matings(i)) *
                       static_cast<double>(candidates.max_matings(j));
      const auto add = [&](Mean& mean, double weight) {
        mean.sum += weight * a;
        mean.divisor += weight;
      };
      add(result.plain.with_own[r][s], 1.0);
      add(result.weighted.with_own[r][s], w);
      if (i == j) continue;
      add(result.plain.without_own[r][s], 1.0);
      add(result.weighted.without_own[r][s], w);
      add(to_others[s], 1.0);
      add(to_others[2], 1.0);
    }
    for (int s = 0; s < 3; ++s) result.to_others[s](i) = to_others[s].value();
  }
  return result;
}

}  // namespace qob::plain
