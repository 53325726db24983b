#include "core/sha256.h"

#include <gtest/gtest.h>

#include <string>

namespace qob::test {
namespace {

// The examples of FIPS 180-4, and lengths about that at which the length takes a block of its own
// (sha256sum of so many "a").
TEST(Sha256, GivesThePublishedDigits) {
  const struct {
    std::string text, digits;
  } cases[] = {
      {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
      {"abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
      {std::string(55, 'a'), "9f4390f8d30c2dd92ec9f095b65e2b9ae9b0a925a5258e241c9f1e910f734318"},
      {std::string(56, 'a'), "b35439a4ac6f0948b6d6f9e3c6af0f5f590ce20f1bde7090ef7970686ec6738a"},
      {std::string(64, 'a'), "ffe054fe7ae0cb6dc65c3af9b61d5209f439851db43d0ba5997337df154668eb"},
      {std::string(1000000, 'a'),
       "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"}};
  for (const auto& [text, digits] : cases) {
    Sha256 at_once, in_parts;
    at_once.add(text);
    EXPECT_EQ(at_once.digits(), digits) << text.size();
    for (std::size_t k = 0; k < text.size(); k += 7) in_parts.add(text.substr(k, 7));
    EXPECT_EQ(in_parts.digits(), digits) << text.size();
  }
}

}  // namespace
}  // namespace qob::test
