// A whole run whose parameter file, data file and relationship file are the bytes' three parts.
#include "driver/run.h"
#include "fuzz/fuzz.h"

using namespace qob;

namespace {

std::string next_part(std::string_view& bytes) {
  constexpr std::string_view kBoundary = "\n====\n";
  const auto end = std::min(bytes.find(kBoundary), bytes.size());
  const std::string part(bytes.substr(0, end));
  bytes.remove_prefix(std::min(end + kBoundary.size(), bytes.size()));
  return part;
}

// Whether the search is a short one, as far as its parameters can be read.
bool is_short() {
  Parameters p;
  NamelistFile file;
  for (const Group& group : {group_of(p.history), group_of(p.ocs), group_of(p.algorithm)}) {
    if (file.open("qob.prm") == 0) static_cast<void>(file.read(group));
  }
  return p.history.pci_ngen <= 30 && p.ocs.nmatings <= 30 && p.algorithm.popsize <= 20 &&
         p.algorithm.generations <= 30;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view bytes = fuzz::text_of(data, size);
  memory_files().clear();
  for (const char* name : {"qob.prm", "herd.dat", "g.rel"}) {
    memory_files().put(name, next_part(bytes));
  }
  if (!is_short()) return 0;
  Run of_bytes;
  fuzz::require(!fuzz::runs_through([&] { run(of_bytes, {"qob.prm"}); }),
                "every run ends by a stop");
  return 0;
}
