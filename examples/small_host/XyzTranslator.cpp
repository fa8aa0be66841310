// A whole translator: reads lines "x y z" as one polyline.

#include <kovabase/KOVABase.h>

#include <cmath>
#include <translators/interface/Frame.h>
#include <translators/interface/Text.h>

using namespace kova::translators;

namespace {

class XyzReader : public KOVAFormatReader {
 public:
  explicit XyzReader(const ReadRequest& request)
      : KOVAFormatReader(request.file), _request(request), _input(openInput(request, _opened)) {
    _buffer = _input;
    _dataSections.add(new FunctionSectionReader(_buffer, [this] { return ReadPoints(); }));
  }

 private:
  KOVAResult ReadPoints() {
    if (_opened.IsFailure()) return _opened;  // has been reported
    ByteWindow window(_input, 65536);
    WordScanner words(window);
    Part part;
    Curve curve;
    while (!words.NextWord().empty()) {
      double xyz[3];
      for (int axis = 0; axis < 3; ++axis) {
        if (axis > 0) words.NextWord();
        if (!parseNumber(words.GetWord(), xyz[axis]) || !std::isfinite(xyz[axis])) {
          return _request.report.Fail(KOVAResultCode::kInvalidFile, Place::Line(words.GetLine()),
                                      "a coordinate is expected");
        }
      }
      part.points.add({xyz[0], xyz[1], xyz[2]});
      if (++curve.pointCount < 2) continue;
      const Point& last = part.points[static_cast<int>(curve.pointCount) - 2];
      curve.length += std::hypot(xyz[0] - last.x, xyz[1] - last.y, xyz[2] - last.z);
    }
    if (curve.pointCount >= 2) part.curves.add(curve);
    addPart(_request.model, part);
    return KOVAResultCode::kSuccess;
  }

  const ReadRequest _request;
  KOVAResult _opened;
  KOVABufferHandle _input;
};

constexpr Description kDescription{"lines of coordinates", ".xyz"};

}  // namespace

int KOVATranslatorInterfaceNumber() { return kInterfaceNumber; }
void KOVATranslatorInitialize() {}
void KOVATranslatorFinalize() {}
const Description* KOVATranslatorDescribe() { return &kDescription; }
KOVAFormatReader* KOVATranslatorCreateReader(const ReadRequest* request) {
  return new XyzReader(*request);
}
