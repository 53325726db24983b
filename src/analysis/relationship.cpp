#include "analysis/relationship.h"

#include <cstdio>

#include "core/stop.h"

namespace qob {

void stop_at_index_zero() {
  std::puts(" ERROR: NRM accessed with index 0");
  stop("ERROR: NRM accessed with index 0");
}

}  // namespace qob
