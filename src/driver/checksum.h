// The SHA-256 of a file, piece by piece.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace qob {

class Checksum {
 public:
  Checksum();
  Checksum(const Checksum&) = delete;
  Checksum& operator=(const Checksum&) = delete;
  ~Checksum();

  void add(std::string_view bytes);
  // The 64 hexadecimal digits of all that was added. To be called once.
  std::string digits();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace qob
