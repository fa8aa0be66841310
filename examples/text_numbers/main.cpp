// Reads numbers out of texts, forgivingly and strictly, and writes them back.

#include <kovabase/KOVABase.h>

#include <cstdio>

namespace {

void showInteger(const char* text) {
  int value = -1;
  const KOVAResult result = KOVAStringToInteger(KOVAString(text), value);
  std::printf("'%s': %s, %d, %s\n", text, KOVAResult::GetOKKOString(result.IsSuccess()), value,
              Gk_StringParser(text).isInteger() ? "an integer" : "not just an integer");
}

}  // namespace

int main() {
  showInteger("42");
  showInteger("42 mm");
  showInteger("mm 42");
  showInteger("99999999999");

  // [split]
  const KOVAStringTokenizer fields("0.1;1e-3;;2,5", ';');
  for (int i = 0; i < fields.GetTokenCount(); ++i) {
    KOVAString field;
    fields.GetToken(i, field);
    double value = 0.0;
    if (KOVAStringToDouble(field, value).IsFailure()) {
      std::printf("field %d: no number\n", i);
      continue;
    }
    std::printf("field %d: %g\n", i, value);
  }
  // [split]

  // [strict]
  // The whole text must be the number: the way to read what people have typed.
  const Gk_StringParser typed("2,5");
  std::printf("2,5 is %s\n", typed.isReal() ? "a number" : "no number");
  // [strict]

  // [write]
  // The shortest text that reads back to the same double.
  char text[32];
  KOVAStringFromDouble(0.1 + 0.2).convertToUTF8(text, sizeof text);
  std::printf("%s\n", text);
  // [write]
  return 0;
}
