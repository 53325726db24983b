#include "prepare/time_steps.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "prepare/dates.h"
#include "prepare/parentage.h"
#include "prepare/words.h"

namespace qob {
namespace {

// Towards the past, also before 1900.
std::int32_t floor_divided(std::int32_t number, std::int32_t by) {
  return number >= 0 ? number / by : -1 - (-1 - number) / by;
}

std::int32_t step_of(Date date, Step step, std::int32_t days) {
  const std::int32_t month = date.month > 0 ? date.month : 7;  // of a year alone, its middle
  switch (step) {
    case Step::kSeason:
      return 4 * date.year + month / 3;
    case Step::kQuarter:
      return 4 * date.year + (month - 1) / 3;
    case Step::kMonth:
      return 12 * date.year + month - 1;
    case Step::kDays:
      return floor_divided(day_number(date), days);
    default:
      return date.year;
  }
}

// Whether a parent born on `parent` can have offspring born on `offspring`: it is older as far as
// both are known.
bool is_older(Date parent, Date offspring) {
  if (parent.month == 0 || offspring.month == 0) return parent.year <= offspring.year;
  if (parent.day > 0 && offspring.day > 0) return parent < offspring;
  return std::pair(parent.year, parent.month) <= std::pair(offspring.year, offspring.month);
}

struct Link {
  std::int32_t offspring;
  int k;  // 1: by its sire, 2: by its dam
  friend auto operator<=>(const Link&, const Link&) = default;
};

using Steps = Table<std::int32_t>;

class Timing {
 public:
  explicit Timing(Book& book)
      : book_(book),
        herd_(book.herd),
        order_(parents_first(book.herd)),
        is_doubtful_(book.herd.count(), 0) {}

  TimeSteps set() {
    check_dates();
    choose();
    herd_.step = steps_by(chosen_.step);
    if (book_.options.step != Step::kAuto) tell_shared_steps();
    tell_undated();
    raise_offspring();
    const auto [first, last] = std::minmax_element(herd_.step.begin(), herd_.step.end());
    if (first != herd_.step.end()) {
      chosen_.first = *first;
      chosen_.last = *last;
    }
    for (const Date& birth : herd_.birth)
      chosen_.last_year = std::max<std::int32_t>(chosen_.last_year, birth.year);
    return chosen_;
  }

 private:
  std::int32_t parent_of(const Link& link) const { return herd_.parents(link.k, link.offspring); }

  // Those links whose parent and offspring `fails` says to be wrong.
  template <class Fails>
  std::vector<Link> links(Fails fails) const {
    std::vector<Link> found;
    for (std::int32_t i = 1; i <= herd_.count(); ++i) {
      for (int k = 1; k <= 2; ++k) {
        const std::int32_t p = herd_.parents(k, i);
        if (p != 0 && fails(p, i)) found.push_back({i, k});
      }
    }
    return found;
  }

  void check_dates() {
    wrong_ = links([&](std::int32_t p, std::int32_t i) {
      const Date parent = herd_.birth(p), offspring = herd_.birth(i);
      return parent.is_known() && offspring.is_known() && !is_older(parent, offspring);
    });
    for (const Link& link : wrong_) {
      const std::int32_t p = parent_of(link), i = link.offspring;
      tell(link, "born " + iso_date(herd_.birth(p)) + " (row " + std::to_string(herd_.row(p)) +
                     "), its offspring " + iso_date(herd_.birth(i)) +
                     " : expected an older parent");
    }
    forget_wrong_dates();
    check_dates_of_ancestors();
  }

  void tell(const Link& link, std::string words) {
    book_.tell(Kind::kYoungerParent, link.offspring, parent_field(link.k), std::move(words));
  }

  // Of the two dates of a wrong link the one that more of them stand against is the likelier
  // mistake.
  void forget_wrong_dates() {
    Table<std::int32_t> against(herd_.count(), 0);
    for (const Link& link : wrong_) {
      ++against(link.offspring);
      ++against(parent_of(link));
    }
    for (const Link& link : wrong_) {
      const std::int32_t p = parent_of(link), i = link.offspring;
      if (!herd_.birth(p).is_known() || !herd_.birth(i).is_known()) continue;
      herd_.birth(against(p) > against(i) ? p : i) = Date{};
    }
  }

