// Files options under contexts, finds the one that applies, and lets the environment override one.

#include <kovabase/KOVABase.h>

#include <cstdio>

namespace {

double tolerance(const KOVAOptions& options, const char* name) {
  KOVAOption* option = nullptr;
  double value = -1.0;
  if (options.GetOption(name, option).IsSuccess()) option->GetValue(value);
  return value;
}

// [declare]
// A declared name lives as long as the process: what is not declared is a slip of the pen.
const KOVAOptionName kAngleUnit(KOVAString("AngleUnit"));
// [declare]

class Warnings : public KOVCEventListener {
 public:
  Warnings() { KOVCEventBus::GetEventBus().AddListener(this); }
  ~Warnings() override { KOVCEventBus::GetEventBus().RemoveListener(this); }
  void HandleEvent(KOVCEvent& event) override {
    KOVAStringOutputStream text;
    event.GetFormattedDescription(&text);
    std::printf("  %s", text.GetBytes());
  }
};

}  // namespace

int main() {
  // [file]
  KOVAOptions options;
  options.AddOption("Tolerance", 0.1);  // in every context
  options.AddOption("*.Curve.Tolerance", 0.05);
  options.AddOption("Step.Tolerance", 0.01);
  options.AddOption("Step.Curve.Tolerance", 0.001);
  // [file]

  for (const char* name : {"Stl.Tolerance", "Iges.Curve.Tolerance", "step.tolerance",
                           "Step.Surface.Tolerance", "Step.Curve.Tolerance"}) {
    std::printf("%s: %g\n", name, tolerance(options, name));
  }

  // [environment]
  KOVAOption angleUnit(kAngleUnit, "degree");
  const KOVAEnvironmentVariableScoped guard("KOVAAngleUnit", "radian");
  const Warnings warnings;
  KOVAString value;
  angleUnit.GetValue(value, true);  // true: the environment comes first
  // [environment]
  char text[16];
  value.convertToUTF8(text, sizeof text);
  std::printf("AngleUnit: %s\n", text);

  std::printf("AngelUnit is %s\n",
              KOVAOptionName::IsValid("AngelUnit").IsSuccess() ? "declared" : "not declared");
  return 0;
}
