// The files that a prepared herd book becomes.
//
//   NAME.dat        the data file of a run, one animal a line, oldest first
//   NAME.names.csv  whom its numbers stand for, with what the herd book says of them
//   NAME.faults.csv what was found
//   NAME.rules.csv  the breeder's rules of matings, if there are any
//   NAME.prm        parameters to start from (parameter_file)
#pragma once

#include <string>

#include "core/csv_row.h"
#include "prepare/prepare.h"

namespace qob {

// number sire dam sex time matings ebv label: what `readrecode` reads. The label is the identifier,
// cut to 15 bytes if it is longer (labels). Of a herd that is sound.
void write_data(const Prepared& prepared, const Lines& lines);

// number,identifier,label,row,... in the order of the data file; row is that of the herd book,
// empty for a parent without one.
void write_names(const Prepared& prepared, const Lines& lines);

// row,column,value,severity,kind,words,done in the order of rows; severity is fault or told.
void write_faults(const Prepared& prepared, const Lines& lines);

// kind,a,b,value: the rules of matings in the order of their file, animals by their numbers. Of a
// herd that is sound.
void write_rules(const Prepared& prepared, const Lines& lines);

// A commented parameter file for `name`.dat.
std::string parameter_file(const Prepared& prepared, const std::string& name);

}  // namespace qob
