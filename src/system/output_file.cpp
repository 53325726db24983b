#include "system/output_file.h"

#include <cstdlib>
#include <mutex>
#include <vector>

namespace qob {
namespace {

constexpr std::size_t kBufferSize = std::size_t{1} << 16;

// The files of all threads that are open under a name, so that what was written is kept when the
// program stops early. There is one list, as there is one program that ends.
class OpenFiles {
 public:
  static OpenFiles& all() {
    static OpenFiles files;
    return files;
  }
  void add(OutputFile* file) {
    const std::lock_guard lock(mutex_);
    files_.push_back(file);
  }
  void remove(OutputFile* file) {
    const std::lock_guard lock(mutex_);
    std::erase(files_, file);
  }
  static void close_all() {
    while (OutputFile* file = all().last()) file->close();
  }

 private:
  OutputFile* last() {
    const std::lock_guard lock(mutex_);
    return files_.empty() ? nullptr : files_.back();
  }

  std::mutex mutex_;
  std::vector<OutputFile*> files_;
};

}  // namespace

int OutputFile::open(const std::string& path, Show show) {
  leave();
  const int status = open_sink(path, show, sink_);
  if (status != 0) return status;
  OpenFiles::all().add(this);
  [[maybe_unused]] static const int at_end = std::atexit(OpenFiles::close_all);
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

// Without what is still in the buffer.
void OutputFile::leave() {
  OpenFiles::all().remove(this);
  sink_.reset();
  buffer_.clear();
}

}  // namespace qob
