#include "kovabase/io/KOVADefaultBinaryBuffer.h"

#include "kovabase/foundation/internal/Heap.h"
#include "kovabase/strings/KOVAString.h"

#include <algorithm>
#include <climits>
#include <memory>

using namespace KOVAResultCode;

namespace {

// Bytes on the heap of the library's own objects.
class Bytes {
 public:
  explicit Bytes(int count)
      : _bytes(static_cast<char*>(kova::internal::allocate(static_cast<std::size_t>(count)))) {}
  Bytes(const Bytes&) = delete;
  Bytes& operator=(const Bytes&) = delete;
  ~Bytes() { kova::internal::release(_bytes); }

  char* get() const { return _bytes; }

 private:
  char* _bytes;
};

}  // namespace

KOVADefaultBinaryBuffer::~KOVADefaultBinaryBuffer() = default;

template <class T>
KOVAResult KOVADefaultBinaryBuffer::ReadValueAcross(T& value) {
  Word<T> word;
  const KOVAResult result = ReadBytes(&word, sizeof word);
  if (result.IsSuccess()) value = std::bit_cast<T>(IsForeign() ? Swapped(word) : word);
  return result;
}

template KOVAResult KOVADefaultBinaryBuffer::ReadValueAcross(int&);
template KOVAResult KOVADefaultBinaryBuffer::ReadValueAcross(unsigned int&);
template KOVAResult KOVADefaultBinaryBuffer::ReadValueAcross(short&);
template KOVAResult KOVADefaultBinaryBuffer::ReadValueAcross(unsigned short&);
template KOVAResult KOVADefaultBinaryBuffer::ReadValueAcross(long long&);
template KOVAResult KOVADefaultBinaryBuffer::ReadValueAcross(unsigned long long&);
template KOVAResult KOVADefaultBinaryBuffer::ReadValueAcross(float&);
template KOVAResult KOVADefaultBinaryBuffer::ReadValueAcross(double&);

template <class T>
KOVAResult KOVADefaultBinaryBuffer::WriteValue(T value) {
  const auto word = std::bit_cast<Word<T>>(value);
  const Word<T> stored = IsForeign() ? Swapped(word) : word;
  return WriteBytes(&stored, sizeof stored);
}

template KOVAResult KOVADefaultBinaryBuffer::WriteValue(int);
template KOVAResult KOVADefaultBinaryBuffer::WriteValue(unsigned int);
template KOVAResult KOVADefaultBinaryBuffer::WriteValue(short);
template KOVAResult KOVADefaultBinaryBuffer::WriteValue(unsigned short);
template KOVAResult KOVADefaultBinaryBuffer::WriteValue(long long);
template KOVAResult KOVADefaultBinaryBuffer::WriteValue(unsigned long long);
template KOVAResult KOVADefaultBinaryBuffer::WriteValue(float);
template KOVAResult KOVADefaultBinaryBuffer::WriteValue(double);

KOVAResult KOVADefaultBinaryBuffer::ReadULngInt(unsigned long& value) {
  unsigned int word = 0;
  const KOVAResult result = ReadValue(word);
  if (result.IsSuccess()) value = word;
  return result;
}

template <class T>
void KOVADefaultBinaryBuffer::SwapAll(T* values, int count) noexcept {
  for (int i = 0; i < count; ++i) {
    values[i] = std::bit_cast<T>(Swapped(std::bit_cast<Word<T>>(values[i])));
  }
}

template <class T>
KOVAResult KOVADefaultBinaryBuffer::ReadArray(T* values, int count) {
  if (values == nullptr || count < 0) return kFailure;
  if (!IsBufferValid()) return kNotInitialized;
  const long begin = GetOffset();
  const bool isTurned = IsForeign();
  KOVAResult result = kSuccess;
  while (count > 0 && result.IsSuccess()) {
    const int whole = static_cast<int>(
        std::min<std::ptrdiff_t>((_end - _cursor) / static_cast<std::ptrdiff_t>(sizeof(T)), count));
    if (whole == 0) {
      // The next value begins a window or lies across two. A long rest need not go through windows,
      // in pieces that stay in the cache until they are turned round.
      constexpr int kPiece = 0x10000 / static_cast<int>(sizeof(T));
      const int piece = count >= kPiece ? kPiece : 1;
      try {
        result = ReadBytes(values, piece * static_cast<int>(sizeof(T)));
      } catch (...) {
        SetOffset(begin);
        throw;
      }
      if (result.IsSuccess() && isTurned) SwapAll(values, piece);
      values += piece;
      count -= piece;
      continue;
    }
    const std::size_t bytes = static_cast<std::size_t>(whole) * sizeof(T);
    if (isTurned) {
      const unsigned char* from = _cursor;
      for (int i = 0; i < whole; ++i, from += sizeof(T)) {
        Word<T> word;
        std::memcpy(&word, from, sizeof word);
        values[i] = std::bit_cast<T>(Swapped(word));
      }
    } else {
      std::memcpy(values, _cursor, bytes);
    }
    _cursor += bytes;
    values += whole;
    count -= whole;
  }
  if (result.IsFailure()) SetOffset(begin);
  return result;
}

KOVAResult KOVADefaultBinaryBuffer::ReadInts(int* values, int count) {
  return ReadArray(values, count);
}

KOVAResult KOVADefaultBinaryBuffer::ReadFloats(float* values, int count) {
  return ReadArray(values, count);
}

KOVAResult KOVADefaultBinaryBuffer::ReadDoubles(double* values, int count) {
  return ReadArray(values, count);
}

