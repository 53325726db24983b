#include "driver/checksum.h"

#include <nettle/base16.h>
#include <nettle/sha2.h>

#include <array>

namespace qob {

struct Checksum::State {
  sha256_ctx sum;
};

Checksum::Checksum() : state_(std::make_unique<State>()) { sha256_init(&state_->sum); }
Checksum::~Checksum() = default;

void Checksum::add(std::string_view bytes) {
  sha256_update(&state_->sum, bytes.size(), reinterpret_cast<const std::uint8_t*>(bytes.data()));
}

std::string Checksum::digits() {
  std::array<std::uint8_t, SHA256_DIGEST_SIZE> digest;
  sha256_digest(&state_->sum, digest.size(), digest.data());
  std::string digits(BASE16_ENCODE_LENGTH(digest.size()), ' ');
  base16_encode_update(digits.data(), digest.size(), digest.data());
  return digits;
}

}  // namespace qob
