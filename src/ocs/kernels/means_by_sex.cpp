#include "ocs/kernels/means_by_sex.h"

#include <memory>
#include <utility>

#include "core/lanes.h"
#include "ocs/allowances.h"
#include "ocs/kernels/triangle_walk.h"

namespace qob {
namespace {

// With own: plain, weighted; without own: plain, weighted. Of sums and of weights.
using Four = Lanes<double, 4>;

// Adds the relationships a[j] of a candidate to its sums with each sex. A sum is a chain of
// additions that wait for one another; those of the two sexes advance side by side. A weight of 0
// leaves a sum as it is: sums begin at +0 and so are never -0.
QOB_VECTOR_CLONES void add_row(const double* a, const Four& weight_i, const Four* weight,
                               std::int64_t nmales, std::int64_t n, Four& males, Four& females) {
  const Four w = weight_i;
  Four m = males;
  Four f = females;
  std::int64_t j = 0;
  std::int64_t k = nmales;
  for (; j < nmales && k < n; ++j, ++k) {
    m += w * weight[j] * a[j];
    f += w * weight[k] * a[k];
  }
  for (; j < nmales; ++j) m += w * weight[j] * a[j];
  for (; k < n; ++k) f += w * weight[k] * a[k];
  males = m;
  females = f;
}

double mean(double sum, double divisor) { return divisor == 0.0 ? 0.0 : sum / divisor; }

// What the sums over the pairs of a candidate of sex r and one of sex s are divided by.
class Divisors {
 public:
  Divisors(const Candidates& candidates, int r, int s) : candidates_(candidates), r_(r), s_(s) {}

  double count(bool own) const {
    const auto n = [&](int sex) {
      return std::int64_t{candidates_.last(sex)} - candidates_.first(sex) + 1;
    };
    return static_cast<double>(n(r_) * (n(s_) - (r_ == s_ && !own ? 1 : 0)));
  }

  // The sum of the weights, which are whole numbers: as long as it is one that a double can hold,
  // adding them up pair by pair rounds nothing.
  double weight(bool own) const {
    const double sum = static_cast<double>(mating_capacity(candidates_, r_)) *
                       static_cast<double>(mating_capacity(candidates_, s_));
    if (sum >= 0x1p53) return weight_by_pairs(own);
    return own || r_ != s_ ? sum : sum - weight_of_own();
  }

 private:
  double limit(std::int32_t i) const { return static_cast<double>(candidates_.max_matings(i)); }

  double weight_of_own() const {
    double sum = 0.0;
    for (std::int32_t i = candidates_.first(r_); i <= candidates_.last(r_); ++i) {
      sum += limit(i) * limit(i);
    }
    return sum;
  }

  double weight_by_pairs(bool own) const {
    double sum = 0.0;
    for (std::int32_t i = candidates_.first(r_); i <= candidates_.last(r_); ++i) {
      for (std::int32_t j = candidates_.first(s_); j <= candidates_.last(s_); ++j) {
        if (own || i != j) sum += limit(i) * limit(j);
      }
    }
    return sum;
  }

  const Candidates& candidates_;
  int r_, s_;
};

class Summation {
 public:
  Summation(const Relationship& relationship, const Candidates& candidates)
      : candidates_(candidates),
        n_(static_cast<std::size_t>(candidates.ncands)),
        rows_(relationship, candidates),
        a_(std::make_unique<double[]>(TriangleWalk::kLanes * n_)),
        weight_(std::make_unique<Four[]>(n_)) {
    for (std::int32_t i = 1; i <= candidates.ncands; ++i) {
      const auto w = static_cast<double>(candidates.max_matings(i));
      weight(i) = Four{1.0, w, 1.0, w};
    }
    for (Table<double>& table : result_.to_others) table.assign(candidates.ncands, 0.0);
  }

  MeansBySex run() {
    while (rows_.next()) {
      lay_out_by_candidate();
      for (std::size_t l = 0; l < rows_.size(); ++l) add_to_sexes(l);
      set_means_to_others();
    }
    for (int r = kMale; r <= kFemale; ++r) {
      for (int s = kMale; s <= kFemale; ++s) set_means(r, s);
    }
    return std::move(result_);
  }

 private:
  Four& weight(std::int32_t i) { return weight_[static_cast<std::size_t>(i - 1)]; }

  // The columns as rows, so that one candidate's relationships lie together.
  void lay_out_by_candidate() {
    for (std::size_t j = 0; j < n_; ++j) {
      const double* column = rows_.lanes(static_cast<std::int64_t>(j) + 1);
      for (std::size_t l = 0; l < TriangleWalk::kLanes; ++l) a_[l * n_ + j] = column[l];
    }
  }

  void add_to_sexes(std::size_t lane) {
    const std::int32_t i = rows_.candidate(lane);
    const Four weight_i = weight(i);
    Four* sum = sum_[candidates_.is_male(i) ? 0 : 1];
    weight(i) *= Four{1.0, 1.0, 0.0, 0.0};  // the sums without own leave it out
    add_row(&a_[lane * n_], weight_i, weight_.get(), candidates_.nmcands, candidates_.ncands,
            sum[0], sum[1]);
    weight(i) = weight_i;
  }

  void set_means_to_others() {
    for (std::size_t l = 0; l < rows_.size(); ++l) rows_.lanes(rows_.candidate(l))[l] = 0.0;
    const std::int32_t nmales = candidates_.nmcands;
    TriangleWalk::Column sum[3] = {};
    rows_.add_columns(1, nmales, sum[0]);
    rows_.add_columns(nmales + 1, candidates_.ncands, sum[1]);
    sum[2] = sum[0];
    rows_.add_columns(nmales + 1, candidates_.ncands, sum[2]);
    for (std::size_t l = 0; l < rows_.size(); ++l) {
      const std::int32_t i = rows_.candidate(l);
      const std::int32_t males = nmales - (candidates_.is_male(i) ? 1 : 0);
      const std::int32_t all = candidates_.ncands - 1;
      const std::int32_t n[3] = {males, all - males, all};
      for (int s = 0; s < 3; ++s) result_.to_others[s](i) = mean(sum[s][l], n[s]);
    }
  }

  void set_means(int r, int s) {
    const Four& sum = sum_[r - 1][s - 1];
    const Divisors divisors(candidates_, r, s);
    SexMeans& plain = result_.plain;
    SexMeans& weighted = result_.weighted;
    plain.with_own[r - 1][s - 1] = mean(sum[0], divisors.count(true));
    weighted.with_own[r - 1][s - 1] = mean(sum[1], divisors.weight(true));
    plain.without_own[r - 1][s - 1] = mean(sum[2], divisors.count(false));
    weighted.without_own[r - 1][s - 1] = mean(sum[3], divisors.weight(false));
  }

  const Candidates& candidates_;
  std::size_t n_;  // candidates
  TriangleWalk rows_;
  std::unique_ptr<double[]> a_;  // the rows at hand, kLanes x n
  std::unique_ptr<Four[]> weight_;
  Four sum_[2][2] = {};  // by sex of the row, by sex of the column
  MeansBySex result_;
};

}  // namespace

MeansBySex means_by_sex(const Relationship& relationship, const Candidates& candidates) {
  return Summation(relationship, candidates).run();
}

}  // namespace qob
