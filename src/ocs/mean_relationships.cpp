#include "ocs/mean_relationships.h"

#include <memory>
#include <utility>

#include "ocs/candidate_rows.h"
#include "ocs/qobocs.h"

namespace qob {
namespace {

// With own: plain, weighted; without own: plain, weighted. Serves as sums and as weights.
using Four = Lanes<double, 4>;

// Adds a candidate's relationships to its sums with each sex. Each sum is a chain of additions that
// wait for one another; the two advance together. weight[j] is 0 in the lanes that leave j out,
// which leaves a sum as it is: sums begin at +0 and so are never -0.
QOB_VECTOR_CLONES void add_row(const CandidateRows::Column* column, std::size_t lane,
                               const Four& weight_i, const Four* weight, std::int64_t nmales,
                               std::int64_t n, Four& males, Four& females) {
  Four m = males;
  Four f = females;
  std::int64_t j = 0;
  std::int64_t k = nmales;
  for (; j < nmales && k < n; ++j, ++k) {
    m += weight_i * weight[j] * column[j][lane];
    f += weight_i * weight[k] * column[k][lane];
  }
  for (; j < nmales; ++j) m += weight_i * weight[j] * column[j][lane];
  for (; k < n; ++k) f += weight_i * weight[k] * column[k][lane];
  males = m;
  females = f;
}

double mean(double sum, double divisor) { return divisor == 0.0 ? 0.0 : sum / divisor; }

// The pairs of candidates of sexes r and s.
struct Pairs {
  const Candidates& candidates;
  int r, s;

  std::int64_t n(int sex) const { return candidates.last(sex) - candidates.first(sex) + 1; }
  double count(bool own) const { return static_cast<double>(n(r) * (n(s) - (r == s && !own))); }
  // The sum of their weights in ascending order. Whole numbers need no order while none is rounded.
  double weight(bool own) const {
    const auto limit = [&](std::int32_t i) { return static_cast<double>(candidates.max_matings(i)); };
    const auto capacity = [&](int sex) {
      return static_cast<double>(mating_capacity(candidates, sex));
    };
    double sum = capacity(r) * capacity(s);
    const bool exact = sum <= 0x1p53;
    if (exact && (own || r != s)) return sum;
    if (!exact) sum = 0.0;
    for (std::int32_t i = candidates.first(r); i <= candidates.last(r); ++i) {
      if (exact) {
        sum -= limit(i) * limit(i);
        continue;
      }
      for (std::int32_t j = candidates.first(s); j <= candidates.last(s); ++j) {
        if (own || i != j) sum += limit(i) * limit(j);
      }
    }
    return sum;
  }
};

class Summation {
 public:
  Summation(const Relationship& relationship, const Candidates& candidates)
      : candidates_(candidates), rows_(relationship, candidates) {
    const auto n = static_cast<std::size_t>(candidates.ncands);
    weight_ = std::make_unique<Four[]>(n);
    for (std::int32_t i = 1; i <= candidates.ncands; ++i) {
      const auto w = static_cast<double>(candidates.max_matings(i));
      weight(i) = Four{1.0, w, 1.0, w};
    }
    for (Table<double>& table : result_.to_others) table.assign(candidates.ncands, 0.0);
  }

  MeanRelationships run() {
    while (rows_.next()) {
      for (std::size_t l = 0; l < rows_.size(); ++l) add_to_sexes(l);
      set_means_to_others();
    }
    for (int r = kMale; r <= kFemale; ++r) {
      for (int s = kMale; s <= kFemale; ++s) set_means(r, s);
    }
    return std::move(result_);
  }

 private:
  Four& weight(std::int64_t i) { return weight_[static_cast<std::size_t>(i - 1)]; }

  void add_to_sexes(std::size_t lane) {
    const std::int32_t i = rows_.candidate(lane);
    const Four weight_i = weight(i);
    weight(i) *= Four{1.0, 1.0, 0.0, 0.0};
    Four* sum = candidates_.is_male(i) ? sum_[0] : sum_[1];
    add_row(&rows_.column(1), lane, weight_i, weight_.get(), candidates_.nmcands,
            candidates_.ncands, sum[0], sum[1]);
    weight(i) = weight_i;
  }

  void set_means_to_others() {
    for (std::size_t l = 0; l < rows_.size(); ++l) rows_.column(rows_.candidate(l))[l] = 0.0;
    CandidateRows::Column sum[3] = {};
    const std::int32_t nm = candidates_.nmcands;
    rows_.add_columns(1, nm, sum[0]);
    rows_.add_columns(nm + 1, candidates_.ncands, sum[1]);
    sum[2] = sum[0];
    rows_.add_columns(nm + 1, candidates_.ncands, sum[2]);
    for (std::size_t l = 0; l < rows_.size(); ++l) {
      const std::int32_t i = rows_.candidate(l);
      const std::int32_t males = nm - candidates_.is_male(i);
      const std::int32_t females = candidates_.nfcands - candidates_.is_female(i);
      const std::int32_t n[3] = {males, females, males + females};
      for (int s = 0; s < 3; ++s) result_.to_others[s](i) = mean(sum[s][l], n[s]);
    }
  }

  void set_means(int r, int s) {
    const Four& sum = sum_[r - 1][s - 1];
    const Pairs pairs{candidates_, r, s};
    SexMeans& plain = result_.plain;
    SexMeans& weighted = result_.weighted;
    plain.with_own[r - 1][s - 1] = mean(sum[0], pairs.count(true));
    weighted.with_own[r - 1][s - 1] = mean(sum[1], pairs.weight(true));
    plain.without_own[r - 1][s - 1] = mean(sum[2], pairs.count(false));
    weighted.without_own[r - 1][s - 1] = mean(sum[3], pairs.weight(false));
  }

  const Candidates& candidates_;
  CandidateRows rows_;
  std::unique_ptr<Four[]> weight_;
  Four sum_[2][2] = {};
  MeanRelationships result_;
};

}  // namespace

MeanRelationships mean_relationships(const Relationship& relationship,
                                     const Candidates& candidates) {
  return Summation(relationship, candidates).run();
}

}  // namespace qob
