// A relationship file of any bytes, read for the matrix and again for the selection.
#include <cmath>
#include <utility>

#include "analysis/qobrelshipmatrix.h"
#include "fuzz/fuzz.h"
#include "ocs/qobocs.h"

using namespace qob;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  memory_files().put("g.rel", std::string(fuzz::text_of(data, size)));
  fuzz::QuietRun run;
  run.parameters.ocs.nmatings = 4;
  Pedigree pedigree =
      fuzz::read_small_herd(run, "&RelationshipMatrix source='file', gfile='g.rel' /");
  fuzz::runs_through([&] {
    const Relationship relationship = setup_nrm(run, pedigree).value();
    for (const double a : relationship.nrm) fuzz::require(std::isfinite(a), "finite");
    set_up_selection(run, std::move(pedigree), relationship);
  });
  return 0;
}
