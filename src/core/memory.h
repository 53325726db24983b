// Work that asks for memory, and what is told when there is not enough: the one place where a
// run goes on after something was caught.
#pragma once

#include <new>
#include <stdexcept>
#include <string_view>

#include "core/units.h"

namespace qob {

// Carries out `work`, which asks for memory. False: there was not enough to finish it. Any other
// exception goes on: a defect of the program, or a stop that a handler makes one.
template <class Work>
bool memory_suffices(Work work) {
  const std::new_handler before = std::set_new_handler(nullptr);
  bool enough = true;
  try {
    work();
  } catch (const std::bad_alloc&) {
    enough = false;
  } catch (const std::length_error&) {  // more than any memory could hold
    enough = false;
  }
  std::set_new_handler(before);
  return enough;
}

// Carries out `work` and stops the run with `message` when there is not enough memory.
template <class Work>
void allocate(Units& units, std::string_view message, Work work) {
  if (!memory_suffices(work)) handle_error(units, message);
}

}  // namespace qob