template <class T>
KOVAResult KOVADefaultBinaryBuffer::WriteArray(const T* values, int count) {
  if (values == nullptr || count < 0) return kFailure;
  const bool isTurned = IsForeign();
  constexpr int kPiece = 512;
  T stored[kPiece];
  for (int done = 0; done < count; done += kPiece) {
    const int piece = std::min(count - done, kPiece);
    std::copy_n(values + done, piece, stored);
    if (isTurned) SwapAll(stored, piece);
    const KOVAResult result = WriteBytes(stored, piece * static_cast<int>(sizeof(T)));
    if (result.IsFailure()) return result;
  }
  return kSuccess;
}

KOVAResult KOVADefaultBinaryBuffer::WriteInts(const int* values, int count) {
  return WriteArray(values, count);
}

KOVAResult KOVADefaultBinaryBuffer::WriteFloats(const float* values, int count) {
  return WriteArray(values, count);
}

KOVAResult KOVADefaultBinaryBuffer::WriteDoubles(const double* values, int count) {
  return WriteArray(values, count);
}

KOVAResult KOVADefaultBinaryBuffer::ReadText(int bytes, const char* codepage, KOVAString& text) {
  if (bytes < 0) return kFailure;
  // What is promised and not there must not cost memory.
  if (bytes > GetSize() - GetOffset()) return FailAtEnd();
  const Bytes content(bytes);
  const KOVAResult result = ReadBytes(content.get(), bytes);
  if (result.IsFailure()) return result;
  const void* const zero = std::memchr(content.get(), 0, static_cast<std::size_t>(bytes));
  if (zero != nullptr) bytes = static_cast<int>(static_cast<const char*>(zero) - content.get());
  text = KOVAString::fromBytes(content.get(), bytes, codepage);
  return result;
}

KOVAResult KOVADefaultBinaryBuffer::ReadAsciiString(int bytes, KOVAString& text) {
  return ReadText(bytes, "US-ASCII", text);
}

KOVAResult KOVADefaultBinaryBuffer::ReadUTF8String(int bytes, KOVAString& text) {
  return ReadText(bytes, "UTF-8", text);
}

KOVAResult KOVADefaultBinaryBuffer::ReadLngString(KOVAString& text) {
  const long begin = GetOffset();
  int bytes = 0;
  KOVAResult result = ReadInt(bytes);
  if (result.IsFailure()) return result;
  if (bytes < 0 || bytes > GetSize() - GetOffset()) {
    result = kInvalidFile;
  } else {
    result = ReadText(bytes, "US-ASCII", text);
  }
  if (result.IsFailure()) SetOffset(begin);
  return result;
}

KOVAResult KOVADefaultBinaryBuffer::ReadWString(int units, KOVAString& text) {
  if (units < 0) return kFailure;
  if (units > (GetSize() - GetOffset()) / 2) return FailAtEnd();
  if (units > INT_MAX / 2) return kFailure;
  const Bytes content(2 * units);
  auto* const stored = reinterpret_cast<unsigned short*>(content.get());
  const KOVAResult result = ReadBytes(stored, 2 * units);
  if (result.IsFailure()) return result;
  if (IsForeign()) SwapAll(stored, units);
  text = KOVAString::fromUnits(stored, units);
  return result;
}

KOVAResult KOVADefaultBinaryBuffer::GetBufferBasedOnEndianNess(int count,
                                                               unsigned char* destination) {
  if (destination == nullptr || count < 0) return kFailure;
  const KOVAResult result = ReadBytes(destination, count);
  if (result.IsSuccess() && _endianMode == 0) MirrorBuffer(count, destination);
  return result;
}

KOVAResult KOVADefaultBinaryBuffer::SetBufferBasedOnEndianNess(int count,
                                                               const unsigned char* source) {
  if (source == nullptr || count < 0) return kFailure;
  if (_endianMode != 0) return WriteBytes(source, count);
  const Bytes mirrored(count);
  std::reverse_copy(source, source + count, reinterpret_cast<unsigned char*>(mirrored.get()));
  return WriteBytes(mirrored.get(), count);
}

void KOVADefaultBinaryBuffer::MirrorBuffer(int count, unsigned char* bytes) noexcept {
  if (bytes != nullptr && count > 1) std::reverse(bytes, bytes + count);
}

KOVAResult KOVADefaultBinaryBuffer::WriteText(const KOVAString& text, const char* codepage) {
  const int bytes = text.getConvertToMBCSSize(codepage);
  if (bytes < 1) return kUnexpectedError;
  const Bytes content(bytes);
  const KOVAResult result = text.convertToMBCS(content.get(), bytes, codepage, true, '_');
  if (result.IsFailure()) return result;
  return WriteBytes(content.get(), static_cast<int>(std::strlen(content.get())));
}

KOVAResult KOVADefaultBinaryBuffer::WriteAsciiString(const KOVAString& text) {
  return WriteText(text, "US-ASCII");
}

KOVAResult KOVADefaultBinaryBuffer::WriteUTF8String(const KOVAString& text) {
  return WriteText(text, "UTF-8");
}

KOVAResult KOVADefaultBinaryBuffer::WriteLngString(const KOVAString& text) {
  const int bytes = text.getConvertToMBCSSize("US-ASCII");
  if (bytes < 1) return kUnexpectedError;
  const KOVAResult result = WriteInt(bytes - 1);
  return result.IsSuccess() ? WriteText(text, "US-ASCII") : result;
}

KOVAResult KOVADefaultBinaryBuffer::WriteWString(const KOVAString& text) {
  return WriteArray(text.getUnits(), text.length());
}