  // Of animals without a date the latest that an ancestor's tells: an offspring that is older than
  // that contradicts it.
  void check_dates_of_ancestors() {
    Table<Date> at_least = herd_.birth;
    std::vector<Link> more;
    for (const std::int32_t i : order_) {
      for (int k = 1; k <= 2; ++k) {
        const std::int32_t p = herd_.parents(k, i);
        if (p == 0 || !at_least(p).is_known()) continue;
        if (!herd_.birth(i).is_known()) {
          at_least(i) = std::max(at_least(i), at_least(p));
        } else if (!herd_.birth(p).is_known() && !is_older(at_least(p), herd_.birth(i)) &&
                   !is_told({i, k})) {
          more.push_back({i, k});
          tell(more.back(), "an ancestor of it is born " + iso_date(at_least(p)) +
                                ", its offspring " + iso_date(herd_.birth(i)) +
                                " : expected older ancestors");
        }
      }
    }
    wrong_.insert(wrong_.end(), more.begin(), more.end());
    std::sort(wrong_.begin(), wrong_.end());
    for (const Link& link : wrong_)
      is_doubtful_(link.offspring) = is_doubtful_(parent_of(link)) = 1;
  }

  void choose() {
    chosen_.step = book_.options.step;
    chosen_.days = book_.options.days;
    chosen_.why = "as asked for";
    if (chosen_.step != Step::kAuto) return;
    chosen_.step = Step::kGeneration;
    bool months = false, any = false;
    for (const Date& birth : herd_.birth) {
      any = any || birth.is_known();
      months = months || birth.month > 0;
    }
    if (!any) {
      chosen_.why = "no animal has a date of birth";
    } else if (const std::string by_year = shared_by(Step::kYear); by_year.empty()) {
      chosen_.step = Step::kYear;
      chosen_.why = "they part every parent from its offspring";
    } else if (!months) {
      fall_back(by_year);
    } else if (const std::string by_month = shared_by(Step::kMonth); by_month.empty()) {
      chosen_.step = Step::kMonth;
      chosen_.why = "they part every parent from its offspring; " + by_year;
    } else {
      fall_back(by_month);
    }
  }

  void fall_back(const std::string& why) {
    chosen_.why = "no unit of time parts every parent from its offspring";
    book_.findings.add(
        {Kind::kRead, 0, book_.columns.of(Field::kBirth), "", why, "time steps are generations"});
  }

  // The parents that a step does not part from their offspring, the first in full; "" if none.
  std::string shared_by(Step step) const {
    const Steps steps = steps_by(step);
    const std::vector<Link> shared = links([&](std::int32_t p, std::int32_t i) {
      return steps(p) >= steps(i) && is_doubtful_(p) == 0 && is_doubtful_(i) == 0;
    });
    if (shared.empty()) return "";
    const std::int32_t i = shared.front().offspring, p = parent_of(shared.front());
    const std::string unit = step == Step::kYear ? "year" : "month";
    return (step == Step::kYear ? "years" : "months") + std::string(" do not separate ") +
           (shared.size() == 1 ? std::string("1 parent from its")
                               : std::to_string(shared.size()) + " parents from their") +
           " offspring (the first in row " + std::to_string(herd_.row(i)) + ": " +
           std::string(herd_.identifier(p)) + ", parent of " + std::string(herd_.identifier(i)) +
           "); with --step " + unit + " that is a fault";
  }

  Steps steps_by(Step step) const {
    Steps steps(herd_.count(), kNoStep);
    for (const std::int32_t i : order_) {
      if (step == Step::kGeneration) {
        steps(i) = depth(steps, i);
      } else if (herd_.birth(i).is_known()) {
        steps(i) = step_of(herd_.birth(i), step, chosen_.days);
      }
    }
    fill(steps);
    return steps;
  }

  // One more than the deeper parent; founders, who have 1, take their step from their offspring.
  std::int32_t depth(const Steps& steps, std::int32_t i) const {
    std::int32_t deepest = kNoStep;
    for (int k = 1; k <= 2; ++k) {
      const std::int32_t p = herd_.parents(k, i);
      if (p != 0) deepest = std::max({deepest, steps(p), 1});
    }
    return deepest == kNoStep ? kNoStep : deepest + 1;
  }

  // Gives those a step that have none.
  void fill(Steps& steps) const {
    Steps before(herd_.count(), kNoStep);  // the step before the first offspring
    for (std::int64_t n = herd_.count(); n >= 1; --n) {
      const std::int32_t i = order_(n);
      if (steps(i) == kNoStep) steps(i) = before(i);
      if (steps(i) == kNoStep) continue;
      for (int k = 1; k <= 2; ++k) {
        const std::int32_t p = herd_.parents(k, i);
        if (p != 0 && (before(p) == kNoStep || before(p) >= steps(i))) before(p) = steps(i) - 1;
      }
    }
    const std::int32_t first = first_of(steps);
    for (const std::int32_t i : order_) {
      if (steps(i) == kNoStep) steps(i) = std::max(first, after_parents(steps, i));
    }
  }

  static std::int32_t first_of(const Steps& steps) {
    std::int32_t first = kNoStep;
    for (const std::int32_t step : steps) {
      if (step != kNoStep && (first == kNoStep || step < first)) first = step;
    }
    return first == kNoStep ? 1 : first;
  }

