// Memory for a very large table of zeros: the system gives pages of zeros when they are first
// written, so that neither is written twice and threads share what giving them costs.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <new>
#include <utility>

namespace qob {

// An allocator for vectors of numbers: elements that are given no value are 0.
template <class T>
struct ZeroedMemory {
  using value_type = T;

  ZeroedMemory() = default;
  template <class U>
  ZeroedMemory(const ZeroedMemory<U>&) {}

  T* allocate(std::size_t n) {
    void* memory = std::calloc(n, sizeof(T));
    if (memory == nullptr) throw std::bad_alloc();
    return static_cast<T*>(memory);
  }
  void deallocate(T* memory, std::size_t) { std::free(memory); }

  void construct(T*) {}
  template <class U, class... Arguments>
  void construct(U* element, Arguments&&... arguments) {
    ::new (static_cast<void*>(element)) U(std::forward<Arguments>(arguments)...);
  }
  friend bool operator==(const ZeroedMemory&, const ZeroedMemory&) { return true; }
};

}  // namespace qob
