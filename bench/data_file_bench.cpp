// Reading the data file: both passes, and the first alone.
#include <fstream>
#include <string>

#include "bench.h"
#include "core/stop.h"
#include "pedigree/qobreadrecode.h"

namespace qob::bench {
namespace {

constexpr std::int64_t kRecords = 1'000'000;

void read(const std::string& name) {
  Run run;
  run.parameters.data.datafile = name;
  benchmark::DoNotOptimize(readrecode(run));
}

// The file with its first record once more at its end, which ends the reading after the first pass.
std::string with_repeated_animal(const std::string& name) {
  const std::string path = "repeated_" + name;
  std::ifstream in(name, std::ios::binary);
  std::string first;
  std::getline(in, first);
  in.seekg(0);
  std::ofstream(path, std::ios::binary) << in.rdbuf() << first << '\n';
  return path;
}

struct Stopped {};

void read_until_stop(const std::string& name) {
  const StopHandler before = set_stop_handler([](std::string_view, int) { throw Stopped{}; });
  try {
    read(name);
  } catch (const Stopped&) {
  }
  set_stop_handler(before);
}

}  // namespace

void add_data_file() {
  for (const std::string order : {"sequence", "shuffled"}) {
    const std::string name = "ids_" + order + ".dat";
    const std::string size = "1M, ids " + order;
    add_fast("data file, both passes", size,
             [=](benchmark::State& state) { measure(state, kRecords, [&] { read(name); }); });
    add_fast("data file, first pass", size, [=](benchmark::State& state) {
      const std::string repeated = with_repeated_animal(name);
      measure(state, kRecords, [&] { read_until_stop(repeated); });
    });
  }
}

}  // namespace qob::bench
