// Loads a plug-in by its name and calls a function of it; shows what is said when that fails.
// Usage: load_plugin FOLDER

#include <kovabase/KOVABase.h>

#include <cstdio>

namespace {

class Messages : public KOVCEventListener {
 public:
  Messages() { KOVCEventBus::GetEventBus().AddListener(this); }
  ~Messages() override { KOVCEventBus::GetEventBus().RemoveListener(this); }
  void HandleEvent(KOVCEvent& event) override {
    if (event.GetLevel() < KOVAEventLevels::kMessage) return;
    KOVAStringOutputStream text;
    event.GetFormattedDescription(&text);
    std::printf("  %s", text.GetBytes());
  }
};

void show(const char* what, const KOVAString& text) {
  char shown[200];
  text.convertToUTF8(shown, sizeof shown);
  std::printf("%s: %s\n", what, shown);
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) return 2;
  const Messages messages;

  // [load]
  KOVALibrary::AddDirectoryToPath(arguments[1]);
  KOVAVexilLibrary plugin("shape_plugin", "ShapeInitialize", "ShapeFinalize");
  void* function = nullptr;
  if (plugin.GetFunction("ShapeArea", function).IsFailure()) return 1;
  const auto area = reinterpret_cast<double (*)(double, double)>(function);
  std::printf("area %g\n", area(4.0, 2.5));
  // [load]

  // [missing-function]
  const KOVAResult result = plugin.GetFunction("ShapeVolume", function);
  // [missing-function]
  std::printf("missing function: %s\n", result.GetMessage());

  // [missing]
  KOVAVexilLibrary missing("no_such_plugin", "", "");
  if (missing.Load().IsFailure()) {
    const KOVALibraryHandle library = missing.GetLibrary();
    // Every place that was tried, in order; the last one is the system's own search.
    const KOVADynamicArray<KOVAString>& places = library->GetTriedPlaces();
    show("tried last", places[places.size() - 1]);
    show("reason", library->GetLoadError());
  }
  // [missing]

  // [free]
  KOVALibraryManager::FreeLibraries();
  // [free]
  return 0;
}
