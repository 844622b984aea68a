// Arrays whose bounds are checked: an index outside them is a RunTimeError, never undefined behaviour.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "game/error.h"

namespace bivouac {

[[noreturn]] inline void ThrowIndexOutsideArray() {
  throw RunTimeError(ErrorNumber::IndexOutsideArray, "index outside an array");
}

/// An array whose length varies. Indexes run from the lower bound, 0 unless given, to Upper().
template <class T>
class Array {
 public:
  explicit Array(int lower = 0) : lower_(lower) {}

  T& operator[](int index) { return items_[Offset(index)]; }
  const T& operator[](int index) const { return items_[Offset(index)]; }

  /// Index of the last entry; lower bound - 1 while there is none.
  int Upper() const { return lower_ + static_cast<int>(items_.size()) - 1; }

  /// Makes `upper` the last index. The content is lost: every entry is T().
  void Redim(int upper) { items_.assign(Length(upper), T()); }

  /// Makes `upper` the last index and keeps what the array holds.
  void RedimPreserve(int upper) { items_.resize(Length(upper)); }

 private:
  std::size_t Offset(int index) const {
    const auto offset = static_cast<std::size_t>(static_cast<long>(index) - lower_);
    if (offset >= items_.size()) ThrowIndexOutsideArray();
    return offset;
  }
  std::size_t Length(int upper) const {
    if (upper < lower_ - 1) ThrowIndexOutsideArray();
    return static_cast<std::size_t>(static_cast<long>(upper) - lower_ + 1);
  }

  int lower_;
  std::vector<T> items_;
};

/// An array of a fixed number of entries, indexed from 0 by int. Tables that are known while the program is
/// compiled are such arrays, too: FixedArray<int, 2> pair{{1, 2}}.
template <class T, int Size>
class FixedArray {
 public:
  constexpr T& operator[](int index) { return Items[Offset(index)]; }
  constexpr const T& operator[](int index) const { return Items[Offset(index)]; }

  constexpr T* begin() { return Items; }
  constexpr T* end() { return Items + Size; }
  constexpr const T* begin() const { return Items; }
  constexpr const T* end() const { return Items + Size; }
  constexpr const T* data() const { return Items; }
  static constexpr std::size_t size() { return static_cast<std::size_t>(Size); }
  constexpr void Fill(const T& value) { std::fill(begin(), end(), value); }

  friend bool operator==(const FixedArray&, const FixedArray&) = default;

  T Items[Size]{};  ///< Public for the braces of a table alone.

 private:
  static constexpr std::size_t Offset(int index) {
    const auto offset = static_cast<std::size_t>(index);
    if (offset >= size()) ThrowIndexOutsideArray();
    return offset;
  }
};

/// Entries in the order in which they were added, up to a fixed number of them.
template <class T, int Capacity>
class FixedList {
 public:
  /// Errors: IndexOutsideArray if the list is full.
  void Add(const T& item) { items_[count_++] = item; }
  void Clear() { count_ = 0; }

  int Count() const { return count_; }
  bool IsEmpty() const { return count_ == 0; }
  const T& operator[](int index) const { return items_[index]; }
  T& operator[](int index) { return items_[index]; }
  auto begin() { return items_.begin(); }
  auto end() { return items_.begin() + count_; }
  auto begin() const { return items_.begin(); }
  auto end() const { return items_.begin() + count_; }

 private:
  int count_ = 0;
  FixedArray<T, Capacity> items_;
};

}  // namespace bivouac
