#include "core/unit.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "core/stop.h"

namespace qob {
namespace {

constexpr std::size_t kBufferSize = std::size_t{1} << 16;

WriteFaultReporter write_fault_reporter = nullptr;

}  // namespace

void set_write_fault_reporter(WriteFaultReporter reporter) { write_fault_reporter = reporter; }

int Unit::open_write(const std::string& path, Flush flush) {
  file_.reset(std::fopen(path.c_str(), "w"));
  if (file_ == nullptr) return errno;
  std::setvbuf(file_.get(), nullptr, _IOFBF, kBufferSize);
  path_ = path;
  flush_ = flush;
  pending_ = 0;
  return 0;
}

void Unit::open_standard_output() {
  file_.reset(stdout);
  path_ = "standard output";
  flush_ = Flush::kEachLine;
}

void Unit::write_line(std::string_view line) {
  new_line().append(line);
  end_line();
}

void Unit::end_line() {
  line_.push_back('\n');
  if (memory_ != nullptr) {
    memory_->append(line_);
  } else if (file_ != nullptr) {
    put(line_);
  }
}

// The system's own lock on a file costs more than the copy, and one thread alone writes.
void Unit::put(std::string_view lines) {
  std::FILE* file = file_.get();
  if (pending_ + lines.size() > kBufferSize) {
    if (std::fflush(file) != 0) fail_writing(errno);
    pending_ = 0;
  }
  if (::fwrite_unlocked(lines.data(), 1, lines.size(), file) != lines.size()) fail_writing(errno);
  pending_ += lines.size();
  if (flush_ == Flush::kEachLine) {
    if (std::fflush(file) != 0) fail_writing(errno);
    pending_ = 0;
  }
}

int Unit::close() {
  memory_ = nullptr;
  if (file_ == nullptr) return 0;
  std::FILE* file = file_.release();
  const bool closed = file == stdout ? std::fflush(file) == 0 : std::fclose(file) == 0;
  return closed ? 0 : errno;
}

void Unit::fail_writing(int status) const {
  const std::string message = " ERROR in writing file " + path_ + " : " + std::strerror(status);
  const WriteFaultReporter report = std::exchange(write_fault_reporter, nullptr);
  if (report != nullptr) report(message);
  stop(message);
}

bool InputFile::exists(const std::string& path) {
  struct stat information;
  return ::stat(path.c_str(), &information) == 0;
}

int InputFile::open(const std::string& path) {
  close();
  descriptor_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor_ < 0) return errno;
  struct stat information;
  if (::fstat(descriptor_, &information) == 0 && S_ISDIR(information.st_mode)) {
    close();
    return EISDIR;
  }
  buffer_.resize(kBufferSize);
  begin_ = end_ = 0;
  return 0;
}

int InputFile::rewind() {
  begin_ = end_ = 0;
  return ::lseek(descriptor_, 0, SEEK_SET) < 0 ? errno : 0;
}

// Moves what is left to the front of the buffer and reads more behind it. Returns 0, kEndOfFile
// or the system's error number.
int InputFile::fill() {
  std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
  end_ -= begin_;
  begin_ = 0;
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
    searched = end_ - begin_;
    const int status = fill();
    if (status == kEndOfFile && searched > 0) {
      line = {buffer_.data(), searched};
      begin_ = end_;
      break;
    }
    if (status != 0) return status;
  }
  if (line.ends_with('\r')) line.remove_suffix(1);
  return 0;
}

void InputFile::close() {
  if (descriptor_ >= 0) ::close(descriptor_);
  descriptor_ = -1;
}

}  // namespace qob
