// What there is left of the machine's memory.
#pragma once

#include <cstddef>

namespace qob {

// Whether a request of so many bytes would be granted now.
bool has_free_memory(std::size_t bytes);

}  // namespace qob
