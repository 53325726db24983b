#include "system/output_file.h"

#include <cstdlib>
#include <utility>

namespace qob {
namespace {

constexpr std::size_t kBufferSize = std::size_t{1} << 16;

}  // namespace

int OutputFile::open(const std::string& path, Show show) {
  leave();
  const int status = open_sink(path, show, sink_);
  if (status != 0) return status;
  [[maybe_unused]] static const int at_end = std::atexit(close_all);
  opened_before_ = std::exchange(last_opened, this);
  path_ = path;
  show_ = show;
  buffer_.reserve(kBufferSize);
  return 0;
}

void OutputFile::take(StandardStream stream, std::string_view path) {
  leave();
  sink_ = standard_sink(stream);
  path_ = path;
  show_ = Show::kEachLine;
}

int OutputFile::write(std::string_view lines) {
  if (buffer_.size() + lines.size() > kBufferSize) {
    const int status = flush();
    if (status != 0) return status;
  }
  buffer_.append(lines);
  return show_ == Show::kEachLine ? flush() : 0;
}

int OutputFile::flush() {
  const int status = buffer_.empty() ? 0 : sink_->write(buffer_);
  buffer_.clear();
  return status;
}

int OutputFile::close() {
  if (!is_open()) return 0;
  int status = flush();
  if (status == 0) status = sink_->finish();
  leave();
  return status;
}

void OutputFile::close_all() {
  while (last_opened != nullptr) last_opened->close();
}

// Without what is still in the buffer.
void OutputFile::leave() {
  for (OutputFile** link = &last_opened; *link != nullptr; link = &(*link)->opened_before_) {
    if (*link != this) continue;
    *link = opened_before_;
    break;
  }
  sink_.reset();
  buffer_.clear();
}

}  // namespace qob
