#pragma once
// One failure as the operator and the log are told of it.
#include <optional>
#include <string>
#include <vector>

#include "toolkit/FailureCause.h"

namespace tk {

struct FailureReport {
  std::string className;  // "NilObjectException", or a C++ type for foreign ones
  std::string message;
  std::vector<std::string> stack;
  std::optional<FailureCause> cause;  // what the toolkit knew of it, if anything
};

// The words of a report: what failed and why, what to do, and the
// technical part (class, message, the system's words) kept apart.
struct FailureText {
  std::string headline;
  std::string informative;
  std::string details;
};
FailureText Describe(const FailureReport& report);

// The report as one line, for stderr and logs.
std::string OneLine(const FailureReport& report);

}  // namespace tk
