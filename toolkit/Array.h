#pragma once
// A one-dimensional array with a fixed upper bound, indexed from 0. Access
// outside the bounds raises OutOfBoundsException and changes nothing.
#include <cstddef>
#include <type_traits>
#include <vector>

#include "toolkit/Exceptions.h"
#include "toolkit/Types.h"

namespace tk {

template <class T>
class Array {
  // std::vector<bool> hands out proxies; a byte per element keeps Get/Set plain.
  using Slot = std::conditional_t<std::is_same_v<T, bool>, unsigned char, T>;

 public:
  // upperBound -1 makes an empty array, 89 makes 90 elements.
  explicit Array(Integer upperBound = -1)
      : slots_(upperBound < 0 ? 0 : static_cast<std::size_t>(upperBound) + 1) {}
  explicit Array(std::vector<T> values) : slots_(values.begin(), values.end()) {}

  Integer Ubound() const { return static_cast<Integer>(slots_.size()) - 1; }
  Integer Count() const { return static_cast<Integer>(slots_.size()); }

  T Get(Integer i) const { return static_cast<T>(slots_[Check(i)]); }
  void Set(Integer i, T value) { slots_[Check(i)] = static_cast<Slot>(std::move(value)); }
  T operator()(Integer i) const { return Get(i); }

 private:
  std::size_t Check(Integer i) const {
    if (i < 0 || i > Ubound()) throw OutOfBoundsException();
    return static_cast<std::size_t>(i);
  }
  std::vector<Slot> slots_;
};

}  // namespace tk
