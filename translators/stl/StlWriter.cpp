#include "translators/stl/StlWriter.h"

#include "translators/interface/Frame.h"
#include "translators/interface/Text.h"
#include "translators/model/PlacedPoints.h"
#include "translators/stl/StlForms.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>

namespace kova::translators {

namespace {

// Of the product of two sides, of which the longest component is 1: below it, the squares vanish.
constexpr double kLeastLength = 1e-150;

struct Vector {
  double x;
  double y;
  double z;
};

// Of length 1, counter-clockwise corners towards it; zero without an area. Differences of the
// coordinates, which are in the range of `float`, are finite.
Vector getNormal(const Point& a, const Point& b, const Point& c) {
  Vector u{b.x - a.x, b.y - a.y, b.z - a.z};
  Vector v{c.x - a.x, c.y - a.y, c.z - a.z};
  double most = 0.0;
  for (const double x : {u.x, u.y, u.z, v.x, v.y, v.z}) most = std::max(most, std::fabs(x));
  if (most == 0.0) return {0.0, 0.0, 0.0};
  u = {u.x / most, u.y / most, u.z / most};
  v = {v.x / most, v.y / most, v.z / most};
  const Vector n{u.y * v.z - u.z * v.y, u.z * v.x - u.x * v.z, u.x * v.y - u.y * v.x};
  const double length = std::sqrt(n.x * n.x + n.y * n.y + n.z * n.z);
  if (length < kLeastLength) return {0.0, 0.0, 0.0};
  // Adding zero turns negative zero into zero.
  return {n.x / length + 0.0, n.y / length + 0.0, n.z / length + 0.0};
}

void appendFloat(char*& to, double value) {
  const std::uint32_t bits = std::bit_cast<std::uint32_t>(static_cast<float>(value));
  for (int i = 0; i < 4; ++i) *to++ = static_cast<char>(bits >> (8 * i) & 0xFF);
}

class StlWriter : public KOVAFormatWriter {
 public:
  explicit StlWriter(const WriteRequest& request);

  KOVAResult Resolve() override { return finishOutput(_output, _request.report); }

 private:
  class DataSection : public KOVASectionWriter {
   public:
    explicit DataSection(StlWriter& writer) {
      for (const Instance& instance : writer._request.model.instances) {
        AddEntityWriter(new FunctionWriter(
            writer._buffer, [&writer, &instance] { return writer.WriteInstance(instance); }));
      }
    }
  };

  KOVAResult Check();
  KOVAResult WriteHead();
  KOVAResult WriteCount();
  KOVAResult WriteInstance(const Instance& instance);
  KOVAResult WriteMesh(const Mesh& mesh, const Instance& instance, const Placement& placement);
  void WriteBinary(const Mesh& mesh, const PlacedPoints& points, bool isMirror);
  template <typename Coordinate>
  void WriteAscii(const Mesh& mesh, const PlacedPoints& points, bool isMirror);

