#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "system/byte_files.h"

namespace qob {
namespace {

class FileSource : public ByteSource {
 public:
  FileSource() = default;
  FileSource(const FileSource&) = delete;
  FileSource& operator=(const FileSource&) = delete;
  ~FileSource() override {
    if (descriptor_ >= 0) ::close(descriptor_);
  }

  int open(const std::string& path) {
    // Without waiting for the other end of a pipe.
    descriptor_ = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor_ < 0) return errno;
    struct stat information = {};
    if (::fstat(descriptor_, &information) != 0 || !S_ISREG(information.st_mode)) {
      return S_ISDIR(information.st_mode) ? EISDIR : ESPIPE;
    }
    const bool in_use = ::flock(descriptor_, LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    return in_use ? EWOULDBLOCK : 0;
  }

  std::ptrdiff_t read(char* to, std::size_t size) override {
    ssize_t count;
    do {
      count = ::read(descriptor_, to, size);
    } while (count < 0 && errno == EINTR);
    return count < 0 ? -errno : count;
  }

  std::int64_t size() const override {
    struct stat information;
    return ::fstat(descriptor_, &information) == 0 ? information.st_size : 0;
  }

  int rewind() override { return ::lseek(descriptor_, 0, SEEK_SET) < 0 ? errno : 0; }

 private:
  int descriptor_ = -1;
};

}  // namespace

int open_source(const std::string& path, std::unique_ptr<ByteSource>& source) {
  auto file = std::make_unique<FileSource>();
  const int status = file->open(path);
  if (status == 0) source = std::move(file);
  return status;
}

}  // namespace qob
