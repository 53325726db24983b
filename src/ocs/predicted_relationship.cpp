#include "ocs/predicted_relationship.h"

#include <algorithm>
#include <cmath>

#include "ocs/kernels/rounding.h"

namespace qob {

PredictedRelationship::PredictedRelationship(const Selection& selection, const Uses& uses, double d,
                                             const ParentSums (&sums)[2], RowCache& rows)
    : selection_(selection), rows_(rows) {
  take_shares(uses, d, first_);
  set_bounds(d, sums);
}

double PredictedRelationship::value() {
  if (known_) return value_;
  const ParentShares* const set = &first_;
  average_relationships(selection_.goal, {&set, 1}, rows_, &value_);
  for (const double change : changes_) value_ = change + value_;
  known_ = true;
  low_ = high_ = value_;
  return value_;
}

bool PredictedRelationship::exceeds(double limit) {
  if (low_ > limit) return true;
  if (high_ <= limit) return false;
  return value() > limit;
}

void PredictedRelationship::add(double change) {
  changes_.push_back(change);
  value_ = change + value_;
  low_ = change + low_;
  high_ = change + high_;
}

// c'Ac from the sums of relationships.
void PredictedRelationship::set_bounds(double d, const ParentSums (&sums)[2]) {
  const Goal& goal = selection_.goal;
  double sum = goal.vpapv, greatest_apv2 = 0.0;
  for (std::size_t k = 0; k < first_.candidate.size(); ++k) {
    const std::int32_t i = first_.candidate[k];
    const ParentSums& of_sex = sums[selection_.candidates.is_male(i) ? 0 : 1];
    sum += first_.c[k] * (of_sex.data()[i] * d + goal.apv2(i));
    greatest_apv2 = std::max(greatest_apv2, std::abs(goal.apv2(i)));
  }
  const double most = std::abs(goal.vpapv) + rows_.largest() + greatest_apv2;
  const double error = error_of_average_relationship(first_.candidate.size(), most,
                                                     sums[0].error() + sums[1].error());
  const double square = goal.last_genint * goal.last_genint;
  low_ = (sum - error) / square;
  high_ = (sum + error) / square;
}

}  // namespace qob
