#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// The syntax of ISO 10303-21 files ("exchange structures").
namespace kova::translators::step {

/// Walks over text and checks its syntax, which is done once, before anything else looks at it.
/// Every function that gives false has said why in `GetReason` and stands at the place.
class Scanner {
 public:
  Scanner(const char* begin, const char* end) : _begin(begin), _at(begin), _end(end) {}

  const char* GetPosition() const { return _at; }
  std::size_t GetOffset() const { return static_cast<std::size_t>(_at - _begin); }
  bool IsAtEnd() const { return _at == _end; }
  /// Of the first failure.
  const std::string& GetReason() const { return _reason; }

  /// Steps over blanks, line ends and comments.
  bool SkipSpace();
  /// Steps over `c` and the space behind it, if it is there.
  bool Accept(char c);
  /// As `Accept`; a failure when it is not there.
  bool Expect(char c);
  /// A keyword or the name of a section, and the space behind it. Empty when there is none.
  bool TakeWord(std::string_view& word);
  /// At '#': steps over it, the digits directly behind it, and the space behind them.
  bool TakeId(std::uint64_t& id);
  /// At '(': steps over a whole list of parameters and the space behind it.
  /// @param isComplex  the list is that of a complex record: keywords, each with its parameters.
  bool SkipParameters(bool isComplex);
  /// Steps over a section that is not looked into, with its "ENDSEC;".
  bool SkipSection();
  /// Gives a failure at the current place.
  bool Fail(std::string reason);

 private:
  const char* _begin;
  const char* _at;
  const char* _end;
  std::string _reason;
};

/// Walks over the parameters of a list whose syntax has been checked. Functions that take the
/// current parameter move to the next one; those that find another kind move nowhere and give
/// false.
class Parameters {
 public:
  enum class Kind {
    kEnd,
    kReference,
    kNumber,
    kString,
    kEnumeration,
    kBinary,
    kUnset,
    kDerived,
    kList,
    kTyped,
  };

  /// @param list  the opening parenthesis.
  explicit Parameters(const char* list) : _at(list + 1) { SkipSpace(); }

  Kind GetKind() const;
  const char* GetPosition() const { return _at; }
  /// Whether the current list has no further parameter.
  bool IsAtEnd() const { return *_at == ')'; }

  /// An id above 2^64 - 1 is taken for that.
  bool TakeReference(std::uint64_t& id);
  /// An integer or a real, also in a typed parameter such as LENGTH_MEASURE(1.5). What a double
  /// cannot hold is infinite, or zero.
  bool TakeNumber(double& number);
  /// An integer; one that does not fit gives false.
  bool TakeInteger(std::int64_t& number);
  /// The word between the points.
  bool TakeEnumeration(std::string_view& word);
  /// What is between the apostrophes, as it stands in the file.
  bool TakeString(std::string_view& raw);
  /// Enters a list.
  bool OpenList();
  /// Enters a typed parameter, which is a list of one.
  bool OpenTyped(std::string_view& word);
  /// Of a typed parameter the type alone, and moves to the parenthesis behind it.
  bool TakeTypeName(std::string_view& word);
  /// Leaves the current list, whatever is left of it.
  void CloseList();
  /// The current parameter, whatever it is.
  void Skip();

 private:
  void SkipSpace();
  void SkipToNext();

  const char* _at;
};

/// Of a complex record, at its opening parenthesis: the keywords one after the other.
class ComplexParts {
 public:
  explicit ComplexParts(const char* list) : _parameters(list) {}

  /// @param list  receives the opening parenthesis of the keyword's parameters.
  /// @return false behind the last one.
  bool Next(std::string_view& word, const char*& list);

 private:
  Parameters _parameters;
};

}  // namespace kova::translators::step
