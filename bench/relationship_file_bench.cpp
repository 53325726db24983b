// The relationship file: 12 million lines written, and read back.
#include "analysis/relationship_file.h"
#include "bench.h"

namespace qob::bench {
namespace {

constexpr std::int32_t kAnimals = 4899;
constexpr std::int64_t kPairs = std::int64_t{kAnimals} * (kAnimals + 1) / 2;

void write_all(Model& model) {
  Random random;
  random.zigset(1);
  RelationshipWriter writer(model);
  for (std::int32_t i = 1; i <= kAnimals; ++i) {
    for (std::int32_t j = 1; j <= i; ++j) writer.write(i, j, random.uni());
  }
  writer.close();
}

void read_all(Model& model) {
  RelationshipReader reader(model, RelationshipReader::Reading::kMatrix);
  RelationshipReader::Record record;
  double sum = 0.0;
  while (reader.next(record)) sum += record.a;
  benchmark::DoNotOptimize(sum);
}

void run(benchmark::State& state, void (*work)(Model&)) {
  Model model;
  model.parameters.relationship.gfile = "pairs.rel";
  for (std::int32_t i = 1; i <= kAnimals; ++i) model.ids.build_tree(i, model.pedigree.maxid);
  measure(state, kPairs, [&] { work(model); });
}

}  // namespace

void add_relationship_file() {
  add_fast("relationship file, written", "12M", [](auto& state) { run(state, write_all); });
  add_fast("relationship file, read", "12M", [](auto& state) { run(state, read_all); });
}

}  // namespace qob::bench
