// Every accessor and builder of a path against a plain model that works on whole texts.

#include "kovabase/files/KOVAFilePath.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using Text = std::u16string;

constexpr std::size_t kNone = Text::npos;

void require(bool holds) {
  if (!holds) std::abort();
}

KOVAString make(const Text& text) {
  return KOVAString::fromUnits(reinterpret_cast<const unsigned short*>(text.data()),
                               static_cast<int>(text.size()));
}

bool isSame(const KOVAString& text, const Text& wanted) {
  if (static_cast<std::size_t>(text.length()) != wanted.size()) return false;
  for (int i = 0; i < text.length(); ++i) {
    if (text.charAt(i) != wanted[static_cast<std::size_t>(i)]) return false;
  }
  return true;
}

bool startsWith(const Text& text, const Text& start) {
  return text.compare(0, start.size(), start) == 0;
}

Text nameOf(const Text& path) {
  const std::size_t separator = path.rfind(u'\\');
  return separator == kNone ? path : path.substr(separator + 1);
}

Text directoryOf(const Text& path) {
  const std::size_t separator = path.rfind(u'\\');
  return separator == kNone ? Text() : path.substr(0, separator);
}

Text normalise(Text text, bool replaceInvalid) {
  for (char16_t& unit : text) {
    if (unit == u'/') unit = u'\\';
  }
  if (text.size() > 255) {
    if (startsWith(text, u"\\\\?\\")) {
      if (startsWith(text, u"\\\\?\\\\\\")) text = u"\\\\?\\UNC\\" + text.substr(6);
    } else if (startsWith(text, u"\\\\")) {
      text = u"\\\\?\\UNC\\" + text.substr(2);
    } else {
      text = u"\\\\?\\" + text;
    }
  }
  if (!replaceInvalid || nameOf(text).empty()) return text;
  Text name = nameOf(text);
  for (char16_t& unit : name) {
    if (Text(u"\\/|\":*?<>").find(unit) != kNone) unit = u'_';
  }
  const bool hasSeparator = text.find(u'\\') != kNone;
  return hasSeparator ? directoryOf(text) + u"\\" + name : name;
}

bool endsWithSeparator(const Text& text) { return !text.empty() && text.back() == u'\\'; }

std::vector<Text> split(const Text& text) {
  std::vector<Text> tokens;
  if (text.empty()) return tokens;
  std::size_t start = 0;
  for (std::size_t end = 0; end != kNone; start = end + 1) {
    end = text.find(u'\\', start);
    tokens.push_back(text.substr(start, end == kNone ? kNone : end - start));
    if (end == kNone) break;
  }
  return tokens;
}

Text common(const Text& path, const Text& other) {
  if (nameOf(path).empty()) return {};
  const std::vector<Text> tokens = split(path);
  const std::vector<Text> otherTokens = split(directoryOf(other));
  Text result;
  for (std::size_t i = 0; i < tokens.size() && i < otherTokens.size(); ++i) {
    if (!make(tokens[i]).equalsIgnoreCase(make(otherTokens[i]))) break;
    result += tokens[i] + u"\\";
  }
  return normalise(result, false);
}

std::size_t extensionIndex(const Text& path, bool first) {
  const std::size_t start = path.size() - nameOf(path).size();
  const std::size_t index = first ? path.find(u'.', start) : path.rfind(u'.');
  return index == kNone || index < start ? kNone : index;
}

Text replaceExtension(const Text& path, bool first, const Text& extension) {
  const std::size_t index = extensionIndex(path, first);
  return normalise((index == kNone ? path : path.substr(0, index)) + extension, false);
}

void check(const Text& given, const Text& other, bool replaceInvalid) {
  const KOVAFilePath path(make(given), replaceInvalid);
  const Text wanted = normalise(given, replaceInvalid);
  const Text name = nameOf(wanted);
  require(isSame(path.GetPath(), wanted));
  require(isSame(path.GetName(), name));
  require(isSame(path.GetDirectory(), directoryOf(wanted)));
  require(isSame(path.GetNameWithoutExtension(), name.substr(0, name.find(u'.'))));
  require(isSame(path.GetNameWithoutLastExtension(), name.substr(0, name.rfind(u'.'))));
  const std::size_t dot = name.rfind(u'.');
  const Text extension = dot == kNone ? Text() : name.substr(dot + 1);
  require(isSame(path.GetLastExtension(), extension));
  require(path.IsValid() == !wanted.empty());
  const bool hasDrive = wanted.size() > 2 && wanted[1] == u':' && wanted[2] == u'\\';
  require(path.IsAbsolute() == (startsWith(wanted, u"\\") || hasDrive));
  const Text askedFor = startsWith(other, u".") ? other.substr(1) : other;
  require(path.HasLastExtensionIgnoringCase(make(other)) ==
          make(extension).equalsIgnoreCase(make(askedFor)));

  const Text joint = endsWithSeparator(given) ? u"" : u"\\";
  require(isSame(KOVAFilePath(make(given), make(other), replaceInvalid).GetPath(),
                 normalise(given + joint + other, replaceInvalid)));
  const bool isExtension = startsWith(other, u".");
  const Text sumJoint = isExtension || endsWithSeparator(wanted) ? u"" : u"\\";
  require(isSame((path + make(other)).GetPath(), normalise(wanted + sumJoint + other, false)));
  KOVAFilePath extended(path);
  extended.AddExtension(make(other));
  require(isSame(extended.GetPath(), wanted + u"." + other));
  require(isSame(path.ReplaceFirstExtension(make(other)).GetPath(),
                 replaceExtension(wanted, true, other)));
  require(isSame(path.ReplaceLastExtension(make(other)).GetPath(),
                 replaceExtension(wanted, false, isExtension ? other : u"." + other)));

  const KOVAFilePath otherPath(make(other));
  require(
      isSame(path.FindCommonPath(otherPath).GetPath(), common(wanted, normalise(other, false))));
  require(isSame(path.GetPath(), wanted));

  // What these find depends on the machine; they must come back.
  path.DoesFileExist();
  path.DoesDirectoryExist();
  const KOVAFilePath resolved = path.ResolveAgainst(otherPath, replaceInvalid);
  require(resolved.IsValid() == !name.empty());
}

// Few bytes make long and telling paths: some are rare units, some repeat the last unit.
Text decode(const std::uint8_t* data, std::size_t size) {
  static constexpr char16_t kUnits[] = {u'\\', u'/', u'.', u'?', u':', u'U', u'N',   u'C',
                                        u'\\', u'/', u'.', u'|', u'"', u'*', 0,      0xE9,
                                        0xC9,  u'<', u'>', u'a', u'A', u'_', 0xD83D, 0xDE00,
                                        u' ',  u'c', u's', u'b', u'x', u'-', 0xDC5C, 0xFFFF};
  Text text;
  for (std::size_t i = 0; i < size; ++i) {
    if (data[i] < 0x80) {
      text += kUnits[data[i] % 32];
    } else if (data[i] < 0xC0) {
      text.append(data[i] & 0x3FU, text.empty() ? u'y' : text.back());
    } else {
      text += static_cast<char16_t>(u'a' + (data[i] & 0xFU));
    }
  }
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2 || size > 512) return 0;
  const std::size_t middle = 2 + data[1] % (size - 1);
  check(decode(data + 2, middle - 2), decode(data + middle, size - middle), (data[0] & 1) != 0);
  return 0;
}
