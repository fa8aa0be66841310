// The string beside icu::UnicodeString, QString, std::u16string and OCCT's extended string, on the
// same texts.

#include "kovabase/strings/KOVAString.h"

#include <unicode/uchar.h>
#include <unicode/ucnv.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#ifdef KOVA_HAS_QT
#include <QHash>
#include <QString>
#endif
#ifdef KOVA_HAS_OCCT
#include <TCollection_ExtendedString.hxx>
#endif

namespace {

using Converter = std::unique_ptr<UConverter, void (*)(UConverter*)>;

const UChar* toICU(const char16_t* text) { return text; }
const unsigned short* toUnits(const char16_t* text) {
  return reinterpret_cast<const unsigned short*>(text);
}
int lengthOf(const std::u16string& text) { return static_cast<int>(text.size()); }

template <class Work>
void add(const std::string& name, Work work) {
  benchmark::RegisterBenchmark(name.c_str(), [work](benchmark::State& state) {
    for (auto _ : state) work();
  });
}

// `count` units that look like the names and numbers of a model, each line a little different.
std::string makeASCII(std::size_t count) {
  std::string text;
  for (unsigned i = 0; text.size() < count; ++i) {
    text += "Face_" + std::to_string(i * 7919U % 10007U) + " of Body.Main; ";
  }
  text.resize(count);
  return text;
}

// Words in five scripts between ASCII ones.
std::string makeMixed(std::size_t bytes) {
  const char* const words[] = {"plate ", "Größe ", "café ", "Δx=3.5 ", "фланец ", "bolt_M8 ",
                               "寸法 ",  "hole ",  "圆角 ", "0.125 ",  "😀 ",      "naïve "};
  std::string text;
  // Random, or the branch predictor would learn the order by heart.
  std::minstd_rand random(1);
  while (text.size() < bytes - 16) text += words[random() % 12U];
  return text + std::string(bytes - text.size(), '.');
}

std::u16string widen(const std::string& text) {
  icu::UnicodeString wide = icu::UnicodeString::fromUTF8(text);
  return std::u16string(wide.getBuffer(), static_cast<std::size_t>(wide.length()));
}

std::string sizeName(std::size_t count) {
  return count >= 1000000 ? std::to_string(count / 1000000) + "M" : std::to_string(count);
}

void addFromNarrow(std::size_t count) {
  const std::string text = makeASCII(count);
  const std::string size = "/" + sizeName(count);
  add("text from ASCII/KOVAString" + size,
      [text] { benchmark::DoNotOptimize(KOVAString(text.c_str())); });
  add("text from ASCII/icu::UnicodeString" + size,
      [text] { benchmark::DoNotOptimize(icu::UnicodeString::fromUTF8(text.c_str())); });
  add("text from ASCII/std::u16string" + size, [text] {
    const char* const begin = text.c_str();
    benchmark::DoNotOptimize(std::u16string(begin, begin + std::strlen(begin)));
  });
#ifdef KOVA_HAS_QT
  add("text from ASCII/QString" + size,
      [text] { benchmark::DoNotOptimize(QString::fromUtf8(text.c_str())); });
#endif
#ifdef KOVA_HAS_OCCT
  add("text from ASCII/TCollection_ExtendedString" + size,
      [text] { benchmark::DoNotOptimize(TCollection_ExtendedString(text.c_str())); });
#endif
  for (const char* codepage : {"ISO-8859-1", "US-ASCII", "latin1", "windows-1252"}) {
    const std::string work = std::string("text from ") + codepage + "/";
    add(work + "KOVAString" + size,
        [text, codepage] { benchmark::DoNotOptimize(KOVAString(text.c_str(), codepage)); });
    const std::shared_ptr<UConverter> converter(
        [codepage] {
          UErrorCode status = U_ZERO_ERROR;
          return ucnv_open(codepage, &status);
        }(),
        ucnv_close);
    add(work + "icu::UnicodeString" + size, [text, converter] {
      UErrorCode status = U_ZERO_ERROR;
      benchmark::DoNotOptimize(icu::UnicodeString(text.c_str(), -1, converter.get(), status));
    });
#ifdef KOVA_HAS_QT
    if (codepage != std::string("windows-1252")) {
      add(work + "QString" + size,
          [text] { benchmark::DoNotOptimize(QString::fromLatin1(text.c_str())); });
    }
#endif
  }
}

void addFromUTF8(const std::string& work, const std::string& text) {
  const std::string size = "/" + sizeName(text.size());
  add(work + "/KOVAString" + size,
      [text] { benchmark::DoNotOptimize(KOVAString(text.c_str(), "UTF-8")); });
  add(work + "/icu::UnicodeString" + size,
      [text] { benchmark::DoNotOptimize(icu::UnicodeString::fromUTF8(text.c_str())); });
#ifdef KOVA_HAS_QT
  add(work + "/QString" + size,
      [text] { benchmark::DoNotOptimize(QString::fromUtf8(text.c_str())); });
#endif
#ifdef KOVA_HAS_OCCT
  add(work + "/TCollection_ExtendedString" + size,
      [text] { benchmark::DoNotOptimize(TCollection_ExtendedString(text.c_str(), true)); });
#endif
}

// Ours and ICU's into a given buffer, with and without asking for the size before; QString's into
// a new array.
void addToUTF8(const std::string& work, const std::string& narrow) {
  const std::u16string text = widen(narrow);
  const std::string size = "/" + sizeName(narrow.size());
  const auto buffer = std::make_shared<std::vector<char>>(narrow.size() * 3 + 1);
  const KOVAString ours = KOVAString::fromUnits(toUnits(text.c_str()), lengthOf(text));
  add(work + "/KOVAString" + size, [ours, buffer] {
    benchmark::DoNotOptimize(ours.convertToUTF8(buffer->data(), static_cast<int>(buffer->size())));
  });
  add(work + "/KOVAString measured first" + size, [ours, buffer] {
    benchmark::DoNotOptimize(ours.convertToUTF8(buffer->data(), ours.getConvertToUTF8Size()));
  });
  const icu::UnicodeString wide(toICU(text.c_str()), lengthOf(text));
  add(work + "/icu::UnicodeString" + size, [wide, buffer] {
    icu::CheckedArrayByteSink sink(buffer->data(), static_cast<int>(buffer->size()));
    wide.toUTF8(sink);
    benchmark::DoNotOptimize(sink.NumberOfBytesWritten());
  });
#ifdef KOVA_HAS_QT
  const QString qt = QString::fromUtf16(text.c_str(), lengthOf(text));
  add(work + "/QString" + size, [qt] { benchmark::DoNotOptimize(qt.toUtf8()); });
#endif
}

void addToASCII() {
  const std::string text = makeASCII(200);
  const KOVAString ours(text.c_str());
  add("text to US-ASCII/KOVAString/200", [ours] {
    char buffer[256];
    benchmark::DoNotOptimize(ours.convertToMBCS(buffer, 256, "US-ASCII", true, '_'));
    benchmark::DoNotOptimize(buffer);
  });
  add("text to windows-1252/KOVAString/200", [ours] {
    char buffer[256];
    benchmark::DoNotOptimize(ours.convertToMBCS(buffer, 256, "windows-1252", true, '_'));
    benchmark::DoNotOptimize(buffer);
  });
  const icu::UnicodeString wide = icu::UnicodeString::fromUTF8(text);
  for (const char* codepage : {"US-ASCII", "windows-1252"}) {
    const std::string name = std::string("text to ") + codepage + "/icu::UnicodeString/200";
    add(name, [wide, codepage] {
      char buffer[256];
      benchmark::DoNotOptimize(wide.extract(0, wide.length(), buffer, 256, codepage));
    });
  }
#ifdef KOVA_HAS_QT
  const QString qt = QString::fromUtf8(text.c_str());
  add("text to US-ASCII/QString/200", [qt] { benchmark::DoNotOptimize(qt.toLatin1()); });
#endif
}

void addComposition() {
  const std::u16string left = widen(makeASCII(12));
  const std::u16string right = widen(makeASCII(24)).substr(12);
  const KOVAString ourLeft = KOVAString::fromUnits(toUnits(left.c_str()), 12);
  const KOVAString ourRight = KOVAString::fromUnits(toUnits(right.c_str()), 12);
  const icu::UnicodeString icuLeft(left.c_str(), 12);
  const icu::UnicodeString icuRight(right.c_str(), 12);
  add("copy texts/KOVAString/12", [ourLeft] { benchmark::DoNotOptimize(KOVAString(ourLeft)); });
  add("copy texts/icu::UnicodeString/12",
      [icuLeft] { benchmark::DoNotOptimize(icu::UnicodeString(icuLeft)); });
  add("copy texts/std::u16string/12", [left] { benchmark::DoNotOptimize(std::u16string(left)); });
  add("concatenate texts/KOVAString/12",
      [ourLeft, ourRight] { benchmark::DoNotOptimize(ourLeft + ourRight); });
  add("concatenate texts/icu::UnicodeString/12",
      [icuLeft, icuRight] { benchmark::DoNotOptimize(icuLeft + icuRight); });
  add("concatenate texts/std::u16string/12",
      [left, right] { benchmark::DoNotOptimize(left + right); });

  add("append and copy/KOVAString/1000", [ourLeft] {
    KOVAString text;
    for (int i = 0; i < 1000; ++i) text += ourLeft;
    benchmark::DoNotOptimize(text);
  });
  add("append and use the copy/KOVAString/1000", [ourLeft] {
    KOVAString text;
    for (int i = 0; i < 1000; ++i) {
      const KOVAString copy = text += ourLeft;
      benchmark::DoNotOptimize(copy);
    }
    benchmark::DoNotOptimize(text);
  });
  add("append/KOVAString/1000", [ourLeft] {
    KOVAString text;
    for (int i = 0; i < 1000; ++i) text.append(ourLeft);
    benchmark::DoNotOptimize(text);
  });
  add("append/icu::UnicodeString/1000", [icuLeft] {
    icu::UnicodeString text;
    for (int i = 0; i < 1000; ++i) text += icuLeft;
    benchmark::DoNotOptimize(text);
  });
  add("append and use the copy/icu::UnicodeString sharing/1000", [icuLeft] {
    icu::UnicodeString text;
    for (int i = 0; i < 1000; ++i) {
      const icu::UnicodeString copy = text += icuLeft;
      benchmark::DoNotOptimize(copy);
    }
    benchmark::DoNotOptimize(text);
  });
  add("append and copy/icu::UnicodeString copied/1000", [icuLeft] {
    icu::UnicodeString text;
    for (int i = 0; i < 1000; ++i) {
      text += icuLeft;
      const icu::UnicodeString copy(text.getBuffer(), text.length());
      benchmark::DoNotOptimize(copy);
    }
    benchmark::DoNotOptimize(text);
  });
  add("append/std::u16string/1000", [left] {
    std::u16string text;
    for (int i = 0; i < 1000; ++i) text += left;
    benchmark::DoNotOptimize(text);
  });
#ifdef KOVA_HAS_QT
  const QString qtLeft = QString::fromUtf16(left.c_str(), 12);
  const QString qtRight = QString::fromUtf16(right.c_str(), 12);
  add("concatenate texts/QString/12",
      [qtLeft, qtRight] { benchmark::DoNotOptimize(QString(qtLeft + qtRight)); });
  add("append/QString/1000", [qtLeft] {
    QString text;
    for (int i = 0; i < 1000; ++i) text += qtLeft;
    benchmark::DoNotOptimize(text);
  });
#endif
}

// Equal but for the case of every third letter, so that the whole of both is looked at.
void addFoldedComparison(const char* kind, std::u16string text) {
  std::u16string other = text;
  for (std::size_t i = 0; i < other.size(); i += 3) {
    icu::UnicodeString unit(other[i]);
    unit.toUpper();
    if (unit.length() == 1) other[i] = unit[0];
  }
  const std::string work = std::string("compare ") + kind + " ignoring case/";
  const std::string size = "/" + sizeName(text.size());
  const int count = lengthOf(text);
  const KOVAString ourText = KOVAString::fromUnits(toUnits(text.c_str()), count);
  const KOVAString ourOther = KOVAString::fromUnits(toUnits(other.c_str()), count);
  add(work + "KOVAString" + size,
      [ourText, ourOther] { benchmark::DoNotOptimize(ourText.compareToIgnoreCase(ourOther)); });
  const icu::UnicodeString icuText(text.c_str(), count);
  const icu::UnicodeString icuOther(other.c_str(), count);
  add(work + "icu::UnicodeString" + size, [icuText, icuOther] {
    benchmark::DoNotOptimize(icuText.caseCompare(icuOther, U_FOLD_CASE_DEFAULT));
  });
#ifdef KOVA_HAS_QT
  const QString qtText = QString::fromUtf16(text.c_str(), count);
  const QString qtOther = QString::fromUtf16(other.c_str(), count);
  add(work + "QString" + size, [qtText, qtOther] {
    benchmark::DoNotOptimize(qtText.compare(qtOther, Qt::CaseInsensitive));
  });
#endif
}

void addSearch(std::size_t count) {
  std::u16string text = widen(makeASCII(count));
  const std::u16string pattern = u"Shell.Main;";
  std::copy(pattern.begin(), pattern.end(), text.end() - 16);
  const std::string work = "find a text/";
  const std::string size = "/" + sizeName(count);
  const KOVAString ourText = KOVAString::fromUnits(toUnits(text.c_str()), lengthOf(text));
  const KOVAString ourPattern = KOVAString::fromUnits(toUnits(pattern.c_str()), lengthOf(pattern));
  add(work + "KOVAString" + size,
      [ourText, ourPattern] { benchmark::DoNotOptimize(ourText.indexOf(ourPattern, 0)); });
  const icu::UnicodeString icuText(text.c_str(), lengthOf(text));
  const icu::UnicodeString icuPattern(pattern.c_str(), lengthOf(pattern));
  add(work + "icu::UnicodeString" + size,
      [icuText, icuPattern] { benchmark::DoNotOptimize(icuText.indexOf(icuPattern)); });
  add(work + "std::u16string" + size,
      [text, pattern] { benchmark::DoNotOptimize(text.find(pattern)); });
#ifdef KOVA_HAS_QT
  const QString qtText = QString::fromUtf16(text.c_str(), lengthOf(text));
  const QString qtPattern = QString::fromUtf16(pattern.c_str(), lengthOf(pattern));
  add(work + "QString" + size,
      [qtText, qtPattern] { benchmark::DoNotOptimize(qtText.indexOf(qtPattern)); });
#endif
#ifdef KOVA_HAS_OCCT
  const TCollection_ExtendedString occtText(text.c_str());
  const TCollection_ExtendedString occtPattern(pattern.c_str());
  add(work + "TCollection_ExtendedString" + size,
      [occtText, occtPattern] { benchmark::DoNotOptimize(occtText.Search(occtPattern)); });
#endif
}

void addHash() {
  const std::u16string text = widen(makeASCII(200));
  const KOVAString ours = KOVAString::fromUnits(toUnits(text.c_str()), 200);
  const icu::UnicodeString wide(text.c_str(), 200);
  add("hash/KOVAString/200", [ours] { benchmark::DoNotOptimize(ours.hashCode()); });
  add("hash/icu::UnicodeString/200", [wide] { benchmark::DoNotOptimize(wide.hashCode()); });
#ifdef KOVA_HAS_QT
  const QString qt = QString::fromUtf16(text.c_str(), 200);
  add("hash/QString/200", [qt] { benchmark::DoNotOptimize(qHash(qt)); });
#endif
}

}  // namespace

