// A translator of another project: files of corners, three coordinates in a line, three lines for a
// triangle.

#include "translators/interface/Translator.h"

#include "translators/interface/ByteWindow.h"
#include "translators/interface/Frame.h"
#include "translators/model/MeshBuilder.h"

#include <charconv>

namespace {

using namespace kova::translators;

class CornersReader : public KOVAFormatReader {
 public:
  explicit CornersReader(const ReadRequest& request)
      : KOVAFormatReader(request.file), _request(request) {
    KOVAResult opened;
    _buffer = openInput(request, opened);
    _headerSections.add(new FunctionSectionReader(_buffer, [opened] { return opened; }));
    _dataSections.add(new FunctionSectionReader(_buffer, [this] { return ReadCorners(); }));
  }

 private:
  KOVAResult ReadCorners() {
    ByteWindow window(_buffer, 4096);
    window.Require(4096);
    MeshBuilder builder(true);
    Point corners[3];
    double* const coordinates[3] = {&corners[0].x, &corners[1].x, &corners[2].x};
    const char* next = window.begin();
    for (std::size_t i = 0; i < 9; ++i) {
      while (next < window.end() && (*next == ' ' || *next == '\n')) ++next;
      const auto read = std::from_chars(next, window.end(), coordinates[i / 3][i % 3]);
      if (read.ec != std::errc()) {
        const auto offset = static_cast<std::uint64_t>(next - window.begin());
        return _request.report.Fail(KOVAResultCode::kInvalidFile, Place::Byte(offset),
                                    "a coordinate is expected");
      }
      next = read.ptr;
    }
    builder.AddTriangle(corners);
    Part part;
    part.meshes.add(builder.Finish());
    addPart(_request.model, part);
    return KOVAResultCode::kSuccess;
  }

  ReadRequest _request;
};

}  // namespace

int KOVATranslatorInterfaceNumber() { return kInterfaceNumber; }
void KOVATranslatorInitialize() {}
void KOVATranslatorFinalize() {}
const Description* KOVATranslatorDescribe() {
  static constexpr Description kDescription{"Corners of triangles", ".corners"};
  return &kDescription;
}
KOVAFormatReader* KOVATranslatorCreateReader(const ReadRequest* request) {
  return new CornersReader(*request);
}
