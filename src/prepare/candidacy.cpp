#include "prepare/candidacy.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "analysis/animal_statistics.h"
#include "prepare/parentage.h"
#include "prepare/words.h"

namespace qob {
namespace {

constexpr std::array<LeftOutText, kLeftOutCount> kLeftOutTexts = {{
    {"", ""},
    {"castrated", "castrated"},
    {"no_matings", "with 0 matings"},
    {"not_alive", "not alive"},
    {"no_birth", "without a date of birth"},
    {"age", "too young or too old"},
    {"unknown_parent", "with an unknown parent"},
    {"incomplete", "with too little completeness"},
}};

class Choice {
 public:
  Choice(Book& book, const TimeSteps& steps, const Table<double>& completeness)
      : book_(book),
        options_(book.options),
        herd_(book.herd),
        steps_(steps),
        completeness_(completeness) {}

  std::array<Candidacy, 2> choose() {
    refuse_rules_without_matings();
    herd_.left_out.assign(herd_.count(), LeftOut::kByNone);
    for (std::int32_t i = 1; i <= herd_.count(); ++i) herd_.matings(i) = allowed(i);
    set_missing_values();
    for (std::int32_t i = 1; i <= herd_.count(); ++i) {
      if (herd_.matings(i) > 0) count(i);
    }
    for (Candidacy& sex : sexes_) {
      if (sex.count > 0) sex.completeness /= static_cast<double>(sex.count);
    }
    return sexes_;
  }

 private:
  void refuse_rules_without_matings() {
    for (const auto& rule : options_.rules) {
      if (!rule || rule->matings || book_.columns.of(Field::kMatings) > 0) continue;
      book_.findings.add(
          {Kind::kTable, book_.columns.head, 0, "",
           "a rule for candidates without matings, and no column is known as matings : expected \"matings=NUMBER\" in it",
           ""});
    }
  }

  bool has_both_parents(std::int32_t i) const {
    return herd_.parents(1, i) != 0 && herd_.parents(2, i) != 0;
  }

  // How many matings an animal of its sex may have, before anything is asked of itself.
  std::int32_t wanted(std::int32_t i) const {
    const std::int32_t by_column = herd_.matings(i);
    if (herd_.sex(i) == 0) return by_column;
    const auto& rule = rule_of(i);
    return rule && rule->matings ? *rule->matings : by_column;
  }

  const std::optional<AgeRule>& rule_of(std::int32_t i) const {
    return options_.rules[static_cast<std::size_t>(herd_.sex(i) - 1)];
  }

  std::int32_t allowed(std::int32_t i) {
    const std::int32_t matings = herd_.row(i) == 0 ? 0 : wanted(i);
    if (matings == 0) return 0;
    if (herd_.sex(i) == 0) {
      if (says_unknown(book_.cell(i, Field::kSex)))
        book_.tell(Kind::kSex, i, Field::kSex, "a candidate of unknown sex : expected M or F");
      return 0;
    }
    herd_.left_out(i) = rule_against(i);
    if (herd_.left_out(i) == LeftOut::kByNone) return matings;
    ++sex_of(i).left_out[static_cast<std::size_t>(herd_.left_out(i))];
    return 0;
  }

  LeftOut rule_against(std::int32_t i) const {
    if (herd_.castrated(i) != 0) return LeftOut::kCastrated;
    if (herd_.matings(i) == 0 && book_.cell(i, Field::kMatings) == "0") return LeftOut::kForbidden;
    if (!is_alive(i)) return LeftOut::kNotAlive;
    if (const auto& rule = rule_of(i); rule && rule->has_ages()) {
      const std::optional<std::int32_t> age = steps_.age_of(herd_, i);
      if (!age) return LeftOut::kUndated;
      if (*age < rule->youngest || *age > rule->oldest) return LeftOut::kAge;
    }
    if (options_.parents_known && !has_both_parents(i)) return LeftOut::kUnknownParent;
    return completeness_(i) < options_.min_completeness ? LeftOut::kIncomplete : LeftOut::kByNone;
  }

  Candidacy& sex_of(std::int32_t i) { return sexes_[static_cast<std::size_t>(herd_.sex(i) - 1)]; }

