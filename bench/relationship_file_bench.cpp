// The relationship file: 12 million lines written, and read back.
#include "analysis/relationship_file.h"
#include "bench.h"
#include "core/random.h"

namespace qob::bench {
namespace {

constexpr std::int32_t kAnimals = 4899;
constexpr std::int64_t kPairs = std::int64_t{kAnimals} * (kAnimals + 1) / 2;

void write_all(Run& run, const Pedigree&) {
  Random random;
  random.zigset(1);
  RelationshipWriter writer(run);
  Lines records;
  for (std::int32_t i = 1; i <= kAnimals; ++i) {
    Unit& unit = records.renew();
    for (std::int32_t j = 1; j <= i; ++j) write_relationship(unit, i, j, random.uni());
    writer.write(records);
  }
  writer.close();
}

void read_all(Run& run, const Pedigree& pedigree) {
  RelationshipReader reader(run, pedigree, RelationshipReader::Reading::kMatrix);
  RelationshipReader::Record record;
  double sum = 0.0;
  while (reader.next(record)) sum += record.a;
  benchmark::DoNotOptimize(sum);
}

void on_file(benchmark::State& state, void (*work)(Run&, const Pedigree&)) {
  Run run;
  run.parameters.relationship.gfile = "pairs.rel";
  Pedigree pedigree;
  for (std::int32_t i = 1; i <= kAnimals; ++i) pedigree.ids.build_tree(i, pedigree.maxid);
  measure(state, kPairs, [&] { work(run, pedigree); });
}

}  // namespace

void add_relationship_file() {
  add_fast("relationship file, written", "12M", [](auto& state) { on_file(state, write_all); });
  add_fast("relationship file, read", "12M", [](auto& state) { on_file(state, read_all); });
}

}  // namespace qob::bench
