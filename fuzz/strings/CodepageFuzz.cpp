// Texts read from and written to code pages against ICU's converters: any bytes, any name.
// Input: one byte that picks a code page or, from kNames on, the length of a name that follows; one
// byte for the substitute; the text.

#include "kovabase/strings/KOVAString.h"

#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>
#include <unicode/ucnv_err.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string>
#include <vector>

namespace {

const char* const kNames[] = {"UTF-8",
                              "US-ASCII",
                              "ISO-8859-1",
                              "utf8",
                              "latin1",
                              "ascii",
                              "windows-1252",
                              "windows-1251",
                              "ISO-8859-2",
                              "ibm-850",
                              "ibm-37",
                              "Shift_JIS",
                              "EUC-JP",
                              "ISO-2022-JP",
                              "GB18030",
                              "GBK",
                              "Big5",
                              "Big5-HKSCS",
                              "EUC-KR",
                              "UTF-7",
                              "IMAP-mailbox-name",
                              "UTF-16",
                              "UTF-16LE",
                              "UTF-32",
                              "SCSU",
                              "BOCU-1",
                              "CESU-8",
                              "HZ",
                              "windows-1258",
                              "x-iscii-de",
                              "ibm-1390",
                              "ISO-2022-KR",
                              "ISO-2022-CN",
                              "x11-compound-text",
                              "LMBCS-1",
                              ""};

void require(bool holds) {
  if (!holds) std::abort();
}

void writeReplacement(const void*, UConverterToUnicodeArgs* arguments, const char*, int32_t,
                      UConverterCallbackReason reason, UErrorCode* status) {
  if (reason > UCNV_IRREGULAR) return;
  const UChar replacement = 0xFFFD;
  *status = U_ZERO_ERROR;
  ucnv_cbToUWriteUChars(arguments, &replacement, 1, 0, status);
}

// A new converter for each text: not all of them can be reset or cloned.
UConverter* open(const std::string& name) {
  UErrorCode status = U_ZERO_ERROR;
  UConverter* const converter = ucnv_open(name.empty() ? nullptr : name.c_str(), &status);
  return U_SUCCESS(status) ? converter : nullptr;
}

std::u16string decode(const std::string& name, const char* bytes, std::size_t count) {
  std::u16string units(4 * count + 16, u'\0');
  UErrorCode status = U_ZERO_ERROR;
  UConverter* const converter = open(name);
  ucnv_setToUCallBack(converter, writeReplacement, nullptr, nullptr, nullptr, &status);
  const int length = ucnv_toUChars(converter, units.data(), static_cast<int>(units.size()), bytes,
                                   static_cast<int>(count), &status);
  require(U_SUCCESS(status));
  ucnv_close(converter);
  units.resize(static_cast<std::size_t>(length));
  return units;
}

std::string encode(const std::string& name, const std::u16string& units, char substitute) {
  std::string bytes(16 * units.size() + 64, '\0');
  UErrorCode status = U_ZERO_ERROR;
  UConverter* const converter = open(name);
  if (substitute != '\0') {
    ucnv_setSubstChars(converter, &substitute, 1, &status);
    if (U_FAILURE(status)) {
      status = U_ZERO_ERROR;
      const UChar unit = static_cast<unsigned char>(substitute);
      ucnv_setSubstString(converter, &unit, 1, &status);
    }
    status = U_ZERO_ERROR;
  }
  const int length = ucnv_fromUChars(converter, bytes.data(), static_cast<int>(bytes.size()),
                                     units.data(), static_cast<int>(units.size()), &status);
  require(U_SUCCESS(status));
  ucnv_close(converter);
  bytes.resize(static_cast<std::size_t>(length));
  return bytes;
}

bool holds(const KOVAString& text, const std::u16string& units) {
  return static_cast<std::size_t>(text.length()) == units.size() &&
         std::memcmp(text.getUnits(), units.data(), 2 * units.size()) == 0 &&
         text.getUnits()[units.size()] == 0;
}

void checkWriting(const KOVAString& text, const char* name, const std::string& expected,
                  bool useSubstitute, char substitute) {
  std::vector<char> buffer(expected.size() + 1, '#');
  const int size = static_cast<int>(buffer.size());
  require(text.convertToMBCS(buffer.data(), size, name, useSubstitute, substitute).IsSuccess());
  require(std::memcmp(buffer.data(), expected.c_str(), buffer.size()) == 0);
  if (expected.empty()) return;
  buffer.pop_back();
  require(text.convertToMBCS(buffer.data(), size - 1, name, useSubstitute, substitute).IsFailure());
  require(buffer[0] == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const std::size_t choice = data[0];
  const char substitute = static_cast<char>(data[1]);
  const char* bytes = reinterpret_cast<const char*>(data) + 2;
  std::size_t count = size - 2;
  std::string name;
  if (choice < std::size(kNames)) {
    name = kNames[choice];
  } else {
    const std::size_t length = std::min<std::size_t>(choice - std::size(kNames), count);
    name = std::string(bytes, length).c_str();
    bytes += length;
    count -= length;
  }

  UConverter* const probe = open(name);
  const bool isKnown = probe != nullptr && name.size() <= 60;
  ucnv_close(probe);
  const std::string used = isKnown ? name : "";

  const std::u16string units = decode(used, bytes, count);
  const KOVAString text = KOVAString::fromBytes(bytes, static_cast<int>(count), name.c_str());
  require(holds(text, units));
  require(text.getBadConversion() == !isKnown);
  const std::string terminated(bytes, count);
  const std::size_t firstZero = std::strlen(terminated.c_str());
  require(holds(KOVAString(terminated.c_str(), name.c_str()), decode(used, bytes, firstZero)));

  // Any units, not only those that the code page has: the text itself, then the bytes as units.
  std::u16string anyUnits(count / 2, u'\0');
  std::memcpy(anyUnits.data(), bytes, 2 * anyUnits.size());
  for (const std::u16string& written : {units, anyUnits}) {
    const KOVAString ours = KOVAString::fromUnits(
        reinterpret_cast<const unsigned short*>(written.data()), static_cast<int>(written.size()));
    const std::string own = encode(used, written, '\0');
    require(ours.getConvertToMBCSSize(name.c_str()) == static_cast<int>(own.size()) + 1);
    checkWriting(ours, name.c_str(), own, false, substitute);
    checkWriting(ours, name.c_str(), encode(used, written, substitute), true, substitute);
  }
  return 0;
}
