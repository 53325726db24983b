// A search that starts with an old solution of any bytes.
#include <utility>

#include "analysis/qobrelshipmatrix.h"
#include "fuzz/fuzz.h"
#include "ocs/allowances.h"
#include "ocs/qobocs.h"

using namespace qob;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  memory_files().put("old.txt", std::string(fuzz::text_of(data, size)));
  for (const std::int32_t unit : {1, 2}) {
    fuzz::QuietRun run;
    fuzz::ask_for_matings(run.parameters, unit);
    run.parameters.files.oldsol_file = "old.txt";
    Pedigree pedigree = fuzz::read_small_herd(run, "&RelationshipMatrix /");
    const Relationship relationship = setup_nrm(run, pedigree).value();
    initialize_qob(run);
    const Selection selection = set_up_selection(run, std::move(pedigree), relationship);
    fuzz::runs_through([&] {
      Plan plan = ocs(run, selection, relationship);
      const Allowances left = remaining_matings(selection, plan.best());
      for (std::int32_t i = 1; i <= selection.candidates.ncands; ++i) {
        fuzz::require(left(i) >= 0, "nobody is mated more often than allowed");
      }
    });
  }
  return 0;
}
