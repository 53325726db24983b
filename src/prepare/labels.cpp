#include "prepare/labels.h"

#include <algorithm>
#include <string>
#include <vector>

namespace qob {
namespace {

// Animals whose label another one has, too.
std::int64_t count_shared(const Labels& labels, const Herd& herd) {
  std::vector<std::string_view> texts;
  for (const std::string_view identifier : herd.identifier) texts.push_back(labels.of(identifier));
  std::sort(texts.begin(), texts.end());
  std::int64_t shared = 0;
  for (std::size_t k = 0; k < texts.size(); ++k) {
    const bool as_before = k > 0 && texts[k] == texts[k - 1];
    shared += as_before || (k + 1 < texts.size() && texts[k] == texts[k + 1]);
  }
  return shared;
}

}  // namespace

Labels choose_labels(Book& book) {
  const Herd& herd = book.herd;
  const auto is_long = [](std::string_view text) { return text.size() > Labels::kWidth; };
  const auto count = std::count_if(herd.identifier.begin(), herd.identifier.end(), is_long);
  Labels first, last;
  last.by_end_ = true;
  if (count == 0) return first;
  const std::int64_t by_first = count_shared(first, herd), by_last = count_shared(last, herd);
  const Labels& best = by_last < by_first ? last : first;
  const std::int64_t shared = std::min(by_first, by_last);
  const auto example = std::find_if(herd.identifier.begin(), herd.identifier.end(), is_long);
  book.findings.add({Kind::kLabel, 0, 0, std::string(*example),
                     (count == 1 ? "1 identifier is" : std::to_string(count) + " identifiers are") +
                         std::string(" longer than 15 bytes"),
                     "results show their " + std::string(best.by_end_ ? "last 15" : "first 15") +
                         (shared > 0 ? ", and " + std::to_string(shared) +
                                           " animals have the label of another: go by their numbers"
                                     : "")});
  return best;
}

}  // namespace qob
