// The parameter file that a prepared herd starts from: every group and key, with what it means.
#include <string>

#include "prepare/data_files.h"

namespace qob {
namespace {

std::string in_quotes(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text) quoted.append(c == '\'' ? 2 : 1, c);
  return quoted + "'";
}

constexpr std::string_view kData =
    R"(! The pedigree, one animal a line, parents before their offspring; NAMES.names.csv tells whom the
! numbers stand for. Every result file's name begins with `resultsdirectory`: end it in "/" for a
! folder that exists.
&DataParameters
  datafile=DATAFILE,
  resultsdirectory='./QOB_',
  ignoreparentalpedigreeerrors=.false.,  ! .true.: a parent without a record becomes a founder
  recodefile='_null_' /                  ! a file for the table of identifiers and running numbers

! Generations of ancestors that the pedigree completeness index looks at.
&PopulationHistory
  pci_ngen=5 /

! How much of their genes animals have from whom: a group for each question, without its "!".
! ancestor and descendant are numbers of animals, group a birth time.
!&Contrib
!  ancestor=1, descendant=0, group=LASTTIME /

! Relationships of the candidates come from the pedigree, or from the file gfile (source='file').
! timesteps=0: as many time steps as needed; -1: the run ends here, without a plan.
&RelationshipMatrix
  source='pedigree',
  gfile='_null_',
  timesteps=TIMESTEPS /

! How many matings, and what is best:
!   optimise='penalty'     merit, less a penalty for the average relationship (w_relationship <= 0)
!   optimise='constraint'  merit, with the rate of inbreeding per generation kept at dfconstraint
!   optimise='merit'       merit alone
! Which w_relationship is right shows by trying: the more negative, the less related are the parents.
! limitmalematings: every male used gets a multiple of so many matings.
&OCSParameters
  nmatings=MATINGS,
  optimise='penalty',
  w_merit=MERIT,
  w_relationship=RELATIONSHIP,
! dfconstraint=0.01,     (for optimise='constraint': the largest rate)
  limitmalematings=1 /

! The search. The same seed gives the same plan; 0 takes one from the clock.
&AlgorithmParameters
  generations=10000,                    ! at most
  popsize=100,                          ! plans that are kept
  n_offspring=10,                       ! plans that a generation adds
  restart_interval=500,                 ! generations without a better plan before all are changed
  exchange_algorithm=750,               ! every so many generations entries are tried one by one
  mutate_probability=-1.0,              ! by entry of a plan; -1: 1 in 4 nmatings
  crossover_probability=-1.0,           ! -1: 0.3
  directed_mutation_probability=-1.0,   ! -1: 1 in 4 nmatings
  seed_rng=20240607,
  ngenerationsnoimprovement=1000 /      ! then the search ends

! matingstrategy='mai': pair the chosen parents for least inbreeding; 'random': as they were found.
! repeatedmatings=.false.: no pair is mated twice.
&MatingOptions
  matingstrategy='mai',
  repeatedmatings=.true. /
)";

// Behind the others, where there are rules.
std::string rules_group(const std::string& name) {
  return R"(
! The breeder's rules of matings. keep_all=.false.: where they cannot hold together, a plan with as
! few violations as possible. pairing='least': pairs of exactly the least inbreeding.
&MatingRules
  rulesfile=)" +
         in_quotes(name + ".rules.csv") + R"(,
  keep_all=.true.,
  pairing='matingstrategy' /
)";
}

void put(std::string& text, std::string_view place, const std::string& value) {
  text.replace(text.find(place), place.size(), value);
}

}  // namespace

std::string parameter_file(const Prepared& prepared, const std::string& name) {
  const auto& [males, females] = prepared.candidates;
  const bool any_merit = prepared.book.options.missing_ebv != MissingEbv::kNoneIsRead;
  std::string text(kData);
  put(text, "LASTTIME", std::to_string(prepared.steps.last));
  put(text, "TIMESTEPS", prepared.has_candidates() ? "0" : "-1");
  put(text, "MATINGS", std::to_string(prepared.matings));
  put(text, "MERIT", any_merit ? "1.0" : "0.0");
  put(text, "RELATIONSHIP", any_merit ? "-20.0" : "-1.0");
  // The last in the text first, as a name may hold the word for a place.
  put(text, "DATAFILE", in_quotes(name + ".dat"));
  put(text, "NAMES", name);
  const std::string formula = prepared.steps.formula();
  return "! " + name + ": " + std::to_string(prepared.animal.size()) + " animals, " +
         std::to_string(males.count) + " males and " + std::to_string(females.count) +
         " females to choose from.\n! Birth times are " + std::string(prepared.steps.unit()) +
         ", " + std::to_string(prepared.steps.first) + " to " +
         std::to_string(prepared.steps.last) + (formula.empty() ? "" : ": " + formula) +
         ".\n!\n! Text after \"!\" is a comment; a key left out keeps its default (qob --help).\n\n" +
         text + (prepared.book.options.mating_rules ? rules_group(name) : "");
}

}  // namespace qob
