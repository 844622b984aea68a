// The ways in which a handler or a command ends early.
#pragma once

#include <stdexcept>
#include <string>

namespace bivouac {

/// Numbers of run-time errors, as the report of an unhandled one shows them.
enum class ErrorNumber {
  Overflow = 6,
  IndexOutsideArray = 9,
  NotANumber = 13,
  BadFileName = 52,
  FileNotFound = 53,
  DeviceInput = 57,
  DiskFull = 61,
  PastEndOfFile = 62,
  BadRecordNumber = 63,
  TooManyFiles = 67,
  DeviceUnavailable = 68,
  PermissionDenied = 70,
  FileAccess = 75,
  PathNotFound = 76,
};

/// A fault that a procedure did not foresee. A handler that catches none lets it end the program with a
/// report.
class RunTimeError : public std::runtime_error {
 public:
  RunTimeError(ErrorNumber number, const std::string& what) : std::runtime_error(what), number_(number) {}

  ErrorNumber Number() const { return number_; }
  /// True for the numbers that stand for a failed access to a file or folder (52 to 76).
  bool IsFileError() const { return number_ >= ErrorNumber::BadFileName; }

 private:
  ErrorNumber number_;
};

[[noreturn]] void ThrowFileError(ErrorNumber number, const std::string& words, const std::string& path);
/// Throws the file error for what the platform gave as the reason, one of <cerrno>.
[[noreturn]] void ThrowFileError(int reason, const std::string& path);

/// Input that a command cannot work with. The text is one line that says what and where.
class InputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Thrown by Desktop::End and by a yield after it: unwinds whatever handler is running, then the program
/// ends. No rule may catch it.
struct ProgramEnd {};

}  // namespace bivouac
