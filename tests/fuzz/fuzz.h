// What the fuzz targets share.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "analysis/inbreeding.h"
#include "core/qobtypestools.h"
#include "core/stop.h"
#include "pedigree/qobreadrecode.h"
#include "system/memory/memory_files.h"

namespace qob::fuzz {

// What a stop throws.
struct Stopped {};
inline const StopHandler handler_before =
    set_stop_handler([](std::string_view, int) { throw Stopped{}; });

// False: the action stopped the run.
bool runs_through(auto action) {
  try {
    action();
    return true;
  } catch (const Stopped&) {
    return false;
  }
}

// Ends the fuzzer unless `kept`.
inline void require(bool kept, const char* what) {
  if (kept) return;
  std::fprintf(stderr, "Not kept: %s\n", what);
  std::abort();
}

// A run whose units write to memory.
struct QuietRun : Run {
  QuietRun() {
    Units& units = journal.units;
    for (Unit* unit : {&units.out, &units.log, &units.summary}) unit->open_memory(&written);
    parameters.data.datafile = "herd.dat";
  }
  std::string written;
};

// Four matings, searched for three generations.
inline void ask_for_matings(Parameters& p, std::int32_t unit) {
  p.ocs.nmatings = 4;
  p.ocs.limitmalematings = unit;
  p.algorithm.generations = p.algorithm.popsize = p.algorithm.n_offspring = 3;
  p.algorithm.exchange_algorithm = 2;
  p.algorithm.seed_rng = 7;
}

// Reads three generations with candidates of both sexes, some full sibs, and opens a parameter file
// with this group.
inline Pedigree read_small_herd(Run& run, const char* group) {
  memory_files().put(
      "herd.dat",
      "1 0 0 1 1 0 0.1 a\n2 0 0 2 1 0 0.2 b\n3 0 0 1 1 0 0.3 c\n4 0 0 2 1 0 0.4 d\n"
      "5 1 2 1 2 2 0.5 e\n6 1 2 2 2 1 0.6 f\n7 3 4 1 2 4 0.7 g\n8 3 4 2 2 1 0.8 h\n"
      "9 5 8 1 3 4 1.1 i\n10 5 8 2 3 1 1.2 j\n11 5 8 1 3 4 1.3 k\n12 7 6 2 3 2 1.4 l\n");
  memory_files().put("qob.prm", group);
  if (run.parameter_file.open("qob.prm") != 0) std::abort();
  Pedigree pedigree = readrecode(run);
  inbreeding_coefficients(pedigree.newped, pedigree.f, run.journal.units.out, run.parallel);
  return pedigree;
}

inline std::string_view text_of(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

}  // namespace qob::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
