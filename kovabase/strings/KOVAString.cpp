#include "kovabase/strings/KOVAString.h"

#include "kovabase/foundation/internal/Heap.h"
#include "kovabase/strings/internal/CaseFolding.h"
#include "kovabase/strings/internal/CodeUnits.h"
#include "kovabase/strings/internal/Codepage.h"

#include <climits>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>

using namespace kova::internal;

namespace {

constexpr int kSubstituteByte = 26;

std::size_t toSize(int count) { return static_cast<std::size_t>(count); }

int toPosition(std::size_t position) {
  return position == kNotFound ? -1 : static_cast<int>(position);
}

int saturate(long long count) { return count > INT_MAX ? INT_MAX : static_cast<int>(count); }

void copyUnits(unsigned short* out, const unsigned short* source, std::size_t count) {
  std::memcpy(out, source, count * sizeof *out);
}

unsigned short* resizeBlock(unsigned short* block, long long unitCount) {
  // The room stays countable by int, its terminator included.
  if (unitCount >= INT_MAX) throwAllocException();
  return static_cast<unsigned short*>(
      reallocate(block, static_cast<std::size_t>(unitCount + 1) * sizeof *block));
}

bool isIdentifierSafe(unsigned byte) {
  return byte != kSubstituteByte &&
         ((byte >= '0' && byte <= '9') || (byte >= 11 && byte <= 32) || byte == 34 ||
          (byte >= 37 && byte <= 63) || (byte >= 65 && byte <= 90) || byte == 95 ||
          (byte >= 97 && byte <= 122) || byte == 127);
}

// The conversions into buffers begin alike: with a usable buffer, and the empty text in it.
template <class Element>
bool begin(Element* buf, int size, KOVAResult& result) {
  if (buf == nullptr || size < 1) {
    result = KOVAResultCode::kInvalidArgument;
    return false;
  }
  buf[0] = 0;
  result = KOVAResultCode::kFailure;
  return true;
}

}  // namespace

// Memory. The text is always zero-terminated.

void KOVAString::throwExhausted() { throwAllocException(); }

// Only for an object without a block: makes the room, and leaves the text to the caller.
unsigned short* KOVAString::allocate(long long unitCount) {
  if (unitCount <= kInsideUnits) return _inside;
  unsigned short* const block = resizeBlock(nullptr, unitCount);
  setBlock(block, static_cast<int>(unitCount));
  return block;
}

// Keeps the text.
void KOVAString::grow(long long unitCount) {
  if (unitCount <= capacity()) return;
  unsigned short* const resized = resizeBlock(_onHeap ? block() : nullptr, unitCount);
  if (!_onHeap) copyUnits(resized, _inside, toSize(_length) + 1);
  setBlock(resized, static_cast<int>(unitCount));
}

// Grows by half at least, so that appending takes constant time per unit.
void KOVAString::growFor(long long unitCount) {
  const long long roomy = static_cast<long long>(capacity()) * 3 / 2 + 16;
  grow(unitCount > roomy || roomy >= INT_MAX ? unitCount : roomy);
}

// Gives back room that a conversion asked for and did not need.
void KOVAString::shrink() noexcept {
  if (!_onHeap || capacity() - _length < 64 + _length / 4) return;
  unsigned short* const old = units();
  if (_length <= kInsideUnits) {
    copyUnits(_inside, old, toSize(_length) + 1);
    std::free(old);
    _onHeap = false;
    return;
  }
  void* const resized = std::realloc(old, (toSize(_length) + 1) * sizeof *old);
  if (resized != nullptr) setBlock(static_cast<unsigned short*>(resized), _length);
}

void KOVAString::setLength(int unitCount) noexcept {
  _length = unitCount;
  units()[unitCount] = 0;
}

KOVAString::KOVAString(unsigned short unit) {
  _inside[0] = unit;
  setLength(1);
}

KOVAString::KOVAString(int codePoint) { assignUTF32(&codePoint, 1); }

