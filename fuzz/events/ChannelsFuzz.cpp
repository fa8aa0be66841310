// Formatting through the channels against snprintf and a plain model of indentation, truncation and
// the second pass. Input: one byte for the depth, one for the length of a repeated text, then per
// conversion a byte of flags, one of width and one of precision, and literal bytes in between.

#include "kovabase/events/KOVAMessageChannels.h"
#include "kovabase/events/KOVCEventBus.h"
#include "kovabase/events/KOVCEventListener.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

// The formats are made up here.
#pragma GCC diagnostic ignored "-Wformat-nonliteral"

namespace {

constexpr const char* kNotice =
    "Warning: The following option has been truncated to 1023 characters!";

struct Recorder : KOVCEventListener {
  Recorder() { KOVCEventBus::GetEventBus().AddListener(this); }
  void HandleEvent(KOVCEvent& event) override {
    const char* const message = dynamic_cast<KOVATextEvent&>(event).GetMessage();
    texts.emplace_back(message != nullptr ? message : "");
  }
  std::vector<std::string> texts;
};

class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : _data(data), _size(size) {}
  std::uint8_t next() {
    if (_size == 0) return 0;
    --_size;
    return *_data++;
  }

 private:
  const std::uint8_t* _data;
  std::size_t _size;
};

std::string literal(Input& input) {
  std::string text;
  for (int count = input.next() % 16; count > 0; --count) {
    const char c = static_cast<char>(input.next());
    if (c == '\0') break;
    text += c;
    if (c == '%') text += c;
  }
  return text;
}

std::string conversion(Input& input, const char* types, bool mayHaveFlags) {
  std::string text = "%";
  const int flags = input.next();
  if (mayHaveFlags && (flags & 1) != 0) text += "-+ 0"[(flags >> 1) & 3];
  const int width = input.next();
  if (width >= 128) text += std::to_string(width - 127);
  const int precision = input.next();
  if (precision >= 128) text += "." + std::to_string((precision - 128) % 40);
  return text + types[static_cast<std::size_t>(flags >> 3) % std::strlen(types)];
}

std::string undoubled(const std::string& text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    result += text[i];
    if (text[i] == '%' && i + 1 < text.size() && text[i + 1] == '%') ++i;
  }
  return result;
}

void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static auto* const recorder = new Recorder;
  Input input(data, size);
  const int depth = static_cast<std::int8_t>(input.next());
  const std::string repeated(static_cast<std::size_t>(input.next()) * 8, '%');

  std::string format = literal(input) + conversion(input, "diuxXo", true);
  format += literal(input) + conversion(input, "s", false);
  format += literal(input) + conversion(input, "fFeEgG", true);
  format += literal(input) + conversion(input, "c", false) + literal(input);
  std::uint32_t numberBits = 0;
  std::uint64_t bits = 0;
  for (int i = 0; i < 4; ++i) numberBits = numberBits * 256 + input.next();
  const int number = static_cast<int>(numberBits);
  for (int i = 0; i < 8; ++i) bits = bits * 256 + input.next();
  double real = 0.0;
  std::memcpy(&real, &bits, sizeof real);
  const int character = input.next();

  std::vector<char> buffer(1 << 16);
  const int length = std::snprintf(buffer.data(), buffer.size(), format.c_str(), number,
                                   repeated.c_str(), real, character);
  require(length >= 0);
  const std::string indentation(static_cast<std::size_t>(std::max(depth, 0)) * 3, ' ');
  const bool isCut = indentation.size() + static_cast<std::size_t>(length) > 1023;
  // A character of zero ends the text.
  const auto cut = [](const std::string& prefix, const char* text, std::size_t count) {
    return (prefix + std::string(text, strnlen(text, count))).substr(0, 1023);
  };
  const std::size_t room = 1023 - std::min<std::size_t>(indentation.size(), 1023);
  const std::string indented =
      cut(indentation, buffer.data(), std::min(room, static_cast<std::size_t>(length)));
  const std::string plain =
      cut("", buffer.data(), std::min<std::size_t>(1023, static_cast<std::size_t>(length)));

  recorder->texts.clear();
  _KOVAInfoTab = _KOVAWarningTab = depth;
  KOVAInfo::Printf(format.c_str(), number, repeated.c_str(), real, character);
  KOVAInfo::PrintfAsItIs(format.c_str(), number, repeated.c_str(), real, character);
  KOVAInfo::NoTabPrintf(format.c_str(), number, repeated.c_str(), real, character);
  KOVAInfo::PrintfRaw(format.c_str());
  KOVAWarning::Printf(format.c_str(), number, repeated.c_str(), real, character);
  KOVAAssert::Printf(format.c_str(), number, repeated.c_str(), real, character);
  KOVAWarningEvent::Fire(character * 16, format.c_str(), number, repeated.c_str(), real, character);

  std::vector<std::string> expected;
  if (isCut) expected.emplace_back(kNotice);
  expected.push_back(undoubled(indented));
  expected.push_back(indented);
  expected.push_back(plain);
  expected.push_back(format);
  expected.push_back(indented);
  expected.push_back(plain);
  expected.push_back(
      std::string(buffer.data()).substr(0, static_cast<std::size_t>(character) * 16));
  require(recorder->texts == expected);
  return 0;
}
