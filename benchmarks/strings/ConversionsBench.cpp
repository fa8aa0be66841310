// STEP escapes beside plain widening of the same bytes, numbers and tokens beside the standard
// library, the C runtime and QString.

#include "kovabase/strings/KOVAFloatUtil.h"
#include "kovabase/strings/KOVAString.h"
#include "kovabase/strings/KOVAStringConversions.h"
#include "kovabase/strings/KOVAStringISO1030321Reader.h"
#include "kovabase/strings/KOVAStringISO1030321Writer.h"
#include "kovabase/strings/KOVAStringTokenizer.h"

#include <benchmark/benchmark.h>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#ifdef KOVA_HAS_QT
#include <QLocale>
#include <QString>
#include <QStringList>
#endif

namespace {

template <typename Work>
void add(const std::string& name, std::size_t items, Work work) {
  benchmark::RegisterBenchmark(name.c_str(), [work, items](benchmark::State& state) {
    for (auto _ : state) work();
    state.SetItemsProcessed(static_cast<int64_t>(items) * state.iterations());
  });
}

// What decoding cannot be faster than: the same bytes become a string.
void addWidening(const std::string& work, const std::string& text, std::size_t groups) {
  add(work + "/widening/" + std::to_string(groups), groups,
      [text] { benchmark::DoNotOptimize(KOVAString(text.c_str(), "US-ASCII")); });
}

KOVAString decode(const std::string& text) {
  KOVAString decoded;
  KOVAStringISO1030321Reader reader;
  if (reader.ConvertFromASCII(text.c_str(), decoded).IsFailure()) std::abort();
  return decoded;
}

void addDecoding(const std::string& work, const std::string& group, std::size_t groups) {
  std::string text;
  for (std::size_t i = 0; i < groups; ++i) text += group;
  add(work + "/KOVAStringISO1030321Reader/" + std::to_string(groups), groups,
      [text] { benchmark::DoNotOptimize(decode(text)); });
  addWidening(work, text, groups);
}

void addEncoding(const std::string& work, const std::string& group, std::size_t groups) {
  std::string text;
  for (std::size_t i = 0; i < groups; ++i) text += group;
  add(work + "/KOVAStringISO1030321Writer/" + std::to_string(groups), groups,
      [decoded = decode(text)] {
        KOVAStringISO1030321Writer writer;
        const char* encoded = nullptr;
        if (writer.ConvertToASCII(decoded, encoded).IsFailure()) std::abort();
        benchmark::DoNotOptimize(encoded);
      });
  addWidening(work, text, groups);
}

// Works on 1,000 texts in turn, so that no branch is learned by heart.
template <typename Text, typename Work>
void addEach(const std::string& name, const std::vector<Text>& texts, Work work) {
  add(name, texts.size(), [texts, work] {
    for (const Text& text : texts) work(text);
  });
}

#ifdef KOVA_HAS_QT
std::vector<QString> toQt(const std::vector<std::string>& texts) {
  std::vector<QString> result;
  for (const std::string& text : texts) result.push_back(QString::fromLatin1(text.c_str()));
  return result;
}
#endif

std::vector<KOVAString> toKova(const std::vector<std::string>& texts) {
  std::vector<KOVAString> result;
  for (const std::string& text : texts) result.emplace_back(text.c_str(), "US-ASCII");
  return result;
}

void addNumbers(const char* kind, const std::vector<double>& values) {
  const std::string suffix = std::string("/") + kind;
  addEach("double to text/KOVAStringFromDouble" + suffix, values,
          [](double value) { benchmark::DoNotOptimize(KOVAStringFromDouble(value)); });
  addEach("double to text/std::to_chars" + suffix, values, [](double value) {
    char text[32];
    benchmark::DoNotOptimize(
        std::string(text, std::to_chars(text, text + sizeof(text), value).ptr));
  });
  addEach("double to text/snprintf" + suffix, values, [](double value) {
    char text[32];
    std::snprintf(text, sizeof(text), "%.17g", value);
    benchmark::DoNotOptimize(text);
  });

  std::vector<std::string> texts;
  for (const double value : values) {
    char text[KOVAFloatUtil::kTextSize];
    KOVAFloatUtil::ToText(value, text);
    texts.emplace_back(text);
  }
  addEach("double from text/KOVAStringToDouble" + suffix, toKova(texts),
          [](const KOVAString& text) {
            double value = 0.0;
            KOVAStringToDouble(text, value);
            benchmark::DoNotOptimize(value);
          });
  addEach("double from narrow text/KOVAFloatUtil" + suffix, texts, [](const std::string& text) {
    const char* end = nullptr;
    benchmark::DoNotOptimize(KOVAFloatUtil::FromText(text.c_str(), end));
  });
  addEach("double from narrow text/std::from_chars" + suffix, texts, [](const std::string& text) {
    double value = 0.0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    benchmark::DoNotOptimize(value);
  });
  addEach("double from narrow text/strtod" + suffix, texts, [](const std::string& text) {
    benchmark::DoNotOptimize(std::strtod(text.c_str(), nullptr));
  });
#ifdef KOVA_HAS_QT
  addEach("double to text/QString" + suffix, values, [](double value) {
    benchmark::DoNotOptimize(QString::number(value, 'g', QLocale::FloatingPointShortest));
  });
  addEach("double from text/QString" + suffix, toQt(texts),
          [](const QString& text) { benchmark::DoNotOptimize(text.toDouble()); });
#endif
}

void addIntegers() {
  std::minstd_rand random(1);
  std::vector<std::string> texts;
  for (int i = 0; i < 1000; ++i) texts.push_back(std::to_string(static_cast<int>(random())));
  addEach("integer from text/KOVAStringToInteger", toKova(texts), [](const KOVAString& text) {
    int value = 0;
    KOVAStringToInteger(text, value);
    benchmark::DoNotOptimize(value);
  });
  addEach("integer from text/strtol", texts, [](const std::string& text) {
    benchmark::DoNotOptimize(std::strtol(text.c_str(), nullptr, 10));
  });
#ifdef KOVA_HAS_QT
  addEach("integer from text/QString", toQt(texts),
          [](const QString& text) { benchmark::DoNotOptimize(text.toInt()); });
#endif
}

void addTokens() {
  const std::vector<std::string> texts(1000, "Step.Reader.Surface.Tolerance");
  addEach("split at a character/KOVAStringTokenizer", toKova(texts), [](const KOVAString& text) {
    benchmark::DoNotOptimize(KOVAStringTokenizer(text, '.').GetTokenCount());
  });
#ifdef KOVA_HAS_QT
  addEach("split at a character/QString", toQt(texts),
          [](const QString& text) { benchmark::DoNotOptimize(text.split('.').size()); });
#endif
}

}  // namespace

int main(int count, char** arguments) {
  for (const std::size_t groups : {10U, 1000U, 100000U, 1000000U, 10000000U}) {
    addDecoding("decode STEP escapes", "\\X2\\00E9\\X0\\a", groups);
    addDecoding("decode STEP shifts", "\\S\\iFace_12a", groups);
    addEncoding("encode STEP escapes", "\\X2\\00E9\\X0\\a", groups);
  }
  std::minstd_rand random(1);
  std::vector<double> coordinates;
  std::vector<double> any;
  for (int i = 0; i < 1000; ++i) {
    coordinates.push_back(static_cast<double>(random() % 2000000U) / 1000.0 - 1000.0);
    const std::uint64_t bits = (std::uint64_t{random()} << 33) ^ (std::uint64_t{random()} << 11);
    double value = 0.0;
    std::memcpy(&value, &bits, sizeof(value));
    any.push_back(value);
  }
  addNumbers("coordinates", coordinates);
  addNumbers("any", any);
  addIntegers();
  addTokens();
  benchmark::Initialize(&count, arguments);
  if (benchmark::ReportUnrecognizedArguments(count, arguments)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
