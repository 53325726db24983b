// What a report is made from beside the run's own files: what the herd book calls the animals, what
// was found in it, and a plan that somebody has made.
#pragma once

#include <string>
#include <vector>

#include "report/given_plan.h"
#include "report/names.h"
#include "report/report.h"

namespace qob {

// The file that qob-prepare writes beside a data file, "herd.names.csv" beside "herd.dat"; "" if
// there is none.
std::string prepared_file(const std::string& data_file, const std::string& ending);

// Stops with what is wrong with it.
void read_names(const std::string& file, Names& names);

// A table with the columns sire and dam and, if a row stands for more than one mating, number.
// Stops with all its faults, row by row.
GivenList given_list(const std::string& file);

// What qob-prepare has found in the herd book, one warning a kind with its first finding.
std::vector<Warning> prepared_findings(const std::string& faults_file);

// 2026-01-31 09:05:00
std::string time_now();

// Sizes and checksums of the files that can be read.
void add_checksums(std::vector<MadeFile>& files);

}  // namespace qob
