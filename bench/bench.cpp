#include "bench.h"

#include <malloc.h>

#include <fstream>
#include <optional>
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

Pedigree read_animals(Run& run, const std::string& name) {
  start_watches(run.journal.watches);
  run.parameters.data.datafile = name + ".dat";
  run.parameter_file.open(name + ".prm");
  Pedigree pedigree = readrecode(run);
  inbreeding_coefficients(pedigree.newped, pedigree.f, run.journal.units.out, run.parallel);
  return pedigree;
}

Selection select(Herd& herd, const Relationship& relationship) {
  read_group(herd.run, group_of(herd.run.parameters.ocs));
  read_group(herd.run, group_of(herd.run.parameters.algorithm));
  initialize_qob(herd.run);
  return set_up_selection(herd.run, std::move(herd.pedigree), relationship);
}

// What is made from the herd asked for last.
template <class T>
T& kept(const std::string& name) {
  static std::optional<T> made;
  static std::string made_from;
  if (made_from != name) made.emplace(name);
  made_from = name;
  return *made;
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

Herd::Herd(const std::string& name) : pedigree(read_animals(run, name)) {}

HerdSelection::HerdSelection(const std::string& name)
    : Herd(name),
      relationship(setup_nrm(run, pedigree).value()),
      selection(select(*this, relationship)),
      problem{selection, relationship, objective_of(run.parameters.ocs, selection.goal)} {}

Herd& herd(const std::string& name) { return kept<Herd>(name); }
HerdSelection& selection(const std::string& name) { return kept<HerdSelection>(name); }

}  // namespace qob::bench
