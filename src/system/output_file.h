// A text file that is written in whole lines: what is written in one go appears only when it is
// complete, or its writer goes or the program stops by itself; other lines are not cut by a signal.
// (But for KILL, which can come between the two writes that the system makes of a line across the
// end of a page.)
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "system/byte_files.h"

namespace qob {

class OutputFile {
 public:
  using Show = qob::Show;

  OutputFile() = default;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile() { close(); }

  // Opens `path` for writing from its start. Returns 0 or the system's error number, EWOULDBLOCK
  // when another run reads or writes the file. What is no plain file of one name and of this user
  // (a device, a pipe, a link), or stands where files must have names, is written in place, by the
  // buffer.
  int open(const std::string& path, Show show);
  // What `open` would return, but for a file that there is not: 0. Changes nothing.
  static int probe(const std::string& path) { return probe_sink(path); }
  // Takes the stream, whose name in messages is `path`; each line goes out at once.
  void take(StandardStream stream, std::string_view path);

  bool is_open() const { return sink_ != nullptr; }
  const std::string& path() const { return path_; }
  // Of a file that is open: see ByteSink::readable_name.
  std::string readable_name() const { return sink_->readable_name(); }

  // Writes lines, which end in a line end. Returns 0, or the system's error number when these or
  // earlier ones could not be written; what is in the file then still ends with a whole line,
  // unless it is a standard stream, which others may write to as well.
  int write(std::string_view lines);
  // Returns 0, or the system's error number when the last lines could not be written.
  int close();

 private:
  int flush();
  void leave();

  std::string path_;
  std::unique_ptr<ByteSink> sink_;  // none: not open
  Show show_ = Show::kEachLine;
  std::string buffer_;
};

}  // namespace qob
