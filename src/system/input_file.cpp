#include "system/input_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace qob {
namespace {

constexpr std::size_t kBufferSize = std::size_t{1} << 16;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

}  // namespace

int InputFile::open(const std::string& path) {
  close();
  const int status = open_source(path, source_);
  if (status != 0) return status;
  buffer_.resize(kBufferSize);
  return start();
}

int InputFile::rewind() {
  const int status = source_ != nullptr ? source_->rewind() : EBADF;
  return status != 0 ? status : start();
}

// Returns 0 or the system's error number.
int InputFile::start() {
  begin_ = end_ = 0;
  read_ = 0;
  const int status = fill();
  if (std::string_view(buffer_).substr(0, end_).starts_with(kByteOrderMark)) {
    begin_ = kByteOrderMark.size();
  }
  return status == kEndOfFile ? 0 : status;
}

// Moves what is left to the front of the buffer and reads more behind it; of a line that fills the
// buffer what is not wanted goes first. Returns 0, kEndOfFile or the system's error number.
int InputFile::fill() {
  if (source_ == nullptr) return EBADF;
  std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
  end_ -= begin_;
  begin_ = 0;
  if (end_ == buffer_.size() && end_ > width_) end_ = width_;
  if (end_ == buffer_.size()) buffer_.resize(2 * buffer_.size());
  const std::ptrdiff_t count = source_->read(buffer_.data() + end_, buffer_.size() - end_);
  if (count < 0) return static_cast<int>(-count);
  if (count == 0) return kEndOfFile;
  end_ += static_cast<std::size_t>(count);
  read_ += count;
  return 0;
}

double InputFile::share_read() const {
  return static_cast<double>(read_) /
         static_cast<double>(std::max<std::int64_t>(source_->size(), 1));
}

int InputFile::next_line(std::string_view& line) {
  std::size_t searched = 0;
  for (;;) {
    const char* start = buffer_.data() + begin_;
    const void* found = std::memchr(start + searched, '\n', end_ - begin_ - searched);
    if (found != nullptr) {
      const auto length = static_cast<std::size_t>(static_cast<const char*>(found) - start);
      line = {start, length};
      begin_ += length + 1;
      break;
    }
    searched = std::min(end_ - begin_, width_);
    const int status = fill();
    if (status == kEndOfFile && searched > 0) {
      line = {buffer_.data(), searched};
      begin_ = end_;
      break;
    }
    if (status != 0) return status;
  }
  while (line.ends_with('\r')) line.remove_suffix(1);
  line = line.substr(0, width_);
  return 0;
}

}  // namespace qob
