#include "core/input_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace qob {
namespace {

constexpr std::size_t kBufferSize = std::size_t{1} << 16;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

}  // namespace

bool InputFile::exists(const std::string& path) { return ::access(path.c_str(), F_OK) == 0; }

int InputFile::open(const std::string& path) {
  close();
  // Without waiting for the other end of a pipe.
  descriptor_ = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (descriptor_ < 0) return errno;
  struct stat information = {};
  int status = 0;
  if (::fstat(descriptor_, &information) != 0 || !S_ISREG(information.st_mode)) {
    status = S_ISDIR(information.st_mode) ? EISDIR : ESPIPE;
  } else if (::flock(descriptor_, LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
    status = EWOULDBLOCK;
  }
  if (status != 0) {
    close();
    return status;
  }
  buffer_.resize(kBufferSize);
  return start();
}

int InputFile::rewind() { return ::lseek(descriptor_, 0, SEEK_SET) < 0 ? errno : start(); }

// Returns 0 or the system's error number.
int InputFile::start() {
  begin_ = end_ = 0;
  const int status = fill();
  if (std::string_view(buffer_).substr(0, end_).starts_with(kByteOrderMark)) {
    begin_ = kByteOrderMark.size();
  }
  return status == kEndOfFile ? 0 : status;
}

// Moves what is left to the front of the buffer and reads more behind it; of a line that fills the
// buffer what is not wanted goes first. Returns 0, kEndOfFile or the system's error number.
int InputFile::fill() {
  std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
  end_ -= begin_;
  begin_ = 0;
  if (end_ == buffer_.size() && end_ > width_) end_ = width_;
  if (end_ == buffer_.size()) buffer_.resize(2 * buffer_.size());
  ssize_t count;
  do {
    count = ::read(descriptor_, buffer_.data() + end_, buffer_.size() - end_);
  } while (count < 0 && errno == EINTR);
  if (count < 0) return errno;
  if (count == 0) return kEndOfFile;
  end_ += static_cast<std::size_t>(count);
  return 0;
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

void InputFile::close() {
  if (descriptor_ >= 0) ::close(descriptor_);
  descriptor_ = -1;
}

}  // namespace qob
