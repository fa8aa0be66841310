#include "translators/ply/PlyReader.h"

#include "translators/interface/Frame.h"
#include "translators/model/MeshBuilder.h"
#include "translators/ply/PlyHeader.h"
#include "translators/ply/PlySources.h"
#include "translators/ply/Polygon.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

namespace kova::translators {

namespace {

using namespace ply;

constexpr std::size_t kWindowBytes = std::size_t{256} << 10;
// What a triangle strip ends with.
constexpr std::uint32_t kEndOfStrip = 0xFFFFFFFF;

unsigned long long print(std::uint64_t number) { return number; }

// The values of one record that have a role.
struct Record {
  double coordinates[3] = {0.0, 0.0, 0.0};
  std::uint32_t ends[2] = {0, 0};
  std::vector<std::uint32_t> corners;
};

class PlyReader : public KOVAFormatReader {
 public:
  explicit PlyReader(const ReadRequest& request)
      : KOVAFormatReader(request.file),
        _request(request),
        _input(openInput(request, _result)),
        _window(_input, kWindowBytes),
        _progress("read", _window.GetByteCount(), Progress::kBytesPerEvent) {
    _buffer = _input;
    _headerSections.add(new FunctionSectionReader(_buffer, [this] { return ReadHeader(); }));
    _fileInfoSections.add(new FunctionSectionReader(_buffer, [this] { return CheckPromises(); }));
    _dataSections.add(new DataSection(*this));
  }

 private:
  // The elements are known once the header has been read.
  class DataSection : public KOVASectionReader {
   public:
    explicit DataSection(PlyReader& reader) : _reader(reader) {}

    KOVAResult PreProcess(KOVAFormatReader*) override {
      for (const Element& element : _reader._header.elements) {
        AddEntityReader(new FunctionReader(
            _reader._buffer, [this, &element] { return _reader.ReadElement(element); }));
      }
      return KOVAResultCode::kSuccess;
    }
    KOVAResult PostProcess() override { return _reader.Finish(); }

   private:
    PlyReader& _reader;
  };

  KOVAResult ReadHeader();
  KOVAResult CheckPromises();
  KOVAResult ReadElement(const Element& element);
  KOVAResult Finish();

  void Reserve(const Element& element);
  template <class Source>
  KOVAResult ReadRecords(const Element& element, Source& source);
  template <class Source>
  bool ReadRecord(const Element& element, Source& source, Record& record);
  template <class Source>
  bool ReadVertex(const Element& element, Source& source, Type type, bool isStrip,
                  std::uint32_t& vertex);
  KOVAResult Fail(const Element& element, std::uint64_t record, const Failure& failure);
  KOVAResult Take(const Element& element, const Record& record, Place place);
  void TakeFace(const std::vector<std::uint32_t>& corners);
  void TakeStrips(const std::vector<std::uint32_t>& corners);
  void TakeEdge(const std::uint32_t (&ends)[2]);
  void WarnOf(const char* what, std::uint64_t count) const;

  const ReadRequest _request;
  KOVAResult _result;
  KOVABufferHandle _input;
  ByteWindow _window;
  Progress _progress;
  Header _header;
  // The line of an ASCII file that has been reached.
  std::optional<AsciiSource> _ascii;
  std::optional<BinarySource> _binary;

