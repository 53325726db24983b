#include "system/free_memory.h"

#include <cstdlib>

namespace qob {

bool has_free_memory(std::size_t bytes) {
  void* volatile reserve = std::malloc(bytes);  // else compilers leave both calls out
  std::free(reserve);
  return reserve != nullptr;
}

}  // namespace qob
