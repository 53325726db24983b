#include "prepare/findings.h"

#include <algorithm>

namespace qob {
namespace {

constexpr std::array<KindText, kKindCount> kTexts = {{
    {"table", true, "the table", ""},
    {"cells", true, "rows with more cells than headings", "the cells beyond are not read"},
    {"identifier", true, "identifiers that are none", "the row is left out"},
    {"duplicate", true, "identifiers with rows that differ", "the first row is taken"},
    {"own-parent", true, "animals that are their own parent", "the parent is taken as unknown"},
    {"same-parents", true, "one animal as sire and dam of another",
     "both parents are taken as unknown"},
    {"loop", true, "loops of descent", "one parent is taken as unknown"},
    {"sex", true, "sexes that cannot be read", "the sex is taken from its use as a parent"},
    {"parent-sex", true, "parents of the wrong sex", "its sex is taken from its use as a parent"},
    {"both-roles", true, "animals that are a sire and a dam", "it stays both"},
    {"birth", true, "births that cannot be read", "it is taken as unknown"},
    {"younger-parent", true, "parents that are not born before their offspring",
     "a time of birth is moved"},
    {"number", true, "numbers that cannot be read", "it is taken as missing"},
    {"ebv", true, "candidates without a breeding value", "it is no candidate"},
    {"rule", true, "faults in the rules of matings", ""},
    {"read", false, "remarks on how the table is read", ""},
    {"repeated", false, "rows that are there twice", ""},
    {"alike", false, "identifiers that differ by case, blanks or leading zeros alone", ""},
    {"founder", false, "parents without a row", ""},
    {"undated", false, "animals without a date of birth", ""},
    {"moved", false, "times of birth that were moved", ""},
    {"inferred", false, "sexes taken from use as a parent", ""},
    {"label", false, "identifiers that are too long for a label", ""},
}};

}  // namespace

const KindText& text_of(Kind kind) { return kTexts[static_cast<std::size_t>(kind)]; }

std::optional<Kind> acceptable_kind(std::string_view name) {
  for (std::size_t k = 0; k < kKindCount; ++k) {
    if (kTexts[k].name == name && kTexts[k].is_acceptable()) return static_cast<Kind>(k);
  }
  return std::nullopt;
}

Findings::Findings(const std::vector<Kind>& accepted) {
  for (const Kind kind : accepted) accepted_[static_cast<std::size_t>(kind)] = true;
}

std::string_view Findings::kept(const std::string& text) {
  return text.empty() ? std::string_view{} : *texts_.insert(text).first;
}

void Findings::add(const Remark& remark) {
  const KindText& kind = text_of(remark.kind);
  const bool hinders = kind.is_fault && !is_accepted(remark.kind);
  const bool has_remedy = kind.is_fault && remark.done.empty();
  hinder_ = hinder_ || hinders;
  ++count_[static_cast<std::size_t>(remark.kind)];
  all_.push_back({remark.kind, remark.column, remark.row, kept(remark.value), kept(remark.words),
                  hinders      ? std::string_view{}
                  : has_remedy ? kind.remedy
                               : kept(remark.done)});
}

void Findings::sort() {
  std::stable_sort(all_.begin(), all_.end(),
                   [](const Found& a, const Found& b) { return a.row < b.row; });
}

}  // namespace qob
