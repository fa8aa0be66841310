// A complete small translator of one file: writes points in inches, reads them back, converts them
// to millimetres and shows what a broken file says.
// Usage: point_format FILE   (the file is created)

#include "PointFormat.h"
#include <cstdio>

namespace {

// Shows the warnings and errors that the reader fires.
class Messages : public KOVCEventListener {
 public:
  Messages() { KOVCEventBus::GetEventBus().AddListener(this); }
  ~Messages() override { KOVCEventBus::GetEventBus().RemoveListener(this); }

  void HandleEvent(KOVCEvent& event) override {
    KOVAStringOutputStream text;
    event.GetFormattedDescription(&text);
    std::printf("  %s", text.GetBytes());
  }
};

void writeText(const KOVAFilePath& path, const char* text) {
  std::FILE* stream = path.OpenFile("w");
  if (stream == nullptr) return;
  std::fputs(text, stream);
  std::fclose(stream);
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::fprintf(stderr, "usage: %s FILE\n", arguments[0]);
    return 2;
  }
  const Messages messages;
  const KOVAFilePath path(arguments[1]);

  PointFile written;
  written.unit = KOVAUnitInch;
  written.points = {KOVAVector(0.0, 0.0, 0.0), KOVAVector(10.0, 0.0, 2.5)};
  KOVAResult result = writePointFile(path, written);
  std::printf("written: %s\n", result.GetMessage());

  PointFile read;
  result = readPointFile(path, read);
  const double toMillimetres = KOVAUnitValue::GetScalingFactor(read.unit, KOVAUnitMillimeter);
  std::printf("read: %s, %zu points\n", result.GetMessage(), read.points.size());
  for (const KOVAVector& point : read.points) {
    const KOVAVector scaled = point * toMillimetres;
    std::printf("  %g %g %g mm\n", scaled[0], scaled[1], scaled[2]);
  }

  writeText(path, "POINTS 1\nUNIT INCH\n2\n0 0 0\n10 ten 2.5\n");
  result = readPointFile(path, read);
  std::printf("broken: %s\n", result.GetMessage());
  return 0;
}