KOVAString::KOVAString(const unsigned short* text) {
  long long count = 0;
  while (text != nullptr && text[count] != 0) ++count;
  assignUnits(text, count);
}

KOVAString::KOVAString(const char16_t* text) {
  const std::size_t count = text != nullptr ? std::char_traits<char16_t>::length(text) : 0;
  unsigned short* const out = allocate(static_cast<long long>(count));
  if (count > 0) std::memcpy(out, text, count * sizeof *text);
  setLength(static_cast<int>(count));
}

KOVAString::KOVAString(const int* text) {
  long long count = 0;
  while (text != nullptr && text[count] != 0) ++count;
  assignUTF32(text, count);
}

// Delegates, so that the destructor frees the block when a conversion throws.
KOVAString::KOVAString(const char* text, const char* codepage) : KOVAString() {
  const std::size_t count = text != nullptr ? std::strlen(text) : 0;
  assignBytes(text, static_cast<long long>(count), codepage);
}

KOVAString& KOVAString::operator=(const KOVAString& other) {
  if (this == &other) return *this;
  if (other._length <= capacity()) {
    copyUnits(units(), other.getUnits(), toSize(other._length) + 1);
    _length = other._length;
    _badConversion = other._badConversion;
  } else {
    KOVAString copy(other);
    releaseBlock();
    takeOver(copy);
  }
  return *this;
}

KOVAString& KOVAString::operator=(KOVAString&& other) noexcept {
  if (this == &other) return *this;
  releaseBlock();
  takeOver(other);
  return *this;
}

// The three below are for objects without a block.

void KOVAString::assignUnits(const unsigned short* source, long long count) {
  unsigned short* const out = allocate(count);
  _length = static_cast<int>(count);
  if (count > 0) copyUnits(out, source, toSize(_length));
  out[_length] = 0;
}

void KOVAString::assignBytes(const char* bytes, long long byteCount, const char* codepage) {
  unsigned short* const out = allocate(byteCount);
  const std::size_t count = static_cast<std::size_t>(byteCount);
  // ASCII is the lower half of the character set of every locale. So it needs no knowledge of the
  // default code page, which is not fixed before the program had time to set its locale.
  const CodepageKind kind = codepage == nullptr || *codepage == '\0'
                                ? CodepageKind::kASCIIBased
                                : kindOfCanonicalName(codepage);
  std::size_t done = 0;
  if (kind == CodepageKind::kLatin1) {
    widenLatin1(bytes, count, out);
    done = count;
  } else if (kind != CodepageKind::kOther) {
    done = widenASCII(bytes, count, out);
  }
  if (done < count || kind == CodepageKind::kOther) {
    readBytes(bytes, count, done, codepage);
  } else {
    out[count] = 0;
    _length = static_cast<int>(count);
  }
}

// The general case of the above, which has read the first `done` bytes as ASCII.
void KOVAString::readBytes(const char* bytes, std::size_t count, std::size_t done,
                           const char* codepage) {
  const Codepage page = Codepage::findForReading(codepage);
  _badConversion = !page.isKnown;
  if (done == 0 && page.kind != CodepageKind::kOther) done = widenASCII(bytes, count, units());
  unsigned short* out = units() + done;
  const char* source = bytes + done;
  const std::size_t rest = count - done;
  switch (page.kind) {
    case CodepageKind::kUTF8: out += decodeUTF8(source, rest, out); break;
    case CodepageKind::kLatin1:
      widenLatin1(source, rest, out);
      out += rest;
      break;
    case CodepageKind::kUSASCII:
      for (std::size_t i = 0; i < rest; ++i) {
        const unsigned char byte = static_cast<unsigned char>(source[i]);
        *out++ = byte < 0x80 ? byte : static_cast<unsigned short>(0xFFFD);
      }
      break;
    case CodepageKind::kASCIIBased:
    case CodepageKind::kOther:
      if (rest == 0) break;
      if (page.converter == nullptr) throwAllocException();
      resetConverter(page.converter);
      while (!decode(page.converter, source, bytes + count, out, units() + capacity())) {
        _length = static_cast<int>(out - units());
        growFor(static_cast<long long>(capacity()) + 1);
        out = units() + _length;
      }
      break;
  }
  setLength(static_cast<int>(out - units()));
  shrink();
}

