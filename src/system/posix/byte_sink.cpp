// A file that appears when it is complete is written without a name, in the folder of the one that
// it replaces, which stays there, empty and locked, until the other is given its name.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <utility>

#include "system/byte_files.h"

namespace qob {
namespace {

// Makes signals to this thread wait: one that ends the program would end a write between two pages
// of the file, in the middle of a line.
class SignalsWait {
 public:
  SignalsWait() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  SignalsWait(const SignalsWait&) = delete;
  SignalsWait& operator=(const SignalsWait&) = delete;
  ~SignalsWait() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

 private:
  sigset_t before_;
};

// The name under which the system shows a file that is open. Asks for no memory.
class NameOf {
 public:
  explicit NameOf(int descriptor) {
    std::snprintf(name_.data(), name_.size(), "/proc/self/fd/%d", descriptor);
  }
  const char* c_str() const { return name_.data(); }

 private:
  std::array<char, 32> name_;
};

// Takes the last `count` bytes out of a file again, unless it is a standard stream, which is
// others' too, or a device.
void take_back(int descriptor, std::size_t count) {
  const off_t end = ::lseek(descriptor, 0, SEEK_CUR) - static_cast<off_t>(count);
  if (descriptor <= STDERR_FILENO || end < 0 || ::ftruncate(descriptor, end) != 0) return;
  ::lseek(descriptor, end, SEEK_SET);
}

std::string folder_of(const std::string& path) {
  const auto slash = path.rfind('/');
  return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

bool is_regular(int descriptor) {
  struct stat information;
  return ::fstat(descriptor, &information) == 0 && S_ISREG(information.st_mode);
}

// Opens a file for writing where it stands. Returns its descriptor, or less the error number.
int open_locked(const std::string& path, int flags) {
  // A pipe that nobody reads is refused instead of waited for.
  const int file = ::open(path.c_str(), flags | O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0666);
  if (file < 0) return -errno;
  if (is_regular(file) && ::flock(file, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
    ::close(file);
    return -EWOULDBLOCK;
  }
  return file;
}

// A file without name beside the one at `path`, which it can replace; -1 if there cannot be one.
int open_unnamed(const std::string& path) {
  struct stat old;
  if (::lstat(path.c_str(), &old) != 0 || !S_ISREG(old.st_mode) || old.st_nlink != 1) return -1;
  const int file = ::open(folder_of(path).c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666);
  if (file < 0) return -1;  // not every file system can
  struct stat made;
  if (::fstat(file, &made) == 0 && made.st_uid == old.st_uid && made.st_gid == old.st_gid &&
      ::fchmod(file, old.st_mode & 07777U) == 0 && ::access(NameOf(file).c_str(), F_OK) == 0) {
    return file;
  }
  ::close(file);
  return -1;
}

class FileSink : public ByteSink {
 public:
  explicit FileSink(int descriptor = -1)
      : descriptor_(descriptor), is_plain_(is_regular(descriptor)) {}
  FileSink(const FileSink&) = delete;
  FileSink& operator=(const FileSink&) = delete;
  ~FileSink() override {
    for (const int file : {unnamed_, descriptor_}) {
      if (file > STDERR_FILENO) ::close(file);
    }
  }

  int open(const std::string& path, Show show);
  int write(std::string_view lines) override;
  int finish() override;

 private:
  int target() const { return unnamed_ >= 0 ? unnamed_ : descriptor_; }
  int write_out(std::string_view lines);
  int appear();

  std::string path_;
  int descriptor_;         // the file under its name, locked against other runs
  int unnamed_ = -1;       // a file in the same folder that takes its place when complete
  bool is_plain_ = false;  // no pipe or device, which may keep a write waiting
};

int FileSink::open(const std::string& path, Show show) {
  path_ = path;
  const int file = open_locked(path, O_CREAT);
  if (file < 0) return -file;
  descriptor_ = file;
  is_plain_ = is_regular(file);
  ::fcntl(file, F_SETFL, 0);
  if (is_plain_ && ::ftruncate(file, 0) != 0) return errno;
  if (show == Show::kWhenComplete) unnamed_ = open_unnamed(path);
  return 0;
}

int FileSink::write(std::string_view lines) {
  if (!is_plain_) return write_out(lines);
  const SignalsWait until_written;
  return write_out(lines);
}

int FileSink::write_out(std::string_view lines) {
  std::string_view left = lines;
  while (!left.empty()) {
    const ssize_t count = ::write(target(), left.data(), left.size());
    if (count >= 0) {
      left.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      const int status = errno;
      take_back(target(), lines.size() - left.size());
      return status;
    }
  }
  return 0;
}

// Gives the complete file its name.
int FileSink::appear() {
  const SignalsWait until_done;
  if (::unlink(path_.c_str()) != 0 && errno != ENOENT) return errno;
  const int status =
      ::linkat(AT_FDCWD, NameOf(unnamed_).c_str(), AT_FDCWD, path_.c_str(), AT_SYMLINK_FOLLOW);
  return status == 0 ? 0 : errno;
}

int FileSink::finish() {
  int status = unnamed_ >= 0 ? appear() : 0;
  int& written = unnamed_ >= 0 ? unnamed_ : descriptor_;
  if (written > STDERR_FILENO && ::close(std::exchange(written, -1)) != 0 && status == 0) {
    status = errno;
  }
  return status;
}

}  // namespace

int open_sink(const std::string& path, Show show, std::unique_ptr<ByteSink>& sink) {
  auto file = std::make_unique<FileSink>();
  const int status = file->open(path, show);
  if (status == 0) sink = std::move(file);
  return status;
}

int probe_sink(const std::string& path) {
  const int file = open_locked(path, 0);
  if (file >= 0) ::close(file);
  return file >= 0 || file == -ENOENT ? 0 : -file;
}

std::unique_ptr<ByteSink> standard_sink(StandardStream stream) {
  return std::make_unique<FileSink>(stream == StandardStream::kOutput ? STDOUT_FILENO
                                                                      : STDERR_FILENO);
}

}  // namespace qob