int main(int count, char** arguments) {
  constexpr std::size_t kMillion = 1000000;
  for (const std::size_t units : {std::size_t{12}, std::size_t{200}, kMillion}) {
    addFromNarrow(units);
  }
  for (const std::size_t bytes : {std::size_t{200}, kMillion}) {
    addFromUTF8("text from mixed UTF-8", makeMixed(bytes));
    addToUTF8("ASCII to UTF-8", makeASCII(bytes));
    addToUTF8("mixed text to UTF-8", makeMixed(bytes));
    addSearch(bytes);
  }
  std::string cyrillic;
  for (unsigned i = 0; i < 500000; ++i) cyrillic += {'\xD0', static_cast<char>(0xB0 + i * 31 % 16)};
  addFromUTF8("text from Cyrillic UTF-8", cyrillic);
  addToUTF8("Cyrillic to UTF-8", cyrillic);
  addToASCII();
  addComposition();
  for (const std::size_t units : {std::size_t{12}, std::size_t{200}}) {
    addFoldedComparison("ASCII", widen(makeASCII(units)));
    addFoldedComparison("mixed", widen(makeMixed(4 * units)).substr(0, units));
  }
  addHash();
  benchmark::Initialize(&count, arguments);
  if (benchmark::ReportUnrecognizedArguments(count, arguments)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
