#include "ocs/kernels/quadratic_forms.h"

#include <algorithm>
#include <array>
#include <memory>

#include "core/lanes.h"

namespace qob {
namespace {

// Sums that are advanced side by side: one alone would wait for each addition.
constexpr std::size_t kSideBySide = 4;
// Terms of a set that are collected before they are added, at least.
constexpr std::size_t kEnough = 512;

using Sets = std::span<const ParentShares* const>;

// terms[t] = (twice * c[t]) * row[later[t]]: what a candidate with these relationships, and twice
// its contribution, adds together with the later candidates of its set.
QOB_VECTOR_CLONES
void products(const double* __restrict row, const std::int32_t* __restrict later, std::size_t n,
              double twice, const double* __restrict c, double* __restrict terms) {
  for (std::size_t t = 0; t < n; ++t) terms[t] = twice * c[t] * row[later[t]];
}

// sum[s] += terms[s][0], += terms[s][1], ... one after another.
void add_in_order(const std::array<const double*, kSideBySide>& terms, std::size_t n, double* sum) {
  double s0 = sum[0], s1 = sum[1], s2 = sum[2], s3 = sum[3];
  for (std::size_t t = 0; t < n; ++t) {
    s0 += terms[0][t];
    s1 += terms[1][t];
    s2 += terms[2][t];
    s3 += terms[3][t];
  }
  sum[0] = s0, sum[1] = s1, sum[2] = s2, sum[3] = s3;
}

// The candidates that any of the sets uses, ascending, and the sets that use each.
struct Users {
  Users(Sets sets, std::int32_t ncands) : first(static_cast<std::size_t>(ncands) + 2, 0) {
    for (const ParentShares* set : sets) {
      for (const std::int32_t i : set->candidate) ++first[static_cast<std::size_t>(i) + 1];
    }
    candidate.resize(first.size());
    std::size_t count = 0;
    for (std::size_t i = 0; i + 1 < first.size(); ++i) {
      candidate[count] = static_cast<std::int32_t>(i);
      count += first[i + 1] > 0;
      first[i + 1] += first[i];
    }
    candidate.resize(count);
    set_of.resize(static_cast<std::size_t>(first.back()));
    std::vector<std::int32_t> next = first;
    for (std::size_t l = 0; l < sets.size(); ++l) {
      for (const std::int32_t i : sets[l]->candidate) {
        set_of[static_cast<std::size_t>(next[static_cast<std::size_t>(i)]++)] = l;
      }
    }
  }

  std::span<const std::size_t> of(std::int32_t i) const {
    const auto at = static_cast<std::size_t>(i);
    return {set_of.data() + first[at], set_of.data() + first[at + 1]};
  }

  std::vector<std::int32_t> candidate;
  std::vector<std::int32_t> first;  // candidate i's sets: set_of[first[i]] .. [first[i+1] - 1]
  std::vector<std::size_t> set_of;
};

class QuadraticForms {
 public:
  QuadraticForms(const Goal& goal, Sets sets, const RowCache& rows) : goal_(goal), rows_(rows) {
    sum_.fill(goal_.vpapv);
    for (const ParentShares* set : sets) {
      forms_[count_++].set = set;
      capacity_ = std::max(capacity_, kEnough + set->candidate.size());
    }
    memory_.reset(new double[capacity_ * kParentSets]);
  }

  // Candidates come in ascending order, each with the sets that use it; row[k] is its relationship
  // with candidate k. Without a row the elements are fetched one by one.
  void add_candidate(std::int32_t i, std::span<const std::size_t> users, const double* row) {
    for (const std::size_t l : users) {
      collect(forms_[l], i, row, terms_of(l));
      enough_ = enough_ || forms_[l].terms >= kEnough;
    }
    if (enough_) add_terms();
  }

  double result(std::size_t l) {
    add_terms();
    return sum_[l] / (goal_.last_genint * goal_.last_genint);
  }

 private:
  struct Form {
    const ParentShares* set = nullptr;
    std::size_t next = 0;   // the candidate of the set whose terms come next
    std::size_t terms = 0;  // not yet added
  };

  double* terms_of(std::size_t l) { return memory_.get() + l * capacity_; }

