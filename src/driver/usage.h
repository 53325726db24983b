// How a command line ends that is not carried out.
#pragma once

namespace CLI {
class App;
class ParseError;
}  // namespace CLI

namespace qob {

// Writes help, version or what is wrong with the arguments to standard output or standard error.
// Returns the exit status: 0, or 2 if something is wrong.
int tell_usage(const CLI::App& app, const CLI::ParseError& end);

}  // namespace qob
