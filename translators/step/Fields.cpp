#include "translators/step/Fields.h"

#include "translators/step/StepText.h"

namespace kova::translators::step {

namespace {

constexpr char kNoParameters[] = "()";

}  // namespace

Fields::Fields(Document& document, RecordNumber record, const char* list)
    : _document(document),
      _record(record),
      _parameters(list == nullptr ? kNoParameters : list),
      _hasFailed(list == nullptr) {
  if (_hasFailed) _document.Complain(_record, "it lacks a part that it must have");
  // Told once, at the end.
  _hasFailed |= _document.IsExhausted();
}

Fields::~Fields() {
  const char* const begin =
      _document.GetText().data() + _document.GetRecords()[_record].GetOffset();
  const char* const end = _parameters.GetPosition();
  // Without a list the parameters are not those of the file.
  _document.Charge(end > begin && end <= begin + _document.GetText().size()
                       ? static_cast<std::size_t>(end - begin)
                       : 0);
}

void Fields::Fail(const char* wanted) {
  if (_hasFailed) return;
  _hasFailed = true;
  const bool isMissing = _parameters.IsAtEnd();
  _document.Complain(_record, "parameter " + std::to_string(_position + 1) +
                                  (isMissing ? " is missing" : std::string(" is no ") + wanted));
}

bool Fields::IsLeftOut() const {
  const Parameters::Kind kind = _parameters.GetKind();
  return kind == Parameters::Kind::kUnset || kind == Parameters::Kind::kDerived;
}

Fields& Fields::Skip(int count) {
  for (; count > 0; --count) {
    if (HasMore()) _parameters.Skip();
    ++_position;
  }
  return *this;
}

RecordNumber Fields::Reference() {
  if (_hasFailed) return kNoRecord;
  std::uint64_t id = 0;
  if (!_parameters.TakeReference(id)) {
    Fail("reference");
    return kNoRecord;
  }
  ++_position;
  const RecordNumber record = _document.Find(id);
  if (record == kNoRecord) {
    _hasFailed = true;
    _document.ComplainOfReference(_record, id);
  }
  return record;
}

RecordNumber Fields::OptionalReference() {
  if (_hasFailed) return kNoRecord;
  if (IsLeftOut() || _parameters.IsAtEnd()) {
    Skip();
    return kNoRecord;
  }
  return Reference();
}

double Fields::Number() {
  double number = 0.0;
  if (_hasFailed) return number;
  if (!_parameters.TakeNumber(number)) Fail("number");
  ++_position;
  return number;
}

double Fields::OptionalNumber(double standard) {
  if (_hasFailed || !(IsLeftOut() || _parameters.IsAtEnd())) return Number();
  Skip();
  return standard;
}

std::int64_t Fields::Integer() {
  std::int64_t number = 0;
  if (_hasFailed) return number;
  if (!_parameters.TakeInteger(number)) Fail("integer");
  ++_position;
  return number;
}

bool Fields::Logical() { return Enumeration() != "F"; }

std::string_view Fields::Enumeration() {
  std::string_view word;
  if (_hasFailed) return word;
  if (!_parameters.TakeEnumeration(word)) Fail("enumeration");
  ++_position;
  return word;
}

KOVAString Fields::Text() {
  if (_hasFailed) return KOVAString();
  std::string_view raw;
  if (IsLeftOut()) {
    _parameters.Skip();
  } else if (!_parameters.TakeString(raw)) {
    Fail("text");
  }
  ++_position;
  return decodeString(raw);
}

void Fields::References(std::vector<RecordNumber>& records) {
  if (!OpenList()) return;
  while (HasMore()) {
    std::uint64_t id = 0;
    if (!_parameters.TakeReference(id)) return Fail("list of references");
    const RecordNumber record = _document.Find(id);
    if (record == kNoRecord) {
      _document.ComplainOfReference(_record, id);
    } else {
      records.push_back(record);
    }
  }
  CloseList();
}

void Fields::Numbers(std::vector<double>& numbers) {
  if (!OpenList()) return;
  while (HasMore()) {
    double number = 0.0;
    if (!_parameters.TakeNumber(number)) return Fail("list of numbers");
    numbers.push_back(number);
  }
  CloseList();
}

void Fields::Integers(std::vector<std::int64_t>& numbers) {
  if (!OpenList()) return;
  while (HasMore()) {
    std::int64_t number = 0;
    if (!_parameters.TakeInteger(number)) return Fail("list of integers");
    numbers.push_back(number);
  }
  CloseList();
}

void Fields::IntegerLists(std::vector<std::int64_t>& numbers, std::vector<std::size_t>& ends) {
  if (!OpenList()) return;
  while (HasMore()) {
    if (!_parameters.OpenList()) return Fail("list of lists of integers");
    while (!_parameters.IsAtEnd()) {
      std::int64_t number = 0;
      if (!_parameters.TakeInteger(number)) return Fail("list of lists of integers");
      numbers.push_back(number);
    }
    _parameters.CloseList();
    ends.push_back(numbers.size());
  }
  CloseList();
}

bool Fields::OpenList() {
  if (_hasFailed) return false;
  if (_parameters.OpenList()) return true;
  Fail("list");
  return false;
}

void Fields::CloseList() {
  if (_hasFailed) return;
  _parameters.CloseList();
  ++_position;
}

}  // namespace kova::translators::step
