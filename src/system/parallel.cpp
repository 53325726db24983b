#include "system/parallel.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <exception>
#include <iterator>
#include <mutex>
#include <thread>
#include <vector>

#include "system/threads.h"

namespace qob {
namespace {

// A piece of work while it is done.
class Work {
 public:
  Work(std::int64_t parts, const std::function<void(std::int64_t, int)>& body)
      : parts_(parts), body_(body), faulty_(parts) {}

  bool has_more() const { return next_.load(std::memory_order_relaxed) < parts_; }

  // Does parts until none is left.
  void carry_out(int worker) {
    for (std::int64_t part; (part = next_.fetch_add(1, std::memory_order_relaxed)) < parts_;) {
      try {
        body_(part, worker);
      } catch (...) {
        give_up(part);
      }
    }
  }

  // Throws what ended the work, if it did not end well. All have left it.
  void check() const {
    if (fault_) std::rethrow_exception(fault_);
  }

 private:
  // The first part's fault is the one that a single thread would have met: all parts before it have
  // been begun.
  void give_up(std::int64_t part) {
    next_.store(parts_, std::memory_order_relaxed);
    const std::lock_guard lock(mutex_);
    if (part >= faulty_) return;
    faulty_ = part;
    fault_ = std::current_exception();
  }

  const std::int64_t parts_;
  const std::function<void(std::int64_t, int)>& body_;
  std::atomic<std::int64_t> next_ = 0;
  std::mutex mutex_;
  std::int64_t faulty_;
  std::exception_ptr fault_;
};

}  // namespace

// The threads that help the one that asks.
class Parallel::Pool {
 public:
  explicit Pool(int helpers) : most_(helpers) {}
  Pool(const Pool&) = delete;
  Pool& operator=(const Pool&) = delete;
  ~Pool() {
    {
      const std::lock_guard lock(mutex_);
      ending_ = true;
    }
    wake_.notify_all();
    for (std::thread& helper : helpers_) helper.join();
  }

  void share(std::int64_t parts, const AnyBody& body) {
    const std::int64_t helpers = start(std::min(parts - 1, most_));
    Work work(parts, body);
    {
      const std::lock_guard lock(mutex_);
      work_ = &work;
    }
    for (std::int64_t k = 0; k < helpers; ++k) wake_.notify_one();
    work.carry_out(0);
    {
      std::unique_lock lock(mutex_);
      work_ = nullptr;  // who has not yet awoken need not come
      left_.wait(lock, [&] { return working_ == 0; });
    }
    work.check();
  }

 private:
  // Returns how many of the threads wanted there are. One that cannot be started is no fault: the
  // others do its share.
  std::int64_t start(std::int64_t wanted) {
    try {
      helpers_.reserve(static_cast<std::size_t>(wanted));
      while (std::ssize(helpers_) < wanted) {
        const int worker = static_cast<int>(helpers_.size()) + 1;
        helpers_.push_back(start_thread([this, worker] { help(worker); }));
      }
    } catch (const std::exception&) {
      most_ = std::ssize(helpers_);
    }
    return std::min(wanted, most_);
  }

  void help(int worker) {
    std::unique_lock lock(mutex_);
    for (;;) {
      wake_.wait(lock, [&] { return ending_ || (work_ != nullptr && work_->has_more()); });
      if (ending_) return;
      Work& work = *work_;
      ++working_;
      lock.unlock();
      work.carry_out(worker);
      lock.lock();
      if (--working_ == 0) left_.notify_one();
    }
  }

  std::int64_t most_;  // that there can be
  std::vector<std::thread> helpers_;
  std::mutex mutex_;
  std::condition_variable wake_, left_;
  Work* work_ = nullptr;  // none: nothing to help with
  int working_ = 0;       // helpers that are at it
  bool ending_ = false;
};

Parallel::Parallel(int threads, std::int64_t worthwhile)
    : threads_(std::max(threads, 1)), worthwhile_(worthwhile) {}
Parallel::Parallel(Parallel&& other) noexcept = default;
Parallel& Parallel::operator=(Parallel&& other) noexcept = default;
Parallel::~Parallel() = default;

void Parallel::share(std::int64_t parts, const AnyBody& body) {
  if (!pool_) pool_ = std::make_unique<Pool>(threads_ - 1);
  pool_->share(parts, body);
}

}  // namespace qob
