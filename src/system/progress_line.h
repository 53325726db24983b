// A line on standard error that shows how far a run is: written over again and again, and gone when
// anything else is written there. Only where a person sees standard error and standard output goes
// elsewhere; on a terminal of its own the output shows it.
#pragma once

#include <string_view>

namespace qob {

bool progress_is_seen();
// Replaces the line, by as much of `text` as the terminal is wide.
void show_progress(std::string_view text);
// Removes it, if there is one.
void hide_progress();

}  // namespace qob