  void collect(Form& form, std::int32_t i, const double* row, double* terms) {
    const std::size_t later = form.set->candidate.size() - ++form.next;
    const double* c = form.set->c.data() + form.next;
    const double own = c[-1];
    terms += form.terms;
    *terms = rows_.own()[i] * (own * own) + goal_.apv2(i) * own;
    const std::int32_t* candidate = form.set->candidate.data() + form.next;
    if (row != nullptr) {
      products(row, candidate, later, 2.0 * own, c, terms + 1);
    } else {
      for (std::size_t t = 0; t < later; ++t) {
        terms[1 + t] = 2.0 * own * c[t] * rows_.element(candidate[t], i);
      }
    }
    form.terms += 1 + later;
  }

  // Shorter rows of terms are filled up with zeros, which change nothing.
  void add_terms() {
    for (std::size_t l = 0; l < count_; l += kSideBySide) {
      std::size_t longest = 0;
      for (std::size_t s = l; s < l + kSideBySide; ++s) {
        longest = std::max(longest, forms_[s].terms);
      }
      std::array<const double*, kSideBySide> terms;
      for (std::size_t s = 0; s < kSideBySide; ++s) {
        std::fill(terms_of(l + s) + forms_[l + s].terms, terms_of(l + s) + longest, 0.0);
        terms[s] = terms_of(l + s);
        forms_[l + s].terms = 0;
      }
      add_in_order(terms, longest, &sum_[l]);
    }
    enough_ = false;
  }

  const Goal& goal_;
  const RowCache& rows_;
  std::array<Form, kParentSets> forms_;
  std::array<double, kParentSets> sum_;
  std::size_t count_ = 0;
  std::unique_ptr<double[]> memory_;
  std::size_t capacity_ = 0;  // terms that a form may hold
  bool enough_ = false;
};

// Fetches what the sets want of the next row while the terms of one are made: the few elements of a
// row lie too far apart to be foreseen. Rows begin at a multiple of kLine candidates. Rows that the
// cache holds from generation to generation need no fetching.
class Fetcher {
 public:
  Fetcher(const std::vector<std::int32_t>& all, std::int32_t ncands) {
    if (all.size() * static_cast<std::size_t>(ncands) < kHeld) return;
    for (const std::int32_t i : all) {
      const std::int32_t begin = i / kLine * kLine;
      if (lines_.empty() || lines_.back() != begin) lines_.push_back(begin);
    }
  }

  void fetch_from(std::int32_t i, const double* row) {
    if (row == nullptr) return;
    while (first_ < lines_.size() && lines_[first_] + kLine <= i) ++first_;
    for (std::size_t l = first_; l < lines_.size(); ++l) __builtin_prefetch(row + lines_[l]);
  }

 private:
  static constexpr std::int32_t kLine = 64 / sizeof(double);
  static constexpr std::size_t kHeld = 1 << 20;  // elements
  std::vector<std::int32_t> lines_;              // the first candidate of each line of the cache
  std::size_t first_ = 0;
};

}  // namespace

void take_shares(const Uses& uses, double d, ParentShares& parents) {
  std::vector<std::int32_t>& used = parents.candidate;
  used.resize(static_cast<std::size_t>(uses.size()));
  std::size_t n = 0;
  for (std::int32_t i = 1; i <= uses.last(); ++i) {
    used[n] = i;
    n += uses(i) > 0;
  }
  used.resize(n);
  parents.c.resize(n);
  for (std::size_t k = 0; k < n; ++k) parents.c[k] = static_cast<double>(uses(used[k])) * d;
}

void average_relationships(const Goal& goal, Sets sets, RowCache& rows, RowCache::Keep keep,
                           double* result) {
  constexpr std::size_t kBlock = RowCache::kBlock;
  const auto ncands = static_cast<std::int32_t>(goal.apv2.size());
  const Users users(sets, ncands);
  const std::vector<std::int32_t>& all = users.candidate;
  QuadraticForms forms(goal, sets, rows);
  Fetcher fetcher(all, ncands);
  for (std::size_t at = 0; at < all.size(); at += kBlock) {
    const std::size_t n = std::min(kBlock, all.size() - at);
    std::array<const double*, kBlock> row;
    rows.read({&all[at], n}, keep, row.data());
    fetcher.fetch_from(all[at], row[0]);
    for (std::size_t b = 0; b < n; ++b) {
      if (b + 1 < n) fetcher.fetch_from(all[at + b + 1], row[b + 1]);
      forms.add_candidate(all[at + b], users.of(all[at + b]), row[b]);
    }
  }
  for (std::size_t l = 0; l < sets.size(); ++l) result[l] = forms.result(l);
}

}  // namespace qob
