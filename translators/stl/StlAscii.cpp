#include "kovabase/strings/KOVAFloatUtil.h"
#include "translators/model/MeshBuilder.h"
#include "translators/stl/StlForms.h"

#include <cfloat>
#include <charconv>
#include <climits>
#include <cmath>
#include <string>
#include <string_view>

namespace kova::translators::stlAscii {

namespace {

constexpr std::size_t kMostWordBytes = 255;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

bool isLineEnd(char c) { return c == '\n' || c == '\r'; }

// `keyword` is in lower case and made of letters.
bool isKeyword(std::string_view word, std::string_view keyword) {
  if (word.size() != keyword.size()) return false;
  for (std::size_t i = 0; i < word.size(); ++i) {
    if ((word[i] | 0x20) != keyword[i]) return false;
  }
  return true;
}

// In UTF-8 when it is that, else in Latin-1, which has a character for every byte.
KOVAString decodeName(std::string_view name) {
  while (!name.empty() && isSpace(name.front())) name.remove_prefix(1);
  while (!name.empty() && isSpace(name.back())) name.remove_suffix(1);
  if (name.empty() || name.size() > INT_MAX) return KOVAString();
  const int bytes = static_cast<int>(name.size());
  KOVAString text = KOVAString::fromBytes(name.data(), bytes, "UTF-8");
  constexpr unsigned short kReplacementCharacter = 0xFFFD;
  if (text.indexOf(kReplacementCharacter) < 0) return text;
  return KOVAString::fromBytes(name.data(), bytes, "ISO-8859-1");
}

class Parser {
 public:
  Parser(ByteWindow& window, Model& model, Report& report)
      : _window(window), _model(model), _report(report) {}

  KOVAResult Run();

 private:
  KOVAResult ReadSolid();
  KOVAResult ReadFacet(MeshBuilder& builder);
  KOVAResult ReadNormal();
  KOVAResult ReadNumber(double& number);
  KOVAResult Expect(std::string_view keyword);
  KOVAResult FailExpecting(const char* expected);

  bool SkipSpace();
  void StepOverLineEnd(char c);
  // Makes the next word the current one; an empty word is the end of the file.
  void NextWord();
  std::string RestOfLine();

