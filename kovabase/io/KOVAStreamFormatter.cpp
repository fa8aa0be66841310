#include "kovabase/io/KOVAStreamFormatter.h"

#include "kovabase/strings/KOVAFloatUtil.h"
#include "kovabase/strings/KOVAString.h"

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

KOVAStreamFormatter& KOVAStreamFormatter::operator<<(const KOVAString& text) {
  if (_stream == nullptr || text.isEmpty()) return *this;
  if (!_isInLine) StartLine();
  _stream->Write(text);
  return *this;
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

KOVAStreamFormatter::KOVAStreamFormatterMargin::KOVAStreamFormatterMargin(
    KOVAStreamFormatter& formatter)
    : _formatter(formatter) {
  ++_formatter._indentation;
}

KOVAStreamFormatter::KOVAStreamFormatterMargin::~KOVAStreamFormatterMargin() {
  --_formatter._indentation;
}

const char* KOVAStreamFormatter::KOVAStreamFormatterMargin::GetName() {
  return "KOVAStreamFormatterMargin";
}

KOVAStreamFormatter::KOVAStreamFormatterObject::KOVAStreamFormatterObject(
    KOVAStreamFormatter& formatter, const char* name)
    : _formatter(formatter) {
  if (name != nullptr && *name != 0) _formatter << name << ' ';
  _formatter << '{' << KOVAEndLine;
  ++_formatter._indentation;
}

KOVAStreamFormatter::KOVAStreamFormatterObject::~KOVAStreamFormatterObject() {
  --_formatter._indentation;
  if (_formatter._isInLine) _formatter << KOVAEndLine;
  _formatter << '}' << KOVAEndLine;
}

const char* KOVAStreamFormatter::KOVAStreamFormatterObject::GetName() {
  return "KOVAStreamFormatterObject";
}

KOVAStreamFormatter& KOVAEndLine(KOVAStreamFormatter& formatter) { return formatter.EndLine(); }
