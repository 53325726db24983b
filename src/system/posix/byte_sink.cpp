// A file that appears when it is complete is written without a name, in the folder of the one that
// it replaces, which stays there, empty and locked, until the other takes its name. A file that has
// other names, a snapshot's for example, gives up the one that is written to and stays as it is.
//
// A write in the middle of which a signal ends the program is cut between two pages of the file, so
// signals wait until it is done.
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#include "system/byte_files.h"
#include "system/posix/signals_wait.h"
#include "system/posix/terminal_text.h"
#include "system/progress_line.h"

namespace qob {
namespace {

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
  return slash == std::string::npos ? "./" : path.substr(0, slash + 1);
}

bool is_regular(int descriptor) {
  struct stat information;
  return ::fstat(descriptor, &information) == 0 && S_ISREG(information.st_mode);
}

bool has_other_names(int descriptor) {
  struct stat information;
  return ::fstat(descriptor, &information) == 0 && information.st_nlink > 1;
}

bool is_named(int descriptor, const std::string& path) {
  struct stat named, open;
  return ::stat(path.c_str(), &named) == 0 && ::fstat(descriptor, &open) == 0 &&
         named.st_dev == open.st_dev && named.st_ino == open.st_ino;
}

// Waits until a pipe that is full takes more.
void wait_for_room(int descriptor) {
  pollfd wanted = {descriptor, POLLOUT, 0};
  ::poll(&wanted, 1, -1);
}

// Opens a file for writing where it stands. Returns its descriptor, or less the error number.
int open_locked(const std::string& path, int flags) {
  // A pipe that nobody reads is refused instead of waited for.
  const int file = ::open(path.c_str(), flags | O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0666);
  if (file < 0) return -errno;
  if (!is_regular(file)) return file;
  const bool refused = ::flock(file, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
  if (!refused && is_named(file, path)) return file;  // or another run has just put its own there
  ::close(file);
  return -EWOULDBLOCK;
}

// A name beside `path` that is free: nobody else writes there while the file is locked, and what
// a writer of it left, killed before it could give it the name `path`, goes.
std::string name_beside(const std::string& path) {
  std::string beside = folder_of(path) + ".qob-" + path.substr(path.find_last_of('/') + 1);
  ::unlink(beside.c_str());
  return beside;
}

// Lets `to` be the name of the file that has the name `from`, and of no other.
int rename_over(const std::string& from, const std::string& to) {
  if (::rename(from.c_str(), to.c_str()) == 0) return 0;
  const int status = errno;
  ::unlink(from.c_str());
  return status;
}

// Takes the name `path` from the file that is open as `shared` and gives it to a new one, empty,
// locked and with the same rights. Returns its descriptor, or less the error number.
int open_in_place_of(int shared, const std::string& path) {
  std::error_code fault;
  const std::string name = std::filesystem::canonical(path, fault);
  struct stat old;
  if (fault || ::fstat(shared, &old) != 0) return -ENOENT;
  const SignalsWait until_renamed;
  const std::string beside = name_beside(name);
  const int file = ::open(beside.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600);
  if (file < 0) return -errno;
  ::flock(file, LOCK_EX | LOCK_NB);  // before anybody else can know of it
  if (::fchown(file, old.st_uid, old.st_gid) != 0)
    errno = 0;  // it is then the user's who writes it
  ::fchmod(file, old.st_mode & 07777U);
  const int status = rename_over(beside, name);
  if (status == 0) return file;
  ::close(file);
  return -status;
}

// A file without name beside the one at `path`, which it can replace; -1 if there cannot be one.
int open_unnamed(const std::string& path) {
  struct stat old;
  if (::lstat(path.c_str(), &old) != 0 || !S_ISREG(old.st_mode)) return -1;
  const int file = ::open(folder_of(path).c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0666);
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
  std::string readable_name() const override;

 private:
  int target() const { return unnamed_ >= 0 ? unnamed_ : descriptor_; }
  int write_out(std::string_view lines);
  int appear();
  int copy_in_place();

  std::string path_;
  int descriptor_;         // the file under its name, locked against other runs
  int unnamed_ = -1;       // a file in the same folder that takes its place when complete
  bool is_plain_ = false;  // no pipe or device, which may keep a write waiting
  bool is_kept_ = false;   // locked until the program ends
};

int FileSink::open(const std::string& path, Show show) {
  path_ = path;
  const int file = open_locked(path, O_CREAT);
  if (file < 0) return -file;
  descriptor_ = file;
  is_plain_ = is_regular(file);
  ::fcntl(file, F_SETFL, 0);
  if (is_plain_ && has_other_names(file)) {
    const int own = open_in_place_of(file, path);
    if (own < 0) return -own;
    ::close(std::exchange(descriptor_, own));
  } else if (is_plain_ && ::ftruncate(file, 0) != 0) {
    return errno;
  }
  if (show != Show::kEachLine) unnamed_ = open_unnamed(path);
  is_kept_ = show == Show::kAndKeep;
  return 0;
}

int FileSink::write(std::string_view lines) {
  if (descriptor_ <= STDERR_FILENO) {
    if (descriptor_ == STDERR_FILENO) hide_progress();
    int error = 0;
    while (error == 0 && !lines.empty()) error = write_out(take_shown(lines));
    return error;
  }
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
    } else if (errno == EAGAIN) {
      wait_for_room(target());
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
  const std::string beside = name_beside(path_);
  const int status =
      ::linkat(AT_FDCWD, NameOf(unnamed_).c_str(), AT_FDCWD, beside.c_str(), AT_SYMLINK_FOLLOW);
  return status == 0 ? rename_over(beside, path_) : copy_in_place();
}

// Not every system lets a file without name have one.
int FileSink::copy_in_place() {
  const int complete = std::exchange(unnamed_, -1);
  std::array<char, 1 << 14> part;
  ssize_t count = 0;
  int status = 0;
  for (off_t at = 0; status == 0; at += count) {
    count = ::pread(complete, part.data(), part.size(), at);
    if (count < 0) status = errno;
    if (count <= 0) break;
    status = write_out({part.data(), static_cast<std::size_t>(count)});
  }
  const off_t written = ::lseek(descriptor_, 0, SEEK_CUR);
  if (status != 0 && written > 0) take_back(descriptor_, static_cast<std::size_t>(written));
  ::close(complete);
  return status;
}

int FileSink::finish() {
  if (is_kept_) ::flock(target(), LOCK_EX | LOCK_NB);  // before it can be found
  int status = unnamed_ >= 0 ? appear() : 0;
  int& written = unnamed_ >= 0 ? unnamed_ : descriptor_;
  if (is_kept_) ::fcntl(written, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);  // the lock lives as long
  if (written > STDERR_FILENO && ::close(std::exchange(written, -1)) != 0 && status == 0) {
    status = errno;
  }
  return status;
}

std::string FileSink::readable_name() const {
  if (is_named(target(), path_)) return path_;
  return "/proc/" + std::to_string(::getpid()) + "/fd/" + std::to_string(target());
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

bool is_in_use(const std::string& path) {
  const int file = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  if (file < 0) return false;
  const bool in_use =
      is_regular(file) && ::flock(file, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
  ::close(file);
  return in_use;
}

FolderLock::FolderLock(const std::string& path)
    : descriptor_(::open(folder_of(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  if (descriptor_ >= 0) ::flock(descriptor_, LOCK_EX);
}

FolderLock::~FolderLock() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

std::unique_ptr<ByteSink> standard_sink(StandardStream stream) {
  return std::make_unique<FileSink>(stream == StandardStream::kOutput ? STDOUT_FILENO
                                                                      : STDERR_FILENO);
}

}  // namespace qob