  ByteWindow& _window;
  Model& _model;
  Report& _report;
  std::string_view _word;
  std::uint64_t _line = 1;
  bool _isAfterReturn = false;
  std::uint64_t _degenerates = 0;
  std::uint64_t _emptySolids = 0;
};

KOVAResult Parser::Run() {
  if (_window.Require(kByteOrderMark.size()) &&
      std::string_view(_window.begin(), kByteOrderMark.size()) == kByteOrderMark) {
    _window.Skip(kByteOrderMark.size());
  }
  NextWord();
  if (!isKeyword(_word, "solid")) return FailExpecting("'solid'");
  while (!_word.empty()) {
    if (!isKeyword(_word, "solid")) return FailExpecting("'solid' or the end of the file");
    const KOVAResult result = ReadSolid();
    if (result.IsFailure()) return result;
    NextWord();
  }
  if (_window.HasFailed()) return FailExpecting("'solid' or the end of the file");

  if (_degenerates != 0) {
    _report.Warn({}, "triangles with coinciding corners, kept as they are: %llu",
                 static_cast<unsigned long long>(_degenerates));
  }
  if (_emptySolids != 0) {
    _report.Warn({}, "solids without triangles, left out: %llu",
                 static_cast<unsigned long long>(_emptySolids));
  }
  return KOVAResultCode::kSuccess;
}

KOVAResult Parser::ReadSolid() {
  const KOVAString name = decodeName(RestOfLine());
  MeshBuilder builder(false);
  for (NextWord(); !isKeyword(_word, "endsolid"); NextWord()) {
    if (!isKeyword(_word, "facet")) return FailExpecting("'facet' or 'endsolid'");
    const KOVAResult result = ReadFacet(builder);
    if (result.IsFailure()) return result;
  }
  RestOfLine();
  const Mesh& mesh = builder.Finish();
  _degenerates += builder.GetDegenerateCount();
  if (mesh.triangles.size() == 0) {
    ++_emptySolids;
  } else {
    _model.parts.add({name, mesh});
  }
  return KOVAResultCode::kSuccess;
}

KOVAResult Parser::ReadFacet(MeshBuilder& builder) {
  KOVAResult result = ReadNormal();
  if (result.IsSuccess()) result = Expect("outer");
  if (result.IsSuccess()) result = Expect("loop");
  Point corners[3];
  for (Point& corner : corners) {
    if (result.IsSuccess()) result = Expect("vertex");
    if (result.IsSuccess()) result = ReadNumber(corner.x);
    if (result.IsSuccess()) result = ReadNumber(corner.y);
    if (result.IsSuccess()) result = ReadNumber(corner.z);
  }
  if (result.IsSuccess()) result = Expect("endloop");
  if (result.IsSuccess()) result = Expect("endfacet");
  if (result.IsSuccess() && !builder.AddTriangle(corners)) {
    result =
        _report.Fail(KOVAResultCode::kNotSupported, Place::Line(_line),
                     "more than %d triangles or vertices in one solid", MeshBuilder::kMostElements);
  }
  return result;
}

// The normal follows from the corners. Files of triangles without area have "nan" here, spelled
// in many ways, so three words will do.
KOVAResult Parser::ReadNormal() {
  KOVAResult result = Expect("normal");
  for (int i = 0; i < 3 && result.IsSuccess(); ++i) {
    NextWord();
    if (_word.empty() || isKeyword(_word, "outer")) result = FailExpecting("a number");
  }
  return result;
}

KOVAResult Parser::ReadNumber(double& number) {
  NextWord();
  std::string_view text = _word;
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (stop != end || error == std::errc::invalid_argument) return FailExpecting("a number");
  if (error == std::errc::result_out_of_range) {
    // Too large or too small; both are known by the nearest double.
    const std::string copy(text);
    const char* ignored = nullptr;
    number = KOVAFloatUtil::FromText(copy.c_str(), ignored);
  }
  if (std::fabs(number) <= double{FLT_MAX}) return KOVAResultCode::kSuccess;
  return _report.Fail(KOVAResultCode::kInvalidFile, Place::Line(_line),
                      "the coordinate %s is outside the range of single precision",
                      quote(_word.data(), _word.size()).c_str());
}

KOVAResult Parser::Expect(std::string_view keyword) {
  NextWord();
  if (isKeyword(_word, keyword)) return KOVAResultCode::kSuccess;
  return FailExpecting(quote(keyword.data(), keyword.size()).c_str());
}

KOVAResult Parser::FailExpecting(const char* expected) {
  if (_window.HasFailed()) {
    return _report.Fail(KOVAResultCode::kFileOpenError, Place::Line(_line),
                        "the file cannot be read any further: %s",
                        _window.GetSource().GetFailureReason());
  }
  if (_word.empty()) {
    return _report.Fail(KOVAResultCode::kInvalidFile, Place::Line(_line),
                        "the file ends where %s is expected", expected);
  }
  return _report.Fail(KOVAResultCode::kInvalidFile, Place::Line(_line), "%s is expected, not %s",
                      expected, quote(_word.data(), _word.size()).c_str());
}

bool Parser::SkipSpace() {
  while (_window.Require(1)) {
    const char* at = _window.begin();
    while (at != _window.end() && isSpace(*at)) StepOverLineEnd(*at++);
    const bool isWord = at != _window.end();
    _window.Skip(static_cast<std::size_t>(at - _window.begin()));
    if (isWord) return true;
  }
  return false;
}

// Line feed, carriage return, or both in that order of the pair, end one line.
void Parser::StepOverLineEnd(char c) {
  if (c == '\n') {
    if (!_isAfterReturn) ++_line;
  } else if (c == '\r') {
    ++_line;
  }
  _isAfterReturn = c == '\r';
}

void Parser::NextWord() {
  _word = {};
  if (!SkipSpace()) return;
  _isAfterReturn = false;
  _window.Require(kMostWordBytes + 1);
  const char* first = _window.begin();
  const char* last = first;
  const std::size_t most = std::min(_window.size(), kMostWordBytes);
  while (last != first + most && !isSpace(*last)) ++last;
  // What is longer is no keyword and no number; the message shows how it begins.
  _word = {first, static_cast<std::size_t>(last - first)};
  _window.Skip(_word.size());
}

std::string Parser::RestOfLine() {
  std::string rest;
  while (_window.Require(1)) {
    const char* at = _window.begin();
    while (at != _window.end() && !isLineEnd(*at)) ++at;
    rest.append(_window.begin(), at);
    const bool isComplete = at != _window.end();
    _window.Skip(static_cast<std::size_t>(at - _window.begin()));
    if (isComplete) break;
  }
  return rest;
}

}  // namespace

KOVAResult read(ByteWindow& window, Model& model, Report& report) {
  return Parser(window, model, report).Run();
}

}  // namespace kova::translators::stlAscii
