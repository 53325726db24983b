#include "core/unit.h"

#include <utility>

#include "core/stop.h"
#include "system/process.h"

namespace qob {

int Unit::open_write(const std::string& path, OutputFile::Show show) {
  lines_ = 0;
  unshown_ = {};
  return file_.open(path, show);
}

void Unit::open_memory(std::string* memory) {
  lines_ = 0;
  unshown_ = {};
  memory_ = memory;
}

void Unit::open_standard_output() { file_.take(StandardStream::kOutput, "standard output"); }

void Unit::open_standard_error() { file_.take(StandardStream::kError, "standard error"); }

void Unit::write_line(std::string_view line, Shown shown) {
  new_line().append(line);
  end_line(shown);
}

void Unit::end_line(Shown shown) {
  for (auto at = line_.find('\n'); at != std::string::npos; at = line_.find('\n', at + 1)) ++lines_;
  ++lines_;
  line_.push_back('\n');
  if (shown != Shown::kAsItIs) {
    Unshown& found = unshown_[static_cast<std::size_t>(shown)];
    if (found.count++ == 0) found.line = lines_;
  }
  pass_on(line_);
}

void Unit::append(const Unit& part) {
  for (std::size_t how = 0; how < unshown_.size(); ++how) {
    const Unshown& found = part.unshown_[how];
    if (unshown_[how].count == 0 && found.count > 0) unshown_[how].line = lines_ + found.line;
    unshown_[how].count += found.count;
  }
  lines_ += part.lines_;
  pass_on(*part.memory_);
}

void Unit::pass_on(std::string_view lines) {
  if (memory_ != nullptr) {
    memory_->append(lines);
  } else if (file_.is_open()) {
    const int status = file_.write(lines);
    if (status != 0) fail_writing(status);
  }
}

int Unit::close() {
  memory_ = nullptr;
  return file_.close();
}

// Each unit tells a fault once: the writes that tell it may be refused too.
void Unit::fail_writing(int status) {
  const std::string message = " ERROR in writing file " + file_.path() + " : " + error_text(status);
  for (Unit* unit : std::exchange(told_, {})) {
    if (unit != nullptr) unit->write_line(message);
  }
  stop(message);
}

}  // namespace qob
