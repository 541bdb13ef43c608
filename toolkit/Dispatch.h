#pragma once
// The one route for failures. Every event the toolkit hands to program code
// (a button's or the timer's Action, the window's Open) runs through
// Dispatch. Game code catches nothing; here an EndException is dropped and
// any other failure is reported exactly once, and never unwinds into Qt.
#include <functional>
#include <string>

#include "toolkit/Exceptions.h"
#include "toolkit/FailureReport.h"

namespace tk {

// Runs an event handler. Returns true when it ended without a failure.
bool Dispatch(const std::function<void()>& handler);

// Hands a failure to the reporter: the final stop of every failure.
void UnhandledException(const FailureReport& report);

// Who hears of failures. The default writes one line to stderr and shows a
// modal dialog that says what failed, why, and what the operator can do,
// with the class and message in its details. Returns the previous reporter;
// an empty one restores the default.
using FailureReporter = std::function<void(const FailureReport&)>;
FailureReporter SetFailureReporter(FailureReporter reporter);

// Runs body and turns anything it throws (but EndException) into one report.
// Used by Dispatch and by start-up, which must not let a failure escape.
// Returns true when body ended without a failure. A cause noted inside and
// not taken by a failure is forgotten at the end.
bool RunReportingFailures(const std::function<void()>& body);

}  // namespace tk
