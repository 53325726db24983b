#include "prepare/parentage.h"

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "prepare/words.h"

namespace qob {
namespace {

constexpr std::size_t kMostWords = 1000;        // for a sex
constexpr std::size_t kMostNamed = 10;          // members of a loop
constexpr std::size_t kLongestWalkBack = 1000;  // so that no file makes the walk long

void check_own_parents(Book& book) {
  Herd& herd = book.herd;
  for (std::int32_t i = 1; i <= herd.count(); ++i) {
    for (int k = 1; k <= 2; ++k) {
      if (herd.parents(k, i) != i) continue;
      book.tell(Kind::kOwnParent, i, parent_field(k), "its own parent : expected another animal");
      herd.parents(k, i) = 0;
    }
    const std::int32_t parent = herd.parents(1, i);
    if (parent == 0 || parent != herd.parents(2, i)) continue;
    book.tell(Kind::kSameParents, i, Field::kDam,
              "the sire is the dam, too : expected two animals");
    herd.parents(1, i) = herd.parents(2, i) = 0;
  }
}

// A walk from offspring to parents in depth. An animal that is met while the walk is still among
// its ancestors closes a loop.
class LoopSearch {
 public:
  explicit LoopSearch(Book& book) : book_(book), herd_(book.herd), place_(herd_.count(), kNotMet) {}

  void search() {
    for (std::int32_t i = 1; i <= herd_.count(); ++i) {
      if (place_(i) == kNotMet) walk_from(i);
    }
  }

 private:
  static constexpr std::int32_t kNotMet = -1, kDone = -2;
  struct Step {
    std::int32_t animal;
    int next;  // the parent to follow: 1, 2, or 3 when both were
  };

  void walk_from(std::int32_t i) {
    enter(i);
    while (!path_.empty()) {
      Step& step = path_.back();
      if (step.next > 2) {
        place_(step.animal) = kDone;
        path_.pop_back();
        continue;
      }
      const int k = step.next++;
      const std::int32_t parent = herd_.parents(k, step.animal);
      if (parent == 0 || place_(parent) == kDone) continue;
      if (place_(parent) == kNotMet) {
        enter(parent);
      } else {
        cut_loop(static_cast<std::size_t>(place_(parent)));
      }
    }
  }

  void enter(std::int32_t i) {
    place_(i) = static_cast<std::int32_t>(path_.size());
    path_.push_back({i, 1});
  }

  // The path from `begin` on leads from an animal by its parents to itself. The link is cut whose
  // parent is younger than its offspring, or else the last, which closed it.
  void cut_loop(std::size_t begin) {
    std::vector<std::int32_t> members = {path_[begin].animal};  // the first, each the next's parent
    const std::size_t count = path_.size() - begin;
    for (std::size_t n = 1; n <= std::min(count - 1, kMostNamed); ++n)
      members.push_back(path_[path_.size() - n].animal);
    walk_back_to_younger_parent(begin);
    const std::int32_t last = path_.back().animal;
    const int k = path_.back().next - 1;
    book_.tell(Kind::kLoop, last, parent_field(k), describe(members, count));
    herd_.parents(k, last) = 0;
  }

  void walk_back_to_younger_parent(std::size_t begin) {
    if (path_.size() - begin > kLongestWalkBack) return;
    for (std::size_t n = begin; n + 1 < path_.size(); ++n) {
      const Date offspring = herd_.birth(path_[n].animal),
                 parent = herd_.birth(path_[n + 1].animal);
      if (!offspring.is_known() || !parent.is_known() || parent < offspring) continue;
      for (; path_.size() > n + 1; path_.pop_back()) place_(path_.back().animal) = kNotMet;
    }
  }

  // "A is a parent of B, B of C, C of A (rows 3, 5, 9)"
  // count: of the loop's members.
  std::string describe(const std::vector<std::int32_t>& members, std::size_t count) const {
    std::string text, rows;
    for (std::size_t n = 0; n < std::min(count, kMostNamed); ++n) {
      const std::int32_t offspring = members[(n + 1) % members.size()];
      text +=
          name_of(members[n]) + (n == 0 ? " is a parent of " : " of ") + name_of(offspring) + ", ";
      rows += (n == 0 ? "" : ", ") + std::to_string(herd_.row(members[n]));
    }
    text.resize(text.size() - 2);
    const std::string more =
        count > kMostNamed ? " and " + std::to_string(count - kMostNamed) + " more" : "";
    return text + more + " (rows " + rows + more + ")";
  }
  std::string name_of(std::int32_t i) const { return std::string(herd_.identifier(i)); }

  Book& book_;
  Herd& herd_;
  Table<std::int32_t> place_;  // in the path, from 0
  std::vector<Step> path_;
};

class SexCheck {
 public:
  explicit SexCheck(Book& book) : book_(book), herd_(book.herd), use_(herd_.count()) {}

  void check() {
    for (std::int32_t i = 1; i <= herd_.count(); ++i) read_sex(i);
    check_letters();
    for (std::int32_t i = 1; i <= herd_.count(); ++i) {
      for (int k = 1; k <= 2; ++k) note_use(i, k);
    }
    for (std::int32_t p = 1; p <= herd_.count(); ++p) compare(p);
  }

