// What names of files stand for. A name that cannot be followed stands for nothing.
#pragma once

#include <string>
#include <vector>

namespace qob {

// Whether there is a file or folder at `path`.
bool path_exists(const std::string& path);

// Whether there is a file that has both names.
bool are_one_file(const std::string& a, const std::string& b);
// Whether two names are, or would be, those of one file.
bool are_same_path(const std::string& a, const std::string& b);

// Follows links.
bool is_folder(const std::string& path);
bool is_link(const std::string& path);

// Makes a folder in one that is there. Returns 0, also when it is there already, or the system's
// error number. In memory there is nothing to make: a folder is there with its first file.
int make_folder(const std::string& path);

// What a shell makes of folder/*ending: the paths of what is there, in ascending order.
std::vector<std::string> entries_of(const std::string& folder, const std::string& ending);

// The path of a file as it is called from `folder`, which is there; unchanged if there is no file.
std::string path_from(const std::string& folder, const std::string& path);

// Copies a file over another one, which it replaces when it is complete. Returns 0 or the system's
// error number.
int copy_file(const std::string& from, const std::string& to);

// Removes the file, if it is there. Returns 0 or the system's error number.
int remove_file(const std::string& path);

// Whether standard output or standard error goes to the plain file at `path`.
bool is_standard_stream(const std::string& path);

}  // namespace qob
