// Listens to the bus: shows what is reported from a level on, and counts the warnings.

#include <kovabase/KOVABase.h>

#include <cstdio>

namespace {

// [listener]
class Console : public KOVCEventListener {
 public:
  explicit Console(KOVAEventLevel level) : _level(level) {
    KOVCEventBus::GetEventBus().AddListener(this);
  }
  ~Console() override { KOVCEventBus::GetEventBus().RemoveListener(this); }

  void HandleEvent(KOVCEvent& event) override {
    if (dynamic_cast<KOVAWarningEvent*>(&event) != nullptr) ++_warnings;
    if (event.GetLevel() < _level) return;
    KOVAStringOutputStream text;
    event.GetFormattedDescription(&text);
    std::fputs(text.GetBytes(), stdout);
  }

  int GetWarnings() const { return _warnings; }

 private:
  KOVAEventLevel _level;
  int _warnings = 0;
};
// [listener]

}  // namespace

int main() {
  const Console console(KOVAEventLevels::kMessage);

  // [channels]
  KOVAInfo::Printf("reading %s", "housing.step");
  KOVAInfo::Tab();
  KOVAInfo::Printf("%d faces", 6);
  KOVAInfo::Untab();
  KOVAWarning::Printf("%d faces without a surface", 2);
  KOVADebug::Printf("cache at %d entries", 128);  // level 10: not shown here
  // [channels]

  // [events]
  KOVAStartReadFileTaskEvent::Fire("housing.step");
  KOVAErrorEvent::Fire("line %d: a number expected", 17);
  KOVAEndReadFileTaskEvent::Fire(KOVAResultCode::kInvalidFile, nullptr);
  // [events]

  std::printf("%d warning\n", console.GetWarnings());
  return 0;
}