 private:
  // A column has few words for a sex, and they are not looked up quickly.
  std::optional<SexWord> known_sex_of(std::string_view cell) {
    const auto found = words_.find(cell);
    if (found != words_.end()) return found->second;
    if (words_.size() >= kMostWords) return sex_of(cell);
    return words_.emplace(cell, sex_of(cell)).first->second;
  }

  void read_sex(std::int32_t i) {
    const std::optional<SexWord> word = known_sex_of(book_.cell(i, Field::kSex));
    if (!word) {
      book_.tell(Kind::kSex, i, Field::kSex,
                 "no word for a sex : expected M or F, or nothing if it is unknown");
      return;
    }
    herd_.sex(i) = static_cast<std::int8_t>(word->sex);
    herd_.castrated(i) = static_cast<char>(word->castrated);
  }

  // W is a female beside M, but where F is the female it may be a wether.
  void check_letters() {
    const auto holds = [](std::string_view cell, std::string_view letter) {
      return folded(cell) == letter;
    };
    const auto any = [&](std::string_view letter) {
      return std::any_of(words_.begin(), words_.end(),
                         [&](const auto& word) { return holds(word.first, letter); });
    };
    if (!any("w") || !any("f")) return;
    for (std::int32_t i = 1; i <= herd_.count(); ++i) {
      if (!holds(book_.cell(i, Field::kSex), "w")) continue;
      book_.tell(Kind::kSex, i, Field::kSex,
                 "W beside F in one column : expected F or, if it is a wether, MC");
      herd_.sex(i) = 0;
    }
  }

  void note_use(std::int32_t i, int k) {
    const std::int32_t p = herd_.parents(k, i);
    if (p == 0) return;
    std::int32_t& first = use_(p).offspring[static_cast<std::size_t>(k - 1)];
    if (first == 0) first = i;
  }

  void compare(std::int32_t p) {
    const auto& [as_sire, as_dam] = use_(p).offspring;
    if (as_sire != 0 && as_dam != 0) return tell_both(p, as_sire, as_dam);
    const int use = as_sire != 0 ? 1 : as_dam != 0 ? 2 : 0;
    if (use == 0 || herd_.sex(p) == use) return;
    if (herd_.sex(p) == 0) {
      if (herd_.row(p) != 0)
        book_.tell(Kind::kInferred, p, Field::kSex, "the sex is unknown",
                   use == 1 ? "taken as a male : it is a sire" : "taken as a female : it is a dam");
    } else {
      book_.tell(Kind::kParentSex, use == 1 ? as_sire : as_dam, parent_field(use),
                 "recorded as a " + std::string(use == 1 ? "female" : "male") + " in row " +
                     std::to_string(herd_.row(p)) + " : expected a " +
                     (use == 1 ? "male" : "female"));
    }
    herd_.sex(p) = static_cast<std::int8_t>(use);
  }

  void tell_both(std::int32_t p, std::int32_t as_sire, std::int32_t as_dam) {
    const bool sire_first = herd_.row(as_sire) < herd_.row(as_dam);
    const std::int32_t first = sire_first ? as_sire : as_dam,
                       second = sire_first ? as_dam : as_sire;
    book_.tell(Kind::kBothRoles, second, parent_field(sire_first ? 2 : 1),
               std::string("a ") + (sire_first ? "sire" : "dam") + " in row " +
                   std::to_string(herd_.row(first)) + ", a " + (sire_first ? "dam" : "sire") +
                   " here : expected one of them");
    if (herd_.sex(p) == 0) herd_.sex(p) = sire_first ? 1 : 2;
  }

  struct Use {
    std::array<std::int32_t, 2> offspring = {0, 0};  // the first, as a sire and as a dam
  };
  Book& book_;
  Herd& herd_;
  Table<Use> use_;
  std::map<std::string, std::optional<SexWord>, std::less<>> words_;
};

}  // namespace

void check_parents(Book& book) {
  book.herd.sex.assign(book.herd.count(), 0);
  book.herd.castrated.assign(book.herd.count(), 0);
  check_own_parents(book);
  LoopSearch(book).search();
  SexCheck(book).check();
}

Table<std::int32_t> parents_first(const Herd& herd) {
  Table<std::int32_t> order(herd.count());
  Table<char> placed(herd.count(), 0);
  std::vector<std::int32_t> waiting;
  std::int64_t n = 0;
  const auto unplaced_parent = [&](std::int32_t i) {
    for (int k = 1; k <= 2; ++k) {
      const std::int32_t p = herd.parents(k, i);
      if (p != 0 && placed(p) == 0) return p;
    }
    return 0;
  };
  for (std::int32_t i = 1; i <= herd.count(); ++i) {
    if (placed(i) == 0) waiting.push_back(i);
    while (!waiting.empty()) {
      const std::int32_t last = waiting.back();
      const std::int32_t parent = unplaced_parent(last);
      if (parent != 0) {
        waiting.push_back(parent);
        continue;
      }
      waiting.pop_back();
      order(++n) = last;
      placed(last) = 1;
    }
  }
  return order;
}

}  // namespace qob
