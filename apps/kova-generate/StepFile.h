#pragma once

#include "kovabase/io/KOVAOutputStream.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kova::generate {

/// The number of a record in a STEP file; 0 is none.
struct Reference {
  std::uint64_t number = 0;
};

/// The number as Part 21 of ISO 10303 wants reals, with the fewest digits that give the same value.
std::string toReal(double value);
/// "(a,b,c)".
std::string toList(const std::vector<double>& values);
std::string toList(const std::vector<int>& values);
std::string toList(const std::vector<Reference>& references);
/// UTF-8 as a quoted string. Characters of ISO 8859-1 are written as "\X\hh" when there are no
/// others, and all as "\X2\...\X0\" else.
std::string toText(std::string_view utf8);

/// Writes the records of a STEP file one by one; nothing is kept.
class StepFile {
 public:
  explicit StepFile(KOVAOutputStream& stream) : _stream(stream) {}

  /// @param name  what the file is called, UTF-8.
  void Begin(std::string_view name);
  void End();
  std::uint64_t GetBytes() const { return _bytes; }

  /// Writes a record of texts, reals, integers and references, such as
  /// Add("VECTOR('',", direction, ",", 1.0, ")").
  template <class... Pieces>
  Reference Add(const Pieces&... pieces) {
    _record.clear();
    (Append(pieces), ...);
    return WriteRecord();
  }

 private:
  void Append(std::string_view text) { _record += text; }
  void Append(const char* text) { _record += text; }
  void Append(double value) { _record += toReal(value); }
  void Append(int value) { _record += std::to_string(value); }
  void Append(Reference reference) {
    _record += '#';
    _record += std::to_string(reference.number);
  }
  Reference WriteRecord();
  void Write(std::string_view text);

  KOVAOutputStream& _stream;
  std::string _record;
  std::uint64_t _last = 0;
  std::uint64_t _bytes = 0;
};

}  // namespace kova::generate
