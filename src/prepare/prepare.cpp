#include "prepare/prepare.h"

#include "prepare/animals.h"
#include "prepare/dates.h"
#include "prepare/numbering.h"
#include "prepare/numbers.h"
#include "prepare/parentage.h"

namespace qob {

Prepared prepare(const Sheet& sheet, const PrepareOptions& options) {
  Prepared prepared{
      {sheet, options, Findings(options.accepted), {}, {}, {}}, {}, {}, -1, {}, {}, {}, {}};
  Book& book = prepared.book;
  if (!sheet.assumed().empty()) book.findings.add({Kind::kRead, 0, 0, "", sheet.assumed(), ""});
  book.columns = find_columns(sheet, options, book.findings);
  if (book.findings.hinder()) {  // no cell would be what it is taken for
    find_rules(book);
    book.findings.sort();
    return prepared;
  }
  enter_animals(book);
  read_births(book);
  check_parents(book);
  prepared.steps = set_time_steps(book);
  read_numbers(book);
  prepared.completeness = completeness_of(book.herd);
  prepared.candidates = choose_candidates(book, prepared.steps, prepared.completeness);
  prepared.matings = planned_matings(book, prepared.candidates);
  prepared.labels = choose_labels(book);
  prepared.rules = find_rules(book);
  book.findings.sort();
  if (prepared.is_sound()) prepared.animal = number_animals(book.herd);
  return prepared;
}

}  // namespace qob
