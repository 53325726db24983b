// Both passes over a data file of any bytes.
#include "fuzz/fuzz.h"

using namespace qob;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  memory_files().put("herd.dat", std::string(fuzz::text_of(data, size)));
  for (const bool ignore : {false, true}) {
    fuzz::QuietRun run;
    run.parameters.data.ignoreparentalpedigreeerrors = ignore;
    Pedigree p;
    if (!fuzz::runs_through([&] { p = readrecode(run); })) continue;
    fuzz::require(p.nobs > 0 && p.maxid >= p.nobs && (ignore || p.maxid == p.nobs), "all counted");
    for (std::int32_t i = 1; i <= p.maxid; ++i) {
      fuzz::require(p.ids.find(p.oldped(i, 1)).number == i, "identifiers lead to numbers");
      for (int k = 1; k <= 2; ++k) {
        const std::int32_t parent = p.newped(k, i);
        fuzz::require(parent >= 0 && parent < i, "parents come before offspring");
        fuzz::require(parent == 0 || p.btime(parent) < p.btime(i), "and are older");
        fuzz::require((parent == 0 ? 0 : p.oldped(parent, 1)) == p.oldped(i, k + 1), "and named");
      }
    }
  }
  return 0;
}
