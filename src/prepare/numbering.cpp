#include "prepare/numbering.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <tuple>
#include <utility>
#include <vector>

#include "prepare/parentage.h"

namespace qob {
namespace {

constexpr int kMostRounds = 50;  // for a pedigree of alike animals in a long chain

using Code = std::uint64_t;

// Spreads every bit over the whole (the finaliser of splitmix64: Steele, Lea & Flood 2014).
Code mixed(Code code) {
  code += 0x9E3779B97F4A7C15U;
  code = (code ^ code >> 30U) * 0xBF58476D1CE4E5B9U;
  code = (code ^ code >> 27U) * 0x94D049BB133111EBU;
  return code ^ code >> 31U;
}

Code joined(Code a, Code b) { return mixed(a ^ mixed(b)); }

// By animal its rank among the dates of the herd: the same when all dates are shifted.
Table<std::int32_t> ranks_of(const Table<Date>& births) {
  std::vector<Date> dates(births.begin(), births.end());
  std::sort(dates.begin(), dates.end());
  dates.erase(std::unique(dates.begin(), dates.end()), dates.end());
  Table<std::int32_t> rank(births.size());
  for (std::int64_t i = 1; i <= births.size(); ++i) {
    rank(i) = static_cast<std::int32_t>(std::lower_bound(dates.begin(), dates.end(), births(i)) -
                                        dates.begin());
  }
  return rank;
}

// By animal a code of its own values and of all its ancestors' and descendants', the same in
// whatever order rows stand: colour refinement on the pedigree.
class Codes {
 public:
  explicit Codes(const Herd& herd) : herd_(herd), order_(parents_first(herd)), code_(herd.count()) {
    set_own_values();
    for (std::int64_t before = 0, now = 1; now > before && rounds_++ < kMostRounds;) {
      take_up_ancestors();
      take_up_descendants();
      before = std::exchange(now, count_distinct());
    }
  }
  Code operator()(std::int32_t i) const { return code_(i); }

 private:
  void set_own_values() {
    const Table<std::int32_t> rank = ranks_of(herd_.birth);
    for (std::int32_t i = 1; i <= herd_.count(); ++i) {
      Code ebv;
      std::memcpy(&ebv, &herd_.ebv(i), sizeof ebv);
      const auto value = [](std::int32_t v) { return static_cast<Code>(v); };
      code_(i) =
          joined(joined(value(rank(i)), value(herd_.sex(i))), joined(ebv, value(herd_.matings(i))));
    }
  }

  void take_up_ancestors() {
    for (const std::int32_t i : order_) {
      for (int k = 1; k <= 2; ++k) {
        const std::int32_t p = herd_.parents(k, i);
        code_(i) = joined(code_(i), p == 0 ? 0 : code_(p));
      }
    }
  }

  // A sum does not depend on the order of the offspring.
  void take_up_descendants() {
    Table<Code> sum(herd_.count(), 0);
    for (std::int64_t n = herd_.count(); n >= 1; --n) {
      const std::int32_t i = order_(n);
      code_(i) = joined(code_(i), sum(i));
      for (int k = 1; k <= 2; ++k) {
        const std::int32_t p = herd_.parents(k, i);
        if (p != 0) sum(p) += mixed(code_(i) + static_cast<Code>(k));
      }
    }
  }

  std::int64_t count_distinct() const {
    std::vector<Code> codes(code_.begin(), code_.end());
    std::sort(codes.begin(), codes.end());
    return std::unique(codes.begin(), codes.end()) - codes.begin();
  }

  const Herd& herd_;
  int rounds_ = 0;
  Table<std::int32_t> order_;
  Table<Code> code_;
};

}  // namespace

Table<std::int32_t> number_animals(const Herd& herd) {
  const Codes codes(herd);
  const std::int32_t n = herd.count();
  Table<std::int32_t> animal(n);
  Table<std::int32_t, 0> number(n + 1, 0);
  for (std::int32_t i = 1; i <= n; ++i) animal(i) = i;
  std::sort(animal.begin(), animal.end(), [&](std::int32_t a, std::int32_t b) {
    return std::pair(herd.step(a), a) < std::pair(herd.step(b), b);
  });
  const auto key = [&](std::int32_t i) {
    return std::tuple(herd.birth(i), number(herd.parents(1, i)), number(herd.parents(2, i)),
                      herd.sex(i), codes(i), i);
  };
  for (auto begin = animal.begin(); begin != animal.end();) {
    const auto end = std::find_if(
        begin, animal.end(), [&](std::int32_t i) { return herd.step(i) != herd.step(*begin); });
    std::sort(begin, end, [&](std::int32_t a, std::int32_t b) { return key(a) < key(b); });
    for (; begin != end; ++begin)
      number(*begin) = static_cast<std::int32_t>(begin - animal.begin()) + 1;
  }
  return animal;
}

}  // namespace qob
