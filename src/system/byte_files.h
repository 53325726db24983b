// Files as bytes, as a system gives them: what InputFile and OutputFile stand on, and all of them
// that differs between systems. A system in memory has one process: no other run, so no locks.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace qob {

// The bytes of a file that is read.
class ByteSource {
 public:
  virtual ~ByteSource() = default;
  // Reads up to `size` bytes. Returns how many, 0 at the end of the file, or less the system's
  // error number.
  virtual std::ptrdiff_t read(char* to, std::size_t size) = 0;
  // Goes back to the first byte. Returns 0 or the system's error number.
  virtual int rewind() = 0;
  // The bytes of the file.
  virtual std::int64_t size() const = 0;
};

// Sets `source` to the file at `path`, which no run can write as long as the source is there.
// Returns 0 or the system's error number; EISDIR for a directory, ESPIPE for anything else that is
// no plain file, EWOULDBLOCK for a file that another run writes.
int open_source(const std::string& path, std::unique_ptr<ByteSource>& source);

// When what was written can be seen under the file's name.
enum class Show {
  kEachLine,      // each line at once: for what grows through the run
  kWhenComplete,  // all of it when the file is closed, until then it is empty
  kAndKeep,       // so too, and no other run can write it as long as this one goes on
};

// A file that is written. It is given up, without its name if it has none yet, when the sink goes.
class ByteSink {
 public:
  virtual ~ByteSink() = default;
  // Writes whole lines. Returns 0, or the system's error number; of lines that could not be written
  // nothing stays in a plain file that is no standard stream.
  virtual int write(std::string_view lines) = 0;
  // Shows the complete file under its name; nothing is written thereafter. Returns 0 or the
  // system's error number.
  virtual int finish() = 0;
  // A name under which others can read what was written: the file's own, unless somebody has given
  // that to another file.
  virtual std::string readable_name() const = 0;
};

// Sets `sink` to an empty file at `path`, which no other run can read or write as long as the sink
// is there. A file that has other names as well is not emptied: it stays what it is under those.
// Returns 0 or the system's error number, EWOULDBLOCK when another run uses the file.
int open_sink(const std::string& path, Show show, std::unique_ptr<ByteSink>& sink);

// What `open_sink` would return, but for a file that there is not: 0. Changes nothing.
int probe_sink(const std::string& path);

// Whether a run, be it this one, reads or writes the file.
bool is_in_use(const std::string& path);

// The folder of `path` is one run's at a time, as long as this is there, if all ask for it. Waits
// for another run to leave it; does nothing where folders cannot be locked.
class FolderLock {
 public:
  explicit FolderLock(const std::string& path);
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;
  ~FolderLock();

 private:
  [[maybe_unused]] int descriptor_ = -1;
};

enum class StandardStream { kOutput, kError };

// The stream, which stays open when the sink goes.
std::unique_ptr<ByteSink> standard_sink(StandardStream stream);

}  // namespace qob
