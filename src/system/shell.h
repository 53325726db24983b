// Commands for the system's shell, in which a file name means itself and nothing else. A system
// without a shell runs none, but copies files.
#pragma once

#include <string>
#include <string_view>

namespace qob {

// `path` as it may stand in a command, alone or with more of a name behind it: the same when it
// holds only letters, digits and . _ - / \ + @ : , = (the shell takes a backslash for itself), else
// in quotes, and so is one whose last backslash would take what follows, or whose first a hyphen;
// "./" goes before a leading hyphen, which would begin an option.
std::string shell_word(std::string_view path);

// The file that the shell takes `shell_word(path)` for.
std::string as_shell_reads(std::string_view path);

// Whether what a command complains of is seen.
enum class Complaints { kShown, kHidden };

// Runs the command, which has nothing to read, and waits for its end. False: it failed, or there is
// no shell.
bool run_in_shell(const std::string& command, Complaints complaints);

// Copies the file `from` to what the shell takes `shell_word(prefix)` and then `name` for, over a
// file that is there. False: it failed, and no half of a copy is left.
bool copy_in_shell(const std::string& from, const std::string& prefix, const std::string& name);

}  // namespace qob
