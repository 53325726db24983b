#include "analysis/kernels/inbreeding_walks.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <span>
#include <tuple>
#include <vector>

#include "analysis/kernels/ancestry.h"
#include "core/lanes.h"

namespace qob {
namespace {

using Ids = std::vector<std::int32_t>;
using Vector = Lanes<double, 8>;
constexpr std::size_t kVectors = 2;
constexpr std::size_t kLanes = kVectors * 8;
constexpr std::size_t kCouples = 8 * kLanes;  // that share a route

struct alignas(sizeof(Vector)) Row {
  Vector part[kVectors];
  double& operator[](std::size_t lane) { return reinterpret_cast<double*>(part)[lane]; }
};

// An ancestor: the rows that hold its shares and take those of its parents, 0 = unknown, and its
// Mendelian sampling variance.
struct Step {
  std::int32_t row, sire, dam;
  double d;
};

// Adds up L^2 d in acc. Leaves all rows but row 0 at 0. Which parent is first does not matter.
QOB_VECTOR_CLONES void walk(const std::vector<Step>& route, std::vector<Row>& rows, Row& acc) {
  Row sum = acc;
  Row* const row = rows.data();
  for (const Step& step : route) {
    for (std::size_t g = 0; g < kVectors; ++g) {
      const Vector share = row[step.row].part[g];
      const Vector half = 0.5 * share;
      row[step.row].part[g] = Vector{};
      row[step.sire].part[g] += half;
      row[step.dam].part[g] += half;
      sum.part[g] += share * share * step.d;
    }
  }
  acc = sum;
}

struct Couple {
  std::int32_t sire, dam;                       // as parents
  Ids::const_iterator first_child, past_child;  // their offspring
};

double variance(const InbreedingWork& work, std::int32_t sire, std::int32_t dam) {
  return 0.5 - 0.25 * (work.parent_f(sire) + work.parent_f(dam));
}

// Walks along one route after another; each worker has its own.
class Walks {
 public:
  // d: Mendelian sampling variances, by parent.
  Walks(InbreedingWork& work, const Table<double>& d)
      : work_(work), d_(d), ancestry_(work.parents.newped) {}

  // The coefficients of the offspring of these couples, of which all ancestors' are known: at most
  // kCouples.
  void compute(std::span<const Couple> couples) {
    lay_out_route(couples);
    for (std::size_t at = 0; at < couples.size(); at += kLanes) {
      walk_with(couples.subspan(at, std::min(kLanes, couples.size() - at)));
    }
  }

 private:
  void lay_out_route(std::span<const Couple> couples) {
    for (const Couple& couple : couples) {
      ancestry_.add(couple.sire);
      ancestry_.add(couple.dam);
    }
    ancestry_.close();
    row_of_.assign(std::int64_t{ancestry_.size()} + 1, 0);
    free_.clear();
    rows_ = 0;
    for (const Couple& couple : couples) {
      for (const std::int32_t parent : {couple.sire, couple.dam})
        take_row(ancestry_.number(parent));
    }
    route_.clear();
    for (std::int32_t k = ancestry_.size(); k >= 1; --k) {
      const auto [sire, dam] = ancestry_.parents()(k);
      const std::int32_t sire_row = take_row(sire);
      route_.push_back({row_of_(k), sire_row, take_row(dam), d_(ancestry_.animal(k))});
      free_.push_back(row_of_(k));
    }
    row_.assign(static_cast<std::size_t>(rows_) + 1, Row{});
  }

  // The row of an ancestor, its first time a free one.
  std::int32_t take_row(std::int32_t number) {
    std::int32_t& row = row_of_(number);
    if (row > 0 || number == 0) return row;
    if (free_.empty()) return row = ++rows_;
    row = free_.back();
    free_.pop_back();
    return row;
  }

  void walk_with(std::span<const Couple> couples) {
    Row acc{};
    for (std::size_t lane = 0; lane < couples.size(); ++lane) {
      const auto [sire, dam, first_child, past_child] = couples[lane];
      for (const std::int32_t parent : {sire, dam}) row(parent)[lane] += 0.5;
      acc[lane] = -1.0 + variance(work_, sire, dam);
    }
    walk(route_, row_, acc);
    for (std::size_t lane = 0; lane < couples.size(); ++lane) {
      const Couple& c = couples[lane];
      std::for_each(c.first_child, c.past_child, [&](std::int32_t i) { work_.set(i, acc[lane]); });
    }
  }

  // Where a member of a couple has its shares at the start of a walk.
  Row& row(std::int32_t parent) {
    return row_[static_cast<std::size_t>(row_of_(ancestry_.number(parent)))];
  }

  InbreedingWork& work_;
  const Table<double>& d_;
  Ancestry ancestry_;
  std::vector<Step> route_;
  std::vector<Row> row_;           // row 0 takes the shares of unknown parents
  Table<std::int32_t, 0> row_of_;  // by number
  Ids free_;
  std::int32_t rows_ = 0;
};

// Those of animals of one level, sorted by sire and dam, from `first` to `past`.
std::vector<Couple> couples_of(const InbreedingWork& work, Ids::const_iterator first,
                               Ids::const_iterator past) {
  std::vector<Couple> couples;
  while (first != past) {
    const auto other = std::find_if(first, past, [&](std::int32_t i) {
      return work.newped(1, i) != work.newped(1, *first) ||
             work.newped(2, i) != work.newped(2, *first);
    });
    couples.push_back({work.parent(1, *first), work.parent(2, *first), first, other});
    first = other;
  }
  return couples;
}

}  // namespace

void inbreeding_by_walks(InbreedingWork& work, std::int32_t from, Parallel& parallel,
                         const std::function<void(std::int32_t level)>& finished) {
  Ids animals;
  for (std::int32_t i = 1; i <= work.newped.columns(); ++i) {
    if (work.level(i) > from && work.both_parents_known(i)) animals.push_back(i);
  }
  if (animals.empty()) return;
  std::sort(animals.begin(), animals.end(), [&](std::int32_t a, std::int32_t b) {
    return std::tuple(work.level(a), work.newped(1, a), work.newped(2, a)) <
           std::tuple(work.level(b), work.newped(1, b), work.newped(2, b));
  });
  const auto level_of_parent = [&](std::int32_t p) { return work.level(work.parents.animal(p)); };
  Ids parents;
  for (std::int32_t p = 1; p <= work.parents.count(); ++p) parents.push_back(p);
  std::sort(parents.begin(), parents.end(), [&](std::int32_t a, std::int32_t b) {
    return level_of_parent(a) < level_of_parent(b);
  });
  Table<double> d(work.parents.count(), 0.0);
  PerWorker<Walks> walks(parallel, [&] { return std::make_unique<Walks>(work, d); });
  auto parent = parents.begin();
  for (auto first = animals.cbegin(); first != animals.cend();) {
    const std::int32_t level = work.level(*first);
    for (; parent != parents.end() && level_of_parent(*parent) < level; ++parent) {
      d(*parent) = variance(work, work.parents.newped(1, *parent), work.parents.newped(2, *parent));
    }
    const auto past =
        std::find_if(first, animals.cend(), [&](std::int32_t i) { return work.level(i) > level; });
    const std::vector<Couple> couples = couples_of(work, first, past);
    const std::int64_t most = std::ssize(couples) * work.parents.count() / 4;
    parallel.for_each_block(
        std::span<const Couple>(couples), kCouples, most,
        [&](std::span<const Couple> block, int worker) { walks(worker).compute(block); });
    finished(level);
    first = past;
  }
}

}  // namespace qob
