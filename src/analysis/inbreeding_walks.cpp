#include "analysis/inbreeding_walks.h"

#include <algorithm>
#include <tuple>
#include <vector>

#include "analysis/ancestry.h"
#include "core/lanes.h"

namespace qob {
namespace {

using Ids = std::vector<std::int32_t>;
constexpr std::size_t kLanes = 8;
using Row = Lanes<double, kLanes>;

// Visits the members of `set` and their ancestors, from `top` down, adding up acc; the rows and
// the set are left empty. A share goes half to each parent; which of them first does not matter.
QOB_VECTOR_CLONES void walk(const Table2<std::int32_t>& newped, const Table<double>& d,
                            std::int32_t top, DescendingSet& set, Table<Row, 0>& l, Row& acc) {
  Row sum = acc;
  set.descend(top, [&](std::int32_t j) {
    const Row share = l(j);
    const Row half = 0.5 * share;
    const std::int32_t sire = newped(1, j);
    const std::int32_t dam = newped(2, j);
    l(sire) += half;
    l(dam) += half;
    set.insert(sire);
    set.insert(dam);
    sum += share * share * d(j);
    l(j) = Row{};
  });
  acc = sum;
  set.clear(top);
}

class Walks {
 public:
  explicit Walks(InbreedingWork& work)
      : work_(work),
        d_(work.parents.count(), 0.0),
        l_(std::int64_t{work.parents.count()} + 1, Row{}),
        set_(work.parents.count()) {}

  // The coefficients of `animals`, sorted by sire and dam, who are no ancestors of one another.
  void compute(const Ids& animals) {
    for (auto first = animals.begin(); first != animals.end();) {
      first = compute_batch(first, animals.end());
    }
  }

  // Enters a parent whose parents' coefficients are known.
  void enter(std::int32_t parent) {
    d_(parent) = variance(work_.parents.newped(1, parent), work_.parents.newped(2, parent));
  }

 private:
  using At = Ids::const_iterator;

  double variance(std::int32_t sire, std::int32_t dam) const {
    return 0.5 - 0.25 * (work_.parent_f(sire) + work_.parent_f(dam));
  }

  // Takes couples until the lanes are full. Full sibs share a lane.
  At compute_batch(At first, At end) {
    std::size_t lane = 0;
    std::int32_t top = 0;
    Row acc{};
    At past = first;
    for (; past != end; ++past) {
      if (past != first && !full_sibs(past[-1], *past)) ++lane;
      if (lane == kLanes) break;
      if (past == first || !full_sibs(past[-1], *past)) {
        acc[lane] = start(*past, lane);
        top = std::max({top, work_.parent(1, *past), work_.parent(2, *past)});
      }
    }
    walk(work_.parents.newped, d_, top, set_, l_, acc);
    lane = 0;
    for (At at = first; at != past; ++at) {
      if (at != first && !full_sibs(at[-1], *at)) ++lane;
      work_.set(*at, acc[lane]);
    }
    return past;
  }

  bool full_sibs(std::int32_t i, std::int32_t j) const {
    return work_.newped(1, i) == work_.newped(1, j) && work_.newped(2, i) == work_.newped(2, j);
  }

  // Gives animal i's halves to its parents; returns what it adds itself, -1 included.
  double start(std::int32_t i, std::size_t lane) {
    const std::int32_t sire = work_.parent(1, i);
    const std::int32_t dam = work_.parent(2, i);
    for (const std::int32_t parent : {sire, dam}) {
      l_(parent)[lane] += 0.5;
      set_.insert(parent);
    }
    return -1.0 + variance(sire, dam);
  }

  InbreedingWork& work_;
  Table<double> d_;   // Mendelian sampling variance, by parent
  Table<Row, 0> l_;   // the couples' shares, by parent; 0 takes those of unknown parents
  DescendingSet set_;
};

}  // namespace

void inbreeding_by_walks(InbreedingWork& work, std::int32_t from,
                         const std::function<void(std::int32_t level)>& finished) {
  Ids animals;
  for (std::int32_t i = 1; i <= work.newped.columns(); ++i) {
    if (work.level(i) > from && work.both_parents_known(i)) animals.push_back(i);
  }
  if (animals.empty()) return;
  Ids parents(static_cast<std::size_t>(work.parents.count()));
  for (std::int32_t p = 1; p <= work.parents.count(); ++p) parents[static_cast<std::size_t>(p - 1)] = p;
  const auto level_of_parent = [&](std::int32_t p) { return work.level(work.parents.animal(p)); };
  std::sort(parents.begin(), parents.end(), [&](std::int32_t a, std::int32_t b) {
    return level_of_parent(a) < level_of_parent(b);
  });
  std::sort(animals.begin(), animals.end(), [&](std::int32_t a, std::int32_t b) {
    return std::tuple(work.level(a), work.newped(1, a), work.newped(2, a), a) <
           std::tuple(work.level(b), work.newped(1, b), work.newped(2, b), b);
  });
  Walks walks(work);
  auto parent = parents.begin();
  for (auto first = animals.begin(); first != animals.end();) {
    const std::int32_t level = work.level(*first);
    while (parent != parents.end() && level_of_parent(*parent) < level) walks.enter(*parent++);
    const auto past = std::find_if(first, animals.end(),
                                   [&](std::int32_t i) { return work.level(i) > level; });
    walks.compute({first, past});
    finished(level);
    first = past;
  }
}

}  // namespace qob
