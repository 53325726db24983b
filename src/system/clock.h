// Clocks.
#pragma once

#include <cstdint>

namespace qob {

// Seconds since some moment before the program started; never goes back.
double wall_seconds();

// Seconds of processor time that the process has taken, user and system together.
float processor_seconds();

// What the system's clock counts since its epoch, in its smallest unit: no two runs see the same.
std::int64_t clock_count();

struct LocalTime {
  int year, month, day, hour, minute, second;  // months and days from 1
};
LocalTime local_time();

}  // namespace qob
