#include "kovabase/io/KOVAStreamFormatter.h"

#include "kovabase/strings/KOVAFloatUtil.h"

#include <algorithm>
#include <charconv>

namespace {

// Sign and digits of any 64-bit integer.
constexpr std::size_t kIntegerTextSize = 24;

template <typename Integer>
KOVAStreamFormatter& writeInteger(KOVAStreamFormatter& formatter, Integer value) {
  char text[kIntegerTextSize];
  const char* end = std::to_chars(text, text + kIntegerTextSize, value).ptr;
  return formatter.WriteText(text, static_cast<std::size_t>(end - text));
}

}  // namespace

KOVAStreamFormatter& KOVAStreamFormatter::operator<<(long long value) {
  return writeInteger(*this, value);
}

KOVAStreamFormatter& KOVAStreamFormatter::operator<<(unsigned long long value) {
  return writeInteger(*this, value);
}

KOVAStreamFormatter& KOVAStreamFormatter::operator<<(double value) {
  char text[KOVAFloatUtil::kTextSize];
  const int characters = KOVAFloatUtil::ToText(value, text);
  return WriteText(text, static_cast<std::size_t>(characters));
}

KOVAStreamFormatter& KOVAStreamFormatter::EndLine() {
  _isInLine = false;
  if (_stream != nullptr) _stream->Write("\n", 1);
  return *this;
}

void KOVAStreamFormatter::StartLine() {
  static constexpr char kBlanks[] = "                                                ";
  static constexpr int kBlankCount = static_cast<int>(sizeof kBlanks) - 1;
  _isInLine = true;
  for (int missing = _indentation * kIndentation; missing > 0; missing -= kBlankCount) {
    _stream->Write(kBlanks, static_cast<std::size_t>(std::min(missing, kBlankCount)));
  }
}

KOVAStreamFormatter& KOVAEndLine(KOVAStreamFormatter& formatter) { return formatter.EndLine(); }
