// A program with four settings that takes them from its code, a configuration file and the
// environment, and shows after each which value holds and what was said about it.
// Usage: kova_settings_precedence CONFIGURATION GOLDEN; fails when the output is not the golden
// one.

#include "kovabase/options/KOVAOptionName.h"
#include "kovabase/options/KOVAOptions.h"
#include "tests/support/RecordedEvents.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

namespace {

const KOVAOptionName kAngle("AngleTolerance");
const KOVAOptionName kHeal("HealSurfaces");
const KOVAOptionName kSteps("ToleranceSteps");
const KOVAOptionName kUnit("LengthUnit");

std::string utf8(const KOVAString& text) {
  std::string bytes(static_cast<std::size_t>(text.getConvertToUTF8Size()), '\0');
  text.convertToUTF8(bytes.data(), static_cast<int>(bytes.size()));
  bytes.pop_back();
  return bytes;
}

class Program {
 public:
  Program() {
    _options.AddOption(KOVAOption(kAngle, 0.5));
    _options.AddOption(KOVAOption(kHeal, true));
    _options.AddOption(KOVAOption(kSteps, 8));
    _options.AddOption(KOVAOption(kUnit, "mm"));
    show("defaults");
  }

  void readConfiguration(const char* path) {
    KOVAOptions filed;
    if (filed.ReadFromFile(KOVAString(path)).IsFailure()) _output += "cannot be read\n";
    KOVAOption* option = nullptr;
    while (_options.GetNext(option).IsSuccess()) {
      KOVAString name;
      KOVAOption* setting = nullptr;
      KOVAValue value;
      if (option->GetName(name).IsSuccess() && filed.GetOption(name, setting).IsSuccess() &&
          setting->GetValue(value).IsSuccess()) {
        option->SetValue(value);
      }
    }
    show("configuration file");
  }

  void setInCode() {
    find(kSteps)->SetValue(32);
    find(kUnit)->SetValue("inch");
    find(kHeal)->SetValue(2.5);
    show("code");
  }

  void readWithEnvironment() {
    double angle = 0;
    bool isHealing = false;
    int steps = 0;
    KOVAString unit;
    find(kAngle)->GetValue(angle, true);
    find(kHeal)->GetValue(isHealing, true);
    find(kSteps)->GetValue(steps, true);
    find(kUnit)->GetValue(unit, true);
    char text[128];
    std::snprintf(text, sizeof text, "AngleTolerance=%g HealSurfaces=%d ToleranceSteps=%d ", angle,
                  isHealing ? 1 : 0, steps);
    tell("environment", text + ("LengthUnit=" + utf8(unit)));
    // What is stored stays as it was.
    show("stored");
  }

  const std::string& output() const { return _output; }

 private:
  KOVAOption* find(const KOVAOptionName& name) {
    KOVAOption* option = nullptr;
    _options.GetOption(name, option);
    return option;
  }

  void show(const char* stage) {
    std::string text;
    KOVAOption* option = nullptr;
    _options.ResetIteration();
    while (_options.GetNext(option).IsSuccess()) {
      KOVAString name;
      KOVAString value;
      option->GetNameAndValueAsString(name, value);
      text += (text.empty() ? "" : " ") + utf8(name) + "=" + utf8(value);
    }
    tell(stage, text);
  }

  void tell(const char* stage, const std::string& text) {
    _output += std::string(stage) + ": " + text + "\n";
    for (const std::string& line : _events.take()) _output += "  " + line;
  }

  kova::test::RecordedEvents _events;
  KOVAOptions _options;
  std::string _output;
};

}  // namespace

int main(int count, char** arguments) {
  if (count != 3) {
    std::fprintf(stderr, "usage: %s CONFIGURATION GOLDEN\n", arguments[0]);
    return 2;
  }
  Program program;
  program.readConfiguration(arguments[1]);
  program.setInCode();
  program.readWithEnvironment();

  std::ifstream stream(arguments[2], std::ios::binary);
  const std::string golden{std::istreambuf_iterator<char>(stream), {}};
  std::fputs(program.output().c_str(), stdout);
  if (program.output() == golden) return 0;
  std::fprintf(stderr, "differs from %s:\n%s", arguments[2], golden.c_str());
  return 1;
}
