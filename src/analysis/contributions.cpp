#include "analysis/contributions.h"

#include <algorithm>
#include <numeric>
#include <string>
#include <vector>

#include "analysis/pedigree_products.h"
#include "core/finding.h"
#include "core/numbers.h"

namespace qob {
namespace {

constexpr std::int32_t kLargest = 50;  // contributions listed in maxgcfile

// Lines of founders, in all, and for each animal of the data.
constexpr std::int64_t kMostFounderLines = 100000;
constexpr std::int64_t kMostByAnimal = 100;

// Average relationships with the animals of one group, and contributions to them, by animal.
struct GroupVectors {
  Table<double> r;
  Table<double> c;
};

// The animals with the largest contributions, kLargest of them if there are so many, in animal
// order; of equals the first.
std::vector<std::int32_t> largest_of(const Table<double>& c) {
  std::vector<std::int32_t> animals(static_cast<std::size_t>(c.size()));
  std::iota(animals.begin(), animals.end(), 1);
  const auto count = std::min(std::ssize(animals), std::ptrdiff_t{kLargest});
  std::partial_sort(animals.begin(), animals.begin() + count, animals.end(),
                    [&](auto i, auto j) { return c(i) != c(j) ? c(i) > c(j) : i < j; });
  animals.resize(static_cast<std::size_t>(count));
  std::sort(animals.begin(), animals.end());
  return animals;
}

class ContributionReport {
 public:
  ContributionReport(Run& run, Pedigree& pedigree, const Cohorts& cohorts)
      : run_(run),
        units_(run.journal.units),
        pedigree_(pedigree),
        cohorts_(cohorts),
        group_(cohorts.count()) {}

  void open();
  void report_group();
  // Returns false at the end of the parameter file.
  bool read_request();
  void answer_request(bool first);
  void close();

 private:
  bool find(std::int32_t id, std::int32_t& number);
  bool find_animals(std::int32_t& ancestor, std::int32_t& descendant);
  GroupVectors vectors_of(std::int32_t group) const;
  void list_founders(const GroupVectors& v);
  void list_largest(GroupVectors& v);
  void answer_pair(std::int32_t ancestor, std::int32_t descendant);
  void answer_group(std::int32_t ancestor);
  bool take_named_group();
  void ignore_request();
  void tell_unused(bool first);
  void leave_unanswered(const std::string& why);
  void count_founder_lines();
  std::string_view gcfile() const { return run_.parameters.files.gcfile.trimmed(); }

