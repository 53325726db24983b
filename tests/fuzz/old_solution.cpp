// A search that starts with an old solution of any bytes.
#include "analysis/inbreeding.h"
#include "analysis/qobrelshipmatrix.h"
#include "fuzz/fuzz.h"
#include "ocs/qobocs.h"
#include "pedigree/qobreadrecode.h"

using namespace qob;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::put_small_herd();
  memory_files().put("qob.prm", "&RelationshipMatrix /");
  memory_files().put("old.txt", std::string(fuzz::text_of(data, size)));
  for (const std::int32_t unit : {1, 2}) {
    fuzz::QuietModel model;
    Parameters& p = model.parameters;
    p.ocs.nmatings = 4;
    p.ocs.limitmalematings = unit;
    p.algorithm.generations = p.algorithm.popsize = p.algorithm.n_offspring = 3;
    p.algorithm.exchange_algorithm = 2;
    p.algorithm.seed_rng = 7;
    p.files.oldsol_file = "old.txt";
    readrecode(model);
    inbreeding_coefficients(model.pedigree.newped, model.pedigree.f, model.units.out);
    if (model.parameter_file.open("qob.prm") != 0) std::abort();
    setup_nrm(model);
    if (!fuzz::runs_through([&] { ocs(model); })) continue;
    const Allowances left = remaining_matings(model.candidates, model.search.best());
    for (std::int32_t i = 1; i <= model.candidates.ncands; ++i) {
      fuzz::require(left(i) >= 0, "nobody is mated more often than allowed");
    }
  }
  return 0;
}