  std::int32_t after_parents(const Steps& steps, std::int32_t i) const {
    std::int32_t after = kNoStep;
    for (int k = 1; k <= 2; ++k) {
      const std::int32_t p = herd_.parents(k, i);
      if (p != 0) after = std::max(after, steps(p) + 1);
    }
    return after;
  }

  void tell_shared_steps() {
    for (const Link& link :
         links([&](std::int32_t p, std::int32_t i) { return herd_.step(p) >= herd_.step(i); })) {
      if (is_told(link)) continue;
      const std::int32_t p = parent_of(link);
      tell(link, "no time step lies between it (row " + std::to_string(herd_.row(p)) +
                     ") and its offspring : expected an older parent, or shorter steps");
    }
  }

  bool is_told(const Link& link) const {
    return std::binary_search(wrong_.begin(), wrong_.end(), link);
  }

  Table<char> dated_descendants() const {
    Table<char> has_any(herd_.count(), 0);
    for (std::int64_t n = herd_.count(); n >= 1; --n) {
      const std::int32_t i = order_(n);
      for (int k = 1; k <= 2 && (has_any(i) != 0 || herd_.birth(i).is_known()); ++k) {
        if (herd_.parents(k, i) != 0) has_any(herd_.parents(k, i)) = 1;
      }
    }
    return has_any;
  }

  void tell_undated() {
    if (chosen_.step == Step::kGeneration) return;
    const Table<char> has_dated_descendant = dated_descendants();
    for (std::int32_t i = 1; i <= herd_.count(); ++i) {
      if (herd_.birth(i).is_known() || herd_.row(i) == 0) continue;
      book_.tell(Kind::kUndated, i, Field::kBirth,
                 says_unknown(book_.cell(i, Field::kBirth)) ? "no date of birth"
                                                            : "a date of birth that cannot be kept",
                 "time step " + std::to_string(herd_.step(i)) +
                     (has_dated_descendant(i) != 0              ? ", before its first offspring"
                      : after_parents(herd_.step, i) != kNoStep ? ", after its parents"
                                                                : ", the first time step"));
    }
  }

  // What faults have left: no offspring stays in a step of its parents.
  void raise_offspring() {
    for (const std::int32_t i : order_) {
      const std::int32_t after = after_parents(herd_.step, i);
      if (after <= herd_.step(i)) continue;
      book_.tell(
          Kind::kMoved, i, Field::kBirth, "not after its parents",
          "moved from time step " + std::to_string(herd_.step(i)) + " to " + std::to_string(after));
      herd_.step(i) = after;
    }
  }

  Book& book_;
  Herd& herd_;
  Table<std::int32_t> order_;
  TimeSteps chosen_;
  std::vector<Link> wrong_;  // told, in the order of animals
  Table<char> is_doubtful_;  // who is part of a link that is told
};

}  // namespace

std::int32_t TimeSteps::age(std::int32_t from, std::int64_t to) const {
  const std::int64_t steps = to - from;
  switch (step) {
    case Step::kSeason:
    case Step::kQuarter:
      return static_cast<std::int32_t>(steps / 4);
    case Step::kMonth:
      return static_cast<std::int32_t>(steps / 12);
    case Step::kDays:
      return static_cast<std::int32_t>(static_cast<double>(steps * days) / 365.25);
    default:
      return static_cast<std::int32_t>(steps);
  }
}

std::optional<std::int32_t> TimeSteps::age_of(const Herd& herd, std::int32_t animal) const {
  const bool any_date = last_year > 0;
  if (any_date && !herd.birth(animal).is_known()) return std::nullopt;
  return step == Step::kGeneration && any_date ? last_year + 1 - herd.birth(animal).year
                                               : age(herd.step(animal), std::int64_t{last} + 1);
}

std::int32_t TimeSteps::age_at(const Herd& herd, std::int32_t parent,
                               std::int32_t offspring) const {
  return step == Step::kGeneration ? herd.birth(offspring).year - herd.birth(parent).year
                                   : age(herd.step(parent), herd.step(offspring));
}

std::string_view TimeSteps::unit() const {
  constexpr std::array<std::string_view, 7> kUnits = {"",       "years", "seasons",    "quarters",
                                                      "months", "days",  "generations"};
  return kUnits[static_cast<std::size_t>(step)];
}

std::string TimeSteps::formula() const {
  switch (step) {
    case Step::kSeason:
      return "4 x year + 0 (winter, from December before), 1, 2, 3 (autumn)";
    case Step::kQuarter:
      return "4 x year + quarter - 1";
    case Step::kMonth:
      return "12 x year + month - 1";
    case Step::kDays:
      return "days since 1900-01-01, divided by " + std::to_string(days);
    case Step::kGeneration:
      return "depth of the pedigree";
    default:
      return "";
  }
}

TimeSteps set_time_steps(Book& book) { return Timing(book).set(); }

}  // namespace qob
