#include "core/parameters.h"

namespace qob {

Group group_of(DataParameters& p) {
  return {"DataParameters",
          {{"datafile", &p.datafile},
           {"resultsdirectory", &p.resultsdirectory},
           {"ignoreparentalpedigreeerrors", &p.ignoreparentalpedigreeerrors},
           {"recodefile", &p.recodefile}}};
}

Group group_of(PopulationHistory& p) { return {"PopulationHistory", {{"pci_ngen", &p.pci_ngen}}}; }

Group group_of(Contrib& p) {
  return {"Contrib",
          {{"ancestor", &p.ancestor}, {"descendant", &p.descendant}, {"group", &p.group}}};
}

Group group_of(RelationshipMatrix& p) {
  return {"RelationshipMatrix",
          {{"source", &p.source}, {"gfile", &p.gfile}, {"timesteps", &p.timesteps}}};
}

Group group_of(OCSParameters& p) {
  return {"OCSParameters",
          {{"nmatings", &p.nmatings},
           {"optimise", &p.optimise},
           {"w_merit", &p.w_merit},
           {"w_relationship", &p.w_relationship},
           {"dfconstraint", &p.dfconstraint},
           {"limitmalematings", &p.limitmalematings}}};
}

Group group_of(AlgorithmParameters& p) {
  return {"AlgorithmParameters",
          {{"generations", &p.generations},
           {"popsize", &p.popsize},
           {"n_offspring", &p.n_offspring},
           {"restart_interval", &p.restart_interval},
           {"exchange_algorithm", &p.exchange_algorithm},
           {"mutate_probability", &p.mutate_probability},
           {"crossover_probability", &p.crossover_probability},
           {"directed_mutation_probability", &p.directed_mutation_probability},
           {"seed_rng", &p.seed_rng},
           {"ngenerationsnoimprovement", &p.ngenerationsnoimprovement}}};
}

Group group_of(Improvement& p) {
  return {"Improvement", {{"start", &p.start}, {"finish", &p.finish}}};
}

Group group_of(MatingOptions& p) {
  return {"MatingOptions",
          {{"matingstrategy", &p.matingstrategy}, {"repeatedmatings", &p.repeatedmatings}}};
}

Group group_of(MatingRules& p) {
  return {"MatingRules",
          {{"rulesfile", &p.rulesfile}, {"keep_all", &p.keep_all}, {"pairing", &p.pairing}}};
}

std::vector<Group> groups_of(Parameters& p) {
  return {group_of(p.data),         group_of(p.history), group_of(p.contrib),
          group_of(p.relationship), group_of(p.ocs),     group_of(p.algorithm),
          group_of(p.improvement),  group_of(p.mating),  group_of(p.rules)};
}

}  // namespace qob
