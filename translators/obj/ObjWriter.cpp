#include "translators/obj/ObjWriter.h"

#include "translators/interface/Frame.h"
#include "translators/interface/OptionValues.h"
#include "translators/interface/Text.h"
#include "translators/model/Placement.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace kova::translators {

namespace {

// Names of groups. Readers take the groups of one name as one, and end a name at a blank or a
// comment sign, so names are made of one word each and differ from each other.
class GroupNames {
 public:
  std::string Make(const KOVAString& name) {
    std::string word = encodeText(name);
    for (char& c : word) {
      const unsigned char byte = static_cast<unsigned char>(c);
      if (byte <= 0x20 || byte == 0x7F || c == '#' || c == '\\') c = '_';
    }
    if (word.empty()) word = "part";
    std::string unique = word;
    for (unsigned& number = _numbers[word]; !_used.insert(unique).second;) {
      number = number == 0 ? 2 : number + 1;
      unique = word + '_' + std::to_string(number);
    }
    return unique;
  }

 private:
  std::unordered_set<std::string> _used;
  // The last number that was tried behind each name.
  std::unordered_map<std::string, unsigned> _numbers;
};

struct Counts {
  std::uint64_t parts = 0;
  std::uint64_t vertices = 0;
  std::uint64_t triangles = 0;
  std::uint64_t curves = 0;

  std::uint64_t GetElements() const { return vertices + triangles + curves; }
};

class ObjWriter : public KOVAFormatWriter {
 public:
  explicit ObjWriter(const WriteRequest& request);

  KOVAResult Resolve() override { return finishOutput(_output, _request.report); }

 private:
  class DataSection : public KOVASectionWriter {
   public:
    explicit DataSection(ObjWriter& writer) {
      for (const Instance& instance : writer._request.model.instances) {
        AddEntityWriter(new FunctionWriter(
            writer._buffer, [&writer, &instance] { return writer.WriteInstance(instance); }));
      }
    }
  };

  KOVAResult WriteHead();
  KOVAResult WriteCounts();
  KOVAResult WriteInstance(const Instance& instance);

  /// What of a part is written.
  Counts Count(const Part& part) const;
  template <typename Coordinate, bool isPlaced>
  void WritePoints(const KOVADynamicArray<Point>& points, const Placement& placement);
  void WriteMesh(const Mesh& mesh, const Placement& placement);
  void WriteCurves(const Part& part, const Placement& placement);

