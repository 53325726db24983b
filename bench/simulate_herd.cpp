// Makes a herd to try and to measure the program with: `simulate_herd PREFIX` writes the pedigree
// PREFIX.dat and the parameter file PREFIX.prm; `qob PREFIX.prm` then runs at once.
//
// Every year the parents are the best by breeding value as far as they are of breeding age, some of
// them kept from the year before. Merit is additive: the parents' mean and a Mendelian sampling
// term of half the base variance. The breeding value seen is the merit with noise. The same options
// give the same bytes on every machine: own reductions of a standard generator, no library
// distribution.
#include <algorithm>
#include <cstdint>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "herd_options.h"

namespace {

class Draws {
 public:
  explicit Draws(std::int64_t seed) : generator_(static_cast<std::uint64_t>(seed)) {}

  // An integer from 0 to n - 1; n is below 2^32.
  std::size_t below(std::size_t n) {
    return static_cast<std::size_t>((generator_() >> 32) * n >> 32);
  }
  bool chance(double probability) {
    return static_cast<double>(generator_() >> 11) * 0x1p-53 < probability;
  }
  // Mean 0, variance 1, nearly normal: the sum of twelve uniform deviates of 16 bits.
  double normal() {
    std::uint64_t sum = 6;  // each deviate lies half a step above its bits
    for (int k = 0; k < 3; ++k) {
      for (std::uint64_t bits = generator_(); bits != 0; bits >>= 16) sum += bits & 0xffff;
    }
    return static_cast<double>(sum) * 0x1p-16 - 6.0;
  }

 private:
  std::mt19937_64 generator_;
};

using Number = std::uint32_t;  // an animal, from 1 in order of birth; 0: none

struct Animal {
  double merit = 0.0;
  double ebv = 0.0;
  Number sire = 0, dam = 0;
  std::int32_t matings = 0;
  bool male = false;
};

// The parents of one sex in the current year.
struct Breeders {
  bool male;
  std::int64_t youngest, oldest;
  double replacement;
  std::vector<Number> numbers{};
};

class Herd {
 public:
  explicit Herd(const Options& options);

  void choose_candidates();
  void write_data();

 private:
  std::size_t births(std::int64_t year) const;
  void renew(Breeders& breeders, std::int64_t year, std::size_t count);
  void bear(std::int64_t year);
  Animal offspring(Number sire, Number dam);
  void append(std::string& lines, Number number, std::int64_t year);
  void keep_best(std::vector<Number>& numbers, std::size_t count) const;
  std::vector<Number> born(std::int64_t from, std::int64_t to, bool male) const;

