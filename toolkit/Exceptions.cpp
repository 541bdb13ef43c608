#include "toolkit/Exceptions.h"

#if defined(__GLIBC__) || defined(__APPLE__)
#include <execinfo.h>
#define TK_HAVE_BACKTRACE 1
#endif
#include <cstdlib>

namespace tk {

RuntimeException::RuntimeException(String message, Integer errorNumber)
    : ErrorNumber(errorNumber), Message(std::move(message)) {
#ifdef TK_HAVE_BACKTRACE
  void* frames[32];
  const int count = backtrace(frames, 32);
  if (char** names = backtrace_symbols(frames, count)) {
    // Frame 0 is this constructor; it tells nobody anything.
    for (int i = 1; i < count; ++i) stack_.emplace_back(names[i]);
    std::free(names);
  }
#endif
}

NilObjectException::NilObjectException(String message, Integer errorNumber)
    : RuntimeException(std::move(message), errorNumber) {}

NilObjectException::NilObjectException(std::optional<FailureCause> cause) : NilObjectException() {
  Cause = std::move(cause);
  if (Cause) Reason = Cause->what + ": " + Cause->why + ".";
}

}  // namespace tk
