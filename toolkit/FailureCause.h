#pragma once
// Why the toolkit could not hand out what it was asked for. An open that
// fails gives the game a nil, and the NilObjectException that follows knows
// nothing of files; the nil therefore carries its cause along (Opened), so
// that the report which follows can tell the operator what broke, why, and
// what to do about it.
#include <cstddef>
#include <memory>
#include <optional>
#include <utility>

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
// (a sound file, a picture, a file), with the advice that fits that kind
// unless other advice is given.
FailureCause FileCause(const String& path, const String& verb, const String& why, const String& detail = {},
                       const char* advice = nullptr);

// Why the file at path can't be read, in words for the operator (no such
// file, its folder missing, no permission, empty); nothing when it can.
std::optional<String> WhyUnreadable(const String& path);

// What an open gives: the object, or nil and, where known, why. Reads as
// the object's pointer itself, so that code which only cares whether it
// got one needs nothing more.
template <class T>
class Opened {
 public:
  Opened() = default;
  template <class U>
  Opened(std::shared_ptr<U> object) : object_(std::move(object)) {}  // NOLINT(google-explicit-constructor)
  Opened(FailureCause why) : why_(std::move(why)) {}                  // NOLINT(google-explicit-constructor)

  operator const std::shared_ptr<T>&() const { return object_; }  // NOLINT(google-explicit-constructor)
  explicit operator bool() const { return object_ != nullptr; }
  T* operator->() const { return object_.get(); }
  friend bool operator==(const Opened& opened, std::nullptr_t) { return opened.object_ == nullptr; }

  // Why it is nil; nothing when it isn't, or when nobody could tell.
  const std::optional<FailureCause>& WhyNil() const { return why_; }

 private:
  std::shared_ptr<T> object_;
  std::optional<FailureCause> why_;
};

}  // namespace tk
