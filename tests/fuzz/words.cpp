// Headings, identifiers and words for a sex from any text.
#include "prepare/words.h"

#include "core/letters.h"
#include "core/text_encoding.h"
#include "fuzz/herd_book.h"
#include "prepare/data_files.h"

using namespace qob;

namespace {

bool is_plain(char c) { return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9'); }

// Whether `end` is where a character of `text` ends.
bool is_boundary(std::string_view text, std::size_t end) {
  std::size_t at = 0;
  while (at < end) at += first_character(text.substr(at)).length;
  return at == end;
}

void check_words(std::string_view text) {
  const std::string blanks = " " + std::string(text) + " ";
  fuzz::require(!field_of(text) || !field_perhaps(text), "a heading is sure or likely");
  fuzz::require(field_of(text) == field_of(blanks), "blanks are no part of a heading");
  fuzz::require(says_unknown(text) == says_unknown(blanks), "blanks are no part of a word");
  const std::optional<SexWord> sex = sex_of(text);
  fuzz::require(!sex || (sex->sex >= 0 && sex->sex <= 2), "a sex is one of two or unknown");
  const std::string letters = plain(text);
  fuzz::require(std::all_of(letters.begin(), letters.end(), is_plain), "only plain letters");
  fuzz::require(plain(letters) == letters, "plain letters stay");
}

// The label of an animal of that name begins as the name does.
void check_label(std::string_view identifier) {
  Sheet sheet;
  fuzz::add_row(sheet, {"identifier", "sire", "dam"});
  fuzz::add_row(sheet, {identifier, "", ""});
  const PrepareOptions options;
  const Prepared prepared = prepare(sheet, options);
  if (!prepared.is_sound()) return;
  identifier = sheet.cell(2, 1);
  write_data(prepared, [&](const std::string& line) {
    std::int32_t number = 0;
    Text<15> label;
    fuzz::require(read_list(line.substr(0, line.size() - 1), number, number, number, number, number,
                            number, *std::make_unique<double>(), label) == 0,
                  "a line reads");
    const std::string_view shown = label.trimmed();
    fuzz::require(identifier.starts_with(shown), "a label is the start of its identifier");
    fuzz::require(is_boundary(identifier, shown.size()), "a label ends with a character");
    const std::string_view left = identifier.substr(shown.size());
    fuzz::require(left.empty() || without_blanks(left) != left || shown.size() > 11,
                  "a label is long enough");
  });
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string text(fuzz::text_of(data, size));
  check_words(text);
  if (decode_text(text) == Encoding::kBinary) return 0;
  check_words(text);
  fuzz::require(folded(folded(text)) == folded(text), "a folded text stays");
  check_label(text);
  return 0;
}
