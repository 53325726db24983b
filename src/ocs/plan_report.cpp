#include "ocs/plan_report.h"

#include <cmath>
#include <string>

#include "core/numbers.h"

namespace qob {
namespace {

constexpr std::string_view kRule =
    "---------------------------------------------------------------------------";

// The males or the females of a mateset.
struct SexUse {
  std::int32_t n = 0;
  double mean = 0.0;       // matings per used parent
  double deviation = 0.0;  // and their standard deviation
};

SexUse use_of_sex(const Candidates& candidates, Mateset mateset, int sex) {
  const Uses uses = uses_of(candidates, mateset);
  const auto for_each_parent = [&](auto action) {
    for (std::int32_t i = candidates.first(sex); i <= candidates.last(sex); ++i) {
      if (uses(i) > 0) action(uses(i));
    }
  };
  SexUse use;
  for_each_parent([&](std::int32_t) { ++use.n; });
  const float mean = single(mateset.nmatings()) / single(use.n);
  use.mean = static_cast<double>(mean);
  double squares = 0.0;
  for_each_parent(
      [&](std::int32_t matings) { squares += (matings - use.mean) * (matings - use.mean); });
  if (use.n > 1) {
    use.deviation = std::sqrt(static_cast<double>(single(squares) / single(use.n - 1)));
  }
  return use;
}

void say(Units& units, std::string_view text) { both_list(units.out, units.summary, text); }

void report_criterion(const OCSParameters& p, const MatesetValue& best, Units& units) {
  const Criterion criterion = criterion_of(p.optimise);
  if (criterion == Criterion::kConstraint) {
    say(units, "Optimisation criterion constrains expected rate of inbreeding");
    if (best.rate > p.dfconstraint) {
      say(units, "  --- Optimisation could not fulfill contraint");
      say(units, "  --- Rate of inbreeding was minimised");
    }
  } else if (criterion == Criterion::kPenalty) {
    say(units, "Optimisation criterion penalises average relationships");
  } else {
    say(units, "Optimisation criterion maximimses response to selection");
  }
}

void report_warnings(const OCSParameters& p, const MatesetValue& best, Units& units) {
  if (!best.legal) {
    say(units, kRule);
    say(units, "WARNING : A legal solution was NOT found, ");
    say(units, "WARNING :   Check parameters");
    handle_error(units, "WARNING : A legal solution was NOT found, check parameters");
  }
  if (best.rate > p.dfconstraint) {
    say(units, kRule);
    say(units,
        "WARNING : A solution fulfilling the constraint on rate of inbreeding could not be found");
    say(units, "WARNING : Solution minimises rate of inbreeding");
    say(units, "ADVICE  : use a variety of penalties to find feasible rates of inbreeding");
  }
}

}  // namespace

void report_parameters(Parameters& p, Units& units) {
  Unit& log = units.log;
  Unit& out = units.out;
  const FileNames& files = p.files;
  const std::string rule(71, '-');
  both_list(log, out);
  both_list(log, out, rule);
  both_list(log, out, "Evolutionary Algorithm initialising");
  both_list(log, out, rule);
  both_list(log, out, rule);
  both_list(log, out, "Optimal Contribution Selection");
  both_list(log, out, "Parameters");
  both_list(log, out, rule);
  const Criterion criterion = criterion_of(p.ocs.optimise);
  if (criterion == Criterion::kPenalty) {
    both(log, out, "(A,F12.2)",
         "  Optimization is with a penalty on average relationships :", p.ocs.w_relationship);
  } else if (criterion == Criterion::kConstraint) {
    both(
        log, out, "(A,F8.4)",
        "  Optimization is with a constraint on expected rate of inbreeding :", p.ocs.dfconstraint);
  } else {
    both_list(log, out, "  Optimization is maximisation of genetic merit");
  }
  both_list(log, out, "Optimal Contribution Selection Algorithm : Evolutionary Algorithm");
  for (Unit* unit : {&log, &out}) {
    echo(*unit, group_of(p.ocs));
    echo(*unit, group_of(p.algorithm));
    if (p.improvement.is_wanted()) echo(*unit, group_of(p.improvement));
    if (p.rules.is_wanted()) echo(*unit, group_of(p.rules));
  }
  both_list(log, out, "---------- Results written to files ------------------");
  both(log, out, "(A,A)", " File with optimal matelist            : ", files.lst_file.trimmed());
  both(log, out, "(A,A)", " File with convergence of solution     : ", files.cnv1_file.trimmed());
  both(log, out, "(A,A)", " File with convergence of population   : ", files.cnv2_file.trimmed());
  both(log, out, "(A,A)", " File with solutions from previous run : ", files.oldsol_file.trimmed());
  both(log, out, "(A,A)", " File with candidate contributions     : ", files.candfile.trimmed());
  both(log, out, "(A,A,/)",
       " File with summary                     : ", files.fsummaryfile.trimmed());
  both_list(log, out, std::string(55, '-'));
}

void report_best_mateset(const OCSParameters& p, const Candidates& candidates, Plan& plan,
                         Units& units) {
  Unit& out = units.out;
  Unit& summary = units.summary;
  const MatesetValue& best = plan.best_value;
  report_warnings(p, best, units);
  const SexUse males = use_of_sex(candidates, plan.best(), kMale);
  const SexUse females = use_of_sex(candidates, plan.best(), kFemale);
  both(out, summary, "(/,A,/)",
       "------------------------ Best mating set found ----------------------------");
  report_criterion(p, best, units);
  both(out, summary, "(A,I12)", " For time step           :", candidates.birth_time);
  write(summary, "(A,I12)", " Found in QOB generation :", plan.generation);
  both(out, summary, "(A,G12.6)", " Evaluation value        :", best.fitness);
  both(out, summary, "(A,G12.6)", " Average breeding value  :", best.merit);
  both(out, summary, "(A,F12.6)", " Average relationship    :", best.relationship);
  both(out, summary, "(A,F12.6)", " Average inbreeding      :", best.inbreeding);
  both(out, summary, "(A,F12.6,/)", " Generation interval     :", best.age);
  both(out, summary, "(A,I8,A12,F8.2,A5,F8.2,A)", " Males used            :", males.n,
       " used, with ", males.mean, " +/- ", males.deviation, " matings");
  both(out, summary, "(A,I8,A12,F8.2,A5,F8.2,A)", " Females used          :", females.n,
       " used, with ", females.mean, " +/- ", females.deviation, " matings");
  both_list(out, summary,
            "---------------- Predicted rates of change per generation -----------------");
  both(out, summary, "(A,F12.5)", " Rate of  inbreeding     :", best.rate);
  both_list(out, summary,
            " NOTE: If generationsinterval changes drastically from previous            ");
  both(out, summary, "(A75,/)",
       "       then this should be interpreted with caution                        ");
  both_list(out, summary, kRule);
}

}  // namespace qob
