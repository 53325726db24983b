// The settings of a run: the groups of the parameter file with their defaults, and the file names
// that are not settable. Filled by the group reads; after the set-up of the search only read.
#pragma once

#include <cstdint>

#include "core/namelist.h"
#include "core/text.h"

namespace qob {

struct DataParameters {
  Text<80> datafile = "qob.dat";
  Text<80> resultsdirectory = ".\\QOB_";  // a prefix: file names follow it directly
  bool ignoreparentalpedigreeerrors = false;
  Text<80> recodefile = "_null_";
};

struct PopulationHistory {
  std::int32_t pci_ngen = 5;  // generations of the pedigree completeness index
};

// One request for genetic contributions. 0: not given.
struct Contrib {
  std::int32_t ancestor = 0;
  std::int32_t descendant = 0;
  std::int32_t group = 0;
};

struct RelationshipMatrix {
  Text<8> source = "pedigree";
  Text<80> gfile = "_null_";
  std::int32_t timesteps = 0;  // 0: from the data; negative: no matrix
};

struct OCSParameters {
  std::int32_t nmatings = -1;
  Text<10> optimise = "penalty";
  double w_merit = 0.0;
  double w_relationship = -1.0;
  double dfconstraint = 1.0;
  std::int32_t limitmalematings = 1;
};

struct AlgorithmParameters {
  std::int32_t generations = 10000;
  std::int32_t popsize = 100;
  std::int32_t n_offspring = 10;
  std::int32_t restart_interval = 1000;
  std::int32_t exchange_algorithm = 1500;
  double mutate_probability = -1.0;
  double crossover_probability = -1.0;
  double directed_mutation_probability = -1.0;
  std::int32_t seed_rng = 0;
  std::int32_t ngenerationsnoimprovement = 10000;
};

// What is done besides the search. A file without this group asks for nothing of it.
struct Improvement {
  bool start = false;   // begin with a greedy plan among the first solutions
  bool finish = false;  // end with exchanges on the best plan

  bool is_wanted() const { return start || finish; }
};

struct MatingOptions {
  Text<6> matingstrategy = "random";
  bool repeatedmatings = true;
};

// What a plan has to keep besides the limits in the data. A file without this group asks for
// nothing of it.
struct MatingRules {
  Text<80> rulesfile = "_null_";
  bool keep_all = true;                 // rules that cannot hold together end the run
  Text<16> pairing = "matingstrategy";  // or "least": of exactly the least inbreeding

  bool has_file() const { return trim(rulesfile) != "_null_"; }
  bool is_least() const { return option_text(pairing) == "least"; }
  bool is_wanted() const { return has_file() || is_least(); }
};

struct FileNames {
  Text<255> qobparmfile = "_null_";
  Text<80> logfile = "qob.log";
  Text<80> candfile = "Candidates.txt";
  Text<80> cnv1_file = "qob_best.txt";
  Text<80> cnv2_file = "qob_conv.txt";
  Text<80> lst_file = "qob_MatingList.txt";
  Text<80> male_file = "male_list.txt";
  Text<80> fcoefffile = "f_coeff.txt";
  Text<80> fsummaryfile = "F_summary.txt";
  Text<80> gcfile = "gencont.txt";
  Text<80> maxgcfile = "max_gc.txt";
  Text<80> oldsol_file = "_null_";
};

struct Parameters {
  DataParameters data;
  PopulationHistory history;
  Contrib contrib;
  RelationshipMatrix relationship;
  OCSParameters ocs;
  AlgorithmParameters algorithm;
  Improvement improvement;
  MatingOptions mating;
  MatingRules rules;
  FileNames files;
};

// The key tables: reading a group and echoing it use the same one.
Group group_of(DataParameters& p);
Group group_of(PopulationHistory& p);
Group group_of(Contrib& p);
Group group_of(RelationshipMatrix& p);
Group group_of(OCSParameters& p);
Group group_of(AlgorithmParameters& p);
Group group_of(Improvement& p);
Group group_of(MatingOptions& p);
Group group_of(MatingRules& p);
// All of them.
std::vector<Group> groups_of(Parameters& p);

}  // namespace qob
