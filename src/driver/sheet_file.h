// A table from a file that a user names; what cannot be read stops the program with a sentence.
#pragma once

#include <string>

#include "core/sheet.h"

namespace qob {

// Stops with what is wrong with a file.
[[noreturn]] void refuse(const std::string& file, const std::string& why);

// The whole of a file.
std::string bytes_of(const std::string& path);

// The cells of a CSV file, whatever its separator and the encoding of its text.
Sheet sheet_of(const std::string& path);

}  // namespace qob
