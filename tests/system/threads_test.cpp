// The door to threads.
#include "system/threads.h"

#include <atomic>
#include <numeric>
#include <set>
#include <system_error>
#include <vector>

#include "core/memory.h"
#include "gtest/gtest.h"
#include "system/parallel.h"

namespace qob {
namespace {

std::atomic<int>& threads_left() {
  static std::atomic<int> left = 1000;
  return left;
}

}  // namespace

// In place of the system's: it gives no more than are left.
int processors() { return 1; }
std::thread start_thread(std::function<void()> work) {
  if (threads_left().fetch_sub(1) <= 0) {
    throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again));
  }
  return std::thread(std::move(work));
}

}  // namespace qob

namespace qob::test {
namespace {

// Does so many parts, the first ones long, and returns how many threads took part.
std::size_t work(Parallel& parallel, std::int64_t parts) {
  std::vector<int> done(static_cast<std::size_t>(parts), 0);
  std::vector<std::atomic<bool>> at_it(static_cast<std::size_t>(parallel.threads()));
  std::vector<std::thread::id> who(done.size());
  parallel.for_each(parts, 0, [&](std::int64_t part, int worker) {
    EXPECT_FALSE(at_it[static_cast<std::size_t>(worker)].exchange(true));
    for (std::atomic<int> k = part < 2 ? 20000 : 100; k > 0;) --k;
    ++done[static_cast<std::size_t>(part)];
    who[static_cast<std::size_t>(part)] = std::this_thread::get_id();
    at_it[static_cast<std::size_t>(worker)] = false;
  });
  EXPECT_EQ(done, std::vector<int>(done.size(), 1));
  return std::set(who.begin(), who.end()).size();
}

TEST(ThreadsOfTheDoor, DoEachPartOnce_AndOfOneThreadOrLittleWorkNoneIsStarted) {
  for (const int threads : {1, 2, 3, 16}) {
    Parallel parallel(threads, 0);
    for (int repeat = 0; repeat < 30; ++repeat) {
      for (const std::int64_t parts : {0, 1, 2, 5, 300}) {
        EXPECT_LE(work(parallel, parts), static_cast<std::size_t>(threads));
      }
    }
    std::atomic<int> begun = 0;  // none of these parts ends before all have begun
    parallel.for_each(threads, 0, [&](std::int64_t, int) {
      for (++begun; begun < threads;) std::this_thread::yield();
    });
  }
  threads_left() = 1;
  Parallel one(1, 0), little(2, 1);
  EXPECT_EQ(work(one, 300) + work(little, 300), 2U);
  EXPECT_EQ(threads_left(), 1);
}

TEST(ThreadsOfTheDoor, ThatCannotBeStartedAreReplacedByTheOthers) {
  for (const int left : {0, 1}) {
    threads_left() = left;
    Parallel parallel(16, 0);
    for (int repeat = 0; repeat < 20; ++repeat) {
      EXPECT_LE(work(parallel, 300), static_cast<std::size_t>(left + 1));
    }
    EXPECT_EQ(threads_left(), -1);  // asked once
  }
  threads_left() = 1000;
}

TEST(ThreadsOfTheDoor, HandOnTheFaultThatOneThreadWouldMeet) {
  for (const int threads : {1, 4}) {
    Parallel parallel(threads, 0);
    for (int repeat = 0; repeat < 100; ++repeat) {
      int thrown = -1;
      try {
        parallel.for_each(50, 0, [](std::int64_t part, int) {
          if (part >= 7 && part != 9) throw static_cast<int>(part);
        });
      } catch (int part) {
        thrown = part;
      }
      EXPECT_EQ(thrown, 7);
    }
    EXPECT_FALSE(memory_suffices(
        [&] { parallel.for_each(9, 0, [](std::int64_t, int) { throw std::bad_alloc(); }); }));
    work(parallel, 300);
  }
}

}  // namespace
}  // namespace qob::test
