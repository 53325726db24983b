#include "bench.h"

#include <malloc.h>

#include <fstream>
#include <memory>
#include <sstream>
#include <utility>

#include "analysis/inbreeding.h"
#include "analysis/qobrelshipmatrix.h"
#include "ocs/qobocs.h"
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

void add(const std::string& name, Body body, Repeat repeat) {
  const std::string full = repeat == Repeat::kOnDemand ? name + "/on demand" : name;
  auto* added = benchmark::RegisterBenchmark(full.c_str(), std::move(body));
  added->Unit(benchmark::kMillisecond);
  if (repeat != Repeat::kSeveral) added->Iterations(1)->Repetitions(1);
}

void read_group(Model& model, const Group& group) {
  model.parameter_file.rewind();
  model.parameter_file.read(group);
}

}  // namespace

void add_plain(const std::string& kernel, const std::string& size, Body body, Repeat repeat) {
  add(kernel + "/" + size + "/plain", std::move(body), repeat);
}
void add_fast(const std::string& kernel, const std::string& size, Body body, Repeat repeat) {
  add(kernel + "/" + size + "/fast", std::move(body), repeat);
}

void measure(benchmark::State& state, std::int64_t items, const std::function<void()>& work) {
  malloc_trim(0);
  std::ofstream("/proc/self/clear_refs") << 5;  // the peak starts at what is held now
  const double before = process_size("VmRSS:");
  for ([[maybe_unused]] auto _ : state) work();
  state.counters["peak"] = process_size("VmHWM:") - before;
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * items);
}

Model& herd(const std::string& name) {
  static std::unique_ptr<Model> model;
  static std::string kept;
  if (kept == name) return *model;
  model.reset();
  model = std::make_unique<Model>();
  model->parameters.data.datafile = name + ".dat";
  model->parameter_file.open(name + ".prm");
  readrecode(*model);
  inbreeding_coefficients(model->pedigree.newped, model->pedigree.f, model->units.out);
  kept = name;
  return *model;
}

Model& selection(const std::string& name) {
  Model& model = herd(name);
  if (model.candidates.ncands > 0) return model;
  setup_nrm(model);
  read_group(model, group_of(model.parameters.ocs));
  read_group(model, group_of(model.parameters.algorithm));
  initialize_qob(model);
  set_up_selection(model);
  Goal& goal = model.goal;
  goal.constraint =
      (2.0 - goal.last_rel) * model.parameters.ocs.dfconstraint / goal.last_genint + goal.last_rel;
  Watches& w = model.watches;
  w.stopwatch.create_watch({&w.eval, &w.repair, &w.mutate, &w.dirmut},
                           {"Evaluation", "Repair", "Mutation", "Directed mutation"});
  return model;
}

}  // namespace qob::bench
