#include "kovabase/strings/internal/UnicodeServices.h"

#include <unicode/stringoptions.h>
#include <unicode/uchar.h>
#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>
#include <unicode/ucnv_err.h>
#include <unicode/ustring.h>

namespace kova::internal {

namespace {

const UChar* toICU(const unsigned short* units) { return reinterpret_cast<const UChar*>(units); }

// ICU's own callback writes U+001A for single bytes of some code pages.
void writeReplacementCharacter(const void*, UConverterToUnicodeArgs* arguments, const char*,
                               int32_t, UConverterCallbackReason reason, UErrorCode* status) {
  if (reason > UCNV_IRREGULAR) return;
  const UChar replacement = 0xFFFD;
  *status = U_ZERO_ERROR;
  ucnv_cbToUWriteUChars(arguments, &replacement, 1, 0, status);
}

bool isASCIIBothWays(UConverter* converter) {
  for (int code = 0; code < 128; ++code) {
    const char byte = static_cast<char>(code);
    const UChar unit = static_cast<UChar>(code);
    UChar decoded[4];
    char encoded[8];
    UErrorCode status = U_ZERO_ERROR;
    if (ucnv_toUChars(converter, decoded, 4, &byte, 1, &status) != 1 || U_FAILURE(status) ||
        decoded[0] != unit) {
      return false;
    }
    if (ucnv_fromUChars(converter, encoded, 8, &unit, 1, &status) != 1 || U_FAILURE(status) ||
        encoded[0] != byte) {
      return false;
    }
  }
  return true;
}

}  // namespace

const char* defaultConverterName() noexcept { return ucnv_getDefaultName(); }

UConverter* openConverter(const char* name, bool& isUnknown) noexcept {
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
  UErrorCode status = U_ZERO_ERROR;
  const UChar* source = toICU(units);
  char* target = out;
  ucnv_reset(converter);
  ucnv_fromUnicode(converter, &target, out + room, &source, source + count, nullptr, true, &status);
  return U_SUCCESS(status) ? target - out : -1;
}

long long encodedSize(UConverter* converter, const unsigned short* units, int count) noexcept {
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
