// Measures the kernels, each in its plain and its fast form, and prints one row for each kernel and
// size: the best processor time of either form, their ratio, how many items the fast form handles
// in a second, and the memory that either needs.
//
// Takes the flags of Google Benchmark. --benchmark_filter=. also takes the forms that need many
// minutes.
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

struct Row {
  std::string kernel, size;
  std::map<std::string, Figures> forms{};  // plain, fast
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
      if (run.run_type == Run::RT_Iteration) take(run);
    }
    std::fputc('.', stderr);
  }

  void Finalize() override {
    std::fputc('\n', stderr);
    std::printf("%-36s %-22s %10s %10s %7s %8s %9s %9s\n", "kernel", "size", "plain ms", "fast ms",
                "ratio", "Mitem/s", "plain MB", "fast MB");
    for (Row& row : rows_) print(row);
  }

 private:
  void take(const Run& run) {
    const std::string& name = run.run_name.function_name;  // kernel/size/form
    const std::size_t first = name.find('/');
    const std::size_t second = name.find('/', first + 1);
    const std::string kernel = name.substr(0, first);
    const std::string size = name.substr(first + 1, second - first - 1);
    const auto same = [&](const Row& row) { return row.kernel == kernel && row.size == size; };
    auto row = std::find_if(rows_.begin(), rows_.end(), same);
    if (row == rows_.end()) row = rows_.insert(row, Row{kernel, size});
    Figures& best = row->forms[name.substr(second + 1, name.find('/', second + 1) - second - 1)];
    const double milliseconds = run.GetAdjustedCPUTime();
    if (best.milliseconds == 0.0 || milliseconds < best.milliseconds) {
      best.milliseconds = milliseconds;
      best.items = run.counters.at("items_per_second");
    }
    best.peak = std::max<double>(best.peak, run.counters.at("peak"));
  }

  static void print(Row& row) {
    const Figures& plain = row.forms["plain"];
    const Figures& fast = row.forms["fast"];
    const double ratio = fast.milliseconds > 0.0 ? plain.milliseconds / fast.milliseconds : 0.0;
    std::printf("%-36s %-22s %10s %10s %7s %8s %9s %9s\n", row.kernel.c_str(), row.size.c_str(),
                shown("%.3f", plain.milliseconds).c_str(), shown("%.3f", fast.milliseconds).c_str(),
                shown("%.1f", ratio).c_str(),
                shown("%.2f", fast.items >= 1e4 ? fast.items * 1e-6 : 0.0).c_str(),
                shown("%.1f", plain.peak * 0x1p-20).c_str(),
                shown("%.1f", fast.peak * 0x1p-20).c_str());
  }

  std::vector<Row> rows_;  // as they came
};

}  // namespace

int main(int argc, char** argv) {
  std::vector<char*> arguments(argv, argv + argc);
  std::string defaults[] = {"--benchmark_repetitions=3", "--benchmark_min_time=0.1",
                            "--benchmark_filter=-on demand"};
  for (std::string& flag : defaults) arguments.insert(arguments.begin() + 1, flag.data());
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 1;
  qob::bench::add_text_kernels();
  qob::bench::add_data_file();
  qob::bench::add_relationship_file();
  qob::bench::add_pedigree_kernels();
  qob::bench::add_candidate_kernels();
  qob::bench::add_search_kernels();
  Table table;
  benchmark::RunSpecifiedBenchmarks(&table);
}
