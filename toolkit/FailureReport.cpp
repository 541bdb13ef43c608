#include "toolkit/FailureReport.h"

namespace tk {
namespace {

std::string Flat(std::string text) {
  for (char& c : text) {
    if (c == '\n' || c == '\r') c = ' ';
  }
  return text;
}

}  // namespace

FailureText Describe(const FailureReport& report) {
  FailureText text;
  text.details = report.className + ": " + report.message;
  if (const auto& cause = report.cause) {
    text.headline = cause->what + ": " + cause->why + ".";
    if (!cause->folder.empty()) text.informative = "It was looked for in the folder " + cause->folder + ".\n\n";
    text.informative += cause->advice;
    if (!cause->detail.empty()) text.details += "\n" + cause->detail;
  } else {
    // Nothing more is known than the exception says: say so plainly, and
    // keep its own words for whoever looks into it.
    text.headline = "Calloquin could not finish what it was doing.";
    text.informative =
        "An unexpected failure stopped it part way. If it happens again, start Calloquin again; "
        "the details name the failure for whoever looks into it.";
  }
  return text;
}

std::string OneLine(const FailureReport& report) {
  std::string line = "Calloquin: unhandled " + report.className + ": " + Flat(report.message);
  if (const auto& cause = report.cause) {
    line += " [" + cause->what + ": " + cause->why;
    if (!cause->folder.empty()) line += "; folder " + cause->folder;
    if (!cause->detail.empty()) line += "; " + Flat(cause->detail);
    line += "]";
  }
  return line;
}

}  // namespace tk
