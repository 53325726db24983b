// SHA-256 (FIPS 180-4), by which a file is known again.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace qob {

class Sha256 {
 public:
  void add(std::string_view bytes);
  // Of all bytes that were added, as 64 lower-case digits. Once, at the end.
  std::string digits();

 private:
  void take_block();

  std::array<std::uint32_t, 8> state_ = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                         0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
  std::array<unsigned char, 64> block_ = {};
  std::size_t filled_ = 0;  // bytes of the block
  std::uint64_t bytes_ = 0;
};

}  // namespace qob
