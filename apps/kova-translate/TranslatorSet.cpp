#include "apps/kova-translate/TranslatorSet.h"

#include "kovabase/platform/Environment.h"
#include "kovabase/platform/Module.h"
#include "kovabase/platform/Process.h"

#include <algorithm>

namespace kova::translate {

namespace {

template <typename Function>
Function findFunction(void* module, const char* name) {
  return reinterpret_cast<Function>(platform::findSymbol(module, name));
}

}  // namespace

Translator::~Translator() {
  if (_finalize != nullptr) _finalize();
  platform::closeModule(_module);
}

std::unique_ptr<Translator> Translator::Load(const std::string& path, std::string& reason) {
  std::unique_ptr<Translator> loaded(new Translator);
  loaded->_path = path;
  loaded->_module = platform::openModule(path, reason);
  if (loaded->_module == nullptr) return nullptr;

  void* module = loaded->_module;
  const auto getNumber = findFunction<decltype(&KOVATranslatorInterfaceNumber)>(
      module, "KOVATranslatorInterfaceNumber");
  if (getNumber == nullptr) {
    reason = "it is not a translator: it has no function KOVATranslatorInterfaceNumber";
    return nullptr;
  }
  const int number = getNumber();
  if (number != translators::kInterfaceNumber) {
    reason = "it was built for translator interface " + std::to_string(number) +
             ", this program has interface " + std::to_string(translators::kInterfaceNumber);
    return nullptr;
  }
  const auto initialize =
      findFunction<decltype(&KOVATranslatorInitialize)>(module, "KOVATranslatorInitialize");
  const auto finalize =
      findFunction<decltype(&KOVATranslatorFinalize)>(module, "KOVATranslatorFinalize");
  const auto describe =
      findFunction<decltype(&KOVATranslatorDescribe)>(module, "KOVATranslatorDescribe");
  if (initialize == nullptr || finalize == nullptr || describe == nullptr) {
    reason =
        std::string("it has no function ") + (initialize == nullptr ? "KOVATranslatorInitialize"
                                              : finalize == nullptr ? "KOVATranslatorFinalize"
                                                                    : "KOVATranslatorDescribe");
    return nullptr;
  }
  initialize();
  loaded->_finalize = finalize;
  loaded->_description = describe();
  loaded->_createReader =
      findFunction<decltype(&KOVATranslatorCreateReader)>(module, "KOVATranslatorCreateReader");
  loaded->_createWriter =
      findFunction<decltype(&KOVATranslatorCreateWriter)>(module, "KOVATranslatorCreateWriter");
  return loaded;
}

std::unique_ptr<translators::Reader> Translator::CreateReader() const {
  return std::unique_ptr<translators::Reader>(_createReader != nullptr ? _createReader() : nullptr);
}

std::unique_ptr<translators::Writer> Translator::CreateWriter() const {
  return std::unique_ptr<translators::Writer>(_createWriter != nullptr ? _createWriter() : nullptr);
}

TranslatorSet::TranslatorSet() {
  std::string folders;
  if (platform::readVariable("KOVA_TRANSLATORS", folders)) {
    for (std::size_t start = 0; start <= folders.size();) {
      const std::size_t end = std::min(folders.find(':', start), folders.size());
      if (end > start) _places.push_back(folders.substr(start, end - start) + "/");
      start = end + 1;
    }
  }
  const std::string program = platform::programFolder();
  if (!program.empty()) {
    _places.push_back(program + "/../lib/");
    _places.push_back(program + "/" KOVA_INSTALLED_TRANSLATORS "/");
  }
  // The name alone is looked for by the loader's own rules.
  _places.emplace_back();
}

const Translator* TranslatorSet::Find(const Format& format, std::string& problem) {
  const auto [at, isNew] = _entries.try_emplace(format.name);
  Entry& entry = at->second;
  if (isNew) {
    const std::string name = std::string("libkova_") + format.name + ".so";
    for (const std::string& place : _places) {
      const std::string path = place + name;
      std::string reason;
      entry.translator = Translator::Load(path, reason);
      if (entry.translator != nullptr) break;
      // The loader begins its reasons with the name of the library.
      if (reason.rfind(path + ": ", 0) == 0) reason.erase(0, path.size() + 2);
      entry.problem.append("  ").append(path).append(": ").append(reason).append("\n");
    }
  }
  if (entry.translator == nullptr) problem = entry.problem;
  return entry.translator.get();
}

}  // namespace kova::translate
