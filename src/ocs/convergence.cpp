#include "ocs/convergence.h"

#include <cmath>

#include "core/numbers.h"

namespace qob {

void Convergence::open() {
  Units& units = run_.journal.units;
  const FileNames& files = run_.parameters.files;
  const Text<80>& prefix = run_.parameters.data.resultsdirectory;
  openresultsfile(run_, prefix, files.cnv1_file, cnv1_, OutputFile::Show::kEachLine);
  openresultsfile(run_, prefix, files.cnv2_file, cnv2_, OutputFile::Show::kEachLine);
  both(units.log, cnv2_, "(A10,A11,4A14)", "Generation", "Best", "Median", "Worst", "Mean", "Std");
  write(cnv1_, "(A10,4A14,A10)", "Generation", "Evaluation", "Merit", "Avg.rel", "dF", "Genint");
  write(units.out, "(1X,A10,4A14,A10,/)", "Generation", "Evaluation", "Merit", "Avg.rel", "dF",
        "Genint");
}

void Convergence::write_lines(const Standing& standing, const Table<double>& key) {
  Units& units = run_.journal.units;
  const MatesetValue& best = standing.best_value;
  const std::int64_t popsize = key.size();
  double sum = 0.0;
  for (const double fitness : key) sum += fitness;
  const double mean = sum / static_cast<double>(popsize);
  double squares = 0.0;
  for (const double fitness : key) squares += (fitness - mean) * (fitness - mean);
  const double deviation = std::sqrt(squares / static_cast<double>(single(popsize - 1)));
  both(cnv2_, units.log, "(I10,E16.8,4E14.6)", standing.igeneration, best.fitness, key(popsize / 2),
       key(1), mean, deviation);
  write(cnv1_, "(I10,E16.8,3E14.6,F8.3)", standing.igeneration, best.fitness, best.merit,
        best.relationship, best.rate, best.age);
  write(units.out, "(\"+\",I10,E16.8,3E14.6,F8.3)", standing.igeneration, best.fitness, best.merit,
        best.relationship, best.rate, best.age);
}

void Convergence::close() {
  closeresultsfile(run_.journal.units, cnv1_);
  closeresultsfile(run_.journal.units, cnv2_);
}

}  // namespace qob
