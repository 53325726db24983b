// A relationship file of any bytes, read for the matrix and again for the selection.
#include <cmath>

#include "analysis/inbreeding.h"
#include "analysis/qobrelshipmatrix.h"
#include "fuzz/fuzz.h"
#include "ocs/qobocs.h"
#include "pedigree/qobreadrecode.h"

using namespace qob;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::put_small_herd();
  memory_files().put("qob.prm", "&RelationshipMatrix source='file', gfile='g.rel' /");
  memory_files().put("g.rel", std::string(fuzz::text_of(data, size)));
  fuzz::QuietModel model;
  model.parameters.ocs.nmatings = 4;
  readrecode(model);
  inbreeding_coefficients(model.pedigree.newped, model.pedigree.f, model.units.out);
  if (model.parameter_file.open("qob.prm") != 0) std::abort();
  if (!fuzz::runs_through([&] { setup_nrm(model); })) return 0;
  for (const double a : model.relationship.nrm) fuzz::require(std::isfinite(a), "finite");
  fuzz::runs_through([&] { set_up_selection(model); });
  return 0;
}
