#include "driver/end_of.h"

#include <utility>

#include "driver/uncaught.h"

namespace qob {
namespace {

void throw_end(std::string_view text, int status) { throw End{status, std::string(text)}; }

class Throws {
 public:
  Throws() : before_(set_stop_handler(throw_end)) {}
  Throws(const Throws&) = delete;
  Throws& operator=(const Throws&) = delete;
  ~Throws() { set_stop_handler(before_); }

 private:
  StopHandler before_;
};

}  // namespace

End end_of(const std::function<void()>& work) {
  const Throws instead_of_the_process;
  try {
    work();
  } catch (End& end) {
    return std::move(end);
  } catch (...) {
    return {kFailure, what_nothing_caught()};
  }
  return {};
}

}  // namespace qob
