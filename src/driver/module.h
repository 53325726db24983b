// The program as a module of another one, such as a page in a browser: files are put in, a job runs
// on them, files are taken out. module.js has the same for scripts. One thread at a time.
//
// Names are UTF-8, end with a NUL and stand for what they would stand for in the run's folder. What
// is returned stays valid until the next call. Where there is not even memory for a name,
// std::bad_alloc comes out.
#pragma once

#include <cstddef>

extern "C" {

// Puts a file of so many bytes in, over one of that name. False: there is not enough memory.
bool qob_put_file(const char* name, const char* bytes, std::size_t size);

// Runs the job that the parameter file describes, on the files that are there and anew each time.
// Returns the program's exit status, 0 on success and 1 on every fault, lack of memory and defects
// among them. What was written up to there is among the files: standard output as "/dev/stdout",
// which begins with the run; results of an earlier run are written over, not moved aside.
int qob_run(const char* parameter_file);
// The text that the last run ended with, which the program writes to standard error.
const char* qob_end_text();

// The name of a file, all of them being in alphabetical order from 0; nullptr behind the last.
const char* qob_file_name(std::size_t index);
// nullptr: there is no such file.
const char* qob_file_bytes(const char* name);
// 0 if there is no such file.
std::size_t qob_file_size(const char* name);

void qob_remove_file(const char* name);
void qob_clear_files();

}  // extern "C"
