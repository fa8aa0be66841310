// A program of another project: results, arrays and strings through the installed headers, and the
// null reference of an array in an optimised build.

#include <kovabase/KOVABase.h>

#include <cstdio>
#include <cstring>

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

  std::printf("%s: %d strings, %d failures\n", text, names.size(), failures);
  return failures;
}