  const Options& o_;
  Draws draws_;
  std::vector<Animal> animals_{1};
  std::vector<Number> first_{1, 1};  // by year: its first animal, and one past its last
  std::vector<Number> identifiers_;
  Breeders sires_, dams_;
};

Herd::Herd(const Options& options)
    : o_(options),
      draws_(options.seed),
      sires_{true, options.sire_youngest, options.sire_oldest, options.sire_replacement},
      dams_{false, options.dam_youngest, options.dam_oldest, options.dam_replacement} {
  animals_.reserve(static_cast<std::size_t>(o_.animals) + 1);
  for (std::int64_t year = 1; year <= o_.years; ++year) {
    bear(year);
    first_.push_back(static_cast<Number>(animals_.size()));
  }
}

std::size_t Herd::births(std::int64_t year) const {
  if (o_.last_year > 0 && year == o_.years) return static_cast<std::size_t>(o_.last_year);
  const std::int64_t years = o_.years - (o_.last_year > 0 ? 1 : 0);
  const std::int64_t animals = o_.animals - o_.last_year;
  return static_cast<std::size_t>(animals * year / years - animals * (year - 1) / years);
}

// The best by breeding value, best first; the older of equals.
void Herd::keep_best(std::vector<Number>& numbers, std::size_t count) const {
  const auto better = [&](Number a, Number b) {
    const double difference = animals_[a].ebv - animals_[b].ebv;
    return difference != 0.0 ? difference > 0.0 : a < b;
  };
  count = std::min(count, numbers.size());
  const auto middle = numbers.begin() + static_cast<std::ptrdiff_t>(count);
  std::partial_sort(numbers.begin(), middle, numbers.end(), better);
  numbers.resize(count);
}

std::vector<Number> Herd::born(std::int64_t from, std::int64_t to, bool male) const {
  std::vector<Number> numbers;
  const auto year = [&](std::int64_t y) {
    return static_cast<std::size_t>(std::max<std::int64_t>(y, 0));
  };
  for (Number i = first_[year(from)]; i < first_[year(to) + 1]; ++i) {
    if (animals_[i].male == male) numbers.push_back(i);
  }
  return numbers;
}

// Keeps the best of last year's breeders as far as age and replacement allow; the best of the
// others of breeding age take the empty places.
void Herd::renew(Breeders& breeders, std::int64_t year, std::size_t count) {
  std::vector<Number>& kept = breeders.numbers;
  const Number oldest =
      first_[static_cast<std::size_t>(std::max<std::int64_t>(year - breeders.oldest, 0))];
  std::erase_if(kept, [&](Number i) { return i < oldest; });
  keep_best(kept,
            static_cast<std::size_t>(static_cast<double>(count) * (1.0 - breeders.replacement)));
  std::vector<Number> fresh = born(year - breeders.oldest, year - breeders.youngest, breeders.male);
  std::vector<Number> sorted = kept;
  std::sort(sorted.begin(), sorted.end());
  std::erase_if(fresh,
                [&](Number i) { return std::binary_search(sorted.begin(), sorted.end(), i); });
  keep_best(fresh, count - kept.size());
  kept.insert(kept.end(), fresh.begin(), fresh.end());
}

Animal Herd::offspring(Number sire, Number dam) {
  Animal a;
  const double mean = 0.5 * (animals_[sire].merit + animals_[dam].merit);
  constexpr double kRootOfHalf = 0.70710678118654752;
  a.merit = mean + (sire == 0 ? 1.0 : kRootOfHalf) * draws_.normal();
  a.ebv = a.merit + o_.noise * draws_.normal();
  a.male = draws_.chance(0.5);
  return a;
}

// A year's litters: every dam has one before any has a second, each from a sire drawn. Founders as
// long as there is no parent of one sex.
void Herd::bear(std::int64_t year) {
  const std::size_t count = births(year);
  const auto litter = static_cast<std::size_t>(o_.litter);
  const std::size_t litters = (count + litter - 1) / litter;
  renew(sires_, year, static_cast<std::size_t>(o_.sires));
  renew(dams_, year, o_.dams > 0 ? static_cast<std::size_t>(o_.dams) : litters);
  const bool founders = sires_.numbers.empty() || dams_.numbers.empty();
  Number sire = 0, dam = 0;
  bool sire_known = false, dam_known = false;
  for (std::size_t k = 0; k < count; ++k) {
    if (!founders && k % litter == 0) {
      dam = dams_.numbers[k / litter % dams_.numbers.size()];
      sire = sires_.numbers[draws_.below(sires_.numbers.size())];
      sire_known = !draws_.chance(o_.unknown);
      dam_known = !draws_.chance(o_.unknown);
    }
    animals_.push_back(offspring(sire, dam));
    animals_.back().sire = sire_known ? sire : 0;
    animals_.back().dam = dam_known ? dam : 0;
  }
}

void Herd::choose_candidates() {
  const std::int64_t males = male_candidates(o_);
  const std::int64_t begin = o_.years - o_.candidate_years;
  for (const bool male : {true, false}) {
    const std::int64_t all = male ? males : o_.candidates - males;
    for (std::int64_t k = 1; k <= o_.candidate_years; ++k) {
      const std::int64_t share = all * k / o_.candidate_years - all * (k - 1) / o_.candidate_years;
      std::vector<Number> numbers = born(begin + k, begin + k, male);
      keep_best(numbers, static_cast<std::size_t>(share));
      if (static_cast<std::int64_t>(numbers.size()) < share) {
        refuse("--candidates: too few animals of a sex in one of --candidate-years");
      }
      for (const Number i : numbers) {
        animals_[i].matings = static_cast<std::int32_t>(male ? o_.male_matings : o_.female_matings);
      }
    }
  }
}

void Herd::append(std::string& lines, Number number, std::int64_t year) {
  const Animal& a = animals_[number];
  std::string ebv;
  qob::edit_fixed(ebv, a.ebv, 24, 4);
  lines += text(identifiers_[number]) + ' ' + text(identifiers_[a.sire]) + ' ' +
           text(identifiers_[a.dam]) + (a.male ? " 1 " : " 2 ") + text(year) + ' ' +
           text(a.matings) + ebv.substr(ebv.rfind(' ')) + " b" + text(year) + '-' +
           text(number - first_[static_cast<std::size_t>(year)] + 1) + '\n';
}

void Herd::write_data() {
  for (Number i = 0; i < animals_.size(); ++i) identifiers_.push_back(i);
  for (std::size_t i = animals_.size() - 1; o_.ids == "shuffled" && i > 1; --i) {
    std::swap(identifiers_[i], identifiers_[1 + draws_.below(i)]);
  }
  std::ofstream file(o_.prefix + ".dat", std::ios::binary);
  for (std::int64_t year = 1; year <= o_.years; ++year) {
    std::string lines;
    const auto y = static_cast<std::size_t>(year);
    for (Number i = first_[y]; i < first_[y + 1]; ++i) append(lines, i, year);
    file << lines;
  }
  if (!file.flush()) refuse("cannot write " + o_.prefix + ".dat");
}

void write_parameters(const Options& o) {
  const std::string name = o.prefix.substr(o.prefix.rfind('/') + 1);
  std::ofstream file(o.prefix + ".prm", std::ios::binary);
  file << "! A simulated herd.\n"
       << "&DataParameters\n  datafile='" << name << ".dat', resultsdirectory='./" << name
       << "_' /\n"
       << "&PopulationHistory\n  pci_ngen=5 /\n"
       << "&RelationshipMatrix\n  source='pedigree', gfile='_null_', timesteps=0 /\n"
       << "&OCSParameters\n  nmatings=" << text(o.nmatings) << ", optimise='" << o.mode
       << "', w_merit=1.0, w_relationship=" << text(o.w_relationship)
       << ",\n  dfconstraint=" << text(o.dfconstraint)
       << ", limitmalematings=" << text(o.limitmalematings) << " /\n"
       << "&AlgorithmParameters\n  generations=" << text(o.generations)
       << ", popsize=" << text(o.popsize)
       << ", n_offspring=10,\n  restart_interval=" << text(o.restart_interval)
       << ", exchange_algorithm=" << text(o.exchange) << ", seed_rng=" << text(o.seed) << " /\n"
       << "&MatingOptions\n  matingstrategy='mai', repeatedmatings=.false. /\n";
  if (!file.flush()) refuse("cannot write " + o.prefix + ".prm");
}

}  // namespace

int main(int argc, char** argv) {
  const Options options = read_options(argc, argv);
  Herd herd(options);
  herd.choose_candidates();
  herd.write_data();
  write_parameters(options);
}
