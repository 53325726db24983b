#include "driver/uncaught.h"

#include <exception>
#include <new>
#include <stdexcept>

#include "core/stop.h"
#include "driver/run.h"

namespace qob {

std::string what_nothing_caught() {
  try {
    if (const auto exception = std::current_exception()) std::rethrow_exception(exception);
  } catch (const std::bad_alloc&) {
  } catch (const std::length_error&) {
  } catch (const std::exception& defect) {
    return std::string("ERROR: the program has a defect : ") + defect.what();
  }
  return kOutOfMemory;
}

void stop_at_what_nothing_catches() {
  std::set_new_handler([] { stop(kOutOfMemory); });
  std::set_terminate([] { stop(what_nothing_caught()); });
}

}  // namespace qob
