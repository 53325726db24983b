#include "driver/uncaught.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

#include "driver/run.h"

namespace qob {
namespace {

template <class Exception>
std::string text_after(Exception exception) {
  try {
    throw exception;
  } catch (...) {
    return what_nothing_caught();
  }
}

TEST(Uncaught, TellsDefectsFromLackOfMemory) {
  EXPECT_EQ(text_after(std::bad_alloc()), kOutOfMemory);
  EXPECT_EQ(text_after(std::length_error("vector")), kOutOfMemory);
  EXPECT_EQ(text_after(std::out_of_range("at 7")), "ERROR: the program has a defect : at 7");
}

}  // namespace
}  // namespace qob
