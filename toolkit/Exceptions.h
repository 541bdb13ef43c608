#pragma once
// The failure family. Every failure the program can meet is one of these,
// thrown as a C++ exception and caught only at the dispatch point
// (Dispatch.h), never inside game code.
#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "toolkit/FailureCause.h"
#include "toolkit/Types.h"

namespace tk {

class RuntimeException : public std::exception {
 public:
  explicit RuntimeException(String message = {}, Integer errorNumber = 0);

  Integer ErrorNumber = 0;
  String Message;
  String Reason;
  // What the toolkit knew of the failure where it arose (a file and why it
  // could not be had); Reason then says the same in one sentence.
  std::optional<FailureCause> Cause;

  // The call stack at the point the exception was made, one frame a line.
  std::vector<String> Stack() const { return stack_; }

  // The class name as an operator or a log should see it.
  virtual const char* ClassName() const { return "RuntimeException"; }
  const char* what() const noexcept override { return Message.c_str(); }

 private:
  std::vector<String> stack_;
};

#define TK_EXCEPTION(Name, DefaultMessage)                                     \
  class Name : public RuntimeException {                                       \
   public:                                                                     \
    explicit Name(String message = DefaultMessage, Integer errorNumber = 0)    \
        : RuntimeException(std::move(message), errorNumber) {}                 \
    const char* ClassName() const override { return #Name; }                   \
  };

// A nil the toolkit gave out with its cause (Opened) is raised with that
// cause, which the report then tells the operator.
class NilObjectException : public RuntimeException {
 public:
  explicit NilObjectException(String message = "An object reference was nil.", Integer errorNumber = 0);
  explicit NilObjectException(std::optional<FailureCause> cause);
  const char* ClassName() const override { return "NilObjectException"; }
};

TK_EXCEPTION(OutOfBoundsException, "An index was outside the bounds of an array.")
TK_EXCEPTION(IllegalCastException, "An object was not of the class it was cast to.")
TK_EXCEPTION(StackOverflowException, "The stack ran out.")
TK_EXCEPTION(ThreadAccessingUIException,
             "A thread has attempted to manipulate a user interface element. "
             "This can only be done from the application's main thread.")
TK_EXCEPTION(TypeMismatchException, "A value was of the wrong type.")
TK_EXCEPTION(UnsupportedFormatException, "A value was in a format that is not supported.")
TK_EXCEPTION(FunctionNotFoundException, "A function could not be found.")
// Not failures: they end the application or a thread and are never reported.
TK_EXCEPTION(EndException, "The application is ending.")
TK_EXCEPTION(ThreadEndException, "The thread is ending.")

#undef TK_EXCEPTION

}  // namespace tk
