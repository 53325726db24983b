// How a search converges: lines for the best mateset and for the population, by generation, in two
// files of the search, the log and on the screen.
#pragma once

#include "core/qobtypestools.h"
#include "ocs/evaluation.h"

namespace qob {

class Convergence {
 public:
  explicit Convergence(Run& run) : run_(run) {}

  // Opens `cnv1_file` (the best) and `cnv2_file` (the population) and writes the heads of all.
  void open();
  // key: the fitness of the population in ascending order.
  void write_lines(const Standing& standing, const Table<double>& key);
  void close();

 private:
  Run& run_;
  Unit cnv1_{13};
  Unit cnv2_{14};
};

}  // namespace qob
