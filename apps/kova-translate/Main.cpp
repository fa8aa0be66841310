#include "apps/kova-translate/CommandLine.h"
#include "apps/kova-translate/Console.h"
#include "apps/kova-translate/Translation.h"
#include "apps/kova-translate/TranslatorSet.h"
#include "kovabase/foundation/KOVAUnrecoverableError.h"
#include "kovabase/platform/OutputFile.h"
#include "kovabase/platform/Process.h"

#include <exception>

namespace {

using namespace kova::translate;

std::string describe(const Format& format, TranslatorSet& translators) {
  std::string problem;
  const Translator* translator = translators.Find(format, problem);
  std::string text = format.name;
  if (translator == nullptr) return text + ": not found; tried\n" + problem;
  if (translator->IsReader()) text += ", read";
  if (translator->IsWriter()) text += ", written";
  text += std::string(": ") + translator->GetDescription().title + " (" +
          translator->GetDescription().extensions + ")\n  " + translator->GetPath() + "\n";
  return text;
}

ExitStatus run(int count, char** arguments, Console& console) {
  const Parsed parsed = parseCommandLine(count, arguments);
  if (!parsed.isComplete) {
    if (parsed.status == kAllTranslated) {
      console.Print(parsed.text);
    } else {
      console.PrintError(parsed.text);
    }
    return parsed.status;
  }
  TranslatorSet translators;
  if (parsed.settings.isList) {
    for (const Format& format : kFormats) console.Print(describe(format, translators));
    return kAllTranslated;
  }
  Translation translation(parsed.settings, translators, console);
  ExitStatus status = kAllTranslated;
  for (const std::string& input : parsed.settings.inputs) {
    if (!translation.Run(input)) status = kFileFailed;
  }
  return status;
}

}  // namespace

int main(int count, char** arguments) {
  kova::platform::fillStandardStreams();
  kova::platform::removeOutputsOnSignals();
  Console console;
  ExitStatus status = kInternal;
  try {
    status = run(count, arguments, console);
    KOVAOutputStream& output = console.GetOutput();
    if (output.Flush().IsFailure() && status == kAllTranslated) {
      console.TellError(
          "", {}, std::string("standard output cannot be written: ") + output.GetFailureReason());
      status = kFileFailed;
    }
  } catch (const std::exception& error) {
    console.TellError("", {}, std::string("internal error: ") + error.what());
  } catch (const KOVAUnrecoverableError&) {
    console.TellError("", {}, "internal error: there is not enough memory");
  }
  return status;
}