void KOVAString::assignUTF32(const int* values, long long count) {
  const auto isCodePoint = [](int value) {
    return value >= 0 && value <= 0x10FFFF && !isSurrogate(static_cast<unsigned>(value));
  };
  long long unitCount = count;
  for (long long i = 0; i < count; ++i) unitCount += isCodePoint(values[i]) && values[i] > 0xFFFF;
  unsigned short* out = allocate(unitCount);
  for (long long i = 0; i < count; ++i) {
    unsigned value = static_cast<unsigned>(values[i]);
    if (!isCodePoint(values[i])) {
      value = 0xFFFD;
      _badConversion = true;
    }
    if (value > 0xFFFF) {
      *out++ = static_cast<unsigned short>(0xD7C0U + (value >> 10));
      value = 0xDC00U + (value & 0x3FFU);
    }
    *out++ = static_cast<unsigned short>(value);
  }
  setLength(static_cast<int>(unitCount));
}

KOVAString KOVAString::fromUnits(const unsigned short* units, int count) {
  KOVAString text;
  if (units != nullptr && count > 0) text.assignUnits(units, count);
  return text;
}

KOVAString KOVAString::fromBytes(const char* bytes, int count, const char* codepage) {
  KOVAString text;
  text.assignBytes(bytes, bytes != nullptr && count > 0 ? count : 0, codepage);
  return text;
}

KOVAString KOVAString::getDefaultCodepage() { return KOVAString(defaultConverterName()); }

// Comparison

unsigned KOVAString::hashCode() const noexcept {
  const unsigned hash = hashUnits(getUnits(), toSize(_length));
  return hash > 0x80000000U ? 0U - hash : hash;
}

int KOVAString::compareTo(const KOVAString& other) const noexcept {
  return compareCodePoints(getUnits(), toSize(_length), other.getUnits(), toSize(other._length));
}

bool KOVAString::equals(const KOVAString& other) const noexcept {
  return _length == other._length &&
         std::memcmp(getUnits(), other.getUnits(), toSize(_length) * sizeof(unsigned short)) == 0;
}

int KOVAString::compareToIgnoreCase(const KOVAString& other) const noexcept {
  return compareIgnoringCase(getUnits(), toSize(_length), other.getUnits(), toSize(other._length));
}

bool KOVAString::equalsIgnoreCase(const KOVAString& other) const noexcept {
  return compareToIgnoreCase(other) == 0;
}

// Composition

KOVAString KOVAString::concatenate(const KOVAString& left, const KOVAString& right) {
  KOVAString joined;
  unsigned short* const out = joined.allocate(static_cast<long long>(left._length) + right._length);
  copyUnits(out, left.getUnits(), toSize(left._length));
  copyUnits(out + left._length, right.getUnits(), toSize(right._length));
  joined.setLength(left._length + right._length);
  return joined;
}

KOVAString KOVAString::concatenate(KOVAString&& left, const KOVAString& right) {
  left.append(right);
  left._badConversion = false;
  return static_cast<KOVAString&&>(left);
}

void KOVAString::append(const KOVAString& text) { append(text.getUnits(), text._length); }

void KOVAString::append(unsigned short unit) {
  if (_length == capacity()) growFor(static_cast<long long>(_length) + 1);
  units()[_length] = unit;
  setLength(_length + 1);
}

void KOVAString::append(const unsigned short* source, int count) {
  if (source == nullptr || count < 1) return;
  const long long needed = static_cast<long long>(_length) + count;
  if (needed > capacity()) {
    const std::less<const unsigned short*> isBefore;
    const unsigned short* const begin = units();
    const bool isOwnText = !isBefore(source, begin) && isBefore(source, begin + _length);
    const std::ptrdiff_t offset = isOwnText ? source - begin : 0;
    growFor(needed);
    if (isOwnText) source = units() + offset;
  }
  unsigned short* const text = units();
  std::memmove(text + _length, source, toSize(count) * sizeof *source);
  _length = static_cast<int>(needed);
  text[_length] = 0;
}

