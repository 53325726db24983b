// Formats of any bytes, and values in fields of any width and number of digits.
#include "core/format.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <array>
#include <cmath>
#include <deque>

#include "core/edit.h"
#include "fuzz/fuzz.h"

using namespace qob;

namespace {

constexpr int kMostSteps = 10000;  // that repeat counts may add up to

// What the C library makes of a finite number, put into the field.
std::string fixed_field(double value, int width, int decimals) {
  std::array<char, 1000> digits;
  std::snprintf(digits.data(), digits.size(), "%.*f", decimals, value);
  std::string text = digits.data();
  if (decimals == 0) text += '.';
  const auto columns = static_cast<std::size_t>(width);
  const auto zero = text.find("0.");
  const bool optional = zero == 0 || (zero == 1 && text[0] == '-');
  if (text.size() > columns && optional && decimals > 0) text.erase(zero, 1);
  if (text.size() > columns) return std::string(columns, '*');
  return std::string(columns - text.size(), ' ') + text;
}

void edit_values(FuzzedDataProvider& bytes) {
  const auto value = bytes.ConsumeFloatingPoint<double>();
  const int width = bytes.ConsumeIntegralInRange(1, 60);
  const int digits = bytes.ConsumeIntegralInRange(0, 40);
  std::string fixed, exponent, general, integer;
  edit_fixed(fixed, value, width, digits);
  edit_exponent(exponent, value, width, digits + 1);
  edit_general(general, value, width, digits + 1);
  edit_integer(integer, bytes.ConsumeIntegral<std::int64_t>(), width, digits);
  for (const std::string& field : {fixed, exponent, general, integer}) {
    fuzz::require(field.size() == static_cast<std::size_t>(width), "a field has its width");
  }
  if (std::isfinite(value)) {
    fuzz::require(fixed == fixed_field(value, width, digits), "fixed point is the C library's");
    fuzz::require(std::strtod(shortest(value).c_str(), nullptr) == value, "the shortest form");
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider bytes(data, size);
  edit_values(bytes);
  std::deque<std::string> texts;
  std::vector<Item> items;
  std::vector<ItemKind> kinds;
  for (int count = bytes.ConsumeIntegralInRange(0, 6); count > 0; --count) {
    switch (bytes.ConsumeIntegralInRange(0, 2)) {
      case 0:
        items.emplace_back(bytes.ConsumeIntegral<std::int32_t>());
        break;
      case 1:
        items.emplace_back(bytes.ConsumeFloatingPoint<double>());
        break;
      default:
        items.emplace_back(texts.emplace_back(bytes.ConsumeRandomLengthString(20)));
    }
    kinds.push_back(items.back().kind);
  }
  const std::string format = bytes.ConsumeRemainingBytesAsString();
  FormatReader reader(format);
  int steps = 0;
  for (char code = ' '; code != ')' && code != '?'; code = reader.next().code) {
    if (++steps > kMostSteps) return 0;
  }
  if (check_format(format, kinds) != FormatFault::kNone) return 0;
  std::string record = "before";
  append_items(record, format, items);
  fuzz::require(record.starts_with("before"), "what stands before is kept");
  return 0;
}
