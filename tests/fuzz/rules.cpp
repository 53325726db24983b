// A run whose file of rules has any bytes: a plan that keeps them, or a message.
#include <numeric>
#include <utility>

#include "analysis/qobrelshipmatrix.h"
#include "fuzz/fuzz.h"
#include "mating/qobmate.h"
#include "ocs/qobocs.h"
#include "ocs/rules/pairing.h"

using namespace qob;

namespace {

void check_reading(const std::string& text) {
  const RulesFile file = rules_of(text);
  std::string again(kRulesHeader);
  for (const Rule& rule : file.rules) again += "\n" + rule.text();
  const RulesFile same = rules_of(again);
  fuzz::require(same.faults.empty() && same.rules.size() == file.rules.size(), "rules read again");
  for (std::size_t k = 0; k < same.rules.size(); ++k)
    fuzz::require(same.rules[k].text() == file.rules[k].text(), "a rule stays as it is");
}

void check_run(bool keep_all, std::int32_t unit) {
  fuzz::QuietRun run;
  fuzz::ask_for_matings(run.parameters, unit);
  run.parameters.rules = {"rules.csv", keep_all, "least"};
  Pedigree pedigree = fuzz::read_small_herd(run, "&RelationshipMatrix /");
  const Relationship relationship = setup_nrm(run, pedigree).value();
  fuzz::runs_through([&] {
    initialize_qob(run);
    const Selection selection = set_up_selection(run, std::move(pedigree), relationship);
    Plan plan = ocs(run, selection, relationship);
    mating(run, selection, relationship, plan);
    const auto broken =
        breaches(selection.rules.set, selection.candidates, relationship, pairs_of(plan.best()));
    const auto sum = std::accumulate(broken.begin(), broken.end(), std::int64_t{0});
    fuzz::require(sum == 0 || !keep_all, "all rules are kept");
  });
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(fuzz::text_of(data, size));
  check_reading(text);
  memory_files().put("rules.csv", text);
  for (const std::int32_t unit : {1, 2})
    for (const bool keep_all : {true, false}) check_run(keep_all, unit);
  return 0;
}
