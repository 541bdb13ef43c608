#pragma once
// The one route for failures. Every event the toolkit hands to program code
// (a button's or the timer's Action, the window's Open) runs through
// Dispatch. Game code catches nothing; here an EndException is dropped and
// any other failure is reported exactly once, and never unwinds into Qt.
#include <functional>
#include <string>

#include "toolkit/Exceptions.h"

namespace tk {

// What an operator or a log is told about one failure.
struct FailureReport {
  std::string className;  // "NilObjectException", or a C++ type for foreign ones
  std::string message;
  std::vector<std::string> stack;
};

// Runs an event handler. Returns true when it ended without a failure.
bool Dispatch(const std::function<void()>& handler);

// Hands a failure to the reporter: the final stop of every failure.
void UnhandledException(const FailureReport& report);

// Who hears of failures. The default writes one line to stderr and shows a
// modal dialog naming the class and message. Returns the previous reporter;
// an empty one restores the default.
using FailureReporter = std::function<void(const FailureReport&)>;
FailureReporter SetFailureReporter(FailureReporter reporter);

// Runs body and turns anything it throws (but EndException) into one report.
// Used by Dispatch and by start-up, which must not let a failure escape.
// Returns true when body ended without a failure.
bool RunReportingFailures(const std::function<void()>& body);

}  // namespace tk