  const WriteRequest _request;
  bool _isBinary = true;
  std::uint64_t _triangles = 0;
  KOVAResult _result;
  ByteOutputHandle _output;
  Progress _progress;
};

StlWriter::StlWriter(const WriteRequest& request)
    : KOVAFormatWriter(request.file),
      _request(request),
      _result(Check()),
      _output(_result.IsSuccess() ? openOutput(request, _buffer, _result) : openNothing(_buffer)),
      _progress("write", _triangles, Progress::kElementsPerEvent) {
  _headerSections.add(new FunctionSectionWriter(_buffer, [this] { return WriteHead(); }));
  if (_result.IsFailure()) return;
  _fileInfoSections.add(new FunctionSectionWriter(_buffer, [this] { return WriteCount(); }));
  _dataSections.add(new DataSection(*this));
}

// Everything that can be wrong with the model as a whole.
KOVAResult StlWriter::Check() {
  const Report& report = _request.report;
  const int form = readChoice(_request, "Stl.Write.Form", {"binary", "ascii"});
  if (form < 0) return KOVAResultCode::kInvalidArgument;
  _isBinary = form == 0;
  std::uint64_t curves = 0;
  for (const Instance& instance : _request.model.instances) {
    const Part& part = _request.model.parts[instance.part];
    curves += static_cast<std::uint64_t>(part.curves.size());
    for (const Mesh& mesh : part.meshes) {
      _triangles += static_cast<std::uint64_t>(mesh.triangles.size());
    }
  }
  if (_triangles == 0) {
    return report.Fail(KOVAResultCode::kNotSupported, {},
                       "there are no triangles in the model, and STL has nothing else");
  }
  constexpr std::uint64_t kMostFileBytes = 0xFFFFFFFF;
  constexpr std::uint64_t kMostTriangles =
      (kMostFileBytes - stlBinary::kHeaderBytes) / stlBinary::kTriangleBytes;
  if (_isBinary && _triangles > kMostTriangles) {
    return report.Fail(KOVAResultCode::kNotSupported, {},
                       "%llu triangles are more than a binary STL file below 4 GiB has room for, "
                       "%llu",
                       static_cast<unsigned long long>(_triangles),
                       static_cast<unsigned long long>(kMostTriangles));
  }
  if (curves != 0) {
    report.Warn({}, "curves, which STL does not have, left out: %llu",
                static_cast<unsigned long long>(curves));
  }
  return KOVAResultCode::kSuccess;
}

KOVAResult StlWriter::WriteHead() {
  if (_result.IsFailure()) return _result;
  if (!_isBinary) return KOVAResultCode::kSuccess;
  // It must not begin with "solid", which the ASCII form does.
  std::string comment = "Written by KOVABase";
  KOVAString unit;
  if (_request.model.unit != KOVAUnitUnknown) GetUnitName(_request.model.unit, unit);
  if (!unit.isEmpty()) comment += ", unit: " + encodeLine(unit);
  comment.resize(stlBinary::kCommentBytes, '\0');
  _output->PutText(comment);
  return KOVAResultCode::kSuccess;
}

KOVAResult StlWriter::WriteCount() {
  _output->MakeRoom();
  for (int i = 0; _isBinary && i < 4; ++i) {
    _output->Put(static_cast<char>(_triangles >> (8 * i) & 0xFF));
  }
  return KOVAResultCode::kSuccess;
}

KOVAResult StlWriter::WriteInstance(const Instance& instance) {
  if (_result.IsFailure()) return _result;
  const Part& part = _request.model.parts[instance.part];
  const auto hasTriangles = [](const Mesh& mesh) { return mesh.triangles.size() != 0; };
  if (std::none_of(part.meshes.begin(), part.meshes.end(), hasTriangles)) {
    return KOVAResultCode::kSuccess;
  }
  const std::string name = encodeLine(getName(_request.model, instance));
  if (!_isBinary) _output->PutText("solid " + name + "\n");
  const Placement placement(instance.placement);
  for (const Mesh& mesh : part.meshes) {
    _result = WriteMesh(mesh, instance, placement);
    if (_result.IsFailure()) return _result;
  }
  if (!_isBinary) _output->PutText("endsolid " + name + "\n");
  return KOVAResultCode::kSuccess;
}

KOVAResult StlWriter::WriteMesh(const Mesh& mesh, const Instance& instance,
                                const Placement& placement) {
  const PlacedPoints points(mesh.vertices, placement);
  const Point* const outside = std::find_if_not(points.begin(), points.end(), fitsFloat);
  if (outside != points.end()) {
    const std::string name = encodeText(getName(_request.model, instance));
    return _request.report.Fail(KOVAResultCode::kNotSupported, {},
                                "the point (%g, %g, %g) of %s is outside the range of single "
                                "precision, which STL has",
                                outside->x, outside->y, outside->z,
                                quote(name.data(), name.size()).c_str());
  }
  if (_isBinary) {
    WriteBinary(mesh, points, placement.IsMirror());
  } else if (mesh.isSinglePrecision && placement.IsIdentity()) {
    WriteAscii<float>(mesh, points, placement.IsMirror());
  } else {
    WriteAscii<double>(mesh, points, placement.IsMirror());
  }
  return KOVAResultCode::kSuccess;
}

void StlWriter::WriteBinary(const Mesh& mesh, const PlacedPoints& points, bool isMirror) {
  ByteOutput& output = *_output;
  for (const Triangle& triangle : mesh.triangles) {
    const Point& a = points[triangle.corners[0]];
    const Point& b = points[triangle.corners[isMirror ? 2 : 1]];
    const Point& c = points[triangle.corners[isMirror ? 1 : 2]];
    const Vector normal = getNormal(a, b, c);
    // Without attributes.
    char record[stlBinary::kTriangleBytes] = {};
    char* next = record;
    for (const double value :
         {normal.x, normal.y, normal.z, a.x, a.y, a.z, b.x, b.y, b.z, c.x, c.y, c.z}) {
      appendFloat(next, value);
    }
    output.MakeRoom();
    output.PutBytes(record, sizeof record);
    _progress.Add();
  }
}

template <typename Coordinate>
void StlWriter::WriteAscii(const Mesh& mesh, const PlacedPoints& points, bool isMirror) {
  ByteOutput& output = *_output;
  const auto put = [&output](std::string_view words, auto x, auto y, auto z) {
    output.MakeRoom();
    for (const char c : words) output.Put(c);
    for (const auto coordinate : {x, y, z}) {
      output.Put(' ');
      output.PutNumber(coordinate);
    }
  };
  for (const Triangle& triangle : mesh.triangles) {
    const Point& a = points[triangle.corners[0]];
    const Point& b = points[triangle.corners[isMirror ? 2 : 1]];
    const Point& c = points[triangle.corners[isMirror ? 1 : 2]];
    const Vector normal = getNormal(a, b, c);
    put("facet normal", static_cast<float>(normal.x), static_cast<float>(normal.y),
        static_cast<float>(normal.z));
    output.PutText("\n outer loop");
    for (const Point* const corner : {&a, &b, &c}) {
      put("\n  vertex", static_cast<Coordinate>(corner->x), static_cast<Coordinate>(corner->y),
          static_cast<Coordinate>(corner->z));
    }
    output.PutText("\n endloop\nendfacet\n");
    _progress.Add();
  }
}

}  // namespace

KOVAFormatWriter* createStlWriter(const WriteRequest& request) { return new StlWriter(request); }

}  // namespace kova::translators
