// STEP escapes beside plain widening of the same bytes, numbers and tokens beside the standard
// library, the C runtime and QString. Names are work/texts/library.

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

void addEscapes(std::size_t groups) {
  std::string text;
  for (std::size_t i = 0; i < groups; ++i) text += "\\X2\\00E9\\X0\\a";
  std::string shifts;
  for (std::size_t i = 0; i < groups; ++i) shifts += "\\S\\iFace_12a";
  const std::string size = std::to_string(groups);

  const auto decode = [](const std::string& escaped) {
    KOVAString decoded;
    KOVAStringISO1030321Reader reader;
    if (reader.ConvertFromASCII(escaped.c_str(), decoded).IsFailure()) std::abort();
    benchmark::DoNotOptimize(decoded);
  };
  add("decode_escapes/" + size + "/kova", groups, [text, decode] { decode(text); });
  add("decode_shifts/" + size + "/kova", groups, [shifts, decode] { decode(shifts); });

  KOVAString decoded;
  KOVAStringISO1030321Reader().ConvertFromASCII(text.c_str(), decoded);
  add("encode_escapes/" + size + "/kova", groups, [decoded] {
    KOVAStringISO1030321Writer writer;
    const char* encoded = nullptr;
    if (writer.ConvertToASCII(decoded, encoded).IsFailure()) std::abort();
    benchmark::DoNotOptimize(encoded);
  });
  add("widen_escapes/" + size + "/kova", groups,
      [text] { benchmark::DoNotOptimize(KOVAString(text.c_str(), "US-ASCII")); });
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
  const std::string suffix = std::string("/") + kind + "/";
  addEach("from_double" + suffix + "kova", values,
          [](double value) { benchmark::DoNotOptimize(KOVAStringFromDouble(value)); });
  addEach("from_double" + suffix + "to_chars_string", values, [](double value) {
    char text[32];
    benchmark::DoNotOptimize(
        std::string(text, std::to_chars(text, text + sizeof(text), value).ptr));
  });
  addEach("from_double" + suffix + "snprintf", values, [](double value) {
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
  addEach("to_double" + suffix + "kova", toKova(texts), [](const KOVAString& text) {
    double value = 0.0;
    KOVAStringToDouble(text, value);
    benchmark::DoNotOptimize(value);
  });
  addEach("to_double" + suffix + "kova_narrow", texts, [](const std::string& text) {
    const char* end = nullptr;
    benchmark::DoNotOptimize(KOVAFloatUtil::FromText(text.c_str(), end));
  });
  addEach("to_double" + suffix + "from_chars", texts, [](const std::string& text) {
    double value = 0.0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    benchmark::DoNotOptimize(value);
  });
  addEach("to_double" + suffix + "strtod", texts, [](const std::string& text) {
    benchmark::DoNotOptimize(std::strtod(text.c_str(), nullptr));
  });
#ifdef KOVA_HAS_QT
  addEach("from_double" + suffix + "qt", values, [](double value) {
    benchmark::DoNotOptimize(QString::number(value, 'g', QLocale::FloatingPointShortest));
  });
  addEach("to_double" + suffix + "qt", toQt(texts),
          [](const QString& text) { benchmark::DoNotOptimize(text.toDouble()); });
#endif
}

void addIntegers() {
  std::minstd_rand random(1);
  std::vector<std::string> texts;
  for (int i = 0; i < 1000; ++i) texts.push_back(std::to_string(static_cast<int>(random())));
  addEach("to_integer/10/kova", toKova(texts), [](const KOVAString& text) {
    int value = 0;
    KOVAStringToInteger(text, value);
    benchmark::DoNotOptimize(value);
  });
  addEach("to_integer/10/strtol", texts, [](const std::string& text) {
    benchmark::DoNotOptimize(std::strtol(text.c_str(), nullptr, 10));
  });
#ifdef KOVA_HAS_QT
  addEach("to_integer/10/qt", toQt(texts),
          [](const QString& text) { benchmark::DoNotOptimize(text.toInt()); });
#endif
}

void addTokens() {
  const std::vector<std::string> texts(1000, "Step.Reader.Surface.Tolerance");
  addEach("tokens/4/kova", toKova(texts), [](const KOVAString& text) {
    benchmark::DoNotOptimize(KOVAStringTokenizer(text, '.').GetTokenCount());
  });
#ifdef KOVA_HAS_QT
  addEach("tokens/4/qt", toQt(texts),
          [](const QString& text) { benchmark::DoNotOptimize(text.split('.').size()); });
#endif
}

}  // namespace

int main(int count, char** arguments) {
  for (const std::size_t groups : {10U, 1000U, 100000U, 1000000U, 10000000U}) addEscapes(groups);
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
