#include "ocs/age_tables.h"

#include <algorithm>
#include <string>

#include "core/numbers.h"

namespace qob {
namespace {

// More age classes than any population has: birth times of different kinds were mixed, dates and
// an inserted parent's for example. Every class is a row of the tables, which are not to outgrow
// the data. An inserted parent beside years gives about 12,000.
constexpr std::int64_t kMostAgeClasses = 25000;
constexpr std::int64_t kMostByAnimal = 10;

// Columns of real counts by age class.
struct AgeColumns {
  explicit AgeColumns(std::int64_t nage) : males(nage, 0.0), females(nage, 0.0), all(nage, 0.0) {}
  Table<double> males;
  Table<double> females;
  Table<double> all;
};

void write_candidates(Unit& unit, const Candidates& candidates, const AgeColumns& count) {
  const double males = static_cast<double>(single(candidates.nmcands));
  const double females = static_cast<double>(single(candidates.nfcands));
  write_list(unit, "Age distribution of candidates");
  write(unit, "(2A6,4A10)", "Age", "Year", "N males", "N females", "% males", "% females");
  for (std::int64_t a = 1; a <= count.males.size(); ++a) {
    write(unit, "(2I6,2F10.0,2F10.1)", a, candidates.birth_time - a, count.males(a),
          count.females(a), 100.0 * count.males(a) / males, 100.0 * count.females(a) / females);
  }
  write_list(unit);
}

void write_parents(Unit& unit, const AgeColumns& count) {
  write_list(unit, "Age distribution of last generation");
  write(unit, "(A6,3A10)", "Age", "N males", "N females", "All");
  for (std::int64_t a = 1; a <= count.all.size(); ++a) {
    write(unit, "(I6,3F10.0)", a, count.males(a), count.females(a), count.all(a));
  }
  write_list(unit, std::string(64, '-'));
}

void write_parent_shares(Unit& unit, const AgeColumns& share) {
  write_list(unit, "Age distribution of last generation");
  write(unit, "(A6,3A10)", "Age", "% males", "% females", "All");
  for (std::int64_t a = 1; a <= share.all.size(); ++a) {
    write(unit, "(I6,3F10.1)", a, share.males(a) * 100.0, share.females(a) * 100.0,
          share.all(a) * 100.0);
  }
  write_list(unit, "OBS: This age distribution is used for optimising future contributions");
}

// A candidate so old that its birth time counts as missing may be older than every class.
AgeColumns candidates_by_age(const Candidates& candidates, std::int64_t nage) {
  AgeColumns count(nage);
  for (std::int32_t k = 1; k <= candidates.ncands; ++k) {
    const std::int64_t a = candidates.age(k);
    if (a <= nage) ++(candidates.is_male(k) ? count.males(a) : count.females(a));
  }
  return count;
}

AgeColumns parents_by_age(const Pedigree& pedigree, std::int64_t last, std::int64_t nage) {
  AgeColumns count(nage);
  for (std::int32_t i = 1; i <= pedigree.maxid; ++i) {
    if (pedigree.btime(i) != last) continue;
    for (int k = 1; k <= 2; ++k) {
      const std::int32_t parent = pedigree.newped(k, i);
      if (parent == 0) continue;
      const std::int64_t a = last - pedigree.btime(parent);
      ++(k == 1 ? count.males(a) : count.females(a));
      ++count.all(a);
    }
  }
  return count;
}

// Divides the column by its sum; a column without a parent gets all of it in class 1.
void normalise(Table<double>& column) {
  double sum = 0.0;
  for (const double count : column) sum += count;
  if (sum == 0.0) {
    column(1) = 1.0;
    return;
  }
  for (double& count : column) count /= sum;
}

double mean_age(const Table<double>& count) {
  double parents = 0.0;
  double ages = 0.0;
  for (std::int64_t a = 1; a <= count.size(); ++a) {
    parents += count(a);
    ages += count(a) * static_cast<double>(a);
  }
  return parents > 0.0 ? ages / parents : 1.0;
}

}  // namespace

std::int64_t count_age_classes(const Pedigree& pedigree, std::int64_t next) {
  std::int64_t nage = 1;
  for (std::int32_t i = 1; i <= pedigree.maxid; ++i) {
    const std::int32_t btime = pedigree.btime(i);
    if (pedigree.matings(i) > 0 && birth_time_is_known(btime)) nage = std::max(nage, next - btime);
    if (btime != next - 1) continue;
    for (int k = 1; k <= 2; ++k) {
      const std::int32_t parent = pedigree.newped(k, i);
      if (parent > 0) nage = std::max(nage, next - 1 - pedigree.btime(parent));
    }
  }
  return nage;
}

AgeStructure age_structure(const Pedigree& pedigree, const Candidates& candidates,
                           std::int64_t nage, Units& units) {
  const std::int64_t most = std::max(kMostAgeClasses, kMostByAnimal * pedigree.maxid);
  if (nage > most) {
    handle_error(units, "ERROR in data : Birth times give too many age classes :", nage,
                 " at most :", most);
  }
  AgeStructure ages;
  ages.nage = nage;
  ages.weight.assign(nage, 1.0);
  const AgeColumns count = candidates_by_age(candidates, nage);
  write_candidates(units.log, candidates, count);
  write_candidates(units.summary, candidates, count);

  AgeColumns parents = parents_by_age(pedigree, candidates.birth_time - std::int64_t{1}, nage);
  ages.last_genint = mean_age(parents.all);
  write_parents(units.log, parents);
  write_parents(units.summary, parents);
  normalise(parents.males);
  normalise(parents.females);
  normalise(parents.all);
  double younger = 0.0;
  for (std::int64_t a = 2; a <= nage; ++a) {
    younger += parents.all(a - 1);
    ages.weight(a) = 1.0 - younger;
  }
  write_parent_shares(units.log, parents);
  write_parent_shares(units.summary, parents);
  return ages;
}

}  // namespace qob
