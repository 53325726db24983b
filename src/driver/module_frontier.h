// The trade-off between merit and relationship for whoever looks at it while it is made: the herd
// is read once and kept, and each of these commands takes no more time than its plan.
#pragma once

namespace qob {

// frontier-begin, with the arguments of qob-frontier: reads the herd and writes frontier.json, with
// the curve and no plan. This and the next three tell on standard output how many plans are still
// to be made.
int begin_frontier(int argc, char** argv);
// frontier-add, with the same: adds the points that the arguments name.
int add_to_frontier(int argc, char** argv);
// frontier-make: makes the next plan and writes frontier.json.
int make_next_plan(int argc, char** argv);
// frontier-collect: writes frontier.json, with the searches that have ended.
int collect_frontier(int argc, char** argv);
// frontier-search POINT SEED FILE: writes the parameter file of the point's search with that seed
// (0: of the plan without a search). Standard output tells in which folder the log and the mating
// list of that run are looked for.
int prepare_search(int argc, char** argv);

}  // namespace qob
