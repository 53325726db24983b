// Measures the kernels, each in its plain and its fast form, and prints one row for each kernel and
// size: the best time of either form (of this process's processor time), their ratio, how many
// items the fast form handles in a second, and the memory that either needs.
//
// Takes the flags of Google Benchmark, --benchmark_filter=REGEX above all.
#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "bench.h"

namespace {

struct Figures {
  double milliseconds = 0.0;  // 0: not measured
  double items = 0.0;         // a second
  double peak = 0.0;          // bytes
};

std::string shown(const char* format, double value) {
  char text[32] = "-";
  if (value > 0.0) std::snprintf(text, sizeof text, format, value);
  return text;
}

// Collects the best of each form, and prints the table at the end.
class Table : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration) continue;
      if (run.error_occurred) {
        std::fprintf(stderr, "%s: %s\n", run.benchmark_name().c_str(), run.error_message.c_str());
        continue;
      }
      take(run);
    }
    std::fprintf(stderr, ".");
  }

  void Finalize() override {
    std::printf("\n%-34s %-12s %10s %10s %8s %9s %10s %10s\n", "kernel", "size", "plain ms",
                "fast ms", "ratio", "Mitems/s", "plain MB", "fast MB");
    for (const auto& [kernel, size] : rows_) {
      const Figures& plain = figures_[kernel + size + "plain"];
      const Figures& fast = figures_[kernel + size + "fast"];
      const double ratio = fast.milliseconds > 0.0 ? plain.milliseconds / fast.milliseconds : 0.0;
      std::printf(
          "%-34s %-12s %10s %10s %8s %9s %10s %10s\n", kernel.c_str(), size.c_str(),
          shown("%.3f", plain.milliseconds).c_str(), shown("%.3f", fast.milliseconds).c_str(),
          shown("%.1f", ratio).c_str(), shown("%.2f", fast.items * 1e-6).c_str(),
          shown("%.1f", plain.peak * 0x1p-20).c_str(), shown("%.1f", fast.peak * 0x1p-20).c_str());
    }
  }

 private:
  void take(const Run& run) {
    const std::string& name = run.run_name.function_name;  // kernel/size/form
    const std::size_t slash = name.find('/'), last = name.rfind('/');
    const std::string kernel = name.substr(0, slash);
    const std::string size = name.substr(slash + 1, last - slash - 1);
    const std::pair<std::string, std::string> row = {kernel, size};
    if (std::find(rows_.begin(), rows_.end(), row) == rows_.end()) rows_.push_back(row);
    Figures& best = figures_[kernel + size + name.substr(last + 1)];
    const double milliseconds = run.GetAdjustedCPUTime();
    const auto counter = [&](const char* key) {
      const auto found = run.counters.find(key);
      return found == run.counters.end() ? 0.0 : found->second.value;
    };
    if (best.milliseconds == 0.0 || milliseconds < best.milliseconds) {
      best.milliseconds = milliseconds;
      best.items = counter("items_per_second");
    }
    best.peak = std::max(best.peak, counter("peak"));
  }

  std::vector<std::pair<std::string, std::string>> rows_;  // kernel and size, as they came
  std::map<std::string, Figures> figures_;
};

}  // namespace

int main(int argc, char** argv) {
  std::vector<char*> arguments(argv, argv + argc);
  std::string defaults[] = {"--benchmark_repetitions=3", "--benchmark_min_time=0.1",
                            "--benchmark_filter=-/full"};
  for (std::string& flag : defaults) arguments.insert(arguments.begin() + 1, flag.data());
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 1;
  qob::bench::add_data_file();
  qob::bench::add_relationship_file();
  Table table;
  benchmark::RunSpecifiedBenchmarks(&table);
}
