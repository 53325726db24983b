// Commands for the system's shell, in which a file name means itself and nothing else.
#pragma once

#include <string>
#include <string_view>

namespace qob {

// `path` as it may stand in a command: the same when it holds only letters, digits and
// . _ - / \ + @ : , = (the shell takes a backslash for itself), else in quotes; "./" goes before a
// leading hyphen, which would begin an option.
std::string shell_word(std::string_view path);

// The file that the shell takes `shell_word(path)` for.
std::string as_shell_reads(std::string_view path);

// Runs the command and waits for its end. False: it failed.
bool run_in_shell(const std::string& command);

}  // namespace qob
