#pragma once

#include "kovabase/io/KOVAFileOutputStream.h"

#include <string>

namespace kova::translate {

/// Standard output and standard error, for what is no message of the event bus: results, lists and
/// what is wrong with the command line. Main thread.
class Console {
 public:
  Console() : _output(1), _errors(2) {}

  void Print(const std::string& text) { _output.Write(text.data(), text.size()); }
  void PrintError(const std::string& text) { _errors.Write(text.data(), text.size()); }
  /// Needed for a text without a line end to appear.
  void FlushErrors() { _errors.Flush(); }

  /// @return why standard output has not taken everything; empty when it has.
  std::string Finish() {
    return _output.Flush().IsSuccess() ? std::string() : _output.GetFailureReason();
  }

 private:
  KOVAFileOutputStream _output;
  KOVAFileOutputStream _errors;
};

}  // namespace kova::translate
