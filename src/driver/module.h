// The programs as a module of another one, such as a page in a browser: files are put in, a command
// works on them, files are taken out. module.js has the same for scripts. One thread at a time.
//
// Names are UTF-8, end with a NUL and stand for what they would stand for in the run's folder. What
// is returned stays valid until the next call. Where there is not even memory for a name,
// std::bad_alloc comes out.
#pragma once

#include <cstddef>

extern "C" {

// Puts a file of so many bytes in, over one of that name. False: there is not enough memory.
bool qob_put_file(const char* name, const char* bytes, std::size_t size);

// Carries out a command line: `size` bytes of words that each end with a NUL, the first being qob,
// qob-prepare, qob-report or one of module_frontier.h. Each begins anew on the files
// that are there. Returns the program's exit status, 0 on success; lack of memory and defects are
// faults as others are. What was written up to there is among the files: standard output as
// "/dev/stdout" and standard error as "/dev/stderr", which begin with the command; results of an
// earlier run are written over, not moved aside.
int qob_command(const char* words, std::size_t size);
// The text that the last command ended with, which a program writes to standard error; "" if it
// came to its end.
const char* qob_end_text();

// The name of a file, all of them being in alphabetical order from 0; nullptr behind the last.
const char* qob_file_name(std::size_t index);
// nullptr: there is no such file.
const char* qob_file_bytes(const char* name);
// 0 if there is no such file.
std::size_t qob_file_size(const char* name);

// From here on the module's onProgress is told how far a command is.
void qob_tell_progress();

void qob_remove_file(const char* name);
void qob_clear_files();

}  // extern "C"
