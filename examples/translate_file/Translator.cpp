#include "Translator.h"

namespace {

// Null, which has been reported, when the library has no such function.
template <class Function, class Library>
Function* find(Library& library, const char* name) {
  void* function = nullptr;
  library.GetFunction(name, function);
  return reinterpret_cast<Function*>(function);
}

}  // namespace

Translator::Translator(const KOVAString& format)
    : _name("kova_" + format),
      _library(_name, "KOVATranslatorInitialize", "KOVATranslatorFinalize") {}

// [load]
KOVAResult Translator::Load() {
  // Without its functions first: of a library that was made for another program nothing may be
  // called but the number.
  KOVALibrary probe(_name, KOVAString(), KOVAString());
  const KOVAResult result = probe.LoadAndInitialize(true);
  if (result.IsFailure()) return result;
  const auto number =
      find<decltype(KOVATranslatorInterfaceNumber)>(probe, "KOVATranslatorInterfaceNumber");
  if (number == nullptr) return KOVAResultCode::kNotSupported;
  if (number() != kova::translators::kInterfaceNumber) {
    KOVAErrorEvent::Fire("the translator was built for interface %d", number());
    return KOVAResultCode::kNotSupported;
  }
  return _library.Load();
}
// [load]

// [create]
KOVAFormatReader* Translator::CreateReader(const kova::translators::ReadRequest& request) {
  const auto create =
      find<decltype(KOVATranslatorCreateReader)>(_library, "KOVATranslatorCreateReader");
  return create != nullptr ? create(&request) : nullptr;
}

KOVAFormatWriter* Translator::CreateWriter(const kova::translators::WriteRequest& request) {
  const auto create =
      find<decltype(KOVATranslatorCreateWriter)>(_library, "KOVATranslatorCreateWriter");
  return create != nullptr ? create(&request) : nullptr;
}
// [create]
