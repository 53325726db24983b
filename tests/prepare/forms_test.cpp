// The forms in which cells hold dates and numbers, bytes hold text, and steps hold ages.
#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <string>
#include <vector>

#include "core/edit.h"
#include "core/text_encoding.h"
#include "prepare/dates.h"
#include "prepare/prepare.h"
#include "support/tables.h"

namespace qob::test {
namespace {

// What `tell` says of the animal of a herd book of one, with this cell in that column.
template <class Tell>
auto of_cell(const char* heading, Tell tell) {
  return [heading, tell](const std::string& cell) -> std::string {
    Sheet sheet;
    for (const auto& row : {std::vector<std::string>{"id", "sire", "dam", "sex", heading},
                            std::vector<std::string>{"1", "", "", "m", cell}}) {
      for (const std::string& text : row) sheet.add_cell(text);
      sheet.end_row();
    }
    PrepareOptions options;
    options.missing_ebv = MissingEbv::kIsTheMean;
    const Prepared prepared = prepare(sheet, options);
    return prepared.is_sound() ? tell(prepared.book.herd) : "fault";
  };
}

TEST(Forms, DatesAreRead) {
  check(R"(2001-04-03|2001-04-03|2001/4/3|2001.4.3|20010403|3.4.2001|03.04.2001.|36984
2001-04-03|2001-04-03 00:00:00|2001-04-03T12:00Z|3.4.2001 9:05
2001-04-14|14/4/2001|4/14/2001|14-4-2001|4-14-2001
2001-05-05|5/5/2001|05-05-2001 00:00
2001-04|2001-04|2001/4|4/2001|04.2001
2001|2001|2001.0| 2001
2000-02-29|29.2.2000|36585|20000229
1927-05-18|10000|18.5.1927
2173-10-13|99999
|0|NA|-|??|unknown|00.00.0000
fault|2001-02-29|1900-02-29|31.4.2001|2001-13-01|13.13.2001|1699|2201|100000|201|3.4.01|1.2|spring
fault|3/4/2001|3-4-2001|2001-04-03-01|2001-4/3|2001--04|/4/2001|3.4.|20011301|20010400
fault|2001 or 2002: ask|2001-04-03 :|3.4.2001 100:00|1/2/2001 13/14/2001:)",
        of_cell("born", [](const Herd& herd) { return iso_date(herd.birth(1)); }));
}

TEST(Forms, NumbersAreRead) {
  check(R"(1.5|1.5|1,5|+1.50|15e-1|1,5E0|0.15e+1
-0.25|-0.25|-,25|−0.25
1000|1000|1e3|1000.|1000,
none|NA|-|n/a|.
0|0|-0.0
fault|1.234,5|1,234.5|1.2.3|1 234|1'000|1e|e5|--1|1-|1+1|abc|1e31|-1e31|1e999|0x10|inf|5%|1e1.5)",
        of_cell("ebv", [](const Herd& herd) -> std::string {
          return std::isnan(herd.ebv(1)) ? "none" : std::string(shortest(herd.ebv(1) + 0.0));
        }));
}

TEST(Forms, NumbersOfMatingsAreWhole) {
  check(R"(30|30|30.0|30,|3e1|+30
0|0|0.0||NA
100|100|100.0000
fault|1.5|0,5|-1|1,000|1.000|12.345|1'000|2e9|many)",
        of_cell("matings", [](const Herd& herd) { return std::to_string(herd.matings(1)); }));
}

struct Bytes {
  std::string bytes, text;
  Encoding encoding;
};

TEST(Forms, BytesAreDecoded) {
  const auto utf16 = [](std::initializer_list<int> bytes) {
    return std::string(bytes.begin(), bytes.end());
  };
  for (const auto& [bytes, text, encoding] : std::vector<Bytes>{
           {"", "", Encoding::kUtf8},
           {"a\r\nb\rc\n\r\n", "a\nb\nc\n\n", Encoding::kUtf8},
           {"\xEF\xBB\xBFä\xF0\x9F\x90\x82", "ä🐂", Encoding::kUtf8},
           {utf16({0xFF, 0xFE, 'a', 0, 0xE4, 0, '\r', 0, '\n', 0}), "aä\n", Encoding::kUtf16},
           {utf16({0xFE, 0xFF, 0, 'a', 0x20, 0xAC}), "a€", Encoding::kUtf16},
           {utf16({'a', 0, 0xE4, 0}), "aä", Encoding::kUtf16},
           {utf16({0, 'a', 0, 0xE4}), "aä", Encoding::kUtf16},
           {utf16({0xFE, 0xFF, 0xD8, 0x3D, 0xDC, 0x02}), "🐂", Encoding::kUtf16},
           {utf16({0xFE, 0xFF, 0xD8, 0x3D, 0, 'a', 0xDC, 0x02, 0}), "\uFFFDa\uFFFD\uFFFD",
            Encoding::kUtf16},
           {"K\xF8n \x80\x9F\xFF", "Køn €Ÿÿ", Encoding::kWindows1252},
           {"\xC0\xAF", "À¯", Encoding::kWindows1252},
           {std::string("ab\0\0", 4), "", Encoding::kBinary}}) {
    std::string decoded = bytes;
    EXPECT_EQ(decode_text(decoded), encoding) << text;
    if (encoding == Encoding::kBinary) continue;
    EXPECT_EQ(decoded, text);
  }
}

// In whole years, from the end of a step to that of the last.
TEST(Forms, StepsTellAges) {
  const auto age = [](Step step, std::int32_t days, std::int32_t last, std::int32_t from) {
    return TimeSteps{step, days, "", 0, last}.age(from, std::int64_t{last} + 1);
  };
  EXPECT_EQ(age(Step::kYear, 0, 2020, 2018), 3);
  EXPECT_EQ(age(Step::kGeneration, 0, 9, 9), 1);
  EXPECT_EQ(age(Step::kMonth, 0, 24011, 24000), 1);
  EXPECT_EQ(age(Step::kMonth, 0, 24011, 24001), 0);
  EXPECT_EQ(age(Step::kQuarter, 0, 8003, 7996), 2);
  EXPECT_EQ(age(Step::kSeason, 0, 8003, 8001), 0);
  EXPECT_EQ(age(Step::kDays, 100, 368, 365), 1);
  EXPECT_EQ(age(Step::kDays, 100, 368, 366), 0);
}

}  // namespace
}  // namespace qob::test
