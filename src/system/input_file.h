// A text file that is read line by line, as often as wanted.
#pragma once

#include <cstddef>
#include <limits>
#include <memory>
#include <string>
#include <string_view>

#include "system/byte_files.h"
#include "system/paths.h"

namespace qob {

// Status of a read that met the end of the file, and of one that met a malformed value. Every
// other status that is not 0 is the system's error number.
inline constexpr int kEndOfFile = -1;
inline constexpr int kMalformed = 5010;

// Takes memory for one buffer and for what is wanted of one line, however long it is. A byte order
// mark at the start is passed over.
class InputFile {
 public:
  // Of each line only the first `width` characters are handed out.
  explicit InputFile(std::size_t width = std::numeric_limits<std::size_t>::max()) : width_(width) {}
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  static bool exists(const std::string& path) { return path_exists(path); }

  // Opens `path` for reading. Returns 0 or the system's error number; EISDIR for a directory,
  // ESPIPE for anything else that is no plain file and so could not be read twice, EWOULDBLOCK for
  // a file that another run writes. While it is open no run can write it.
  int open(const std::string& path);
  // Goes back to the first line. Returns 0 or the system's error number.
  int rewind();
  // Sets `line` to the next line without its line end, valid until the next call. Returns 0,
  // kEndOfFile, or the system's error number. A last line without line end counts as a line, and
  // carriage returns before the line end belong to the line end.
  int next_line(std::string_view& line);
  // Of a file that is open: how much of it has been read, from 0 to 1.
  double share_read() const;
  void close() { source_.reset(); }

 private:
  int fill();
  int start();

  std::size_t width_;
  std::unique_ptr<ByteSource> source_;  // none: not open
  std::string buffer_;
  std::size_t begin_ = 0;  // first byte not yet handed out
  std::size_t end_ = 0;    // one past the last byte read
  std::int64_t read_ = 0;  // bytes since the start
};

}  // namespace qob
