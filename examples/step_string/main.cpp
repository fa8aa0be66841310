// Decodes a string of a STEP file and converts it to a code page.
// Usage: step_string [STRING [CODEPAGE]]

#include <kovabase/KOVABase.h>

#include <cstdio>
#include <string>

namespace {

std::string convert(const KOVAString& text, const char* codepage) {
  const int size = text.getConvertToMBCSSize(codepage);
  std::string bytes(static_cast<std::size_t>(size), '\0');
  // Where the code page lacks a character, '?' stands for it.
  text.convertToMBCS(bytes.data(), size, codepage, true, '?');
  bytes.resize(bytes.find('\0'));
  return bytes;
}

}  // namespace

int main(int count, char** arguments) {
  const char* const escaped =
      count > 1 ? arguments[1] : R"(Gr\S\v\S\_e \X2\2300\X0\ 5 caf\X2\00E9\X0\)";
  const char* const codepage = count > 2 ? arguments[2] : "ISO-8859-1";

  KOVAString text;
  KOVAStringISO1030321Reader reader;
  if (reader.ConvertFromASCII(escaped, text).IsFailure()) {
    std::fprintf(stderr, "malformed escape in '%s'\n", escaped);
    return 1;
  }
  if (KOVAString("", codepage).getBadConversion()) {
    std::fprintf(stderr, "unknown code page '%s'\n", codepage);
    return 1;
  }

  std::printf("UTF-8: %s\n%s:", convert(text, "UTF-8").c_str(), codepage);
  for (const char byte : convert(text, codepage)) {
    std::printf(" %02X", static_cast<unsigned char>(byte));
  }
  std::printf("\n");
}