  Mesh _mesh;
  Part _part;
  std::uint32_t _vertexCount = 0;
  // The vertex where the last edge ends.
  std::uint32_t _lastEnd = kEndOfStrip;
  PolygonDivider _divider;
  std::uint64_t _degenerates = 0;
  std::uint64_t _incomplete = 0;
  // A vertex that does not exist has been reported.
  bool _isReported = false;
};

KOVAResult PlyReader::ReadHeader() {
  if (_result.IsFailure()) return _result;
  if (!_window.Require(1) && !_window.HasFailed()) {
    return _result = _request.report.Fail(KOVAResultCode::kInvalidFile, Place::Byte(0),
                                          "the file is empty");
  }
  _result = ply::readHeader(_window, _request.report, _header, _request.header);
  if (_result.IsFailure()) return _result;
  static constexpr const char* kForms[] = {"PLY, ASCII", "PLY, binary, little-endian",
                                           "PLY, binary, big-endian"};
  _request.header.AddEntry("Format", kForms[static_cast<int>(_header.form)]);
  return _result;
}

// No count is believed before there are bytes for it. What the lists hold is left out here.
KOVAResult PlyReader::CheckPromises() {
  std::uint64_t left = _window.GetByteCount() - _window.GetOffset();
  for (const Element& element : _header.elements) {
    // The last record of an ASCII file may end without white space.
    const bool isAscii = _header.form == Form::kAscii;
    const std::uint64_t least = element.GetLeastBytes(_header.form) + (isAscii ? 1 : 0);
    if (element.properties.empty()) continue;
    if (element.count > (left + (isAscii ? 1 : 0)) / least) {
      const std::string name = quote(element.name.data(), element.name.size());
      return _result = _request.report.Fail(
                 KOVAResultCode::kInvalidFile,
                 isAscii ? Place::Line(element.line) : Place::Byte(_window.GetByteCount()),
                 "%llu records of %s are promised, but only %llu bytes are left for them",
                 print(element.count), name.c_str(), print(left));
    }
    left -= std::min(left, least * element.count);
    if (element.kind == Kind::kVertex) {
      if (element.count > std::uint64_t{MeshBuilder::kMostElements}) {
        return _result =
                   _request.report.Fail(KOVAResultCode::kNotSupported, Place::Line(element.line),
                                        "%llu vertices are more than one part can hold, %d",
                                        print(element.count), MeshBuilder::kMostElements);
      }
      _vertexCount = static_cast<std::uint32_t>(element.count);
    }
    // Also what a file of a few bytes for each edge can make of them stays in bounds so.
    const std::uint64_t pairs = std::uint64_t{_vertexCount} * _vertexCount;
    if (element.kind == Kind::kEdge && element.count > pairs) {
      return _result =
                 _request.report.Fail(KOVAResultCode::kInvalidFile, Place::Line(element.line),
                                      "%llu edges are more than there can be between %u vertices",
                                      print(element.count), _vertexCount);
    }
  }
  if (_header.form == Form::kAscii) {
    _ascii.emplace(_window, _header.nextLine);
  } else {
    _binary.emplace(_window, _header.form == Form::kBig);
  }
  return KOVAResultCode::kSuccess;
}

KOVAResult PlyReader::ReadElement(const Element& element) {
  if (_result.IsFailure() || element.properties.empty()) return _result;
  Reserve(element);
  _result = _ascii ? ReadRecords(element, *_ascii) : ReadRecords(element, *_binary);
  return _result;
}

// The file is long enough for so many records. Storage is not touched before it is filled.
void PlyReader::Reserve(const Element& element) {
  constexpr std::uint64_t kMost = std::uint64_t{1} << 28;
  const int count = static_cast<int>(std::min(element.count, kMost));
  switch (element.kind) {
    case Kind::kVertex: {
      _mesh.vertices.reserve(count);
      const auto isSingle = [](const Property& property) {
        return property.role == Role::kNone || property.type == Type::kFloat32 ||
               property.type < Type::kInt32;
      };
      _mesh.isSinglePrecision =
          std::all_of(element.properties.begin(), element.properties.end(), isSingle);
      break;
    }
    case Kind::kFace: _mesh.triangles.reserve(count); break;
    case Kind::kEdge:
      _part.curves.reserve(count);
      _part.points.reserve(2 * count);
      break;
    case Kind::kStrips:
    case Kind::kOther: break;
  }
}

template <class Source>
KOVAResult PlyReader::ReadRecords(const Element& element, Source& source) {
  Record record;
  for (std::uint64_t i = 0; i < element.count; ++i) {
    if (!ReadRecord(element, source, record)) {
      return _isReported ? KOVAResult(KOVAResultCode::kInvalidFile)
                         : Fail(element, i + 1, source.GetFailure());
    }
    const KOVAResult result = Take(element, record, source.GetPlace());
    if (result.IsFailure()) return result;
    _progress.Reach(_window.GetOffset());
  }
  return KOVAResultCode::kSuccess;
}

template <class Source>
bool PlyReader::ReadRecord(const Element& element, Source& source, Record& record) {
  for (const Property& property : element.properties) {
    std::int64_t count = 1;
    if (property.isList) {
      if (!source.ReadInteger(property.countType, count)) return false;
      if (count < 0) {
        _request.report.Fail(
            KOVAResultCode::kInvalidFile, source.GetPlace(), "a list of %s has the length %lld",
            quote(element.name.data(), element.name.size()).c_str(), static_cast<long long>(count));
        _isReported = true;
        return false;
      }
    }
    switch (property.role) {
      case Role::kNone:
        if (!source.Skip(property.type, static_cast<std::uint64_t>(count))) return false;
        break;
      case Role::kX:
      case Role::kY:
      case Role::kZ: {
        const int axis = static_cast<int>(property.role) - static_cast<int>(Role::kX);
        if (!source.ReadReal(property.type, record.coordinates[axis])) return false;
        break;
      }
      case Role::kVertex1:
      case Role::kVertex2: {
        const int end = property.role == Role::kVertex1 ? 0 : 1;
        if (!ReadVertex(element, source, property.type, false, record.ends[end])) return false;
        break;
      }
      case Role::kIndices:
        record.corners.clear();
        for (; count != 0; --count) {
          std::uint32_t vertex;
          const bool isStrip = element.kind == Kind::kStrips;
          if (!ReadVertex(element, source, property.type, isStrip, vertex)) return false;
          record.corners.push_back(vertex);
        }
        break;
    }
  }
  return true;
}

template <class Source>
bool PlyReader::ReadVertex(const Element& element, Source& source, Type type, bool isStrip,
                           std::uint32_t& vertex) {
  std::int64_t number = 0;
  if (!source.ReadInteger(type, number)) return false;
  if (number >= 0 && number < std::int64_t{_vertexCount}) {
    vertex = static_cast<std::uint32_t>(number);
    return true;
  }
  if (isStrip && number == -1) {
    vertex = kEndOfStrip;
    return true;
  }
  _request.report.Fail(KOVAResultCode::kInvalidFile, source.GetPlace(),
                       "'%s' has the vertex %lld, but there are %u, numbered from 0",
                       element.name.c_str(), static_cast<long long>(number), _vertexCount);
  _isReported = true;
  return false;
}

KOVAResult PlyReader::Fail(const Element& element, std::uint64_t record, const Failure& failure) {
  const Report& report = _request.report;
  const std::string name = quote(element.name.data(), element.name.size());
  switch (failure.kind) {
    case Failure::Kind::kEnd: break;
    case Failure::Kind::kUnreadable:
      return report.Fail(KOVAResultCode::kFileOpenError, failure.place,
                         "the file cannot be read any further");
    case Failure::Kind::kNoNumber:
      return report.Fail(KOVAResultCode::kInvalidFile, failure.place,
                         "a number of record %llu of %s is expected, not %s", print(record),
                         name.c_str(), failure.value.c_str());
    case Failure::Kind::kRange:
      return report.Fail(KOVAResultCode::kInvalidFile, failure.place,
                         "the number %s of record %llu of %s is outside the range that is used",
                         failure.value.c_str(), print(record), name.c_str());
  }
  return report.Fail(KOVAResultCode::kInvalidFile, failure.place,
                     "the file ends in record %llu of %llu of %s", print(record),
                     print(element.count), name.c_str());
}

KOVAResult PlyReader::Take(const Element& element, const Record& record, Place place) {
  switch (element.kind) {
    case Kind::kOther: return KOVAResultCode::kSuccess;
    case Kind::kVertex: {
      const auto& [x, y, z] = record.coordinates;
      // Negative zero becomes zero.
      _mesh.vertices.add({x + 0.0, y + 0.0, z + 0.0});
      return KOVAResultCode::kSuccess;
    }
    case Kind::kEdge: TakeEdge(record.ends); return KOVAResultCode::kSuccess;
    case Kind::kFace:
    case Kind::kStrips: break;
  }
  const std::size_t room =
      static_cast<std::size_t>(MeshBuilder::kMostElements - _mesh.triangles.size());
  if (record.corners.size() >= room) {
    return _request.report.Fail(KOVAResultCode::kNotSupported, place, "more than %d triangles",
                                MeshBuilder::kMostElements);
  }
  const int before = _mesh.triangles.size();
  if (element.kind == Kind::kFace) {
    TakeFace(record.corners);
  } else {
    TakeStrips(record.corners);
  }
  for (int i = before; i < _mesh.triangles.size(); ++i) {
    const auto& [a, b, c] = _mesh.triangles[i].corners;
    if (a == b || b == c || c == a) ++_degenerates;
  }
  return KOVAResultCode::kSuccess;
}

void PlyReader::TakeFace(const std::vector<std::uint32_t>& corners) {
  if (corners.size() < 3) {
    ++_incomplete;
    return;
  }
  _divider.Divide(corners, _mesh.vertices, _mesh.triangles);
}

// Every second triangle of a strip has its corners the other way round. Those with two corners that
// are the same join strips and are no part of the surface.
void PlyReader::TakeStrips(const std::vector<std::uint32_t>& corners) {
  std::size_t start = 0;
  for (std::size_t i = 0; i < corners.size(); ++i) {
    if (corners[i] == kEndOfStrip) {
      start = i + 1;
      continue;
    }
    if (i < start + 2) continue;
    const bool isOdd = (i - start) % 2 != 0;
    const std::uint32_t a = corners[i - 2];
    const std::uint32_t b = corners[isOdd ? i : i - 1];
    const std::uint32_t c = corners[isOdd ? i - 1 : i];
    if (a != b && b != c && c != a) _mesh.triangles.add({{a, b, c}});
  }
}

void PlyReader::TakeEdge(const std::uint32_t (&ends)[2]) {
  KOVADynamicArray<Curve>& curves = _part.curves;
  const Point& from = _mesh.vertices[static_cast<int>(ends[0])];
  const Point& to = _mesh.vertices[static_cast<int>(ends[1])];
  if (ends[0] != _lastEnd) {
    Curve curve;
    curve.firstPoint = static_cast<std::uint32_t>(_part.points.size());
    curve.pointCount = 1;
    curves.add(curve);
    _part.points.add(from);
  }
  Curve& curve = curves[curves.size() - 1];
  ++curve.pointCount;
  curve.length += std::hypot(to.x - from.x, to.y - from.y, to.z - from.z);
  _part.points.add(to);
  _lastEnd = ends[1];
}

void PlyReader::WarnOf(const char* what, std::uint64_t count) const {
  if (count != 0) _request.report.Warn({}, "%s: %llu", what, print(count));
}

KOVAResult PlyReader::Finish() {
  if (_result.IsFailure()) return _result;
  if (_ascii) {
    if (_ascii->Skip(Type::kInt8, 1)) {
      _request.report.Warn(_ascii->GetPlace(), "what follows the last element is not used");
    }
  } else if (_window.GetOffset() != _window.GetByteCount()) {
    _request.report.Warn(Place::Byte(_window.GetOffset()),
                         "%llu bytes after the last element are not used",
                         print(_window.GetByteCount() - _window.GetOffset()));
  }
  WarnOf("triangles with coinciding corners, kept as they are", _degenerates);
  WarnOf("faces with fewer than three corners, left out", _incomplete);
  WarnOf("faces whose corners cross or are too many, divided as if they were convex",
         _divider.GetForcedCount());

  const bool hasTriangles = _mesh.triangles.size() != 0;
  const bool hasCurves = _part.curves.size() != 0;
  if (!hasTriangles && !hasCurves) {
    _request.report.Warn({}, "there are neither faces nor edges in the file, only %u points",
                         _vertexCount);
    if (_vertexCount == 0) return KOVAResultCode::kNoTranslatableGeometry;
  }
  // Vertices of edges alone are points of the curves already.
  if (hasTriangles || !hasCurves) _part.meshes.add(_mesh);
  _part.name = decodeText(_header.name);
  addPart(_request.model, _part);
  return KOVAResultCode::kSuccess;
}

}  // namespace

KOVAFormatReader* createPlyReader(const ReadRequest& request) { return new PlyReader(request); }

}  // namespace kova::translators
