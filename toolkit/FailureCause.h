#pragma once
// Why the toolkit last handed out a nil. An open that fails gives the game
// only a nil, and the NilObjectException that follows knows nothing of files;
// the cause is noted where the nil arises, so that the report which follows
// can tell the operator what broke, why, and what to do about it.
#include <optional>

#include "toolkit/Types.h"

namespace tk {

struct FailureCause {
  String what;    // "The sound file vocal48.mp3 could not be opened"
  String why;     // "it is not a sound that can be played"
  String folder;  // where the file was looked for; may be empty
  String advice;  // what the operator can do
  String detail;  // the system's or the decoder's own words, for the details
};

// The cause of a file that can't be had, worded by the kind its name shows
// (a sound file, a picture, a file), with the advice that fits that kind.
FailureCause FileCause(const String& path, const String& verb, const String& why, const String& detail = {});

// Why the file at path can't be read, in words for the operator (no such
// file, its folder missing, no permission, empty); nothing when it can.
std::optional<String> WhyUnreadable(const String& path);

// Notes the cause of a nil just handed out, replacing any earlier one. Kept
// per thread, as the nil is used on the thread that got it.
void NoteFailureCause(FailureCause cause);

// The noted cause, if any, now forgotten: a NilObjectException takes it.
std::optional<FailureCause> TakeFailureCause();

// Forgets causes noted while it lives: a nil that no failure followed
// must not explain a later failure. Each event handler runs inside one.
class FailureCauseScope {
 public:
  FailureCauseScope();
  ~FailureCauseScope();
  FailureCauseScope(const FailureCauseScope&) = delete;
  FailureCauseScope& operator=(const FailureCauseScope&) = delete;

 private:
  std::optional<FailureCause> outer_;
};

}  // namespace tk
