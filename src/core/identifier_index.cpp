#include "core/identifier_index.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace qob {
namespace {

// FNV-1a (Fowler, Noll & Vo), and a last mixing so that its first bits depend on all bytes.
std::uint64_t code_of(std::string_view text) {
  std::uint64_t code = 0xCBF29CE484222325U;
  for (const char c : text) code = (code ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
  code = (code ^ code >> 32U) * 0x94D049BB133111EBU;
  return code ^ code >> 29U;
}

auto key_of(const Named& name) { return std::tuple(name.code, name.identifier); }

}  // namespace

Named::Named(std::string_view text, std::int32_t n)
    : code(code_of(text)), identifier(text), number(n) {}

void sort_by_identifier(std::vector<Named>& names) {
  std::sort(names.begin(), names.end(), [](const Named& a, const Named& b) {
    if (a.code != b.code) return a.code < b.code;
    return std::pair(a.identifier, a.number) < std::pair(b.identifier, b.number);
  });
}

IdentifierIndex::IdentifierIndex(std::vector<Named> names) : names_(std::move(names)) {
  while (shift_ > 36 && std::size_t{1} << (63 - shift_) < names_.size()) --shift_;
  begin_.assign((std::size_t{1} << (64 - shift_)) + 1, 0);
  for (const Named& name : names_) ++begin_[bucket_of(name) + 1];
  for (std::size_t k = 1; k < begin_.size(); ++k) begin_[k] += begin_[k - 1];
}

std::int32_t IdentifierIndex::find(std::string_view identifier) const {
  if (names_.empty()) return 0;
  const Named wanted(identifier, 0);
  const std::size_t bucket = bucket_of(wanted);
  const Named* begin = names_.data() + begin_[bucket];
  const Named* end = names_.data() + begin_[bucket + 1];
  const Named* found = std::lower_bound(
      begin, end, wanted, [](const Named& a, const Named& b) { return key_of(a) < key_of(b); });
  return found != end && found->has_same_identifier(wanted) ? found->number : 0;
}

}  // namespace qob
