// Dates of birth in the forms in which herd books have them.
#pragma once

#include <string>
#include <string_view>

#include "prepare/herd.h"

namespace qob {

// Fills the births of the herd. Read are: 2001-04-03 (also with "/", "." or nothing between, or
// without the day), 3.4.2001, 3/4/2001 and 3-4-2001 in the order that the other cells of the column
// or the options decide, 4/2001, years, and the serial numbers of spreadsheets (days since the end
// of 1899); a time of the day behind them is passed over. Any other text, a day that the calendar
// does not have and a year before 1700 or after 2200 are faults, and so is a column that leaves
// open which of two numbers is the month.
void read_births(Book& book);

// Days since 1 January 1900. Where the month or the day is not known it is taken as the middle one.
std::int32_t day_number(Date date);

// As 2001-04-03, 2001-04 or 2001; "" if nothing is known.
std::string iso_date(Date date);

}  // namespace qob
