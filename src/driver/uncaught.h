// What is told of an exception that nothing has caught: no memory left, even to report it where it
// arose, or a defect.
#pragma once

#include <string>

namespace qob {

// The text to stop with, while the exception is being handled.
std::string what_nothing_caught();

// From here on the program stops with it, and with a sentence when there is no memory left.
void stop_at_what_nothing_catches();

}  // namespace qob
