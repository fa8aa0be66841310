#include "kovabase/strings/internal/UnicodeServices.h"

#include <unicode/stringoptions.h>
#include <unicode/uchar.h>
#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>
#include <unicode/ucnv_err.h>
#include <unicode/ustring.h>

#include <cstring>

namespace kova::internal {

namespace {

std::size_t toSize(int count) { return static_cast<std::size_t>(count); }

const UChar* toICU(const unsigned short* units) { return reinterpret_cast<const UChar*>(units); }

// ICU's own callback writes U+001A for single bytes of some code pages.
void writeReplacementCharacter(const void*, UConverterToUnicodeArgs* arguments, const char*,
                               int32_t, UConverterCallbackReason reason, UErrorCode* status) {
  if (reason > UCNV_IRREGULAR) return;
  const UChar replacement = 0xFFFD;
  *status = U_ZERO_ERROR;
  ucnv_cbToUWriteUChars(arguments, &replacement, 1, 0, status);
}

bool isSameBothWays(UConverter* converter, const char* bytes, const UChar* units, int count) {
  UChar decoded[256];
  char encoded[256];
  UErrorCode status = U_ZERO_ERROR;
  return ucnv_toUChars(converter, decoded, 256, bytes, count, &status) == count &&
         ucnv_fromUChars(converter, encoded, 256, units, count, &status) == count &&
         U_SUCCESS(status) && std::memcmp(decoded, units, sizeof *units * toSize(count)) == 0 &&
         std::memcmp(encoded, bytes, toSize(count)) == 0;
}

// Whether each ASCII character stands for itself, alone and among others.
bool isASCIIBothWays(UConverter* converter) {
  char bytes[255];
  UChar units[255];
  for (int i = 0; i < 255; ++i) {
    // Up and down again, so that each meets two neighbours.
    bytes[i] = static_cast<char>(i < 128 ? i : 254 - i);
    units[i] = static_cast<UChar>(bytes[i]);
  }
  for (int i = 0; i < 128; ++i) {
    if (!isSameBothWays(converter, bytes + i, units + i, 1)) return false;
  }
  return isSameBothWays(converter, bytes, units, 255);
}

}  // namespace

const char* defaultConverterName() noexcept { return ucnv_getDefaultName(); }

UConverter* openConverter(const char* name, bool& isUnknown) noexcept {
  isUnknown = name != nullptr && std::strlen(name) > kMaximumConverterName;
  if (isUnknown) return nullptr;
  UErrorCode status = U_ZERO_ERROR;
  UConverter* converter = ucnv_open(name != nullptr && *name != '\0' ? name : nullptr, &status);
  if (U_SUCCESS(status)) {
    ucnv_setToUCallBack(converter, writeReplacementCharacter, nullptr, nullptr, nullptr, &status);
  }
  isUnknown = U_FAILURE(status) && status != U_MEMORY_ALLOCATION_ERROR;
  if (U_SUCCESS(status)) return converter;
  ucnv_close(converter);
  return nullptr;
}

UConverter* cloneConverter(const UConverter* converter) noexcept {
  UErrorCode status = U_ZERO_ERROR;
  if (!canBeReset(converter)) {
    // Closing a clone of this one crashes, too.
    bool isUnknown = false;
    return openConverter(ucnv_getName(converter, &status), isUnknown);
  }
  UConverter* clone = ucnv_clone(converter, &status);
  if (U_SUCCESS(status)) return clone;
  ucnv_close(clone);
  return nullptr;
}

void resetConverter(UConverter* converter) noexcept { ucnv_reset(converter); }

void closeConverter(UConverter* converter) noexcept { ucnv_close(converter); }

CodepageKind classifyConverter(UConverter* converter) noexcept {
  switch (ucnv_getType(converter)) {
    case UCNV_UTF8: return CodepageKind::kUTF8;
    case UCNV_US_ASCII: return CodepageKind::kUSASCII;
    case UCNV_LATIN_1: return CodepageKind::kLatin1;
    default: return isASCIIBothWays(converter) ? CodepageKind::kASCIIBased : CodepageKind::kOther;
  }
}

bool canBeReset(const UConverter* converter) noexcept {
  return ucnv_getType(converter) != UCNV_COMPOUND_TEXT;
}

void setSubstitute(UConverter* converter, char substitute) noexcept {
  UErrorCode status = U_ZERO_ERROR;
  ucnv_setSubstChars(converter, &substitute, 1, &status);
  if (U_SUCCESS(status)) return;
  // The code page has no characters of one byte.
  status = U_ZERO_ERROR;
  const UChar unit = static_cast<unsigned char>(substitute);
  ucnv_setSubstString(converter, &unit, 1, &status);
}

bool decode(UConverter* converter, const char*& bytes, const char* bytesEnd, unsigned short*& out,
            unsigned short* outEnd) noexcept {
  UErrorCode status = U_ZERO_ERROR;
  UChar* target = reinterpret_cast<UChar*>(out);
  ucnv_toUnicode(converter, &target, reinterpret_cast<UChar*>(outEnd), &bytes, bytesEnd, nullptr,
                 true, &status);
  out = reinterpret_cast<unsigned short*>(target);
  return status != U_BUFFER_OVERFLOW_ERROR;
}

long long encode(UConverter* converter, const unsigned short* units, int count, char* out,
                 int room) noexcept {
  if (count == 0) return 0;  // not even the announcement that some code pages begin with
  UErrorCode status = U_ZERO_ERROR;
  const UChar* source = toICU(units);
  char* target = out;
  ucnv_reset(converter);
  ucnv_fromUnicode(converter, &target, out + room, &source, source + count, nullptr, true, &status);
  const long long bytes = target - out;
  // ICU also calls the room too small when units are left that write nothing.
  while (status == U_BUFFER_OVERFLOW_ERROR) {
    char scratch[16];
    target = scratch;
    status = U_ZERO_ERROR;
    ucnv_fromUnicode(converter, &target, scratch + sizeof scratch, &source, toICU(units) + count,
                     nullptr, true, &status);
    if (target != scratch) return -1;
  }
  return U_SUCCESS(status) ? bytes : -1;
}

long long encodedSize(UConverter* converter, const unsigned short* units, int count) noexcept {
  if (count == 0) return 0;
  char scratch[1024];
  const UChar* source = toICU(units);
  const UChar* const end = source + count;
  long long bytes = 0;
  UErrorCode status;
  ucnv_reset(converter);
  do {
    char* target = scratch;
    status = U_ZERO_ERROR;
    ucnv_fromUnicode(converter, &target, scratch + sizeof scratch, &source, end, nullptr, true,
                     &status);
    bytes += target - scratch;
  } while (status == U_BUFFER_OVERFLOW_ERROR);
  return bytes;
}

int compareFolded(const unsigned short* a, int countA, const unsigned short* b,
                  int countB) noexcept {
  UErrorCode status = U_ZERO_ERROR;
  const int order = u_strCaseCompare(toICU(a), countA, toICU(b), countB,
                                     U_FOLD_CASE_DEFAULT | U_COMPARE_CODE_POINT_ORDER, &status);
  return order < 0 ? -1 : order > 0 ? 1 : 0;
}

int fold(const unsigned short* units, int count, unsigned short* out, int room) noexcept {
  UErrorCode status = U_ZERO_ERROR;
  return u_strFoldCase(reinterpret_cast<UChar*>(out), room, toICU(units), count,
                       U_FOLD_CASE_DEFAULT, &status);
}

}  // namespace kova::internal
