#include "report/population.h"

#include <algorithm>
#include <string>
#include <utility>

#include "analysis/effective_ancestors.h"
#include "analysis/generation_intervals.h"
#include "analysis/mean_kinship.h"
#include "analysis/pedigree_products.h"
#include "analysis/rate_of_rise.h"
#include "report/demography.h"
#include "report/trend.h"

namespace qob {
namespace {

constexpr std::size_t kMostFounders = 500;  // in the model; who wants all has the tables

void tell_inbreeding(const Pedigree& pedigree, ReportedPopulation& told) {
  double sum = 0.0;
  told.max_f = pedigree.f(1);
  for (std::int32_t i = 1; i <= pedigree.maxid; ++i) {
    sum += pedigree.f(i);
    told.max_f = std::max(told.max_f, pedigree.f(i));
  }
  told.mean_f = sum / pedigree.maxid;
}

std::vector<PathInterval> told_intervals(const GenerationIntervals& intervals) {
  constexpr const char* kPaths[] = {"sire-son", "sire-daughter", "dam-son", "dam-daughter"};
  std::vector<PathInterval> told;
  for (std::size_t k = 0; k < intervals.path.size(); ++k) {
    const PathAges& path = intervals.path[k];
    told.push_back({kPaths[k], path.n, path.mean, path.se});
  }
  told.push_back({"all", intervals.all.n, intervals.all.mean, intervals.all.se});
  return told;
}

void tell_intervals(const Pedigree& pedigree, ReportedPopulation& told) {
  const GenerationIntervals intervals = generation_intervals(pedigree);
  told.interval = intervals.all.mean;
  told.intervals = told_intervals(intervals);
  std::vector<std::int32_t> times;
  for (const TrendRow& row : told.trend) times.push_back(row.birth_time);
  if (!times.empty()) told.recent_since = recent_since(times, told.interval);
  told.recent_intervals = told_intervals(generation_intervals(pedigree, told.recent_since));
}

EffectiveSize effective_size(RateOfRise rise) {
  EffectiveSize size{.rate = rise.rate,
                     .rate_se = rise.se,
                     .n = rise.n,
                     .first = rise.first,
                     .last = rise.last,
                     .why_not = std::move(rise.why_not)};
  if (!size.why_not.empty()) return size;
  size.ne = 1.0 / (2.0 * rise.rate);
  size.ne_low = 1.0 / (2.0 * (rise.rate + rise.se));
  if (rise.rate > rise.se) size.ne_high = 1.0 / (2.0 * (rise.rate - rise.se));
  return size;
}

void tell_effective_sizes(const Pedigree& pedigree, ReportedPopulation& told) {
  std::vector<Observation> inbreeding, coancestry;
  for (std::int32_t i = 1; i <= pedigree.maxid; ++i) {
    const std::int32_t born = pedigree.btime(i);
    if (birth_time_is_known(born)) inbreeding.push_back({born, pedigree.f(i)});
  }
  for (const TrendRow& row : told.trend) {
    if (row.animals > 1) coancestry.push_back({row.birth_time, row.coancestry});
  }
  told.by_inbreeding = effective_size(rate_of_rise(std::move(inbreeding), told.interval));
  told.by_coancestry = effective_size(rate_of_rise(std::move(coancestry), told.interval));
}

void tell_founders(const PopulationInput& input, PopulationMeasures& population) {
  ReportedPopulation& told = population.reported;
  const Table2<std::int32_t>& newped = input.pedigree.newped;
  Founders founders = founders_of(newped, input.living);
  told.founders = std::ssize(founders.ranked);
  told.founder_equivalents = founders.equivalents;
  told.unknown_genes = founders.unknown_genes;
  const EffectiveAncestors ancestors =
      effective_ancestors(newped, input.living, founders.contributing);
  told.effective_ancestors = ancestors.low;
  told.effective_ancestors_high = ancestors.high;
  double cumulative = 0.0;
  for (const FounderShare& founder : founders.ranked) {
    if (told.founders_ranked.size() == kMostFounders || !(founder.share > 0.0)) break;
    told.founders_ranked.push_back({input.place(founder.animal), founder.share});
    told.founders_cumulative.push_back(cumulative += founder.share);
  }
  population.founders = std::move(founders.ranked);
}

void tell_kinship(const PopulationInput& input, PopulationMeasures& population) {
  MeanKinship kinship = mean_kinship(input.pedigree.newped, input.pedigree.f, input.living);
  population.reported.mean_kinship = kinship.mean;
  population.reported.gene_diversity = kinship.diversity();
  population.reported.founder_genomes = kinship.founder_genomes();
  population.mean_kinship = std::move(kinship.of);
}

// The share of the genes of those born last that came from each animal through its offspring.
Table<double> contributions_so_far(const Pedigree& pedigree) {
  Table<double> genes(pedigree.maxid, 0.0);
  const std::int32_t last = *std::max_element(pedigree.btime.begin(), pedigree.btime.end());
  if (!birth_time_is_known(last)) return genes;
  for (std::int64_t i = 1; i <= genes.size(); ++i) genes(i) = pedigree.btime(i) == last;
  gen_cont(pedigree.newped, genes);
  const auto n =
      static_cast<double>(std::count(pedigree.btime.begin(), pedigree.btime.end(), last));
  for (std::int64_t i = 1; i <= genes.size(); ++i) {
    genes(i) = (genes(i) - (pedigree.btime(i) == last)) / n;
  }
  return genes;
}

}  // namespace

PopulationMeasures measure_population(const PopulationInput& input) {
  const Pedigree& pedigree = input.pedigree;
  PopulationMeasures population;
  ReportedPopulation& told = population.reported;
  told.animals = pedigree.maxid;
  told.living = std::count(input.living.begin(), input.living.end(), 1);
  tell_inbreeding(pedigree, told);
  told.trend = trend_of(pedigree, input.statistics);
  tell_intervals(pedigree, told);
  tell_effective_sizes(pedigree, told);
  tell_founders(input, population);
  tell_kinship(input, population);
  told.families = family_sizes(pedigree);
  told.ages = age_classes(pedigree, input.living, input.chosen);
  population.contribution_so_far = contributions_so_far(pedigree);
  population.complete_generations.assign(pedigree.maxid, 0.0);
  for (std::int64_t i = 1; i <= pedigree.maxid; ++i) {
    population.complete_generations(i) = input.statistics.gen(i) - 1.0;
  }
  return population;
}

}  // namespace qob
