#include "driver/sheet_file.h"

#include <memory>
#include <string_view>

#include "core/csv.h"
#include "core/stop.h"
#include "core/text.h"
#include "core/text_encoding.h"
#include "system/byte_files.h"
#include "system/output_file.h"
#include "system/paths.h"
#include "system/process.h"

namespace qob {
namespace {

constexpr std::size_t kPiece = std::size_t{1} << 20U;

void refuse_spreadsheet(const std::string& path, std::string_view bytes) {
  if (!bytes.starts_with("PK\x03\x04") && !bytes.starts_with("\xD0\xCF\x11\xE0")) return;
  refuse(
      path,
      "a spreadsheet, and no text : open it and save it as \"CSV UTF-8\" (File, Save as), or xlsx2csv FILE.xlsx FILE.csv");
}

}  // namespace

void refuse(const std::string& file, const std::string& why) { stop(printable(file) + ": " + why); }

void make_or_refuse(const std::string& folder) {
  const int status = make_folder(folder);
  if (status != 0) refuse(folder, std::string(error_text(status)) + " : expected a folder");
}

std::string bytes_of(const std::string& path) {
  std::unique_ptr<ByteSource> source;
  const int status = open_source(path, source);
  if (status != 0) refuse(path, error_text(status));
  std::string bytes;
  bytes.reserve(static_cast<std::size_t>(source->size()) +
                kPiece);  // also for what the last read asks
  for (std::size_t size = 0;;) {
    bytes.resize(size + kPiece);
    const std::ptrdiff_t count = source->read(bytes.data() + size, kPiece);
    if (count < 0) refuse(path, error_text(static_cast<int>(-count)));
    size += static_cast<std::size_t>(count);
    bytes.resize(size);
    if (count == 0) return bytes;
  }
}

Sheet sheet_of(const std::string& path) {
  std::string text = bytes_of(path);
  refuse_spreadsheet(path, text);
  const Encoding encoding = decode_text(text);
  if (encoding == Encoding::kBinary) refuse(path, "no text : expected a table saved as CSV");
  Sheet sheet;
  if (encoding == Encoding::kWindows1252)
    sheet.assume(
        "the text is no UTF-8 and is read as Windows-1252: look whether letters with accents are right");
  const std::string fault = read_csv(text, separator_of(text), sheet);
  if (!fault.empty()) refuse(path, fault);
  return sheet;
}

void write_lines(const std::string& path, const std::function<void(const Lines&)>& write) {
  OutputFile out;
  int status = out.open(path, OutputFile::Show::kWhenComplete);
  if (status == 0) {
    write([&](const std::string& line) {
      if (status == 0) status = out.write(line);
    });
    const int closed = out.close();
    if (status == 0) status = closed;
  }
  if (status != 0) refuse(path, error_text(status));
}

}  // namespace qob