  bool is_alive(std::int32_t i) const {
    return !options_.alive || folded(book_.sheet.cell(herd_.row(i), book_.columns.alive)) ==
                                  folded(options_.alive->second);
  }

  // The mean of the candidates that have a value, whatever the order of their rows.
  double mean_value() const {
    std::vector<double> values;
    for (std::int32_t i = 1; i <= herd_.count(); ++i) {
      if (herd_.matings(i) > 0 && !std::isnan(herd_.ebv(i))) values.push_back(herd_.ebv(i));
    }
    std::sort(values.begin(), values.end());
    double sum = 0.0;
    for (const double value : values) sum += value;
    return values.empty() ? 0.0 : sum / static_cast<double>(values.size());
  }

  void set_missing_values() {
    if (options_.missing_ebv == MissingEbv::kIsAFault && book_.columns.of(Field::kEbv) == 0)
      return refuse_without_values();
    const double mean = mean_value();
    for (std::int32_t i = 1; i <= herd_.count(); ++i) {
      if (herd_.matings(i) == 0 || !std::isnan(herd_.ebv(i))) continue;
      if (options_.missing_ebv == MissingEbv::kIsAFault) {
        book_.tell(
            Kind::kEbv, i, Field::kEbv,
            "a candidate without a breeding value : expected one, --missing-ebv mean or --no-ebv");
        herd_.matings(i) = 0;
      } else {
        herd_.ebv(i) = mean;
      }
    }
  }

  void refuse_without_values() {
    const bool any = std::any_of(herd_.matings.begin(), herd_.matings.end(),
                                 [](std::int32_t m) { return m > 0; });
    if (!any) return;
    book_.findings.add({Kind::kTable, book_.columns.head, 0, "",
                        "no column is known as ebv : expected --column ebv=HEADING, or --no-ebv",
                        ""});
  }

  void count(std::int32_t i) {
    Candidacy& sex = sex_of(i);
    ++sex.count;
    sex.both_parents_known += has_both_parents(i);
    sex.matings += herd_.matings(i);
    sex.completeness += completeness_(i);
  }

  Book& book_;
  const PrepareOptions& options_;
  Herd& herd_;
  const TimeSteps& steps_;
  const Table<double>& completeness_;
  std::array<Candidacy, 2> sexes_;
};

}  // namespace

const LeftOutText& text_of(LeftOut rule) { return kLeftOutTexts[static_cast<std::size_t>(rule)]; }

std::array<Candidacy, 2> choose_candidates(Book& book, const TimeSteps& steps,
                                           const Table<double>& completeness) {
  return Choice(book, steps, completeness).choose();
}

std::int64_t planned_matings(Book& book, const std::array<Candidacy, 2>& candidates) {
  const auto& [males, females] = candidates;
  if (males.count == 0 || females.count == 0) return -1;
  const std::int64_t room = std::min(males.matings, females.matings);
  const std::int64_t asked = book.options.matings;
  if (asked == 0) return std::min(room, females.count);
  if (asked > room) {
    book.findings.add({Kind::kRead, 0, 0, std::to_string(asked),
                       "more matings than the candidates may have",
                       std::to_string(room) + " are planned"});
  }
  return std::min(room, asked);
}

Table<double> completeness_of(const Herd& herd) {
  const Table<std::int32_t> order = parents_first(herd);
  const std::int32_t n = herd.count();
  Table<std::int32_t, 0> number(n + 1, 0);
  Table2<std::int32_t> newped(2, n, 0);
  Table<std::int32_t> btime(n, 0);
  for (std::int32_t i = 1; i <= n; ++i) number(order(i)) = i;
  for (std::int32_t i = 1; i <= n; ++i) {
    for (int k = 1; k <= 2; ++k) newped(k, i) = number(herd.parents(k, order(i)));
  }
  const Table<double> pcin = animal_statistics(newped, btime, kCompletenessGenerations).pcin;
  Table<double> completeness(n);
  for (std::int32_t i = 1; i <= n; ++i) completeness(order(i)) = pcin(i);
  return completeness;
}

}  // namespace qob
