// Reading the data file: both passes, and the first alone.
#include <fstream>
#include <string>

#include "bench.h"
#include "pedigree/qobreadrecode.h"

namespace qob::bench {
namespace {

void read(const std::string& name) {
  Model model;
  model.parameters.data.datafile = name;
  readrecode(model);
}

struct PassEnds {};

// A record of an animal that has one already ends the reading after the first pass.
std::string with_repeated_animal(const std::string& name) {
  const std::string path = "repeated_" + name;
  std::ofstream out(path, std::ios::binary);
  std::ifstream in(name, std::ios::binary);
  out << in.rdbuf();
  in.clear();
  in.seekg(0);
  std::string first;
  std::getline(in, first);
  out << first << '\n';
  return path;
}

void read_once(const std::string& name) {
  const StopHandler before = set_stop_handler([](std::string_view, int) { throw PassEnds{}; });
  try {
    read(name);
  } catch (const PassEnds&) {
  }
  set_stop_handler(before);
}

void items(benchmark::State& state, std::int64_t each) {
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * each);
}

}  // namespace

void add_data_file() {
  for (const char* order : {"sequence", "shuffled"}) {
    const std::string name = std::string("ids_") + order + ".dat";
    add("data file, two passes", std::string("1M ") + order, "fast",
        [name](benchmark::State& state) {
          measure(state, [&] { read(name); });
          items(state, 1'000'000);
        });
    add("data file, first pass", std::string("1M ") + order, "fast",
        [name](benchmark::State& state) {
          const std::string repeated = with_repeated_animal(name);
          measure(state, [&] { read_once(repeated); });
          items(state, 1'000'001);
        });
  }
}

}  // namespace qob::bench
