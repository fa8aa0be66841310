// Combines the outcomes of several steps, and reports the one that failed.

#include <kovabase/KOVABase.h>

#include <cstdio>

namespace {

KOVAResult readHeader() { return KOVAResultCode::kSuccess; }

// [optional]
KOVAResult readThumbnail() { return KOVAResultCode::kNotImplemented; }
// [optional]

// [fail]
KOVAResult readFaces(int found, int promised) {
  if (found == promised) return KOVAResultCode::kSuccess;
  // The event tells people what is wrong, the result tells the program.
  KOVAErrorEvent::Fire("the file promises %d faces and has %d", promised, found);
  return KOVAResultCode::kInvalidFile;
}
// [fail]

// [combine]
KOVAResult readFile(int faces) {
  KOVAResult result = readHeader();
  result &= readFaces(faces, 6);
  const KOVAResult thumbnail = readThumbnail();
  // A step that a format does not have is no failure.
  if (thumbnail != KOVAResultCode::kNotImplemented) result &= thumbnail;
  return result;
}
// [combine]

void show(const char* what, const KOVAResult& result) {
  std::printf("%s: %s, %s\n", what, KOVAResult::GetOKKOString(result.IsSuccess()),
              result.GetMessage());
}

}  // namespace

int main() {
  show("complete file", readFile(6));
  show("file with a face too few", readFile(5));

  // [any]
  // Of several parts it is enough when one could be read.
  KOVAResult parts = readFaces(6, 6);
  parts |= readFaces(5, 6);
  // [any]
  show("two parts, one of them broken", parts);

  // [undecided]
  const KOVAResult nobodyDecided;
  // [undecided]
  show("a result that nobody has set", nobodyDecided);
  return 0;
}
