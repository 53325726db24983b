#include "ocs/kernels/quadratic_forms.h"

#include <algorithm>
#include <array>
#include <memory>

#include "core/lanes.h"

namespace qob {
namespace {

// Most sums that are advanced side by side: one alone would wait for each addition.
constexpr std::size_t kSideBySide = 8;
// Terms of a set that are collected before they are added, at least.
constexpr std::size_t kEnough = 4096;
// What a term takes, about.
constexpr std::int64_t kNanosecondsATerm = 2;

using Sets = std::span<const ParentShares* const>;

// terms[t] = (twice * c[t]) * row[later[t]]: what a candidate with these relationships, and twice
// its contribution, adds together with the later candidates of its set.
template <class Element>
QOB_VECTOR_CLONES void products(const Element* __restrict row, const std::int32_t* __restrict later,
                                std::size_t n, double twice, const double* __restrict c,
                                double* __restrict terms) {
  for (std::size_t t = 0; t < n; ++t) terms[t] = twice * c[t] * row[later[t]];
}

// The unit of integers goes with the contribution: a power of two, by which nothing is rounded.
void products(const KeptRow& row, const std::int32_t* later, std::size_t n, double twice,
              const double* c, double* terms) {
  if (row.real != nullptr) return products(row.real, later, n, twice, c, terms);
  products(row.fixed, later, n, KeptRow::kUnit * twice, c, terms);
}

// sum[s] += terms[s][0], += terms[s][1], ... one after another, for each s < kSums.
template <std::size_t kSums>
void add_in_order(const double* const* terms, std::size_t n, double* sum) {
  std::array<const double*, kSums> term;
  std::array<double, kSums> s;
  std::copy_n(terms, kSums, term.begin());
  std::copy_n(sum, kSums, s.begin());
  for (std::size_t t = 0; t < n; ++t) {
    for (std::size_t l = 0; l < kSums; ++l) s[l] += term[l][t];
  }
  std::copy_n(s.begin(), kSums, sum);
}

using AddInOrder = void (*)(const double* const* terms, std::size_t n, double* sum);
constexpr std::array<AddInOrder, kSideBySide> kAddInOrder = {
    add_in_order<1>, add_in_order<2>, add_in_order<3>, add_in_order<4>,
    add_in_order<5>, add_in_order<6>, add_in_order<7>, add_in_order<8>};

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
    memory_.reset(new double[capacity_ * count_]);
  }

  // Candidates come in ascending order, each with the sets that use it; row[k] is its relationship
  // with candidate k. Without a row the elements are fetched one by one.
  void add_candidate(std::int32_t i, std::span<const std::size_t> users, const KeptRow& row) {
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

  void collect(Form& form, std::int32_t i, const KeptRow& row, double* terms) {
    const std::size_t later = form.set->candidate.size() - ++form.next;
    const double* c = form.set->c.data() + form.next;
    const double own = c[-1];
    terms += form.terms;
    *terms = rows_.own()[i] * (own * own) + goal_.apv2(i) * own;
    const std::int32_t* candidate = form.set->candidate.data() + form.next;
    if (row.is_kept()) {
      products(row, candidate, later, 2.0 * own, c, terms + 1);
    } else {
      for (std::size_t t = 0; t < later; ++t) {
        terms[1 + t] = 2.0 * own * c[t] * rows_.element(candidate[t], i);
      }
    }
    form.terms += 1 + later;
  }

  // The sets in groups of about the same size.
  void add_terms() {
    const std::size_t groups = (count_ + kSideBySide - 1) / kSideBySide;
    for (std::size_t g = 0; g < groups; ++g) {
      add_terms_of(g * count_ / groups, (g + 1) * count_ / groups);
    }
    enough_ = false;
  }

  // Shorter rows of terms are filled up with zeros, which change nothing.
  void add_terms_of(std::size_t first, std::size_t past) {
    std::size_t longest = 0;
    for (std::size_t l = first; l < past; ++l) longest = std::max(longest, forms_[l].terms);
    std::array<const double*, kSideBySide> terms;
    for (std::size_t l = first; l < past; ++l) {
      std::fill(terms_of(l) + forms_[l].terms, terms_of(l) + longest, 0.0);
      terms[l - first] = terms_of(l);
      forms_[l].terms = 0;
    }
    kAddInOrder[past - first - 1](terms.data(), longest, &sum_[first]);
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

void sum_up(const Goal& goal, Sets sets, const RowCache& rows, double* result) {
  const Users users(sets, static_cast<std::int32_t>(goal.apv2.size()));
  QuadraticForms forms(goal, sets, rows);
  for (const std::int32_t i : users.candidate) forms.add_candidate(i, users.of(i), rows.find(i));
  for (std::size_t l = 0; l < sets.size(); ++l) result[l] = forms.result(l);
}

// Has the rows made that are worth it, and returns how many terms there are.
std::int64_t prepare(Sets sets, std::int32_t ncands, RowCache& rows) {
  std::vector<std::size_t> elements(static_cast<std::size_t>(ncands) + 1, 0);
  std::int64_t terms = 0;
  for (const ParentShares* set : sets) {
    std::size_t left = set->candidate.size();
    for (const std::int32_t i : set->candidate) {
      terms += static_cast<std::int64_t>(left);
      elements[static_cast<std::size_t>(i)] += left--;
    }
  }
  std::vector<RowCache::Want> wanted;
  for (std::int32_t i = 0; i <= ncands; ++i) {
    const std::size_t count = elements[static_cast<std::size_t>(i)];
    if (count > 0) wanted.push_back({i, count});
  }
  rows.prepare(wanted);
  return terms;
}

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

void average_relationships(const Goal& goal, Sets sets, RowCache& rows, double* result) {
  if (sets.empty()) return;
  const std::int64_t terms = prepare(sets, static_cast<std::int32_t>(goal.apv2.size()), rows);
  const std::int64_t nanoseconds = terms * kNanosecondsATerm;
  const auto threads = static_cast<std::size_t>(rows.parallel().threads_for(nanoseconds));
  const std::size_t share = (sets.size() + threads - 1) / threads;
  rows.parallel().for_each_block(sets, share, nanoseconds, [&](Sets some, int) {
    sum_up(goal, some, rows, result + (some.data() - sets.data()));
  });
}

double average_relationship(const Goal& goal, const ParentShares& parents, RowCache& rows) {
  const ParentShares* const set = &parents;
  const std::size_t only = 0;
  const std::span<const std::int32_t> all = parents.candidate;
  QuadraticForms form(goal, {&set, 1}, rows);
  for (std::size_t at = 0; at < all.size(); at += RowCache::kBlock) {
    const auto block = all.subspan(at, std::min(RowCache::kBlock, all.size() - at));
    std::array<const double*, RowCache::kBlock> row;
    rows.read(block, RowCache::Keep::kNothing, row.data());
    for (std::size_t b = 0; b < block.size(); ++b) {
      form.add_candidate(block[b], {&only, 1}, {row[b], nullptr});
    }
  }
  return form.result(0);
}

}  // namespace qob
