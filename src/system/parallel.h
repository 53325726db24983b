// The one door to several threads: work that is made of parts, shared among threads that sleep
// between one piece of work and the next.
//
// Parts are handed out one by one in their order, so that uneven ones balance, and the thread that
// asks for the work takes its share. Results are the same for every number of threads if no part
// reads what another one writes, and none depends on who does it and when. A part writes nothing to
// files and does not end the run.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace qob {

class Parallel {
 public:
  // Work of fewer nanoseconds is not worth waking a thread for.
  static constexpr std::int64_t kWorthwhile = 200'000;

  // No thread is started before it is needed; of one thread none ever is.
  explicit Parallel(int threads = 1, std::int64_t worthwhile = kWorthwhile);
  Parallel(Parallel&& other) noexcept;
  Parallel& operator=(Parallel&& other) noexcept;
  ~Parallel();

  // The most that work at the same time; fewer where the system does not give so many.
  int threads() const { return threads_; }
  // Those that would share work which takes one thread so long, for parts that are made by it.
  int threads_for(std::int64_t nanoseconds) const {
    return nanoseconds >= worthwhile_ ? threads_ : 1;
  }

  // Calls body(part, worker) for the parts 0..parts-1, in any order and at the same time, and
  // returns when all are done. worker: 0..threads()-1, never the same for two parts at a time, for
  // the tables that a part works on. nanoseconds: about what all parts take one thread. What a part
  // throws, of several the first part, comes out of here; parts that nobody had begun are left out.
  // Not to be called by a part.
  template <class Body>
  void for_each(std::int64_t parts, std::int64_t nanoseconds, Body&& body) {
    if (threads_for(nanoseconds) > 1 && parts > 1) return share(parts, std::ref(body));
    for (std::int64_t part = 0; part < parts; ++part) body(part, 0);
  }

  // The same for blocks of `size` elements, the last one of those that are left: body(block,
  // worker).
  template <class T, class Body>
  void for_each_block(std::span<const T> all, std::size_t size, std::int64_t nanoseconds,
                      Body&& body) {
    const std::size_t blocks = (all.size() + size - 1) / size;
    for_each(static_cast<std::int64_t>(blocks), nanoseconds, [&](std::int64_t part, int worker) {
      const std::size_t first = static_cast<std::size_t>(part) * size;
      body(all.subspan(first, std::min(size, all.size() - first)), worker);
    });
  }

 private:
  using AnyBody = std::function<void(std::int64_t part, int worker)>;
  class Pool;

  void share(std::int64_t parts, const AnyBody& body);

  int threads_;
  std::int64_t worthwhile_;
  std::unique_ptr<Pool> pool_;
};

// Tables that each worker has for itself, made when it first asks for them.
template <class T>
class PerWorker {
 public:
  PerWorker(const Parallel& parallel, std::function<std::unique_ptr<T>()> make)
      : make_(std::move(make)), own_(static_cast<std::size_t>(parallel.threads())) {}

  T& operator()(int worker) {
    std::unique_ptr<T>& own = own_[static_cast<std::size_t>(worker)];
    if (!own) own = make_();
    return *own;
  }

 private:
  std::function<std::unique_ptr<T>()> make_;
  std::vector<std::unique_ptr<T>> own_;
};

}  // namespace qob
