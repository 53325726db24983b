// Values of lines, and digits. The plain forms are the general ones, which take all that the fast
// ones pass on.
#include <string>
#include <vector>

#include "analysis/kernels/relationship_text.h"
#include "bench.h"
#include "core/edit.h"
#include "core/lexer.h"
#include "core/random.h"

namespace qob::bench {
namespace {

constexpr std::int64_t kCount = 1'000'000;

std::vector<double> numbers(double scale) {
  Random random;
  random.zigset(1);
  std::vector<double> x(kCount);
  for (double& value : x) value = scale * random.uni();
  return x;
}

std::vector<std::string> records() {
  std::vector<std::string> lines;
  std::int32_t id = 1;
  for (const double x : numbers(20.0)) {
    std::string line = std::to_string(id + 5000) + ' ' + std::to_string(id) + ' ' +
                       std::to_string(id + 1) + " 1 2024 0";
    edit_fixed(line, x, 9, 4);
    lines.push_back(line + " b17-" + std::to_string(++id % 4000));
  }
  return lines;
}

struct Values {
  std::int32_t id[3], sex, btime, matings;
  double ebv;
  Text<15> txt;
};

void take_record(const std::string& line, Values& v) {
  RecordReader reader(line);
  static_cast<void>(reader.read(v.id[0]) && reader.read(v.id[1]) && reader.read(v.id[2]) &&
                    reader.read(v.sex) && reader.read(v.btime) && reader.read(v.matings) &&
                    reader.read(v.ebv) && reader.read(v.txt));
}

// Calls form(element) for each element of what `make` makes.
template <class Make, class Form>
Body over(Make make, Form form) {
  return [=](benchmark::State& state) {
    const auto elements = make();
    measure(state, kCount, [&] {
      for (const auto& element : elements) form(element);
    });
  };
}

}  // namespace

void add_text_kernels() {
  const std::string values = "data line to eight values";
  add_plain(values, "1M", over(records, [](const std::string& line) {
              Values v;
              take_record(line, v);
              benchmark::DoNotOptimize(v);
            }));
  add_fast(values, "1M", over(records, [](const std::string& line) {
             Values v;
             read_list(line, v.id[0], v.id[1], v.id[2], v.sex, v.btime, v.matings, v.ebv, v.txt);
             benchmark::DoNotOptimize(v);
           }));
  const auto shares = [] { return numbers(1.0); };
  const std::string text = "relationship to text";
  add_plain(text, "1M", over(shares, [](double a) {
              const std::string field = formatted("(G12.6)", a);
              benchmark::DoNotOptimize(adjustl_trim(field));
            }));
  add_fast(text, "1M", over(shares, [](double a) {
             char line[kRelationshipWidth];
             benchmark::DoNotOptimize(put_relationship(line, a));
           }));
}

}  // namespace qob::bench
