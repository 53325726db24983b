// What the module asks of whoever has made it: checksums, as browsers and Node have their own, and
// to show how far it is.
#include <emscripten.h>

#include "driver/checksum.h"
#include "driver/module.h"
#include "system/memory/progress_listener.h"

EM_JS(void, tell_progress, (const char* text, std::size_t size),
      { Module.onProgress(UTF8ToString(text >>> 0, size)); });
EM_JS(void, checksum_begin, (), { Module.sum = Module.sha256(); });
EM_JS(void, checksum_add, (const char* bytes, std::size_t size),
      { Module.sum.update(HEAPU8.subarray(bytes >>> 0, (bytes >>> 0) + (size >>> 0))); });
EM_JS(void, checksum_digits, (char* digits), {
  const sum = Module.sum.digest();
  for (let k = 0; k < 64; ++k) {
    HEAPU8[(digits >>> 0) + k] = ((sum[k >> 1] >> (k % 2 ? 0 : 4)) & 15).toString(16).charCodeAt(0);
  }
});

namespace qob {

struct Checksum::State {};

Checksum::Checksum() { checksum_begin(); }
Checksum::~Checksum() = default;

void Checksum::add(std::string_view bytes) { checksum_add(bytes.data(), bytes.size()); }

std::string Checksum::digits() {
  std::string digits(64, ' ');
  checksum_digits(digits.data());
  return digits;
}

}  // namespace qob

void qob_tell_progress() {
  qob::listen_to_progress([](std::string_view text) { tell_progress(text.data(), text.size()); });
}
