#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/io/KOVADefaultBuffer.h"

#include <bit>
#include <cstdint>
#include <cstring>
#include <type_traits>

class KOVAString;

/// How the bytes of a stored value follow each other: 0 most significant byte first, any other
/// value least significant byte first.
typedef int KOVAEndianMode;

/// Binary values of either byte order, one after the other or whole arrays at a time. An array is
/// read and written as its single values would be, only faster.
///
/// Every read moves the position behind what it read; a failed one moves nothing and leaves its
/// output alone. Results of reads: Success; NotInitialized without data; the failure of a read;
/// past the data a Gk_Exception, see KOVADefaultBuffer. Results of writes: Success; NotSupported
/// for a buffer that reads; FileSaveError when the system refuses.
class KOVABASE_API KOVADefaultBinaryBuffer : public KOVADefaultBuffer {
 public:
  using KOVADefaultBuffer::KOVADefaultBuffer;
  ~KOVADefaultBinaryBuffer() override;

  void SetEndianness(KOVAEndianMode mode) noexcept { _endianMode = mode; }
  KOVAEndianMode GetEndianness() const noexcept { return _endianMode; }

  /// Read one value of the type's own size.
  KOVAResult ReadByte(unsigned char& value) { return ReadBytes(&value, 1); }
  KOVAResult ReadInt(int& value) { return ReadValue(value); }
  KOVAResult ReadULngInt(unsigned int& value) { return ReadValue(value); }
  /// 4 bytes, as on the systems where the formats come from.
  KOVAResult ReadULngInt(unsigned long& value);
  KOVAResult ReadShort(short& value) { return ReadValue(value); }
  KOVAResult ReadUShort(unsigned short& value) { return ReadValue(value); }
  KOVAResult ReadULngLng(unsigned long long& value) { return ReadValue(value); }
  KOVAResult ReadLngLng(long long& value) { return ReadValue(value); }
  KOVAResult ReadFloat(float& value) { return ReadValue(value); }
  KOVAResult ReadDouble(double& value) { return ReadValue(value); }

  /// `count` values into an array that has room for them.
  /// @return Failure for null or a negative count; nothing is moved or promised of the array when a
  ///   value is missing.
  KOVAResult ReadInts(int* values, int count);
  KOVAResult ReadFloats(float* values, int count);
  KOVAResult ReadDoubles(double* values, int count);

  /// `bytes` bytes of text; the text ends at the first zero among them. A length below 0 is
  /// Failure.
  KOVAResult ReadAsciiString(int bytes, KOVAString& text);
  KOVAResult ReadUTF8String(int bytes, KOVAString& text);
  /// A count as by ReadInt, then so many bytes of US-ASCII. A count that is negative or larger than
  /// what is left of the data is InvalidFile, with nothing moved.
  KOVAResult ReadLngString(KOVAString& text);
  /// `units` 16-bit units of UTF-16 in the byte order of this buffer.
  KOVAResult ReadWString(int units, KOVAString& text);

  /// `count` bytes as one value: in mode 0 they arrive reversed, in any other mode as stored.
  /// @return Failure for null or a negative count.
  KOVAResult GetBufferBasedOnEndianNess(int count, unsigned char* destination);
  /// The writing counterpart: what is handed in comes back from the function above.
  KOVAResult SetBufferBasedOnEndianNess(int count, const unsigned char* source);
  /// Reverses `count` bytes in place; nothing for null or count < 2.
  static void MirrorBuffer(int count, unsigned char* bytes) noexcept;

  /// Write one value of the type's own size, or `count` of them.
  KOVAResult WriteByte(unsigned char value) { return WriteBytes(&value, 1); }
  KOVAResult WriteInt(int value) { return WriteValue(value); }
  KOVAResult WriteULngInt(unsigned int value) { return WriteValue(value); }
  KOVAResult WriteShort(short value) { return WriteValue(value); }
  KOVAResult WriteUShort(unsigned short value) { return WriteValue(value); }
  KOVAResult WriteULngLng(unsigned long long value) { return WriteValue(value); }
  KOVAResult WriteLngLng(long long value) { return WriteValue(value); }
  KOVAResult WriteFloat(float value) { return WriteValue(value); }
  KOVAResult WriteDouble(double value) { return WriteValue(value); }
  KOVAResult WriteInts(const int* values, int count);
  KOVAResult WriteFloats(const float* values, int count);
  KOVAResult WriteDoubles(const double* values, int count);

  /// The bytes of the text alone, '_' for what US-ASCII lacks; read back by their count.
  KOVAResult WriteAsciiString(const KOVAString& text);
  KOVAResult WriteUTF8String(const KOVAString& text);
  /// What ReadLngString reads.
  KOVAResult WriteLngString(const KOVAString& text);
  KOVAResult WriteWString(const KOVAString& text);

 private:
  template <class T>
  using Word = std::conditional_t<sizeof(T) == 2, std::uint16_t,
                                  std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>>;

  static std::uint16_t Swapped(std::uint16_t word) noexcept { return __builtin_bswap16(word); }
  static std::uint32_t Swapped(std::uint32_t word) noexcept { return __builtin_bswap32(word); }
  static std::uint64_t Swapped(std::uint64_t word) noexcept { return __builtin_bswap64(word); }

  /// Whether stored values have to be turned round to become this machine's, and back.
  bool IsForeign() const noexcept {
    const bool isStoredBig = _endianMode == 0;
    return isStoredBig != (std::endian::native == std::endian::big);
  }

  template <class T>
  KOVAResult ReadValue(T& value) {
    if (_end - _cursor < static_cast<std::ptrdiff_t>(sizeof(T))) return ReadValueAcross(value);
    Word<T> word;
    std::memcpy(&word, _cursor, sizeof word);
    _cursor += sizeof word;
    value = std::bit_cast<T>(IsForeign() ? Swapped(word) : word);
    return KOVAResultCode::kSuccess;
  }
  /// A value that is not whole in the window.
  template <class T>
  KOVAResult ReadValueAcross(T& value);
  template <class T>
  KOVAResult WriteValue(T value);
  template <class T>
  KOVAResult ReadArray(T* values, int count);
  template <class T>
  static void SwapAll(T* values, int count) noexcept;
  template <class T>
  KOVAResult WriteArray(const T* values, int count);
  KOVAResult ReadText(int bytes, const char* codepage, KOVAString& text);
  KOVAResult WriteText(const KOVAString& text, const char* codepage);

  KOVAEndianMode _endianMode = 0;
};

using KOVADefaultBinaryBufferHandle = KOVATypedHandle<KOVADefaultBinaryBuffer>;