  const WriteRequest _request;
  const bool _isWithCurves;
  KOVAResult _opened;
  ByteOutputHandle _output;
  Counts _counts;
  Progress _progress;
  GroupNames _names;
  std::uint64_t _firstIndex = 1;
};

ObjWriter::ObjWriter(const WriteRequest& request)
    : KOVAFormatWriter(request.file),
      _request(request),
      _isWithCurves(readOption(request.options, "Obj.Write.Curves", true)),
      _output(openOutput(request, _buffer, _opened)),
      _progress("write", 0, Progress::kElementsPerEvent) {
  _headerSections.add(new FunctionSectionWriter(_buffer, [this] { return WriteHead(); }));
  if (_opened.IsFailure()) return;
  for (const Instance& instance : request.model.instances) {
    const Counts counts = Count(request.model.parts[instance.part]);
    if (counts.GetElements() == 0) continue;
    ++_counts.parts;
    _counts.vertices += counts.vertices;
    _counts.triangles += counts.triangles;
    _counts.curves += counts.curves;
  }
  _progress = Progress("write", _counts.GetElements(), Progress::kElementsPerEvent);
  _fileInfoSections.add(new FunctionSectionWriter(_buffer, [this] { return WriteCounts(); }));
  _dataSections.add(new DataSection(*this));
}

KOVAResult ObjWriter::WriteHead() {
  if (_opened.IsFailure()) return _opened;
  _output->PutText("# Written by KOVABase\n");
  return KOVAResultCode::kSuccess;
}

KOVAResult ObjWriter::WriteCounts() {
  std::string line = "# parts: " + std::to_string(_counts.parts) +
                     ", vertices: " + std::to_string(_counts.vertices) +
                     ", triangles: " + std::to_string(_counts.triangles);
  if (_counts.curves != 0) line += ", curves: " + std::to_string(_counts.curves);
  KOVAString unit;
  if (_request.model.unit != KOVAUnitUnknown) GetUnitName(_request.model.unit, unit);
  if (!unit.isEmpty()) line += "\n# unit: " + encodeText(unit);
  _output->PutText(line + "\n");
  return KOVAResultCode::kSuccess;
}

KOVAResult ObjWriter::WriteInstance(const Instance& instance) {
  const Model& model = _request.model;
  const Part& part = model.parts[instance.part];
  if (Count(part).GetElements() == 0) return KOVAResultCode::kSuccess;
  _output->PutText("g " + _names.Make(getName(model, instance)) + "\n");
  const Placement placement(instance.placement);
  for (const Mesh& mesh : part.meshes) WriteMesh(mesh, placement);
  if (_isWithCurves) WriteCurves(part, placement);
  return KOVAResultCode::kSuccess;
}

Counts ObjWriter::Count(const Part& part) const {
  Counts counts;
  for (const Mesh& mesh : part.meshes) {
    counts.vertices += static_cast<std::uint64_t>(mesh.vertices.size());
    counts.triangles += static_cast<std::uint64_t>(mesh.triangles.size());
  }
  if (_isWithCurves && part.curves.size() != 0) {
    counts.vertices += static_cast<std::uint64_t>(part.points.size());
    counts.curves += static_cast<std::uint64_t>(part.curves.size());
  }
  return counts;
}

template <typename Coordinate, bool isPlaced>
void ObjWriter::WritePoints(const KOVADynamicArray<Point>& points, const Placement& placement) {
  ByteOutput& output = *_output;
  for (const Point& original : points) {
    const Point point = isPlaced ? placement(original) : original;
    output.MakeRoom();
    output.Put('v');
    for (const double coordinate : {point.x, point.y, point.z}) {
      output.Put(' ');
      output.PutNumber(static_cast<Coordinate>(coordinate));
    }
    output.Put('\n');
    _progress.Add();
  }
}

void ObjWriter::WriteMesh(const Mesh& mesh, const Placement& placement) {
  if (!placement.IsIdentity()) {
    WritePoints<double, true>(mesh.vertices, placement);
  } else if (mesh.isSinglePrecision) {
    WritePoints<float, false>(mesh.vertices, placement);
  } else {
    WritePoints<double, false>(mesh.vertices, placement);
  }
  ByteOutput& output = *_output;
  const bool isMirror = placement.IsMirror();
  for (const Triangle& triangle : mesh.triangles) {
    const auto& [a, b, c] = triangle.corners;
    output.MakeRoom();
    output.Put('f');
    for (const std::uint32_t corner : {a, isMirror ? c : b, isMirror ? b : c}) {
      output.Put(' ');
      output.PutNumber(_firstIndex + corner);
    }
    output.Put('\n');
    _progress.Add();
  }
  _firstIndex += static_cast<std::uint64_t>(mesh.vertices.size());
}

void ObjWriter::WriteCurves(const Part& part, const Placement& placement) {
  if (part.curves.size() == 0) return;
  if (placement.IsIdentity()) {
    WritePoints<double, false>(part.points, placement);
  } else {
    WritePoints<double, true>(part.points, placement);
  }
  ByteOutput& output = *_output;
  for (const Curve& curve : part.curves) {
    output.MakeRoom();
    output.Put('l');
    for (std::uint32_t i = 0; i < curve.pointCount; ++i) {
      output.MakeRoom();
      output.Put(' ');
      output.PutNumber(_firstIndex + curve.firstPoint + i);
    }
    output.Put('\n');
    _progress.Add();
  }
  _firstIndex += static_cast<std::uint64_t>(part.points.size());
}

}  // namespace

KOVAFormatWriter* createObjWriter(const WriteRequest& request) { return new ObjWriter(request); }

}  // namespace kova::translators
