#include "apps/kova-generate/StepFile.h"

#include "kovabase/strings/KOVAString.h"
#include "kovabase/strings/KOVAStringISO1030321Writer.h"

#include <array>
#include <charconv>
#include <cstdio>

namespace kova::generate {

namespace {

template <class Value, class Function>
std::string joinList(const std::vector<Value>& values, const Function& toItem) {
  std::string text = "(";
  for (const Value& value : values) {
    if (text.size() > 1) text += ',';
    text += toItem(value);
  }
  return text + ')';
}

}  // namespace

std::string toReal(double value) {
  std::array<char, 32> digits;
  // Adding zero leaves no negative zero.
  char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), value + 0.0).ptr;
  std::string text(digits.data(), end);
  const std::size_t exponent = text.find('e');
  if (exponent != std::string::npos) text[exponent] = 'E';
  if (text.find('.') == std::string::npos) {
    text.insert(exponent == std::string::npos ? text.size() : exponent, ".");
  }
  return text;
}

std::string toList(const std::vector<double>& values) { return joinList(values, toReal); }

std::string toList(const std::vector<int>& values) {
  return joinList(values, [](int value) { return std::to_string(value); });
}

std::string toList(const std::vector<Reference>& references) {
  return joinList(references, [](Reference item) { return '#' + std::to_string(item.number); });
}

std::string toText(std::string_view utf8) {
  std::string doubled;
  bool isLatin = true;
  for (const char c : utf8) {
    if (c == '\'' || c == '\\') doubled += c;
    doubled += c;
    // U+0080 to U+00FF begin with 0xC2 or 0xC3.
    if (static_cast<unsigned char>(c) > 0xC3) isLatin = false;
  }
  std::string text = "'";
  if (isLatin) {
    for (std::size_t i = 0; i < doubled.size(); ++i) {
      unsigned code = static_cast<unsigned char>(doubled[i]);
      if (code < 0x80) {
        text += doubled[i];
        continue;
      }
      code = (code & 0x1F) << 6 | (static_cast<unsigned char>(doubled[++i]) & 0x3F);
      std::array<char, 8> escape;
      std::snprintf(escape.data(), escape.size(), "\\X\\%02X", code);
      text += escape.data();
    }
  } else {
    const KOVAString name(doubled.c_str(), "UTF-8");
    KOVAStringISO1030321Writer writer;
    const char* ascii = nullptr;
    if (writer.ConvertToASCII(name, ascii).IsSuccess() && ascii) text += ascii;
  }
  return text + '\'';
}

void StepFile::Begin(std::string_view name) {
  Write("ISO-10303-21;\nHEADER;\nFILE_DESCRIPTION((");
  Write(toText("Sample assembly of kova-generate"));
  Write("),'2;1');\nFILE_NAME(");
  Write(toText(name));
  Write(
      ",'2026-01-01T00:00:00',(''),(''),'kova-generate','','');\n"
      "FILE_SCHEMA(('AP242_MANAGED_MODEL_BASED_3D_ENGINEERING_MIM_LF { 1 0 10303 442 1 1 4 }'));\n"
      "ENDSEC;\nDATA;\n");
}

void StepFile::End() { Write("ENDSEC;\nEND-ISO-10303-21;\n"); }

Reference StepFile::WriteRecord() {
  ++_last;
  Write('#' + std::to_string(_last) + '=');
  _record += ";\n";
  Write(_record);
  return {_last};
}

void StepFile::Write(std::string_view text) {
  _stream.Write(text.data(), text.size());
  _bytes += text.size();
}

}  // namespace kova::generate
