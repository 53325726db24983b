// What names of files stand for. A name that cannot be followed stands for nothing.
#pragma once

#include <string>

namespace qob {

// Whether there is a file or folder at `path`.
bool path_exists(const std::string& path);

// Whether there is a file that has both names.
bool are_one_file(const std::string& a, const std::string& b);
// Whether two names are, or would be, those of one file.
bool are_same_path(const std::string& a, const std::string& b);

// Whether the file stands in the folder and has this ending, under its own name or that of the file
// that it is a link to.
bool stands_in(const std::string& folder, const std::string& ending, const std::string& file);

// Whether standard output or standard error goes to the plain file at `path`.
bool is_standard_stream(const std::string& path);

}  // namespace qob
