// Files that a user names, whole; what cannot be read or written stops the program with a sentence.
#pragma once

#include <functional>
#include <string>

#include "core/csv_row.h"
#include "core/sheet.h"

namespace qob {

// Stops with what is wrong with a file.
[[noreturn]] void refuse(const std::string& file, const std::string& why);

// Makes a folder in one that is there, if it is not there already.
void make_or_refuse(const std::string& folder);

// The whole of a file.
std::string bytes_of(const std::string& path);

// The cells of a CSV file, whatever its separator and the encoding of its text.
Sheet sheet_of(const std::string& path);

// Writes the lines that `write` makes; the file is there when it is complete.
void write_lines(const std::string& path, const std::function<void(const Lines&)>& write);

}  // namespace qob
