// Reads texts in three code pages, compares them, and writes them in a code page that lacks some of
// their characters.

#include <kovabase/KOVABase.h>

#include <cstdio>
#include <string>

namespace {

// [to-bytes]
std::string toBytes(const KOVAString& text, const char* codepage) {
  std::string bytes(static_cast<std::size_t>(text.getConvertToMBCSSize(codepage)), '\0');
  const int size = static_cast<int>(bytes.size());
  // '?' stands for what the code page lacks.
  if (text.convertToMBCS(bytes.data(), size, codepage, true, '?').IsFailure()) return {};
  bytes.resize(bytes.find('\0'));
  return bytes;
}
// [to-bytes]

}  // namespace

int main() {
  // [from-bytes]
  const KOVAString german(
      "Gr\xF6\xDF"
      "e",
      "ISO-8859-1");
  const KOVAString japanese("\x90\x6D\x96\xDA", "Shift_JIS");
  const KOVAString utf8("Größe", "UTF-8");
  // [from-bytes]

  std::printf("%s: %d units\n", toBytes(german, "UTF-8").c_str(), german.length());
  std::printf("%s: %d units\n", toBytes(japanese, "UTF-8").c_str(), japanese.length());
  std::printf("equal whatever they came from: %d\n", german == utf8);

  // [fold]
  const KOVAString upper("GRÖSSE", "UTF-8");
  std::printf("equal but for case: %d\n", upper.equalsIgnoreCase(german));
  // [fold]

  std::printf("in US-ASCII: %s\n", toBytes(german, "US-ASCII").c_str());

  // [unknown]
  const KOVAString guess("text", "no-such-code-page");
  if (guess.getBadConversion()) std::printf("an unknown code page: the default one was used\n");
  // [unknown]

  // [units]
  // Lengths and positions count UTF-16 units: a character outside the basic plane has two.
  const KOVAString clef(0x1D11E);
  // [units]
  std::printf("one character, %d units, %d bytes of UTF-8\n", clef.length(),
              clef.getConvertToUTF8Size() - 1);
  return 0;
}