void KOVAString::reserve(int unitCount) { grow(unitCount); }

void KOVAString::clear() noexcept {
  setLength(0);
  _badConversion = false;
}

KOVAString KOVAString::substring(int start, int end) const {
  if (start < 0) start = 0;
  if (end > _length) end = _length;
  return start < end ? fromUnits(getUnits() + start, end - start) : KOVAString();
}

KOVAString KOVAString::substring(int start) const { return substring(start, _length); }

KOVAString KOVAString::replace(unsigned short oldUnit, unsigned short newUnit) const {
  KOVAString replaced = fromUnits(getUnits(), _length);
  if (isSurrogate(oldUnit)) {
    // Found in this text, whose pairs stay as they are while the copy changes.
    for (int i = indexOf(oldUnit); i >= 0; i = indexOf(oldUnit, i + 1)) {
      replaced.units()[i] = newUnit;
    }
    return replaced;
  }
  unsigned short* const text = replaced.units();
  for (int i = 0; i < _length; ++i) {
    if (text[i] == oldUnit) text[i] = newUnit;
  }
  return replaced;
}

// Search

int KOVAString::indexOf(const KOVAString& text, int from) const noexcept {
  if (from < 0) from = 0;
  if (text._length == 0) return from < _length ? _length : -1;
  return toPosition(
      findFirst(getUnits(), toSize(_length), text.getUnits(), toSize(text._length), toSize(from)));
}

int KOVAString::indexOf(unsigned short unit, int from) const noexcept {
  return toPosition(findFirst(getUnits(), toSize(_length), &unit, 1, from < 0 ? 0 : toSize(from)));
}

int KOVAString::lastIndexOf(const KOVAString& text, int from) const noexcept {
  if (from < 0) from = 0;
  if (text._length == 0) return from <= _length ? _length : -1;
  return toPosition(
      findLast(getUnits(), toSize(_length), text.getUnits(), toSize(text._length), toSize(from)));
}

int KOVAString::lastIndexOf(unsigned short unit, int from) const noexcept {
  return toPosition(findLast(getUnits(), toSize(_length), &unit, 1, from < 0 ? 0 : toSize(from)));
}

bool KOVAString::startsWith(const KOVAString& text) const noexcept {
  return text._length > 0 && text._length <= _length &&
         std::memcmp(getUnits(), text.getUnits(), toSize(text._length) * sizeof(unsigned short)) ==
             0;
}

bool KOVAString::endsWith(const KOVAString& text) const noexcept {
  return text._length > 0 && text._length <= _length &&
         std::memcmp(getUnits() + (_length - text._length), text.getUnits(),
                     toSize(text._length) * sizeof(unsigned short)) == 0;
}

// Conversion

