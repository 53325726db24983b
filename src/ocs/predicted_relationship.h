// The average relationship of the next generation while parents of a mateset are replaced one after
// another: bounds of it, and, where they leave a decision open, the value itself, from the mateset
// as it was at first and the changes since, added in their order.
#pragma once

#include <vector>

#include "ocs/kernels/parent_sums.h"
#include "ocs/kernels/quadratic_forms.h"
#include "ocs/kernels/row_cache.h"
#include "ocs/selection.h"

namespace qob {

class PredictedRelationship {
 public:
  // uses: of the mateset as it is now, d: the contribution of one row, sums: by sex, following it.
  // The selection and the rows must outlive this.
  PredictedRelationship(const Selection& selection, const Uses& uses, double d,
                        const ParentSums (&sums)[2], RowCache& rows);

  double low() const { return low_; }
  double high() const { return high_; }
  // The value itself.
  double value();
  bool exceeds(double limit);
  // A replacement has changed it by so much.
  void add(double change);

 private:
  void set_bounds(double d, const ParentSums (&sums)[2]);

  const Selection& selection_;
  RowCache& rows_;
  ParentShares first_;
  std::vector<double> changes_;
  double low_ = 0.0, high_ = 0.0;
  double value_ = 0.0;
  bool known_ = false;
};

}  // namespace qob
