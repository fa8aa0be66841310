#pragma once

#include "kovabase/strings/KOVAString.h"
#include "translators/step/Records.h"
#include "translators/step/Syntax.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kova::translators::step {

/// The parameters of one record, taken in order, each as what it must be. The first one that is
/// something else is told as trouble with the record; from then on everything is empty:
///
///     Fields fields(document, record);
///     const RecordNumber placement = fields.Skip().Reference();
///     const double radius = fields.Number();
///     if (!fields) return nullptr;
class Fields {
 public:
  Fields(Document& document, RecordNumber record)
      : Fields(document, record, document.GetList(record)) {}
  /// @param list  the parameters of one keyword of a complex record; null is told as its lack.
  Fields(Document& document, RecordNumber record, const char* list);
  Fields(const Fields&) = default;
  Fields& operator=(const Fields&) = delete;
  /// What was looked at is counted.
  ~Fields();

  explicit operator bool() const { return !_hasFailed; }

  Fields& Skip(int count = 1);
  /// kNoRecord after a failure.
  RecordNumber Reference();
  /// kNoRecord also where the file leaves it out.
  RecordNumber OptionalReference();
  double Number();
  /// `standard` where the file leaves it out.
  double OptionalNumber(double standard);
  std::int64_t Integer();
  /// .T. or .F.; the unknown is true.
  bool Logical();
  std::string_view Enumeration();
  /// Empty where the file leaves it out.
  KOVAString Text();
  /// A list of references. Undefined ones are told and left out.
  void References(std::vector<RecordNumber>& records);
  void Numbers(std::vector<double>& numbers);
  /// A list of lists of integers, one behind the other, with the end of each.
  void IntegerLists(std::vector<std::int64_t>& numbers, std::vector<std::size_t>& ends);
  void Integers(std::vector<std::int64_t>& numbers);

  bool OpenList();
  bool HasMore() const { return !_hasFailed && !_parameters.IsAtEnd(); }
  void CloseList();
  /// The parameters themselves, for what has no function here.
  Parameters& GetParameters() { return _parameters; }

 private:
  void Fail(const char* wanted);
  bool IsLeftOut() const;

  Document& _document;
  RecordNumber _record;
  Parameters _parameters;
  int _position = 0;
  bool _hasFailed = false;
};

}  // namespace kova::translators::step
