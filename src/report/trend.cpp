#include "report/trend.h"

#include <algorithm>
#include <numeric>
#include <string>

#include "analysis/cohorts.h"
#include "analysis/group_coancestry.h"

namespace qob {
namespace {

// Sums up the animals of one birth time after those of the other.
class Rows {
 public:
  Rows(const Pedigree& pedigree, const AnimalStatistics& statistics)
      : pedigree_(pedigree), statistics_(statistics), last_row_(2, pedigree.maxid, -1) {}

  void add(std::int32_t i) {
    if (rows.empty() || rows.back().birth_time != pedigree_.btime(i)) start(pedigree_.btime(i));
    TrendRow& row = rows.back();
    const double f = pedigree_.f(i);
    ++row.animals;
    row.males += pedigree_.sex(i) == 1;
    row.females += pedigree_.sex(i) == 2;
    row.inbred += f > 0.0;
    row.mean_f += f;
    row.max_f = row.animals == 1 ? f : std::max(row.max_f, f);
    row.completeness += statistics_.pcin(i);
    row.generations += statistics_.gen(i) - 1.0;
    row.sires += add_parent(1, i);
    row.dams += add_parent(2, i);
  }

  // Sums become means. average: coancestry of the animals, each with itself included.
  void close(TrendRow& row, double average) const {
    const auto n = static_cast<double>(row.animals);
    if (row.animals > 1) {
      row.coancestry = (n * n * average - 0.5 * (n + row.mean_f)) / (n * (n - 1.0));
    }
    row.mean_f /= n;
    row.completeness /= n;
    row.generations /= n;
    const Ages& ages = ages_[static_cast<std::size_t>(&row - rows.data())];
    row.interval = ages.sum / static_cast<double>(ages.n);
  }

  std::vector<TrendRow> rows;

 private:
  struct Ages {
    double sum = 0.0;
    std::int64_t n = 0;
  };

  void start(std::int32_t birth_time) {
    TrendRow row;
    row.birth_time = birth_time;
    row.birth = std::to_string(birth_time);
    row.mean_f = row.completeness = row.generations = 0.0;
    rows.push_back(row);
    ages_.emplace_back();
  }

  // Returns whether the parent is new among those of the row.
  bool add_parent(int which, std::int32_t i) {
    const std::int32_t parent = pedigree_.newped(which, i);
    if (parent == 0) return false;
    if (birth_time_is_known(pedigree_.btime(parent))) {
      ages_.back().sum += static_cast<double>(pedigree_.btime(i)) - pedigree_.btime(parent);
      ++ages_.back().n;
    }
    const auto row = static_cast<std::int32_t>(rows.size());
    return std::exchange(last_row_(which, parent), row) != row;
  }

  const Pedigree& pedigree_;
  const AnimalStatistics& statistics_;
  std::vector<Ages> ages_;         // of known parents, by row
  Table2<std::int32_t> last_row_;  // that an animal had offspring in, as sire, as dam
};

std::vector<std::int32_t> by_birth_time(const Pedigree& pedigree) {
  std::vector<std::int32_t> animals(static_cast<std::size_t>(pedigree.maxid));
  std::iota(animals.begin(), animals.end(), 1);
  std::erase_if(animals, [&](auto i) { return !birth_time_is_known(pedigree.btime(i)); });
  std::stable_sort(animals.begin(), animals.end(),
                   [&](auto i, auto j) { return pedigree.btime(i) < pedigree.btime(j); });
  return animals;
}

}  // namespace

std::vector<TrendRow> trend_of(const Pedigree& pedigree, const AnimalStatistics& statistics) {
  Rows work(pedigree, statistics);
  for (const std::int32_t i : by_birth_time(pedigree)) work.add(i);
  const Cohorts cohorts = group_by_birth_time(pedigree.btime);
  Parallel one;
  const Table<GroupCoancestry> coancestry =
      group_coancestries(pedigree.newped, pedigree.f, cohorts, one);
  for (TrendRow& row : work.rows) {
    work.close(row, coancestry(cohorts.find(row.birth_time)).average);
  }
  return work.rows;
}

}  // namespace qob
