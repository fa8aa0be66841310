#include "translators/ply/PlyWriter.h"

#include "translators/interface/Frame.h"
#include "translators/interface/Text.h"
#include "translators/model/PlacedPoints.h"
#include "translators/ply/PlyHeader.h"

#include <algorithm>
#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>

namespace kova::translators {

namespace {

using ply::Form;

struct Rgb {
  unsigned char red;
  unsigned char green;
  unsigned char blue;
};

// What has no colour of its own or of its instance.
constexpr Rgb kGrey{192, 192, 192};

bool isFloat(double value) {
  return std::fabs(value) <= double{FLT_MAX} && double{static_cast<float>(value)} == value;
}

bool areFloats(const KOVADynamicArray<Point>& points) {
  return std::all_of(points.begin(), points.end(), [](const Point& point) {
    return isFloat(point.x) && isFloat(point.y) && isFloat(point.z);
  });
}

class PlyWriter : public KOVAFormatWriter {
 public:
  explicit PlyWriter(const WriteRequest& request);

  KOVAResult Resolve() override { return finishOutput(_output, _request.report); }

 private:
  class DataSection : public KOVASectionWriter {
   public:
    explicit DataSection(PlyWriter& writer) {
      for (const auto element :
           {&PlyWriter::WriteVertices, &PlyWriter::WriteFaces, &PlyWriter::WriteEdges}) {
        AddEntityWriter(
            new FunctionWriter(writer._buffer, [&writer, element] { return (writer.*element)(); }));
      }
    }
  };

  KOVAResult Check();
  KOVAResult WriteHead();
  KOVAResult WriteElements();
  KOVAResult WriteVertices();
  KOVAResult WriteFaces();
  KOVAResult WriteEdges();
  template <class Coordinate>
  void WritePoints(const PlacedPoints& points);
  Rgb GetColour(const Mesh& mesh, const Instance& instance) const;

  /// Calls f(instance, part) for each instance.
  template <class Function>
  void ForEach(Function f) const {
    for (const Instance& instance : _request.model.instances) {
      f(instance, _request.model.parts[instance.part]);
    }
  }

  /// A value in the order of the file.
  template <class Value>
  void PutBinary(Value value) {
    char bytes[sizeof value];
    std::memcpy(bytes, &value, sizeof value);
    const bool isBig = std::endian::native == std::endian::big;
    if (isBig != (_form == Form::kBig)) std::reverse(bytes, bytes + sizeof value);
    _output->PutBytes(bytes, sizeof value);
  }
  template <class Value>
  void PutText(char before, Value value) {
    _output->Put(before);
    _output->PutNumber(value);
  }

