#include "kovabase/options/KOVACfgFile.h"

#include "kovabase/containers/internal/HashIndex.h"
#include "kovabase/files/KOVAFilePath.h"
#include "kovabase/foundation/internal/Heap.h"
#include "kovabase/strings/Gk_StringParser.h"

#include <cstdarg>
#include <cstring>

using namespace KOVAResultCode;
using kova::internal::HashIndex;

namespace {

// Lines are read in pieces of at most this many bytes, their line feed included.
constexpr int kPieceBytes = 1023;
// Sections below this size are searched faster from end to end.
constexpr int kIndexedKeys = 8;

bool isWhiteSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

// A range of bytes, the end exclusive.
struct Bytes {
  const char* begin;
  const char* end;

  bool isEmpty() const { return begin == end; }
  int length() const { return static_cast<int>(end - begin); }
  Bytes stripped() const {
    Bytes text = *this;
    while (text.begin < text.end && isWhiteSpace(*text.begin)) ++text.begin;
    while (text.begin < text.end && isWhiteSpace(text.end[-1])) --text.end;
    return text;
  }
  const char* find(char c) const {
    return static_cast<const char*>(std::memchr(begin, c, static_cast<std::size_t>(end - begin)));
  }
};

}  // namespace

KOVACfgFileKey::~KOVACfgFileKey() = default;

void KOVACfgFileKey::AppendValue(const char* value) { _values.add(KOVAString(value)); }

void KOVACfgFileKey::AppendValue(const KOVAString& value) { _values.add(value); }

KOVAString KOVACfgFileKey::GetValue(int index) const {
  return index >= 0 && index < _values.size() ? _values[index] : KOVAString();
}

KOVAString KOVACfgFileKey::GetAllValues() const {
  KOVAString all;
  for (int i = 0; i < _values.size(); ++i) {
    if (i > 0) all.append(static_cast<unsigned short>(','));
    all.append(_values[i]);
  }
  return all;
}

KOVACfgFileSection::~KOVACfgFileSection() {
  for (KOVACfgFileKey* key : _keys) delete key;
  kova::internal::destroy(_index);
}

KOVAString KOVACfgFileSection::GetName() const { return _name.toKOVAString(); }

KOVACfgFileKey* KOVACfgFileSection::GetKey(int index) const {
  return index >= 0 && index < _keys.size() ? _keys[index] : nullptr;
}

KOVACfgFileKey* KOVACfgFileSection::findKey(const char* name) const {
  return name != nullptr ? findKey(KOVAString(name)) : nullptr;
}

KOVACfgFileKey* KOVACfgFileSection::findKey(const KOVAString& name) const {
  if (_index == nullptr) {
    if (_keys.size() < kIndexedKeys) {
      for (KOVACfgFileKey* key : _keys) {
        if (key->_name == name) return key;
      }
      return nullptr;
    }
    _index = kova::internal::create<HashIndex>();
  }
  for (int i = _index->count(); i < _keys.size(); ++i) _index->add(_keys[i]->_name.hashCode(), i);
  const int position =
      _index->find(name.hashCode(), [&](int i) { return _keys[i]->_name == name; });
  return position >= 0 ? _keys[position] : nullptr;
}

KOVACfgFileKey* KOVACfgFileSection::createKey(const char* name) {
  return createKey(KOVAString(name));
}

KOVACfgFileKey* KOVACfgFileSection::createKey(const KOVAString& name) {
  _keys.add(nullptr);
  KOVACfgFileKey*& slot = _keys[_keys.size() - 1];
  try {
    slot = new KOVACfgFileKey(name);
  } catch (...) {
    _keys.removeAt(_keys.size() - 1);
    throw;
  }
  return slot;
}

/// Cuts a stream into the pieces that count as lines, and files what they say.
class KOVACfgFile::Parser {
 public:
  explicit Parser(KOVACfgFile& file) : _file(file), _section(file.createSection("")) {}

  /// @return false when the stream reported a read error.
  bool run(FILE* stream) {
    char block[65536];
    std::size_t bytes;
    while ((bytes = std::fread(block, 1, sizeof block, stream)) > 0) {
      Bytes rest{block, block + bytes};
      while (!rest.isEmpty()) rest.begin = takeFrom(rest);
    }
    if (_pieceLength > 0) finishPiece();
    return std::ferror(stream) == 0;
  }

