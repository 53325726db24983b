// What the benchmarks share: how a form of a kernel is named and measured, and the herds.
//
// A kernel is measured in the forms "plain" and "fast" on the same input, one after the other in
// one process: their ratio is the figure that carries over to other machines.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <functional>
#include <string>

#include "core/qobtypestools.h"
#include "ocs/directed_mutation.h"
#include "ocs/population.h"
#include "pedigree/pedigree.h"

namespace qob::bench {

using Body = std::function<void(benchmark::State&)>;

// How often a form is measured: several times; once, as it takes many seconds; or once and only
// when it is asked for, as it takes many minutes.
enum class Repeat { kSeveral, kOnce, kOnDemand };

// Adds the measure of a form to the row "kernel, size" of the table.
void add_plain(const std::string& kernel, const std::string& size, Body body,
               Repeat repeat = Repeat::kSeveral);
void add_fast(const std::string& kernel, const std::string& size, Body body,
              Repeat repeat = Repeat::kSeveral);

// Times `work`, which handles so many items, and takes down the memory that it needed beyond what
// was held before.
void measure(benchmark::State& state, std::int64_t items, const std::function<void()>& work);

// The animals of NAME.dat in the working directory, inbreeding coefficients included; NAME.prm is
// open.
struct Herd {
  explicit Herd(const std::string& name);

  Run run;
  Pedigree pedigree;
};

// What a search of a herd works with. The pedigree has gone into the selection.
struct HerdSelection : Herd {
  explicit HerdSelection(const std::string& name);

  Relationship relationship;
  Selection selection;
  Problem problem;
  Standing standing;
  SearchCaches caches{relationship, selection.candidates};
  Evaluator evaluator{problem, standing, caches.rows, run.journal};
  Random random;
  Population population;  // empty until it is wanted
};

// The one asked for last is kept.
Herd& herd(const std::string& name);
HerdSelection& selection(const std::string& name);

// The files' contents; each adds its kernels.
void add_text_kernels();
void add_data_file();
void add_relationship_file();
void add_pedigree_kernels();
void add_candidate_kernels();
void add_search_kernels();

}  // namespace qob::bench
