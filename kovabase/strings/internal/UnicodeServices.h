#pragma once

#include <cstddef>

struct UConverter;

/// All that the library asks of ICU. Nothing here throws, and nothing keeps state of its own:
/// converters belong to who opened or cloned them and serve one thread at a time.
namespace kova::internal {

/// How bytes of a code page become code units, as far as no converter is needed for it.
enum class CodepageKind {
  kUTF8,
  kUSASCII,
  kLatin1,
  /// Bytes below 128 are ASCII wherever a character may begin, both ways; the rest needs the
  /// converter.
  kASCIIBased,
  kOther
};

/// Longer names of converters, options included, count as unknown. ICU refuses them too, but for
/// options that it ignores.
constexpr std::size_t kMaximumConverterName = 60;

/// The name of ICU's default converter: asked for once, by whoever comes first, and fixed then.
const char* defaultConverterName() noexcept;

/// @param name  null or empty opens the default one.
/// @param isUnknown  set to whether ICU does not know the name.
/// @return null then, and when memory is exhausted. Bytes that are malformed or unassigned decode
/// to
///   U+FFFD, whatever substitute the code page defines.
UConverter* openConverter(const char* name, bool& isUnknown) noexcept;
/// A converter of the same code page and settings; null when memory is exhausted.
UConverter* cloneConverter(const UConverter* converter) noexcept;
void resetConverter(UConverter* converter) noexcept;
void closeConverter(UConverter* converter) noexcept;

CodepageKind classifyConverter(UConverter* converter) noexcept;
/// Whether resetting makes the converter as good as new. ICU forgets to do so for one code page, so
/// that a text would show in the next.
bool canBeReset(const UConverter* converter) noexcept;

/// Makes `substitute` stand for what the code page lacks, from now on.
void setSubstitute(UConverter* converter, char substitute) noexcept;

/// Goes on decoding until the bytes or the room are used up, and moves both begins on. The
/// converter is to be reset before the first call.
/// @return whether all bytes have been decoded.
bool decode(UConverter* converter, const char*& bytes, const char* bytesEnd, unsigned short*& out,
            unsigned short* outEnd) noexcept;

/// Encodes a whole text; the converter is reset before.
/// @return the number of bytes written; -1 when they are more than `room`.
long long encode(UConverter* converter, const unsigned short* units, int count, char* out,
                 int room) noexcept;
/// The number of bytes that encode() writes.
long long encodedSize(UConverter* converter, const unsigned short* units, int count) noexcept;

/// Three-way comparison of the texts after full default case folding, by code points.
int compareFolded(const unsigned short* a, int countA, const unsigned short* b,
                  int countB) noexcept;

/// Writes the text after full default case folding, without a terminator.
/// @return the number of its units; nothing is of use when they are more than `room`.
int fold(const unsigned short* units, int count, unsigned short* out, int room) noexcept;

}  // namespace kova::internal
