#include "system/byte_files.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "system/memory/memory_files.h"

namespace qob {
namespace {

class MemorySource : public ByteSource {
 public:
  explicit MemorySource(MemoryFiles::Contents contents) : contents_(std::move(contents)) {}

  std::ptrdiff_t read(char* to, std::size_t size) override {
    const std::size_t count = contents_->copy(to, size, at_);
    at_ += count;
    return static_cast<std::ptrdiff_t>(count);
  }
  int rewind() override {
    at_ = 0;
    return 0;
  }
  std::int64_t size() const override { return static_cast<std::int64_t>(contents_->size()); }

 private:
  MemoryFiles::Contents contents_;
  std::size_t at_ = 0;
};

class MemorySink : public ByteSink {
 public:
  MemorySink(std::string name, Show show) : name_(std::move(name)), show_(show) {}

  int write(std::string_view lines) override {
    if (show_ == Show::kEachLine) {
      memory_files().append(name_, lines);
    } else {
      hidden_.append(lines);
    }
    return 0;
  }
  int finish() override {
    if (show_ != Show::kEachLine) memory_files().put(name_, std::move(hidden_));
    return 0;
  }
  std::string readable_name() const override { return name_; }

 private:
  std::string name_;
  Show show_;
  std::string hidden_;  // of a file that is not complete
};

}  // namespace

int open_source(const std::string& path, std::unique_ptr<ByteSource>& source) {
  MemoryFiles::Contents contents = memory_files().get(path);
  if (contents == nullptr) return memory_files().is_folder(path) ? EISDIR : ENOENT;
  source = std::make_unique<MemorySource>(std::move(contents));
  return 0;
}

int open_sink(const std::string& path, Show show, std::unique_ptr<ByteSink>& sink) {
  const int status = path.empty() ? ENOENT : probe_sink(path);
  if (status != 0) return status;
  sink = std::make_unique<MemorySink>(path, show);
  memory_files().put(path, "");
  return 0;
}

int probe_sink(const std::string& path) { return memory_files().is_folder(path) ? EISDIR : 0; }

bool is_in_use(const std::string&) { return false; }

FolderLock::FolderLock(const std::string&) {}
FolderLock::~FolderLock() = default;

std::unique_ptr<ByteSink> standard_sink(StandardStream stream) {
  const bool output = stream == StandardStream::kOutput;
  return std::make_unique<MemorySink>(output ? kStandardOutput : kStandardError, Show::kEachLine);
}

}  // namespace qob
