#pragma once
// One of the toolkit's replaceable hooks: a function tests put in place of
// the real thing (the dialog's answerer, the sound opener, ...). Empty means
// the real thing. Constant-initialised, so a hook set while other statics
// are made is never wiped by its own construction.
#include <functional>
#include <optional>
#include <utility>

namespace tk {

template <class F>
class Hook {
 public:
  constexpr Hook() = default;
  // Puts f in place and returns the previous hook: the form ScopedHook takes.
  F Set(F f) {
    F old = fn_ ? std::move(*fn_) : F();
    fn_ = std::move(f);
    return old;
  }
  explicit operator bool() const { return fn_ && *fn_; }
  template <class... Args>
  decltype(auto) operator()(Args&&... args) const {
    return (*fn_)(std::forward<Args>(args)...);
  }

 private:
  std::optional<F> fn_;
};

}  // namespace tk
