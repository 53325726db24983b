#include "ocs/selection_report.h"

#include <cmath>
#include <string>

#include "core/numbers.h"
#include "ocs/allowances.h"
#include "ocs/evaluation.h"
#include "ocs/kernels/means_by_sex.h"

namespace qob {
namespace {

// Statistics over the candidates first..last.
struct Range {
  std::int32_t first;
  std::int32_t last;
  std::int32_t n() const { return last - first + 1; }
};

double mean_of(const Table<double>& x, Range range) {
  double sum = 0.0;
  for (std::int32_t i = range.first; i <= range.last; ++i) sum += x(i);
  return sum / range.n();
}

double deviation_of(const Table<double>& x, Range range) {
  if (range.n() == 1) return 0.0;
  const double mean = mean_of(x, range);
  double squares = 0.0;
  for (std::int32_t i = range.first; i <= range.last; ++i) squares += (x(i) - mean) * (x(i) - mean);
  return std::sqrt(squares / (range.n() - 1));
}

// Pearson's correlation, 0 when one of the two hardly varies.
double correlation_of(const Table<double>& x, const Table<double>& y, Range range) {
  const double deviation_x = deviation_of(x, range);
  const double deviation_y = deviation_of(y, range);
  if (deviation_x < kTiny || deviation_y < kTiny) return 0.0;
  const double mean_x = mean_of(x, range);
  const double mean_y = mean_of(y, range);
  double products = 0.0;
  for (std::int32_t i = range.first; i <= range.last; ++i) {
    products += (x(i) - mean_x) * (y(i) - mean_y);
  }
  return products / (range.n() - 1) / (deviation_x * deviation_y);
}

void write_sexes(const Candidates& candidates, Unit& summary) {
  write(summary, "(/,A75)",
        "---------- Summary of data used for Optimal Contribution Selection -----------");
  write(summary, "(2A6,A18,5X,A8,A12)", "Sex", "N", "Mean merit", "Matings", "Inbreeding");
  for (int sex = kMale; sex <= kFemale; ++sex) {
    const Range range{candidates.first(sex), candidates.last(sex)};
    write(summary, "(A8,I5,F8.3,A5,G8.3,I8,F10.5)", sex == kMale ? "Males" : "Females", range.n(),
          mean_of(candidates.merit, range), " +/-", deviation_of(candidates.merit, range),
          mating_capacity(candidates, sex), mean_of(candidates.f, range));
  }
}

void write_table(Unit& summary, const SexMeans& means) {
  write(summary, "(10X,A22,4X,A22)", "_______Incl. own_______", "______Excl. own_______");
  write(summary, "(10X,2A11,4X,2A11)", "Males", "Females", "Males", "Females");
  for (int r = 0; r < 2; ++r) {
    write(summary, "(A10,2F11.6,4X,2F11.6)", r == 0 ? "Males" : "Females", means.with_own[r][0],
          means.with_own[r][1], means.without_own[r][0], means.without_own[r][1]);
  }
}

void write_spreads(const Candidates& candidates, const MeansBySex& relationships, Unit& summary) {
  const Table<double>* to = relationships.to_others;
  const Range males{1, candidates.nmcands};
  const Range females{candidates.nmcands + 1, candidates.ncands};
  const Range all{1, candidates.ncands};
  write_list(summary, "Standard deviation of average relationships to other candidates");
  write(summary, "(16X,3A8)", "Males", "Females", "All");
  write(summary, "(A16,2F8.3,A8)", "Males", deviation_of(to[0], males), deviation_of(to[1], males),
        " ");
  write(summary, "(A16,2F8.3,A8)", "Females", deviation_of(to[0], females),
        deviation_of(to[1], females), " ");
  write(summary, "(A16,2A8,F8.3)", "All", " ", " ", deviation_of(to[2], all));
  const Table<double>& merit = candidates.merit;
  write_list(summary, "Correlation between merit and avg. relationship to other candidates");
  write(summary, "(16X,A24)", "Average relationship to");
  write(summary, "(16X,3A8)", "Males", "Females", "All");
  write(summary, "(A16,2F8.3,A8)", "Merit of males", correlation_of(merit, to[0], males),
        correlation_of(merit, to[1], males), " ");
  write(summary, "(A16,2F8.3,A8)", "Merit of females", correlation_of(merit, to[0], females),
        correlation_of(merit, to[1], females), " ");
  write(summary, "(A16,2A8,F8.3)", "Merit of all", " ", " ", correlation_of(merit, to[2], all));
}

// The average relationship if every candidate contributed in proportion to its mating limit.
double relationship_at_random(const Selection& selection, const Relationship& relationship) {
  const Candidates& candidates = selection.candidates;
  Table<double> c(candidates.ncands, 0.0);
  for (int sex = kMale; sex <= kFemale; ++sex) {
    const auto capacity = static_cast<double>(mating_capacity(candidates, sex));
    for (std::int32_t i = candidates.first(sex); i <= candidates.last(sex); ++i) {
      c(i) = 0.5 * candidates.max_matings(i) / capacity;
    }
  }
  return average_relationship(selection, relationship, c);
}

void write_expectations(const Selection& selection, const MeansBySex& relationships,
                        double at_random, Unit& summary) {
  const Candidates& candidates = selection.candidates;
  const Goal& goal = selection.goal;
  write(summary, "(/,A30)", " Expected under random mating :");
  write(summary, "(A32,G12.6)", " Mean merit :", 0.5 * (goal.mean_merit[0] + goal.mean_merit[1]));
  write(summary, "(A32,F12.6)", " Inbreeding :", 0.5 * relationships.weighted.with_own[0][1]);
  write(summary, "(A32,F12.6)", " Avg. relationship(generation) :", at_random);
  write(summary, "(/,A30,I6)", " Observed last time step :", candidates.birth_time - 1);
  write(summary, "(A32,G12.6)", " N animals :", candidates.nlast);
  write(summary, "(A32,G12.6)", " Mean merit :", goal.last_merit);
  write(summary, "(A32,F12.6)", " Inbreeding :", goal.last_f);
  write(summary, "(A32,F12.6)", " Avg. relationship(generation) :", goal.last_rel);
  write(summary, "(A32,F12.3)", " Generation interval :", goal.last_genint);
  write(summary, "(/,A75,/)", std::string(75, '-'));
}

}  // namespace

void report_selection_data(const Selection& selection, const Relationship& relationship,
                           Unit& summary) {
  const Candidates& candidates = selection.candidates;
  const MeansBySex relationships = means_by_sex(relationship, candidates);
  write_sexes(candidates, summary);
  write(summary, "(/,10X,A31)", " Average Relationships");
  write(summary, "(12X,A)", "Incl. own includes relationship to itself (1+inbreeding coefficient)");
  write_table(summary, relationships.plain);
  write(summary, "(/,10X,A36)", " Average Weighted Relationships");
  write(summary, "(12X,A)",
        " Relationships weighted by maximum of matings possible (maxMatings as given in data)");
  write_table(summary, relationships.weighted);
  write_spreads(candidates, relationships, summary);
  write_expectations(selection, relationships, relationship_at_random(selection, relationship),
                     summary);
}

}  // namespace qob
