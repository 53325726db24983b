// What the benchmarks share: how a form of a kernel is named and measured, and the herds.
//
// A kernel is measured in the forms "plain" and "fast" on the same input, one after the other in
// one process: their ratio is the figure that carries over to other machines.
#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <string>

#include "core/qobtypestools.h"

namespace qob::bench {

using Body = std::function<void(benchmark::State&)>;

// Measures `body` as row "kernel, size" of the table, in the column of `form`. What takes many
// seconds is measured `once`; a size that begins with "full" only when it is asked for.
enum class Repeat { kBestOfSeveral, kOnce };
void add(const std::string& kernel, const std::string& size, const std::string& form, Body body,
         Repeat repeat = Repeat::kBestOfSeveral);

// Times `work` and takes down the memory that it needed beyond what was held before.
void measure(benchmark::State& state, const std::function<void()>& work);

// A model that has read NAME.dat of the working directory, inbreeding coefficients included. The
// one asked for last is kept.
Model& herd(const std::string& name);

// The files' contents; each adds its kernels.
void add_data_file();
void add_relationship_file();

}  // namespace qob::bench
