// Who sees how far a run in memory is.
#pragma once

#include <string_view>

namespace qob {

// Is told each line of progress_line, and "" when it goes.
using ProgressListener = void (*)(std::string_view text);

// nullptr, as at first: nobody sees it.
void listen_to_progress(ProgressListener listener);

}  // namespace qob
