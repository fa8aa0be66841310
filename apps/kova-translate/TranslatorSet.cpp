#include "apps/kova-translate/TranslatorSet.h"

#include "apps/kova-translate/Text.h"
#include "kovabase/files/KOVALibrary.h"
#include "kovabase/options/KOVAProcessUtils.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace kova::translate {

namespace {

constexpr const char* kNumberFunction = "KOVATranslatorInterfaceNumber";
constexpr const char* kInitializeFunction = "KOVATranslatorInitialize";
constexpr const char* kFinalizeFunction = "KOVATranslatorFinalize";
constexpr const char* kDescribeFunction = "KOVATranslatorDescribe";
constexpr const char* kReaderFunction = "KOVATranslatorCreateReader";
constexpr const char* kWriterFunction = "KOVATranslatorCreateWriter";

}  // namespace

TranslatorSet::TranslatorSet() {
  if (const char* const variable = std::getenv("KOVA_TRANSLATORS")) {
    const std::string_view folders = variable;
    for (std::size_t start = 0; start <= folders.size();) {
      const std::size_t end = std::min(folders.find(':', start), folders.size());
      if (end > start) {
        KOVALibrary::AddDirectoryToPath(toPathText(folders.substr(start, end - start)));
      }
      start = end + 1;
    }
  }
  const KOVAString program = KOVAProcessUtils::GetProgramDirectory();
  if (program.isEmpty()) return;
  KOVALibrary::AddDirectoryToPath(program + "/../lib");
  KOVALibrary::AddDirectoryToPath(program + "/" KOVA_INSTALLED_TRANSLATORS);
}

const TranslatorSet::Entry& TranslatorSet::Load(const Format& format) {
  const auto [at, isNew] = _entries.try_emplace(format.name);
  if (isNew) Fill(at->second, format);
  return at->second;
}

void TranslatorSet::Fill(Entry& entry, const Format& format) {
  const KOVAString name = KOVAString("kova_") + format.name;
  // Without its functions first: nothing in a library of another interface may be called but the
  // number.
  KOVALibrary probe(name, KOVAString(), KOVAString());
  const bool isLoaded = probe.LoadAndInitialize(true).IsSuccess();
  for (const KOVAString& place : probe.GetTriedPlaces()) entry.places.push_back(toUtf8(place));
  if (!isLoaded) {
    entry.reason = toUtf8(probe.GetLoadError());
    return;
  }
  const auto find = [&](const char* functionName) -> void* {
    void* function = nullptr;
    probe.GetFunction(functionName, function);
    if (function == nullptr) entry.reason = std::string("it has no function ") + functionName;
    return function;
  };
  const auto getNumber =
      reinterpret_cast<decltype(&KOVATranslatorInterfaceNumber)>(find(kNumberFunction));
  if (getNumber == nullptr) {
    entry.reason = std::string("it is not a translator: ") + entry.reason;
    return;
  }
  const int number = getNumber();
  if (number != translators::kInterfaceNumber) {
    entry.reason = "it was built for translator interface " + std::to_string(number) +
                   ", this program has interface " + std::to_string(translators::kInterfaceNumber);
    return;
  }
  if (find(kInitializeFunction) == nullptr || find(kFinalizeFunction) == nullptr) return;
  const auto describe =
      reinterpret_cast<decltype(&KOVATranslatorDescribe)>(find(kDescribeFunction));
  if (describe == nullptr) return;
  Translator& translator = entry.translator;
  if (format.isRead) {
    translator.createReader =
        reinterpret_cast<decltype(&KOVATranslatorCreateReader)>(find(kReaderFunction));
    if (translator.createReader == nullptr) return;
  }
  if (format.isWritten) {
    translator.createWriter =
        reinterpret_cast<decltype(&KOVATranslatorCreateWriter)>(find(kWriterFunction));
    if (translator.createWriter == nullptr) return;
  }
  // The same file once more, for the manager to hold: what was found above stays valid.
  if (KOVAVexilLibrary(name, kInitializeFunction, kFinalizeFunction).Load().IsFailure()) {
    entry.reason = "its initialisation has failed";
    return;
  }
  translator.description = describe();
  entry.path = entry.places.back();
  entry.isUsable = true;
}

}  // namespace kova::translate