 private:
  // Moves bytes into the current piece up to its end; the piece is parsed when it is complete.
  const char* takeFrom(Bytes bytes) {
    const int room = kPieceBytes - _pieceLength;
    if (bytes.length() > room) bytes.end = bytes.begin + room;
    if (const char* lineFeed = bytes.find('\n')) bytes.end = lineFeed + 1;
    const bool isComplete = bytes.end[-1] == '\n' || bytes.length() == room;
    if (_pieceLength == 0 && isComplete) {
      parsePiece(bytes);
    } else {
      std::memcpy(_piece + _pieceLength, bytes.begin, static_cast<std::size_t>(bytes.length()));
      _pieceLength += bytes.length();
      if (isComplete) finishPiece();
    }
    return bytes.end;
  }

  void finishPiece() {
    const Bytes piece{_piece, _piece + _pieceLength};
    _pieceLength = 0;
    parsePiece(piece);
  }

  void parsePiece(Bytes piece) {
    ++_line;
    if (const char* zero = piece.find('\0')) piece.end = zero;
    if (_line == 1 && piece.length() >= 3 && std::memcmp(piece.begin, "\xEF\xBB\xBF", 3) == 0) {
      piece.begin += 3;
      _codepage = "UTF-8";
    }
    const Bytes line = piece.stripped();
    if (line.isEmpty() || *line.begin == '#' || *line.begin == ';') return;
    if (*line.begin == '[') {
      parseHeader(line);
    } else {
      parseKey(line);
    }
  }

  void parseHeader(Bytes line) {
    const char* close = line.end;
    while (close > line.begin && close[-1] != ']') --close;
    if (close == line.begin) {
      _file.flagError("Incorrect syntax: line %ld:%s *** \"[section name]' expected.", _line,
                      Gk_ROString(line.begin, line.length()).getText());
      return;
    }
    const Bytes name = Bytes{line.begin + 1, close - 1}.stripped();
    _section = _file.createSection(Gk_ROString(name.begin, name.length()).getText());
  }

  void parseKey(Bytes line) {
    const char* separator = line.find('=');
    if (separator == nullptr) separator = line.find(':');
    Bytes key{line.begin, line.begin};
    Bytes value = key;
    if (separator != nullptr) {
      key = Bytes{line.begin, separator}.stripped();
      value = Bytes{separator + 1, line.end}.stripped();
    }
    if (key.isEmpty() || value.isEmpty()) {
      _file.flagError("Incorrect syntax: line %ld:%s *** \"key=value\" expected", _line,
                      Gk_ROString(line.begin, line.length()).getText());
      return;
    }
    KOVACfgFileKey* filed = _section->createKey(textOf(key));
    while (const char* comma = value.find(',')) {
      filed->AppendValue(textOf(Bytes{value.begin, comma}));
      value.begin = comma + 1;
    }
    filed->AppendValue(textOf(value));
  }

  KOVAString textOf(Bytes bytes) const {
    return KOVAString::fromBytes(bytes.begin, bytes.length(), _codepage);
  }

  KOVACfgFile& _file;
  KOVACfgFileSection* _section;
  const char* _codepage = nullptr;
  long _line = 0;
  int _pieceLength = 0;
  char _piece[kPieceBytes];
};

KOVACfgFile::KOVACfgFile() = default;

KOVACfgFile::~KOVACfgFile() {
  for (KOVACfgFileSection* section : _sections) delete section;
  kova::internal::destroy(_index);
}

KOVAResult KOVACfgFile::Load(const KOVAFilePath& path) {
  if (!path.IsValid()) return kInvalidArgument;
  FILE* stream = path.OpenFile("rt");
  if (stream == nullptr) return kFileOpenError;
  bool isRead = false;
  try {
    isRead = read(stream);
  } catch (...) {
    std::fclose(stream);
    throw;
  }
  std::fclose(stream);
  if (!isRead) return kFileOpenError;
  return _errors.size() == 0 ? kSuccess : kFailure;
}

KOVAResult KOVACfgFile::Load(FILE* stream) {
  if (stream == nullptr) return kInvalidArgument;
  return read(stream) && _errors.size() == 0 ? kSuccess : kFailure;
}

const char* KOVACfgFile::GetErrorMessage(int index) const {
  return index >= 0 && index < _errors.size() ? _errors[index].getText() : nullptr;
}