  const WriteRequest _request;
  Form _form = Form::kLittle;
  bool _isSinglePrecision = true;
  bool _hasColours = false;
  std::uint64_t _vertices = 0;
  std::uint64_t _faces = 0;
  std::uint64_t _edges = 0;
  KOVAResult _result;
  ByteOutputHandle _output;
  Progress _progress;
};

PlyWriter::PlyWriter(const WriteRequest& request)
    : KOVAFormatWriter(request.file),
      _request(request),
      _result(Check()),
      _output(_result.IsSuccess() ? openOutput(request, _buffer, _result) : openNothing(_buffer)),
      _progress("write", _vertices + _faces + _edges, Progress::kElementsPerEvent) {
  _headerSections.add(new FunctionSectionWriter(_buffer, [this] { return WriteHead(); }));
  if (_result.IsFailure()) return;
  _fileInfoSections.add(new FunctionSectionWriter(_buffer, [this] { return WriteElements(); }));
  _dataSections.add(new DataSection(*this));
}

KOVAResult PlyWriter::Check() {
  const int form = readChoice(_request, "Ply.Write.Form", {"little", "big", "ascii"});
  if (form < 0) return KOVAResultCode::kInvalidArgument;
  _form = form == 0 ? Form::kLittle : form == 1 ? Form::kBig : Form::kAscii;
  ForEach([this](const Instance& instance, const Part& part) {
    const Placement placement(instance.placement);
    for (const Mesh& mesh : part.meshes) {
      _vertices += static_cast<std::uint64_t>(mesh.vertices.size());
      _faces += static_cast<std::uint64_t>(mesh.triangles.size());
      if (mesh.vertices.size() == 0) continue;
      _isSinglePrecision = _isSinglePrecision && mesh.isSinglePrecision && placement.IsIdentity();
      _hasColours = _hasColours || mesh.looks.colour >= 0 || instance.looks.colour >= 0;
    }
    if (part.curves.size() == 0) return;
    _vertices += static_cast<std::uint64_t>(part.points.size());
    for (const Curve& curve : part.curves) _edges += curve.pointCount - 1;
    _isSinglePrecision = _isSinglePrecision && placement.IsIdentity() && areFloats(part.points);
  });
  if (_faces == 0 && _edges == 0) {
    return _request.report.Fail(KOVAResultCode::kNotSupported, {},
                                "there are neither triangles nor curves in the model");
  }
  constexpr std::uint64_t kMostVertices = 0x7FFFFFFF;
  constexpr std::uint64_t kMostFileBytes = 0xFFFFFFFF;
  if (_vertices > kMostVertices) {
    return _request.report.Fail(KOVAResultCode::kNotSupported, {},
                                "%llu vertices are more than a PLY file can number, %llu",
                                static_cast<unsigned long long>(_vertices),
                                static_cast<unsigned long long>(kMostVertices));
  }
  const std::uint64_t bytes =
      _vertices * (_isSinglePrecision ? 12 : 24) + _faces * (_hasColours ? 16 : 13) + _edges * 8;
  if (_form != Form::kAscii && bytes > kMostFileBytes) {
    return _request.report.Fail(KOVAResultCode::kNotSupported, {},
                                "%llu vertices, %llu faces and %llu edges take 4 GiB or more",
                                static_cast<unsigned long long>(_vertices),
                                static_cast<unsigned long long>(_faces),
                                static_cast<unsigned long long>(_edges));
  }
  return KOVAResultCode::kSuccess;
}

KOVAResult PlyWriter::WriteHead() {
  if (_result.IsFailure()) return _result;
  static constexpr const char* kForms[] = {"ascii", "binary_little_endian", "binary_big_endian"};
  std::string head = std::string("ply\nformat ") + kForms[static_cast<int>(_form)] +
                     " 1.0\ncomment Written by KOVABase\n";
  const Model& model = _request.model;
  KOVAString unit;
  if (model.unit != KOVAUnitUnknown) GetUnitName(model.unit, unit);
  if (!unit.isEmpty()) head += "comment unit: " + encodeLine(unit) + "\n";
  // There is one name at most in the format.
  const KOVAString& name =
      model.instances.size() == 1 ? getName(model, model.instances[0]) : model.name;
  if (!name.isEmpty()) head += "comment name: " + encodeLine(name) + "\n";
  _output->PutText(head);
  return KOVAResultCode::kSuccess;
}

KOVAResult PlyWriter::WriteElements() {
  const std::string type = _isSinglePrecision ? "float" : "double";
  std::string text = "element vertex " + std::to_string(_vertices) + "\n";
  for (const char* const axis : {" x\n", " y\n", " z\n"}) text += "property " + type + axis;
  if (_faces != 0) {
    text += "element face " + std::to_string(_faces) + "\nproperty list uchar int vertex_indices\n";
    if (_hasColours) {
      for (const char* const channel : {"red\n", "green\n", "blue\n"}) {
        text += std::string("property uchar ") + channel;
      }
    }
  }
  if (_edges != 0) {
    text +=
        "element edge " + std::to_string(_edges) + "\nproperty int vertex1\nproperty int vertex2\n";
  }
  _output->PutText(text + "end_header\n");
  return KOVAResultCode::kSuccess;
}

KOVAResult PlyWriter::WriteVertices() {
  const auto write = [this](const KOVADynamicArray<Point>& points, const Placement& placement) {
    const PlacedPoints placed(points, placement);
    if (_isSinglePrecision) {
      WritePoints<float>(placed);
    } else {
      WritePoints<double>(placed);
    }
  };
  ForEach([&](const Instance& instance, const Part& part) {
    const Placement placement(instance.placement);
    for (const Mesh& mesh : part.meshes) write(mesh.vertices, placement);
    if (part.curves.size() != 0) write(part.points, placement);
  });
  return KOVAResultCode::kSuccess;
}

template <class Coordinate>
void PlyWriter::WritePoints(const PlacedPoints& points) {
  for (const Point& point : points) {
    const Coordinate x = static_cast<Coordinate>(point.x);
    const Coordinate y = static_cast<Coordinate>(point.y);
    const Coordinate z = static_cast<Coordinate>(point.z);
    _output->MakeRoom();
    if (_form == Form::kAscii) {
      _output->PutNumber(x);
      PutText(' ', y);
      PutText(' ', z);
      _output->Put('\n');
    } else {
      PutBinary(x);
      PutBinary(y);
      PutBinary(z);
    }
    _progress.Add();
  }
}

KOVAResult PlyWriter::WriteFaces() {
  std::uint32_t first = 0;
  ForEach([&](const Instance& instance, const Part& part) {
    const bool isMirror = Placement(instance.placement).IsMirror();
    for (const Mesh& mesh : part.meshes) {
      const auto [red, green, blue] = GetColour(mesh, instance);
      for (const Triangle& triangle : mesh.triangles) {
        const std::uint32_t a = first + triangle.corners[0];
        const std::uint32_t b = first + triangle.corners[isMirror ? 2 : 1];
        const std::uint32_t c = first + triangle.corners[isMirror ? 1 : 2];
        _output->MakeRoom();
        _output->Put(_form == Form::kAscii ? '3' : '\3');
        for (const std::uint32_t corner : {a, b, c}) {
          if (_form == Form::kAscii) {
            PutText(' ', corner);
          } else {
            PutBinary(corner);
          }
        }
        for (const unsigned char channel : {red, green, blue}) {
          if (!_hasColours) break;
          if (_form == Form::kAscii) {
            PutText(' ', int{channel});
          } else {
            PutBinary(channel);
          }
        }
        if (_form == Form::kAscii) _output->Put('\n');
        _progress.Add();
      }
      first += static_cast<std::uint32_t>(mesh.vertices.size());
    }
    if (part.curves.size() != 0) first += static_cast<std::uint32_t>(part.points.size());
  });
  return KOVAResultCode::kSuccess;
}

KOVAResult PlyWriter::WriteEdges() {
  std::uint32_t first = 0;
  ForEach([&](const Instance&, const Part& part) {
    for (const Mesh& mesh : part.meshes) first += static_cast<std::uint32_t>(mesh.vertices.size());
    for (const Curve& curve : part.curves) {
      const std::uint32_t start = first + curve.firstPoint;
      for (std::uint32_t i = 1; i < curve.pointCount; ++i) {
        _output->MakeRoom();
        if (_form == Form::kAscii) {
          _output->PutNumber(start + i - 1);
          PutText(' ', start + i);
          _output->Put('\n');
        } else {
          PutBinary(start + i - 1);
          PutBinary(start + i);
        }
        _progress.Add();
      }
    }
    if (part.curves.size() != 0) first += static_cast<std::uint32_t>(part.points.size());
  });
  return KOVAResultCode::kSuccess;
}

Rgb PlyWriter::GetColour(const Mesh& mesh, const Instance& instance) const {
  const int index = mesh.looks.colour >= 0 ? mesh.looks.colour : instance.looks.colour;
  const KOVADynamicArray<Colour>& colours = _request.model.colours;
  if (!colours.isValidIndex(index)) return kGrey;
  const auto scale = [](float amount) {
    return static_cast<unsigned char>(std::lround(255.0F * std::clamp(amount, 0.0F, 1.0F)));
  };
  const Colour& colour = colours[index];
  return {scale(colour.red), scale(colour.green), scale(colour.blue)};
}

}  // namespace

KOVAFormatWriter* createPlyWriter(const WriteRequest& request) { return new PlyWriter(request); }

}  // namespace kova::translators