  Run& run_;
  Units& units_;
  Pedigree& pedigree_;  // its identifiers grow by what requests name
  const Cohorts& cohorts_;
  std::int32_t group_;             // that the last request named, at first the last group
  std::int64_t request_line_ = 0;  // of the parameter file
  Finding other_group_, unused_, unanswered_;
  std::int64_t founder_lines_ = 0;  // written to gcfile
  Unit gc_{16};
  Unit maxgc_{17};
};

void ContributionReport::open() {
  const Text<80>& prefix = run_.parameters.data.resultsdirectory;
  openresultsfile(run_, prefix, gcfile(), gc_);
  openresultsfile(run_, prefix, run_.parameters.files.maxgcfile, maxgc_);
  write_list(units_.log, "Computing additive relationships and genetic contributions");
  write_list(gc_, "# Add.rel  : Additive genetic relationship ");
  write_list(gc_, "# Gen.cont : Genetic contribution ");
  write(gc_, "(3A12,A8,2A10)", "Ancestor", "Descendant", "Group", "N.Group", "Add.rel", "Gen.cont");
  write_list(maxgc_, "# Largest genetic contributions");
  write_list(maxgc_, "# Add.rel  : Additive genetic relationship ");
  write_list(maxgc_, "# Gen.cont : Genetic contribution ");
  write(maxgc_, "(2A12,A8,2A10)", "Ancestor", " Group", "N.Group", "Add.rel", "Gen.cont");
}

void ContributionReport::close() {
  const std::string file = printable(run_.parameters.files.qobparmfile.trimmed());
  for (const Finding* finding : {&other_group_, &unused_, &unanswered_})
    finding->tell(units_, file);
  write_list(units_.log, "Genetic contributions written to file ", gcfile());
  closeresultsfile(units_, gc_);
  closeresultsfile(units_, maxgc_);
}

GroupVectors ContributionReport::vectors_of(std::int32_t group) const {
  const float share = 1.0F / single(cohorts_.n(group));
  GroupVectors v;
  v.r.assign(pedigree_.maxid, 0.0);
  for (std::int32_t i = 1; i <= pedigree_.maxid; ++i) {
    if (cohorts_.cohort(i) == group) v.r(i) = static_cast<double>(share);
  }
  v.c = v.r;
  run_.parallel.for_each(2, 20 * v.r.size(), [&](std::int64_t which, int) {
    which == 0 ? ax(pedigree_.newped, pedigree_.f, v.r) : gen_cont(pedigree_.newped, v.c);
  });
  return v;
}

void ContributionReport::report_group() {
  GroupVectors v = vectors_of(group_);
  list_founders(v);
  write_list(gc_);
  write(units_.summary, "(/,2A)", "Contribution of founders to timestep written to file ",
        gcfile());
  write(units_.out, "(/,2A)", "Contribution of founders to last timestep written to file ",
        gcfile());
  list_largest(v);
}

void ContributionReport::list_founders(const GroupVectors& v) {
  for (std::int32_t i = 1; i <= pedigree_.maxid; ++i) {
    const int known = (pedigree_.oldped(i, 2) != 0) + (pedigree_.oldped(i, 3) != 0);
    if (known == 2) continue;
    count_founder_lines();
    const double weight = known == 0 ? 1.0 : 0.5;
    write(gc_, "(I12,A12,I12,I8,2F10.6,1X,2A)", pedigree_.oldped(i, 1), "0", cohorts_.btime(group_),
          cohorts_.n(group_), v.r(i), weight * v.c(i), pedigree_.txt(i), " founder");
  }
}

// A request repeats all founders: what is written is not to outgrow the data.
void ContributionReport::count_founder_lines() {
  const std::int64_t most = std::max(kMostFounderLines, kMostByAnimal * pedigree_.maxid);
  if (++founder_lines_ <= most) return;
  handle_error(units_, "ERROR in namelist Contrib. Requests for groups give more than ", most,
               " lines of ", gcfile());
}

void ContributionReport::list_largest(GroupVectors& v) {
  const std::vector<std::int32_t> largest = largest_of(v.c);
  for (std::size_t line = 0; line < largest.size(); ++line) {
    // The first of equals; an entry that has been listed counts as 0 from then on.
    const std::int32_t k = *std::max_element(largest.begin(), largest.end(),
                                             [&](auto i, auto j) { return v.c(i) < v.c(j); });
    write(maxgc_, "(2I12,I8,2F10.6,1X,A)", pedigree_.oldped(k, 1), cohorts_.btime(group_),
          cohorts_.n(group_), v.r(k), v.c(k), pedigree_.txt(k));
    v.c(k) = 0.0;
  }
}

bool ContributionReport::read_request() {
  Contrib& request = run_.parameters.contrib;
  request = Contrib{};
  const Group group = group_of(request);
  int status = run_.parameter_file.find(group);
  if (status == kEndOfFile) return false;
  request_line_ = run_.parameter_file.group_line();
  if (status == 0) status = run_.parameter_file.read_items(group);
  if (status != 0) {
    handle_error(units_, ErrorValue{status}, "Error in reading parameter file, namelist Contrib");
  }
  Unit& log = units_.log;
  write_list(log);
  write_list(log, std::string(71, '-'));
  write_list(log, "Contrib Parameters read :");
  echo(log, group);
  write_list(log, std::string(70, '-'));
  write_list(log);
  return true;
}

void ContributionReport::answer_request(bool first) {
  const Contrib& request = run_.parameters.contrib;
  std::int32_t ancestor = 0;
  std::int32_t descendant = 0;
  if (!find_animals(ancestor, descendant)) return;
  tell_unused(first);
  if (ancestor > 0 && descendant > 0) {
    answer_pair(ancestor, descendant);
  } else if (ancestor > 0) {
    take_named_group() ? answer_group(ancestor) : ignore_request();
  } else if (request.group != 0 || first) {
    if (!take_named_group() && request.group != 0) {
      other_group_.add(request_line_, [&] {
        return "&Contrib group = " + std::to_string(request.group) +
               " : no animal is born then, the contributions to " +
               std::to_string(cohorts_.btime(group_)) + " are given";
      });
    }
    report_group();
  } else {
    leave_unanswered("expected an ancestor or a group");
  }
}

// A request may say more than its answer takes up, and the first one less.
void ContributionReport::tell_unused(bool first) {
  const Contrib& request = run_.parameters.contrib;
  const bool pair = request.ancestor != 0 && request.descendant != 0;
  const auto tell = [&](std::string_view what) {
    unused_.add(request_line_, [&] { return "&Contrib : " + std::string(what); });
  };
  if (pair && request.group != 0) tell("the group is not used, the answer is for the descendant");
  if (request.ancestor != 0 || (request.group == 0 && !first)) return;
  if (request.descendant != 0) {
    tell("the descendant is not used without an ancestor, the answer is for a group");
  } else if (request.group == 0) {
    tell("neither ancestor nor group, the contributions to the last group are given again");
  }
}

void ContributionReport::leave_unanswered(const std::string& why) {
  unanswered_.add(request_line_, [&] { return "&Contrib is not answered : " + why; });
}

// Returns whether the request names a group that has members.
bool ContributionReport::take_named_group() {
  const std::int32_t born = run_.parameters.contrib.group;
  const std::int32_t group = born == 0 ? 0 : cohorts_.find(born);
  if (group != 0) group_ = group;
  return group != 0;
}

// Sets both numbers, 0 for an identifier that is not given, the ancestor being the older animal.
// Returns false, with a message, when the request cannot be answered.
bool ContributionReport::find_animals(std::int32_t& ancestor, std::int32_t& descendant) {
  const Contrib& request = run_.parameters.contrib;
  if (!find(request.ancestor, ancestor) || !find(request.descendant, descendant)) return false;
  if (ancestor > 0 && descendant > 0 && ancestor > descendant) std::swap(ancestor, descendant);
  if (std::max(ancestor, descendant) > pedigree_.maxid) {
    write_list(units_.log, " ERROR in namelist Contrib. ID too large");
    leave_unanswered("expected identifiers of the data file");
    return false;
  }
  return true;
}

// An unknown identifier stays in the tree with a number beyond every animal's, so that asking for
// it again finds a number that is too large.
bool ContributionReport::find(std::int32_t id, std::int32_t& number) {
  if (id == 0) return true;
  std::int32_t counter = pedigree_.maxid;
  IdTree::Found found;
  allocate(units_, "Error in allocating memory for tree",
           [&] { found = pedigree_.ids.build_tree(id, counter); });
  number = found.number;
  if (found.in_tree) return true;
  Unit& log = units_.log;
  write_list(log, " ERROR in namelist Contrib. Animal not in pedigree : ", id);
  write_list(log, " Request ignored");
  leave_unanswered(std::to_string(id) + " is not in the data file");
  return false;
}

void ContributionReport::answer_pair(std::int32_t ancestor, std::int32_t descendant) {
  const std::int32_t ancestor_id = pedigree_.oldped(ancestor, 1);
  const std::int32_t descendant_id = pedigree_.oldped(descendant, 1);
  write_list(units_.out, "GC from ancestor :", ancestor_id);
  Table<double> x(pedigree_.maxid, 0.0);
  Table<double> y(pedigree_.maxid, 0.0);
  x(ancestor) = 1.0;
  y(descendant) = 1.0;
  ax(pedigree_.newped, pedigree_.f, x);
  gen_cont(pedigree_.newped, y);
  write(gc_, "(2I12,A12,A8,2F10.6,1X,2A)", ancestor_id, descendant_id, "0", "0", x(descendant),
        y(ancestor), pedigree_.txt(ancestor), pedigree_.txt(descendant));
  both(units_.summary, units_.out, "(/,A,I8,A,I8,2A)", "Contribution of Ancestor", ancestor_id,
       "  to descendant ", descendant_id, " written to file ", gcfile());
}

void ContributionReport::answer_group(std::int32_t ancestor) {
  const std::int32_t ancestor_id = pedigree_.oldped(ancestor, 1);
  const GroupVectors v = vectors_of(group_);
  write(gc_, "(I12,A12,I12,I8,2F10.6,1X,A)", ancestor_id, "0", cohorts_.btime(group_),
        cohorts_.n(group_), v.r(ancestor), v.c(ancestor), pedigree_.txt(ancestor));
  both(units_.summary, units_.out, "(/,A,I8,A,I8,2A)", "Contribution of Ancestor", ancestor_id,
       " to group ", cohorts_.btime(group_), " written to file ", gcfile());
}

void ContributionReport::ignore_request() {
  const Contrib& request = run_.parameters.contrib;
  both_list(units_.out, units_.log, " Ancestor=", request.ancestor,
            " Descendant=", request.descendant, " Group=", request.group,
            " Namelist Contrib ignored");
  leave_unanswered("expected a descendant, or a group in which animals are born");
}

}  // namespace

void contributions(Run& run, Pedigree& pedigree, const Cohorts& cohorts) {
  ContributionReport work(run, pedigree, cohorts);
  work.open();
  work.report_group();
  for (bool first = true; work.read_request(); first = false) work.answer_request(first);
  work.close();
}

}  // namespace qob
