#include "core/sha256.h"

#include <algorithm>
#include <bit>
#include <cstddef>

namespace qob {
namespace {

constexpr std::array<std::uint32_t, 64> kRound = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

constexpr std::size_t kLengthAt = 56;  // of the last block

std::uint32_t turned(std::uint32_t x, int a, int b, int c) {
  return std::rotr(x, a) ^ std::rotr(x, b) ^ std::rotr(x, c);
}

std::uint32_t turned_and_moved(std::uint32_t x, int a, int b, int c) {
  return std::rotr(x, a) ^ std::rotr(x, b) ^ (x >> static_cast<unsigned>(c));
}

}  // namespace

void Sha256::add(std::string_view bytes) {
  bytes_ += bytes.size();
  while (!bytes.empty()) {
    const std::size_t count = std::min(bytes.size(), block_.size() - filled_);
    std::copy_n(bytes.begin(), count, block_.begin() + static_cast<std::ptrdiff_t>(filled_));
    bytes.remove_prefix(count);
    filled_ += count;
    if (filled_ == block_.size()) take_block();
  }
}

void Sha256::take_block() {
  filled_ = 0;
  std::array<std::uint32_t, 64> w;
  for (std::size_t t = 0; t < w.size(); ++t) {
    if (t < 16) {
      w[t] = std::uint32_t{block_[4 * t]} << 24U | std::uint32_t{block_[4 * t + 1]} << 16U |
             std::uint32_t{block_[4 * t + 2]} << 8U | std::uint32_t{block_[4 * t + 3]};
    } else {
      w[t] = turned_and_moved(w[t - 2], 17, 19, 10) + w[t - 7] +
             turned_and_moved(w[t - 15], 7, 18, 3) + w[t - 16];
    }
  }
  auto [a, b, c, d, e, f, g, h] = state_;
  for (std::size_t t = 0; t < w.size(); ++t) {
    const std::uint32_t first = h + turned(e, 6, 11, 25) + ((e & f) ^ (~e & g)) + kRound[t] + w[t],
                        second = turned(a, 2, 13, 22) + ((a & b) ^ (a & c) ^ (b & c));
    h = g, g = f, f = e, e = d + first;
    d = c, c = b, b = a, a = first + second;
  }
  const std::array<std::uint32_t, 8> made = {a, b, c, d, e, f, g, h};
  for (std::size_t k = 0; k < made.size(); ++k) state_[k] += made[k];
}

std::string Sha256::digits() {
  const std::uint64_t bits = 8 * bytes_;
  add("\x80");
  while (filled_ != kLengthAt) add(std::string_view("\0", 1));
  for (unsigned shift = 64; shift > 0;) {
    shift -= 8;
    const char byte = static_cast<char>(static_cast<unsigned char>(bits >> shift));
    add({&byte, 1});
  }
  std::string text;
  for (const std::uint32_t word : state_) {
    for (unsigned shift = 32; shift > 0;) {
      shift -= 4;
      text += "0123456789abcdef"[word >> shift & 15U];
    }
  }
  return text;
}

}  // namespace qob
