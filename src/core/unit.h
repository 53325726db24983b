// A numbered place that lines are written to or read from: a file, standard output, or memory.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace qob {

// Status of a read that met the end of the file, and of one that met a malformed value. Every
// other status that is not 0 is the system's error number.
inline constexpr int kEndOfFile = -1;
inline constexpr int kMalformed = 5010;

// Reports a refused write elsewhere before the program stops. It is called once: its own writes
// may be refused too.
using WriteFaultReporter = void (*)(std::string_view message);
void set_write_fault_reporter(WriteFaultReporter reporter);

// Output goes out in whole lines only, so that an interrupted run leaves no half line behind. A
// write that the system refuses stops the program with the file's name and what the system says.
class Unit {
 public:
  explicit Unit(int number) : number_(number) {}

  int number() const { return number_; }
  bool is_open() const { return memory_ != nullptr || file_ != nullptr; }

  // When lines leave the program: each at once (for what a person watches), or by the buffer.
  enum class Flush { kEachLine, kByBuffer };

  // Opens `path` for writing from its start. Returns 0 or the system's error number.
  int open_write(const std::string& path, Flush flush = Flush::kByBuffer);
  // Lines go to standard output, each at once.
  void open_standard_output();
  // Lines are collected in `memory`, each ended by a line feed.
  void open_memory(std::string* memory) { memory_ = memory; }

  // Writes `line` and a line end; `line` may hold line feeds of its own. Does nothing on a unit
  // that is not open.
  void write_line(std::string_view line);
  // The same for a line that is made in place: an empty text to append to, and its end.
  std::string& new_line() {
    line_.clear();
    return line_;
  }
  void end_line();

  // Returns 0, or the system's error number when the last lines could not be written.
  int close();

 private:
  struct CloseFile {
    void operator()(std::FILE* file) const {
      if (file != nullptr && file != stdout) std::fclose(file);
    }
  };
  void put(std::string_view lines);
  [[noreturn]] void fail_writing(int status) const;

  int number_;
  std::string path_;
  std::unique_ptr<std::FILE, CloseFile> file_;
  std::string* memory_ = nullptr;
  std::string line_;  // in the making
  Flush flush_ = Flush::kByBuffer;
  std::size_t pending_ = 0;  // bytes in the buffer
};

// A text file read line by line, as often as wanted, with memory for one buffer and one line.
class InputFile {
 public:
  InputFile() = default;
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;
  ~InputFile() { close(); }

  static bool exists(const std::string& path);

  // Opens `path` for reading. Returns 0 or the system's error number (a directory is refused).
  int open(const std::string& path);
  // Goes back to the first line. Returns 0 or the system's error number.
  int rewind();
  // Sets `line` to the next line without its line end, valid until the next call. Returns 0,
  // kEndOfFile, or the system's error number. A last line without line end counts as a line, and
  // a carriage return before the line end belongs to the line end.
  int next_line(std::string_view& line);
  void close();

 private:
  int fill();

  int descriptor_ = -1;
  std::string buffer_;
  std::size_t begin_ = 0;  // first byte not yet handed out
  std::size_t end_ = 0;    // one past the last byte read
};

}  // namespace qob
