#include "bench.h"

#include <malloc.h>

#include <fstream>
#include <memory>
#include <sstream>
#include <utility>

#include "analysis/inbreeding.h"
#include "pedigree/qobreadrecode.h"

namespace qob::bench {
namespace {

// A size that the system reports for this process, in bytes; 0 where it does not.
double process_size(const std::string& key) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    double kilobytes = 0.0;
    if (line.starts_with(key) && std::istringstream(line.substr(key.size())) >> kilobytes) {
      return kilobytes * 1024.0;
    }
  }
  return 0.0;
}

}  // namespace

void add(const std::string& kernel, const std::string& size, const std::string& form, Body body,
         Repeat repeat) {
  const std::string name = kernel + "/" + size + "/" + form;
  auto* added = benchmark::RegisterBenchmark(name.c_str(), std::move(body));
  added->Unit(benchmark::kMillisecond);
  if (repeat == Repeat::kOnce) added->Iterations(1)->Repetitions(1);
}

void measure(benchmark::State& state, const std::function<void()>& work) {
  malloc_trim(0);
  std::ofstream("/proc/self/clear_refs") << 5;  // the peak starts at what is held now
  const double before = process_size("VmRSS:");
  for ([[maybe_unused]] auto _ : state) work();
  state.counters["peak"] = process_size("VmHWM:") - before;
}

Model& herd(const std::string& name) {
  static std::unique_ptr<Model> model;
  static std::string kept;
  if (kept == name) return *model;
  model = std::make_unique<Model>();
  model->parameters.data.datafile = name + ".dat";
  readrecode(*model);
  inbreeding_coefficients(model->pedigree.newped, model->pedigree.f, model->units.out);
  kept = name;
  return *model;
}

}  // namespace qob::bench
