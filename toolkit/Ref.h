#pragma once
// A non-owning reference that may be nil. Every call through it checks for
// nil first and raises NilObjectException instead of crashing, which is the
// one failure rule of all game code.
#include "toolkit/Exceptions.h"

namespace tk {

template <class T>
class Ref {
 public:
  Ref() = default;
  Ref(T* p) : p_(p) {}  // NOLINT(google-explicit-constructor): a nil-able pointer

  T* operator->() const {
    if (p_ == nullptr) throw NilObjectException();
    return p_;
  }
  T& operator*() const { return *operator->(); }
  T* get() const { return p_; }
  bool IsNil() const { return p_ == nullptr; }
  explicit operator bool() const { return p_ != nullptr; }

 private:
  T* p_ = nullptr;
};

}  // namespace tk