KOVAResult KOVAString::convertToUTF8(char* buf, int size) const noexcept {
  KOVAResult result;
  if (!begin(buf, size, result)) return result;
  const unsigned short* const text = getUnits();
  const std::size_t count = toSize(_length);
  const std::size_t room = toSize(size) - 1;
  const std::size_t done = narrowASCII(text, count < room ? count : room, buf);
  char* end = buf + done;
  if (done < count) {
    const std::size_t rest = count - done;
    if (room - done < 3 * rest && sizeInUTF8(text + done, rest) > room - done) {
      buf[0] = 0;
      return result;
    }
    end = encodeUTF8(text + done, rest, end);
  }
  *end = 0;
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVAString::convertToUTF16(unsigned short* buf, int size) const noexcept {
  KOVAResult result;
  if (!begin(buf, size, result) || _length >= size) return result;
  copyUnits(buf, getUnits(), toSize(_length) + 1);
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVAString::convertToUTF32(int* buf, int size) const noexcept {
  KOVAResult result;
  if (!begin(buf, size, result)) return result;
  const unsigned short* const text = getUnits();
  const std::size_t count = toSize(_length);
  if (countCodePoints(text, count) >= toSize(size)) return result;
  for (std::size_t i = 0; i < count;) *buf++ = nextCodePoint(text, count, i);
  *buf = 0;
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVAString::convertToWideCharacter(unsigned short* buf, int size) const noexcept {
  return convertToUTF16(buf, size);
}

KOVAResult KOVAString::convertToMBCS(char* buf, int size, const char* codepage, bool useSubstitute,
                                     char substitute) const noexcept {
  KOVAResult result;
  if (!begin(buf, size, result)) return result;
  const char ownSubstitute = useSubstitute ? substitute : '\0';
  const std::size_t count = toSize(_length);
  const std::size_t room = toSize(size) - 1;
  std::size_t done = 0;
  {
    const Codepage page = Codepage::findForReading(codepage);
    switch (page.kind) {
      case CodepageKind::kUTF8:
        if (ownSubstitute == '\0') return convertToUTF8(buf, size);
        [[fallthrough]];
      case CodepageKind::kUSASCII:
      case CodepageKind::kASCIIBased:
        done = narrowASCII(getUnits(), count < room ? count : room, buf);
        break;
      case CodepageKind::kLatin1:
        done = narrowLatin1(getUnits(), count < room ? count : room, buf);
        break;
      case CodepageKind::kOther: break;
    }
    if (done == count && page.kind != CodepageKind::kOther) {
      buf[count] = 0;
      return KOVAResultCode::kSuccess;
    }
  }
  const Codepage page = Codepage::findForWriting(codepage, ownSubstitute);
  if (page.converter == nullptr) {
    buf[0] = 0;
    return KOVAResultCode::kUnexpectedError;
  }
  const long long bytes = encode(page.converter, getUnits(), _length, buf, size - 1);
  if (bytes < 0) {
    buf[0] = 0;
    return result;
  }
  buf[bytes] = 0;
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVAString::convertToRestrictedASCII(char* buf, int size) const noexcept {
  if (buf == nullptr) return KOVAResultCode::kInvalidArgument;
  if (size < 0) {
    buf[0] = 0;
    return KOVAResultCode::kFailure;
  }
  const KOVAResult result = convertToMBCS(buf, size, "US-ASCII", false, '_');
  if (result.IsFailure()) return result;
  for (; *buf != 0; ++buf) {
    if (!isIdentifierSafe(static_cast<unsigned char>(*buf))) *buf = '_';
  }
  return result;
}

int KOVAString::getConvertToUTF8Size() const noexcept {
  return saturate(static_cast<long long>(sizeInUTF8(getUnits(), toSize(_length))) + 1);
}

int KOVAString::getConvertToUTF16Size() const noexcept { return _length; }

int KOVAString::getConvertToUTF32Size() const noexcept {
  return static_cast<int>(countCodePoints(getUnits(), toSize(_length))) + 1;
}

int KOVAString::getConvertToWideCharacterSize() const noexcept { return _length + 1; }

int KOVAString::getConvertToMBCSSize(const char* codepage) const noexcept {
  const CodepageKind kind = Codepage::findForReading(codepage).kind;
  if (kind == CodepageKind::kUTF8) return getConvertToUTF8Size();
  // A text that takes a byte per unit in UTF-8 does so wherever ASCII is itself.
  const std::size_t count = toSize(_length);
  if (kind != CodepageKind::kOther && sizeInUTF8(getUnits(), count) == count) return _length + 1;
  const Codepage page = Codepage::find(codepage);
  if (page.converter == nullptr) return 0;
  return saturate(encodedSize(page.converter, getUnits(), _length) + 1);
}

int KOVAString::getConvertToRestrictedASCIISize() const noexcept {
  return getConvertToMBCSSize("US-ASCII");
}
