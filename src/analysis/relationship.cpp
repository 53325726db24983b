#include "analysis/relationship.h"

#include "core/stop.h"
#include "core/unit.h"

namespace qob {

void stop_at_index_zero() {
  Unit out(6);
  out.open_standard_output();
  out.write_line(" ERROR: NRM accessed with index 0");
  stop("ERROR: NRM accessed with index 0");
}

}  // namespace qob
