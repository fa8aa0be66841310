#include "TrackReader.h"

#include <kovabase/units/KOVAUnitValue.h>

#include <cmath>
#include <string>
#include <string_view>
#include <translators/interface/Frame.h>

using namespace kova::translators;

namespace {
constexpr std::size_t kWindowBytes = std::size_t{64} << 10;
}  // namespace

// [section]
// Finds each line of the file when the one before has been read.
class TrackReader::LineSection : public KOVASectionReader {
 public:
  explicit LineSection(TrackReader& reader) : _reader(reader) {}

  KOVAEntityReader* GetNextKey() override {
    if (_reader.HasLine()) {
      AddEntityReader(new FunctionReader(_reader._buffer, [this] { return _reader.ReadLine(); }));
    }
    return KOVASectionReader::GetNextKey();
  }

  KOVAResult PostProcess() override { return _reader.ReadEnd(); }

 private:
  TrackReader& _reader;
};
// [section]

// [constructor]
TrackReader::TrackReader(const ReadRequest& request)
    : KOVAFormatReader(request.file),
      _request(request),
      _input(openInput(request, _opened)),
      _window(_input, kWindowBytes),
      _words(_window) {
  _buffer = _input;
  _headerSections.add(new FunctionSectionReader(_buffer, [this] { return ReadHeader(); }));
  _fileInfoSections.add(new FunctionSectionReader(_buffer, [this] { return ReadUnit(); }));
  _dataSections.add(new LineSection(*this));
}
// [constructor]

// [steps]
KOVAResult TrackReader::ReadHeader() {
  if (_opened.IsFailure()) return _opened;  // has been reported
  if (_words.NextWord() != "TRACK") return Refuse("the word TRACK");
  if (_words.NextWord() != "1") return Refuse("version 1");
  _request.header.AddEntry("Format", "survey track, version 1");
  return KOVAResultCode::kSuccess;
}

KOVAResult TrackReader::ReadUnit() {
  if (_words.NextWord() != "UNIT") return Refuse("the word UNIT");
  const KOVAString name = decodeText(_words.RestOfLine());
  if (KOVAUnitValue::GetUnitFromString(_request.model.unit, name).IsFailure()) {
    return Refuse("a unit of length");
  }
  _words.NextWord();  // the first LINE
  return KOVAResultCode::kSuccess;
}
// [steps]

// [line]
KOVAResult TrackReader::ReadLine() {
  const std::uint64_t start = _words.GetLine();
  Part part;
  part.name = decodeText(_words.RestOfLine());
  Curve curve;
  while (!_words.NextWord().empty() && !HasLine()) {
    Point point;
    if (!ReadPoint(point)) return Refuse("a coordinate");
    if (part.points.size() > 0) {
      const Point& last = part.points[part.points.size() - 1];
      curve.length += std::hypot(point.x - last.x, point.y - last.y, point.z - last.z);
    }
    part.points.add(point);
  }
  if (part.points.size() < 2 || !std::isfinite(curve.length)) {
    if (_leftOut++ == 0) _firstLeftOut = start;
    return KOVAResultCode::kSuccess;
  }
  curve.pointCount = static_cast<std::uint32_t>(part.points.size());
  part.curves.add(curve);
  addPart(_request.model, part);
  return KOVAResultCode::kSuccess;
}

// The first coordinate is the current word.
bool TrackReader::ReadPoint(Point& point) {
  for (double* const coordinate : {&point.x, &point.y, &point.z}) {
    if (coordinate != &point.x) _words.NextWord();
    if (!parseNumber(_words.GetWord(), *coordinate) || !std::isfinite(*coordinate)) return false;
  }
  return true;
}
// [line]

// [end]
KOVAResult TrackReader::ReadEnd() {
  if (_result.IsSuccess() && _window.HasFailed()) return Refuse("the rest of the file");
  if (_result.IsSuccess() && !_words.GetWord().empty()) return Refuse("the word LINE");
  if (_result.IsSuccess() && _leftOut > 0) {
    _request.report.Warn(Place::Line(_firstLeftOut),
                         "a line without a length is left out (%d in all)", _leftOut);
  }
  return _result;
}

// One message says why, where, and what stands there instead.
KOVAResult TrackReader::Refuse(const char* expected) {
  const std::string_view word = _words.GetWord();
  _result = _request.report.Fail(
      KOVAResultCode::kInvalidFile, Place::Line(_words.GetLine()), "%s expected, but %s found",
      expected, word.empty() ? "the end" : quote(word.data(), word.size()).c_str());
  return _result;
}
// [end]
