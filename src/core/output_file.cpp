#include "core/output_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <utility>

namespace qob {
namespace {

constexpr std::size_t kBufferSize = std::size_t{1} << 16;

// Makes signals wait: one that ends the program would end a write between two pages of the file,
// in the middle of a line.
class SignalsWait {
 public:
  SignalsWait() {
    sigset_t all;
    sigfillset(&all);
    sigprocmask(SIG_SETMASK, &all, &before_);
  }
  SignalsWait(const SignalsWait&) = delete;
  SignalsWait& operator=(const SignalsWait&) = delete;
  ~SignalsWait() { sigprocmask(SIG_SETMASK, &before_, nullptr); }

 private:
  sigset_t before_;
};

// The name under which the system shows a file that is open.
std::string name_of(int descriptor) { return "/proc/self/fd/" + std::to_string(descriptor); }

// Takes the last `count` bytes out of a file again, unless it is others' too or a device.
void take_back(int descriptor, std::size_t count) {
  const off_t end = ::lseek(descriptor, 0, SEEK_CUR) - static_cast<off_t>(count);
  if (descriptor == STDOUT_FILENO || end < 0 || ::ftruncate(descriptor, end) != 0) return;
  ::lseek(descriptor, end, SEEK_SET);
}

std::string folder_of(const std::string& path) {
  const auto slash = path.rfind('/');
  return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

bool is_plain(const std::string& path, struct stat& information) {
  return ::lstat(path.c_str(), &information) == 0 && S_ISREG(information.st_mode) &&
         information.st_nlink == 1;
}

}  // namespace

int OutputFile::open(const std::string& path, Show show) {
  leave();
  path_ = path;
  show_ = show;
  buffer_.reserve(kBufferSize);
  // A pipe that nobody reads is refused instead of waited for.
  descriptor_ = ::open(path.c_str(), O_WRONLY | O_CREAT | O_NONBLOCK | O_CLOEXEC, 0666);
  if (descriptor_ < 0) return errno;
  if (::flock(descriptor_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
    leave();
    return EWOULDBLOCK;
  }
  ::fcntl(descriptor_, F_SETFL, 0);
  static_cast<void>(::ftruncate(descriptor_, 0) == 0);  // a device cannot be
  if (show == Show::kWhenComplete) open_unnamed();
  return 0;
}

void OutputFile::open_unnamed() {
  struct stat information;
  if (!is_plain(path_, information)) return;
  unnamed_ = ::open(folder_of(path_).c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666);
  if (unnamed_ < 0) return;  // not every file system can
  if (::access(name_of(unnamed_).c_str(), F_OK) != 0 ||
      ::fchmod(unnamed_, information.st_mode & 07777U) != 0) {
    ::close(unnamed_);
    unnamed_ = -1;
  }
}

void OutputFile::take(int descriptor, std::string_view path) {
  leave();
  descriptor_ = descriptor;
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
  const int target = unnamed_ >= 0 ? unnamed_ : descriptor_;
  const SignalsWait until_written;
  std::string_view left = buffer_;
  while (!left.empty()) {
    const ssize_t count = ::write(target, left.data(), left.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) {
      const int status = errno;
      take_back(target, buffer_.size() - left.size());
      buffer_.clear();
      return status;
    }
    left.remove_prefix(static_cast<std::size_t>(count));
  }
  buffer_.clear();
  return 0;
}

// Gives the complete file its name.
int OutputFile::appear() {
  const SignalsWait until_done;
  if (::unlink(path_.c_str()) != 0 && errno != ENOENT) return errno;
  const int status =
      ::linkat(AT_FDCWD, name_of(unnamed_).c_str(), AT_FDCWD, path_.c_str(), AT_SYMLINK_FOLLOW);
  return status == 0 ? 0 : errno;
}

int OutputFile::close() {
  if (!is_open()) return 0;
  int status = flush();
  if (status == 0 && unnamed_ >= 0) status = appear();
  const int file = unnamed_ >= 0 ? std::exchange(unnamed_, -1) : std::exchange(descriptor_, -1);
  if (::close(file) != 0 && status == 0) status = errno;
  leave();
  return status;
}

// Without what is still in the buffer. Standard streams stay open.
void OutputFile::leave() {
  for (int* descriptor : {&unnamed_, &descriptor_}) {
    const int file = std::exchange(*descriptor, -1);
    if (file > STDERR_FILENO) ::close(file);
  }
  buffer_.clear();
}

}  // namespace qob
