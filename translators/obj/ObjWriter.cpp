#include "translators/obj/ObjWriter.h"

#include "kovabase/io/KOVAStringOutputStream.h"

#include <charconv>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace kova::translators {

namespace {

// Gathers lines into blocks. Numbers are written straight into the block.
class LineBuffer {
 public:
  explicit LineBuffer(KOVAOutputStream& stream)
      : _stream(stream), _bytes(new char[kCapacity]), _next(_bytes.get()) {}

  // A line of fixed texts and at most three numbers fits into the room that this makes.
  void StartLine() {
    if (_next > _bytes.get() + kCapacity - kMostLineBytes) Send();
  }
  void Put(char c) { *_next++ = c; }
  template <typename Number>
  void PutNumber(Number value) {
    _next = std::to_chars(_next, _next + kMostNumberBytes, value).ptr;
  }

  // Text of any length.
  void PutText(std::string_view text) {
    Send();
    _stream.Write(text.data(), text.size());
  }

  KOVAResult Send() {
    const KOVAResult result =
        _stream.Write(_bytes.get(), static_cast<std::size_t>(_next - _bytes.get()));
    _next = _bytes.get();
    return result;
  }

 private:
  static constexpr std::size_t kCapacity = std::size_t{256} << 10;
  static constexpr std::size_t kMostNumberBytes = 32;
  static constexpr std::size_t kMostLineBytes = 4 * kMostNumberBytes;

  KOVAOutputStream& _stream;
  std::unique_ptr<char[]> _bytes;
  char* _next;
};

std::string toUtf8(const KOVAString& text) {
  KOVAStringOutputStream bytes;
  bytes.Write(text);
  return {bytes.GetBytes(), bytes.GetByteCount()};
}

// Names of groups. Readers take the groups of one name as one, and end a name at a blank or a
// comment sign, so names are made of one word each and differ from each other.
class GroupNames {
 public:
  std::string Make(const KOVAString& name, const KOVAString& fallback) {
    std::string word = toUtf8(name.isEmpty() ? fallback : name);
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

template <typename Coordinate>
KOVAResult writeVertices(const Mesh& mesh, LineBuffer& lines) {
  for (const Point& point : mesh.vertices) {
    lines.StartLine();
    lines.Put('v');
    for (const double coordinate : {point.x, point.y, point.z}) {
      lines.Put(' ');
      lines.PutNumber(static_cast<Coordinate>(coordinate));
    }
    lines.Put('\n');
  }
  return lines.Send();
}

KOVAResult writeFaces(const Mesh& mesh, std::uint64_t firstIndex, LineBuffer& lines) {
  for (const Triangle& triangle : mesh.triangles) {
    lines.StartLine();
    lines.Put('f');
    for (const std::uint32_t corner : triangle.corners) {
      lines.Put(' ');
      lines.PutNumber(firstIndex + corner);
    }
    lines.Put('\n');
  }
  return lines.Send();
}

std::string makeHead(const Model& model) {
  std::uint64_t vertices = 0;
  std::uint64_t triangles = 0;
  for (const Part& part : model.parts) {
    vertices += static_cast<std::uint64_t>(part.mesh.vertices.size());
    triangles += static_cast<std::uint64_t>(part.mesh.triangles.size());
  }
  return "# Written by KOVABase\n# parts: " + std::to_string(model.parts.size()) +
         ", vertices: " + std::to_string(vertices) + ", triangles: " + std::to_string(triangles) +
         "\n";
}

}  // namespace

KOVAResult ObjWriter::Write(const Model& model, KOVAOutputStream& stream, Report&) {
  LineBuffer lines(stream);
  GroupNames names;
  lines.PutText(makeHead(model));
  std::uint64_t firstIndex = 1;
  KOVAResult result = KOVAResultCode::kSuccess;
  for (const Part& part : model.parts) {
    const Mesh& mesh = part.mesh;
    lines.PutText("g " + names.Make(part.name, model.name) + "\n");
    result &= mesh.isSinglePrecision ? writeVertices<float>(mesh, lines)
                                     : writeVertices<double>(mesh, lines);
    result &= writeFaces(mesh, firstIndex, lines);
    if (result.IsFailure()) return result;
    firstIndex += static_cast<std::uint64_t>(mesh.vertices.size());
  }
  return stream.Flush();
}

}  // namespace kova::translators
