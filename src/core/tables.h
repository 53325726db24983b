// Tables indexed the way the field counts: from 1 (or another base), columns contiguous.
// Indices are checked in builds with assertions and free otherwise.
#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

namespace qob {

// `n` as the size of a vector. A size that this machine's addresses do not reach must fail like any
// other that is too large, and not come out small.
inline std::size_t vector_size(std::int64_t n) {
  constexpr std::uint64_t kMost = std::numeric_limits<std::size_t>::max();
  return static_cast<std::size_t>(std::min(static_cast<std::uint64_t>(n), kMost));
}

// A one-dimensional table with indices Base .. Base + size() - 1.
template <class T, std::int64_t Base = 1, class Allocator = std::allocator<T>>
class Table {
 public:
  Table() = default;
  explicit Table(std::int64_t n, const T& value = T{}) : data_(vector_size(n), value) {}

  // Makes the table n elements long, each equal to `value`; earlier contents are lost.
  void assign(std::int64_t n, const T& value) { data_.assign(vector_size(n), value); }
  // The same with elements as the allocator gives them.
  void make(std::int64_t n) { data_ = Elements(vector_size(n)); }
  void fill(const T& value) { data_.assign(data_.size(), value); }
  // Gives the memory back.
  void release() { Elements().swap(data_); }

  T& operator()(std::int64_t i) { return data_[offset(i)]; }
  const T& operator()(std::int64_t i) const { return data_[offset(i)]; }

  std::int64_t size() const { return static_cast<std::int64_t>(data_.size()); }
  std::int64_t last() const { return size() + Base - 1; }
  T* data() { return data_.data(); }
  const T* data() const { return data_.data(); }
  auto begin() { return data_.begin(); }
  auto end() { return data_.end(); }
  auto begin() const { return data_.begin(); }
  auto end() const { return data_.end(); }

 private:
  std::size_t offset(std::int64_t i) const {
    assert(i >= Base && i - Base < size());
    return static_cast<std::size_t>(i - Base);
  }
  using Elements = std::vector<T, Allocator>;

  Elements data_;
};

// A two-dimensional table, rows 1..rows() by columns 1..columns(), stored column by column.
template <class T>
class Table2 {
 public:
  Table2() = default;
  Table2(std::int64_t rows, std::int64_t columns, const T& value = T{}) {
    assign(rows, columns, value);
  }

  void assign(std::int64_t rows, std::int64_t columns, const T& value) {
    data_.assign(vector_size(rows * columns), value);
    rows_ = rows;
  }
  void fill(const T& value) { data_.assign(data_.size(), value); }
  void release() {
    std::vector<T>().swap(data_);
    rows_ = 0;
  }

  T& operator()(std::int64_t i, std::int64_t j) { return data_[offset(i, j)]; }
  const T& operator()(std::int64_t i, std::int64_t j) const { return data_[offset(i, j)]; }

  std::int64_t rows() const { return rows_; }
  std::int64_t columns() const {
    return rows_ == 0 ? 0 : static_cast<std::int64_t>(data_.size()) / rows_;
  }
  T* data() { return data_.data(); }
  const T* data() const { return data_.data(); }

 private:
  std::size_t offset(std::int64_t i, std::int64_t j) const {
    assert(i >= 1 && i <= rows_ && j >= 1 && j <= columns());
    return static_cast<std::size_t>((j - 1) * rows_ + (i - 1));
  }
  std::vector<T> data_;
  std::int64_t rows_ = 0;
};

}  // namespace qob
