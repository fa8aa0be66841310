// A program of another project: results, arrays and strings through the installed headers, the null
// reference of an array in an optimised build, and what must be one and the same on both sides of
// the library's border: the types of exceptions and events.

#include <kovabase/KOVABase.h>

#include <cstdio>
#include <cstring>

namespace {

class Listener : public KOVCEventListener {
 public:
  void HandleEvent(KOVCEvent& event) override {
    if (dynamic_cast<KOVAWarningEvent*>(&event) != nullptr) ++warnings;
  }
  int warnings = 0;
};

}  // namespace

int main() {
  int failures = 0;
  const auto check = [&failures](bool ok, const char* what) {
    if (ok) return;
    std::fprintf(stderr, "failed: %s\n", what);
    ++failures;
  };

  KOVAResult result = KOVAResultCode::kSuccess;
  result &= KOVAResult(KOVAResultCode::kInvalidFile);
  check(std::strcmp(result.GetMessage(), "Invalid file") == 0, "the text of a result");

  KOVADynamicArray<KOVAString> names;
  names.add(KOVAString("caf\xC3\xA9", "UTF-8"));
  names.add(names[0] + KOVAString(" au lait", "UTF-8"));
  char text[32];
  check(names[1].convertToUTF8(text, sizeof text) == KOVAResultCode::kSuccess, "UTF-8 of a string");
  check(std::strcmp(text, "caf\xC3\xA9 au lait") == 0, "the joined text");
  check(&names[-1] == nullptr && &names[names.size()] == nullptr, "the null reference of an array");

  Listener listener;
  KOVCEventBus::GetEventBus().AddListener(&listener);
  KOVAWarningEvent::Fire("%d per cent", 100);
  KOVCEventBus::GetEventBus().RemoveListener(&listener);
  check(listener.warnings == 1, "an event of the library, told by its class");

  unsigned char bytes[] = {0, 0, 0, 1};
  KOVADefaultBinaryBuffer buffer(bytes, sizeof bytes);
  int value = 0;
  check(buffer.ReadInt(value).IsSuccess() && value == 1, "an integer of a buffer");
  const char* message = "nothing";
  try {
    buffer.ReadInt(value);
  } catch (const Gk_Exception& exception) {
    message = exception.getMessage();
  }
  check(std::strcmp(message, "End of Buffer.") == 0, "an exception of the library");

  std::printf("%s: %d strings, %d failures\n", text, names.size(), failures);
  return failures;
}
