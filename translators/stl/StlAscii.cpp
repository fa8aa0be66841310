#include "translators/stl/StlForms.h"

#include <cfloat>
#include <cmath>
#include <string>
#include <string_view>

namespace kova::translators::stlAscii {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// `keyword` is in lower case and made of letters.
bool isKeyword(std::string_view word, std::string_view keyword) {
  if (word.size() != keyword.size()) return false;
  for (std::size_t i = 0; i < word.size(); ++i) {
    if ((word[i] | 0x20) != keyword[i]) return false;
  }
  return true;
}

}  // namespace

Parser::Parser(ByteWindow& window, Model& model, const Report& report)
    : _words(window),
      _model(model),
      _report(report),
      _progress("read", window.GetByteCount(), Progress::kBytesPerEvent) {}

KOVAResult Parser::ReadStart() {
  ByteWindow& window = _words.GetWindow();
  if (window.Require(kByteOrderMark.size()) &&
      std::string_view(window.begin(), kByteOrderMark.size()) == kByteOrderMark) {
    window.Skip(kByteOrderMark.size());
  }
  if (!isKeyword(_words.NextWord(), "solid")) return FailExpecting("'solid'");
  return KOVAResultCode::kSuccess;
}

KOVAResult Parser::ReadSolid() {
  if (!isKeyword(_words.GetWord(), "solid")) return FailExpecting("'solid' or the end of the file");
  const KOVAString name = decodeText(_words.RestOfLine());
  MeshBuilder builder(false);
  for (_words.NextWord(); !isKeyword(_words.GetWord(), "endsolid"); _words.NextWord()) {
    if (!isKeyword(_words.GetWord(), "facet")) return FailExpecting("'facet' or 'endsolid'");
    const KOVAResult result = ReadFacet(builder);
    if (result.IsFailure()) return result;
    _progress.Reach(_words.GetWindow().GetOffset());
  }
  _words.RestOfLine(0);
  const Mesh& mesh = builder.Finish();
  _degenerates += builder.GetDegenerateCount();
  if (mesh.triangles.size() == 0) {
    ++_emptySolids;
  } else {
    Part part;
    part.name = name;
    part.meshes.add(mesh);
    addPart(_model, part);
  }
  _words.NextWord();
  if (_words.GetWindow().HasFailed()) return FailExpecting("'solid' or the end of the file");
  return KOVAResultCode::kSuccess;
}

KOVAResult Parser::Finish() {
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
        _report.Fail(KOVAResultCode::kNotSupported, Place::Line(_words.GetLine()),
                     "more than %d triangles or vertices in one solid", MeshBuilder::kMostElements);
  }
  return result;
}

// The normal follows from the corners. Files of triangles without area have "nan" here, spelled
// in many ways, so three words will do.
KOVAResult Parser::ReadNormal() {
  KOVAResult result = Expect("normal");
  for (int i = 0; i < 3 && result.IsSuccess(); ++i) {
    const std::string_view word = _words.NextWord();
    if (word.empty() || isKeyword(word, "outer")) result = FailExpecting("a number");
  }
  return result;
}

KOVAResult Parser::ReadNumber(double& number) {
  const std::string_view word = _words.NextWord();
  if (!parseNumber(word, number)) return FailExpecting("a number");
  if (std::fabs(number) <= double{FLT_MAX}) return KOVAResultCode::kSuccess;
  return _report.Fail(KOVAResultCode::kInvalidFile, Place::Line(_words.GetLine()),
                      "the coordinate %s is outside the range of single precision",
                      quote(word.data(), word.size()).c_str());
}

KOVAResult Parser::Expect(std::string_view keyword) {
  if (isKeyword(_words.NextWord(), keyword)) return KOVAResultCode::kSuccess;
  return FailExpecting(quote(keyword.data(), keyword.size()).c_str());
}

KOVAResult Parser::FailExpecting(const char* expected) {
  const Place place = Place::Line(_words.GetLine());
  const std::string_view word = _words.GetWord();
  if (_words.GetWindow().HasFailed()) {
    return _report.Fail(KOVAResultCode::kFileOpenError, place,
                        "the file cannot be read any further");
  }
  if (word.empty()) {
    return _report.Fail(KOVAResultCode::kInvalidFile, place, "the file ends where %s is expected",
                        expected);
  }
  return _report.Fail(KOVAResultCode::kInvalidFile, place, "%s is expected, not %s", expected,
                      quote(word.data(), word.size()).c_str());
}

}  // namespace kova::translators::stlAscii
