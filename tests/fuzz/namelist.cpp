// Every group of a parameter file of any bytes.
#include "core/namelist.h"

#include "fuzz/fuzz.h"

using namespace qob;

namespace {

std::string echo_of(const Group& group) {
  std::string text;
  Unit unit(11);
  unit.open_memory(&text);
  echo(unit, group);
  return text;
}

// A group that was read is echoed in a form that reads back to the same values.
void read_twice(auto values) {
  const Group group = group_of(values);
  NamelistFile file;
  if (file.open("qob.prm") != 0 || file.read(group) != 0) return;
  memory_files().put("echo.prm", echo_of(group));
  decltype(values) again;
  fuzz::require(file.open("echo.prm") == 0 && file.read(group_of(again)) == 0, "the echo reads");
  fuzz::require(echo_of(group_of(again)) == *memory_files().get("echo.prm"),
                "the echo keeps the values");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  memory_files().put("qob.prm", std::string(fuzz::text_of(data, size)));
  read_twice(DataParameters{});
  read_twice(PopulationHistory{});
  read_twice(Contrib{});
  read_twice(RelationshipMatrix{});
  read_twice(OCSParameters{});
  read_twice(AlgorithmParameters{});
  read_twice(MatingOptions{});
  return 0;
}
