#pragma once
// Puts a replacement into one of the toolkit's hooks (the dialog's answerer,
// the failure reporter, the random source, the sound opener, ...) for as
// long as the guard lives, and puts back what was there before, however
// the scope ends:
//
//   tk::ScopedHook answers(tk::SetMsgBoxAnswerer, [](auto&&...) { return tk::kAnswerYes; });
//
// Every hook's setter has the form Hook Set(Hook) and returns the old hook.
#include <utility>

namespace tk {

template <class Hook>
class ScopedHook {
 public:
  using Setter = Hook (*)(Hook);
  ScopedHook(Setter set, Hook replacement) : set_(set), old_(set(std::move(replacement))) {}
  ~ScopedHook() { set_(std::move(old_)); }
  ScopedHook(const ScopedHook&) = delete;
  ScopedHook& operator=(const ScopedHook&) = delete;
  // What was there before, for a replacement that hands some calls on.
  const Hook& Previous() const { return old_; }

 private:
  Setter set_;
  Hook old_;
};

template <class Hook, class F>
ScopedHook(Hook (*)(Hook), F) -> ScopedHook<Hook>;

}  // namespace tk
