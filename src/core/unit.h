// A numbered place that lines are written to: a file, standard output, or memory.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "system/output_file.h"

namespace qob {

// How a value was shown: as it is, so wide that its column is full of stars or runs into the one
// before, or as what is no number (0/0, or beyond the largest one).
enum class Shown : std::uint8_t { kAsItIs, kTooWide, kNoNumber };

// Values of a file that were not shown as they are: the line of the first, counted from 1.
struct Unshown {
  std::int64_t line = 0, count = 0;
};

// A write that the system refuses stops the program with the file's name and what the system says.
class Unit {
 public:
  explicit Unit(int number) : number_(number) {}

  int number() const { return number_; }
  // Where a refused write is told before it stops the program; nullptr for nowhere.
  void tell_faults_to(Unit* first, Unit* second) { told_ = {first, second}; }
  bool is_open() const { return memory_ != nullptr || file_.is_open(); }
  // The name of the file that was opened last.
  const std::string& path() const { return file_.path(); }
  // Of a file that is open: a name under which others can read what was written.
  std::string readable_name() const { return file_.readable_name(); }

  // Opens `path` for writing from its start. Returns 0 or the system's error number (EWOULDBLOCK:
  // another run uses it).
  int open_write(const std::string& path, OutputFile::Show show);
  // Lines go to standard output, or to standard error.
  void open_standard_output();
  void open_standard_error();
  // Lines are collected in `memory`, each ended by a line feed.
  void open_memory(std::string* memory);

  // Writes `line` and a line end; `line` may hold line feeds of its own. Does nothing on a unit
  // that is not open.
  void write_line(std::string_view line, Shown shown = Shown::kAsItIs);
  // The same for a line that is made in place: an empty text to append to, and its end.
  std::string& new_line() {
    line_.clear();
    return line_;
  }
  void end_line(Shown shown = Shown::kAsItIs);
  // Writes the lines that `part` has collected in memory, and counts what they show.
  void append(const Unit& part);

  // Written since the unit was opened.
  std::int64_t lines() const { return lines_; }
  // Lines of the file that was opened last with values that were shown so.
  const Unshown& unshown(Shown how) const { return unshown_[static_cast<std::size_t>(how)]; }

  // Returns 0, or the system's error number when the last lines could not be written.
  int close();

 private:
  void pass_on(std::string_view lines);
  [[noreturn]] void fail_writing(int status);

  int number_;
  std::array<Unit*, 2> told_ = {nullptr, nullptr};
  OutputFile file_;
  std::string* memory_ = nullptr;
  std::string line_;        // in the making
  std::int64_t lines_ = 0;  // written since it was opened
  std::array<Unshown, 3> unshown_;
};

}  // namespace qob