KOVACfgFileSection* KOVACfgFile::findSection(const char* name) const {
  if (_index == nullptr) return nullptr;
  const Gk_ROString sought(name);
  const int position =
      _index->find(sought.hashCode(), [&](int i) { return _sections[i]->_name == sought; });
  return position >= 0 ? _sections[position] : nullptr;
}

bool KOVACfgFile::ExistKey(const char* key, const char* section) const {
  return findKey(key, section) != nullptr;
}

int KOVACfgFile::GetArraySize(const char* key, const char* section) const {
  const KOVACfgFileKey* found = findKey(key, section);
  return found != nullptr ? found->GetNumValues() : 0;
}

bool KOVACfgFile::GetString(const char* key, KOVAString& value, int index,
                            const char* section) const {
  const KOVACfgFileKey* found = findKey(key, section);
  if (found == nullptr) return false;
  value = found->GetValue(index);
  return true;
}

bool KOVACfgFile::GetInt(const char* key, int& value, int index, const char* section) {
  KOVAString text;
  if (!GetString(key, text, index, section)) return false;
  const Gk_StringParser parser(text);
  if (!parser.isInteger()) {
    flagError("Incorrect syntax: key:%s *** integer value expected.", key);
    return false;
  }
  value = parser.getInteger();
  return true;
}

bool KOVACfgFile::GetDouble(const char* key, double& value, int index, const char* section) {
  KOVAString text;
  if (!GetString(key, text, index, section)) return false;
  const Gk_StringParser parser(text);
  if (!parser.isReal()) {
    flagError("Incorrect syntax: key:%s *** double value expected.", key);
    return false;
  }
  value = parser.getReal();
  return true;
}

bool KOVACfgFile::GetBool(const char* key, bool& value, int index, const char* section) {
  KOVAString text;
  if (!GetString(key, text, index, section)) return false;
  if (text.equalsIgnoreCase(KOVAString("true"))) {
    value = true;
  } else if (text.equalsIgnoreCase(KOVAString("false"))) {
    value = false;
  } else {
    flagError("Incorrect syntax: key:%s *** bool value \"true\" or \"false\" expected.", key);
    return false;
  }
  return true;
}

bool KOVACfgFile::GetLogical(const char* key, int& value, int index, const char* section) {
  KOVAString text;
  if (!GetString(key, text, index, section)) return false;
  const Gk_StringParser parser(text);
  if (text.equalsIgnoreCase(KOVAString("TRUE"))) {
    value = 1;
  } else if (text.equalsIgnoreCase(KOVAString("FALSE"))) {
    value = 0;
  } else if (parser.isInteger() && (parser.getInteger() == 0 || parser.getInteger() == 1)) {
    value = parser.getInteger();
  } else {
    flagError(
        "Incorrect syntax: key:%s *** integer \"0\" or \"1\" or string \"TRUE\" or \"FALSE\" "
        "expected.",
        key);
    return false;
  }
  return true;
}

KOVACfgFileSection* KOVACfgFile::createSection(const char* name) {
  if (KOVACfgFileSection* found = findSection(name)) return found;
  if (_index == nullptr) _index = kova::internal::create<HashIndex>();
  _sections.add(nullptr);
  const int position = _sections.size() - 1;
  try {
    _sections[position] = new KOVACfgFileSection(name);
    _index->add(_sections[position]->_name.hashCode(), position);
  } catch (...) {
    delete _sections[position];
    _sections.removeAt(position);
    throw;
  }
  return _sections[position];
}

void KOVACfgFile::flagError(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  Gk_String message = Gk_String::formatList(format, arguments);
  va_end(arguments);
  _errors.add(message);
}

void KOVACfgFile::removeWhiteSpaces(char* text) {
  if (text == nullptr) return;
  const Bytes stripped = Bytes{text, text + std::strlen(text)}.stripped();
  std::memmove(text, stripped.begin, static_cast<std::size_t>(stripped.length()));
  text[stripped.length()] = '\0';
}

bool KOVACfgFile::read(FILE* stream) { return Parser(*this).run(stream); }

const KOVACfgFileKey* KOVACfgFile::findKey(const char* key, const char* section) const {
  const KOVACfgFileSection* found = findSection(section);
  return found != nullptr ? found->findKey(key) : nullptr;
}
