#include "translators/step/StepText.h"

#include "kovabase/strings/KOVAStringISO10646Reader.h"
#include "kovabase/strings/KOVAStringISO8859Reader.h"
#include "translators/interface/Text.h"

#include <charconv>
#include <cstddef>
#include <string>
#include <system_error>

namespace kova::translators::step {

namespace {

class Decoder {
 public:
  explicit Decoder(std::string_view raw) : _raw(raw) {}

  KOVAString Run() {
    while (_at < _raw.size()) {
      const char c = _raw[_at];
      if (c == '\\') {
        if (TakeDirective()) continue;
      } else if (c == '\'') {
        ++_at;  // the first of two
      } else if (c == '\n' || c == '\r') {
        ++_at;
        continue;
      }
      if (_at < _raw.size()) _plain += _raw[_at++];
    }
    TakePlain();
    return _text;
  }

 private:
  std::string_view GetRest() const { return _raw.substr(_at); }

  void TakePlain() {
    if (_plain.empty()) return;
    // Blanks at the ends are part of the text.
    const std::size_t first = _plain.find_first_not_of(' ');
    if (first == std::string::npos) {
      AppendBlanks(_plain.size());
    } else {
      const std::size_t last = _plain.find_last_not_of(' ');
      AppendBlanks(first);
      _text.append(decodeText(std::string_view(_plain).substr(first, last + 1 - first)));
      AppendBlanks(_plain.size() - last - 1);
    }
    _plain.clear();
  }

  void AppendBlanks(std::size_t count) {
    for (; count > 0; --count) _text.append(static_cast<unsigned short>(' '));
  }

  void Append(const KOVAString& text, std::size_t bytes) {
    TakePlain();
    _text.append(text);
    _at += bytes;
  }

  // False when what stands at the backslash is no directive.
  bool TakeDirective() {
    const std::string_view rest = GetRest();
    if (rest.starts_with("\\\\")) {
      _plain += '\\';
      _at += 2;
      return true;
    }
    if (rest.starts_with("\\N\\") || rest.starts_with("\\F\\")) {
      _plain += ' ';
      _at += 3;
      return true;
    }
    if (rest.size() >= 4 && rest.starts_with("\\P") && rest[2] >= 'A' && rest[2] <= 'I' &&
        rest[3] == '\\') {
      _page = rest[2];
      _at += 4;
      return true;
    }
    if (rest.size() >= 4 && rest.starts_with("\\S\\")) return TakePageCharacter(rest);
    if (rest.starts_with("\\X\\")) return TakeByte(rest);
    if (rest.starts_with("\\X2\\")) return TakeUnits(rest);
    if (rest.starts_with("\\X4\\")) return TakeCodePoints(rest);
    return false;
  }

  bool TakePageCharacter(std::string_view rest) {
    const unsigned char c = static_cast<unsigned char>(rest[3]);
    if (c < ' ' || c > '~') return false;
    // An apostrophe is doubled here too.
    const std::size_t bytes = c == '\'' && rest.size() >= 5 ? 5 : 4;
    KOVAString text;
    if (_page == 'A') {
      KOVAStringISO8859Reader reader(std::string(rest.substr(0, 4)).c_str());
      if (reader.GetResult(text).IsFailure()) return false;
    } else {
      const char upper = static_cast<char>(c + 128);
      const std::string page = std::string("ISO-8859-") + static_cast<char>(_page - 'A' + '1');
      text = KOVAString::fromBytes(&upper, 1, page.c_str());
    }
    Append(text, bytes);
    return true;
  }

  bool TakeByte(std::string_view rest) {
    int code = 0;
    if (rest.size() < 5 || !ParseHex(rest.substr(3, 2), code)) return false;
    Append(code < ' ' ? KOVAString(int{' '}) : KOVAString(code), 5);
    return true;
  }

  // Where the digits end that begin behind "\X2\" or "\X4\"; 0 when "\X0\" does not follow.
  static std::size_t FindEnd(std::string_view rest) {
    const std::size_t end = rest.find_first_not_of("0123456789ABCDEFabcdef", 4);
    return end != std::string_view::npos && rest.substr(end).starts_with("\\X0\\") ? end : 0;
  }

  bool TakeUnits(std::string_view rest) {
    const std::size_t end = FindEnd(rest);
    if (end == 0) return false;
    KOVAStringISO10646Reader reader(std::string(rest.substr(0, end + 4)).c_str());
    KOVAString text;
    if (reader.GetResult(text).IsFailure()) return false;
    Append(text, end + 4);
    return true;
  }

  bool TakeCodePoints(std::string_view rest) {
    const std::size_t end = FindEnd(rest);
    if (end == 0 || (end - 4) % 8 != 0) return false;
    KOVAString text;
    for (std::size_t i = 4; i < end; i += 8) {
      int code = 0;
      if (!ParseHex(rest.substr(i, 8), code)) return false;
      text.append(KOVAString(code));
    }
    Append(text, end + 4);
    return true;
  }

  static bool ParseHex(std::string_view digits, int& code) {
    const char* const end = digits.data() + digits.size();
    const auto [behind, error] = std::from_chars(digits.data(), end, code, 16);
    return error == std::errc() && behind == end && code >= 0;
  }

  std::string_view _raw;
  std::size_t _at = 0;
  char _page = 'A';
  std::string _plain;
  KOVAString _text;
};

}  // namespace

KOVAString decodeString(std::string_view raw) { return Decoder(raw).Run(); }

}  // namespace kova::translators::step
