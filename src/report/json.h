// A report as JSON, the form that the page and other programs read (docs/result.schema.json).
#pragma once

#include <span>
#include <string>

#include "report/report.h"

namespace qob {

// The keys are the fields' names; a vector of records is an object of columns, arrays of equal
// length; what is no number is null. Reals have the fewest digits that read back to the same
// number. Bytes that are no UTF-8 become U+FFFD.
std::string json_of(const Report& report);

// Two or three plans side by side.
std::string comparison_json(std::span<const Report> plans);

}  // namespace qob
