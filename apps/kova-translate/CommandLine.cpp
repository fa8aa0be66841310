#include "apps/kova-translate/CommandLine.h"

#include "apps/kova-translate/Formats.h"
#include "apps/kova-translate/Text.h"
#include "kovabase/events/KOVCEvent.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <cstddef>
#include <system_error>

namespace kova::translate {

namespace {

constexpr const char* kFooter =
    R"(Without -o and -d the result is written beside its input, with the extension of its format.
Results appear under their names when they are complete. '-' as INPUT or FILE is standard input or
standard output; messages go to standard error then. The extension of an INPUT tells its format;
where it does not, the content does.

With several INPUTs the preview of each is named after FILE.svg and the INPUT: FILE-part.svg.

Options get their values from the first of these that has one: the environment (the variable KOVA
and the name), the arguments, the configuration files, the default. NAME may be the end of a name or
have '*' as a part, and applies to all options that fit. --options and --env list what there is.

The log vexil_read.log is written when --log-dir or --log-level is given or KOVALogLevel is set: in
that folder or the working folder. The console shows warnings and errors; KOVAConsoleTracesLevel
changes that, and KOVATaskTiming=true measures the tasks.

Translators are looked for in the folders of KOVA_TRANSLATORS (divided by colons), then beside the
program, then in PATH and where the system looks for libraries.

Exit status: 0 all translated, 1 a file failed, 2 wrong usage, 3 internal error,
130 or 143 ended by a signal.)";

// What CLI11 reads as text, for words with a meaning.
struct Texts {
  std::string statistics;
  std::string progress;
  std::string logLevel;
  std::string unit;
  std::string tolerance;
  std::vector<std::string> assignments;
  std::vector<std::string> layers;
};

std::string describeUnknownOption(const CLI::App& app, const std::string& argument) {
  const std::string option = argument.substr(0, argument.find('='));
  std::string text = "unknown option " + quoteText(option);
  if (option.rfind("--", 0) == 0) {
    std::vector<std::string> names;
    for (const CLI::Option* known : app.get_options()) {
      names.insert(names.end(), known->get_lnames().begin(), known->get_lnames().end());
    }
    for (std::string& name : names) name.insert(0, "--");
    text += suggestInWords(option, names);
  }
  return text;
}

// Takes over the words; what is wrong with them, empty when nothing is.
std::string takeTexts(const Texts& texts, Settings& settings) {
  if (texts.statistics == "json") {
    settings.statistics = Settings::Statistics::kJson;
  } else if (texts.statistics == "text") {
    settings.statistics = Settings::Statistics::kText;
  } else if (!texts.statistics.empty()) {
    return "--stats is " + quoteText(texts.statistics) + "; it can be 'text' or 'json'";
  }
  if (texts.progress == "none") {
    settings.progress = Settings::Progress::kNone;
  } else if (texts.progress == "json") {
    settings.progress = Settings::Progress::kJson;
  } else if (texts.progress != "auto") {
    return "--progress is " + quoteText(texts.progress) + "; it can be 'auto', 'none' or 'json'";
  }
  if (!texts.logLevel.empty()) {
    constexpr KOVAEventLevel kNoLevel = -2;
    settings.logLevel = KOVCEvent::GetLevel(texts.logLevel.c_str(), kNoLevel);
    if (*settings.logLevel == kNoLevel) {
      const std::vector<std::string> names = {"debug", "test",    "verbose", "message",
                                              "info",  "warning", "error",   "assert"};
      return "--log-level is " + quoteText(texts.logLevel) +
             "; it can be a number, debug, test, verbose, message, info, warning, error or assert" +
             suggestInWords(texts.logLevel, names);
    }
  }
  for (const std::string& text : texts.assignments) {
    const std::size_t sign = text.find('=');
    if (sign == 0 || sign == std::string::npos) {
      return "--set takes NAME=VALUE, not " + quoteText(text);
    }
    settings.assignments.emplace_back(text.substr(0, sign), text.substr(sign + 1));
  }
  if (!texts.tolerance.empty()) {
    settings.assignments.emplace_back("*.Read.Tolerance", texts.tolerance);
  }
  if (!texts.unit.empty()) settings.assignments.emplace_back("Translate.Unit", texts.unit);
  for (const std::string& text : texts.layers) {
    int layer = -1;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, layer);
    if (error != std::errc() || stop != end || layer < 0) {
      return "--layers takes numbers from 0 on, divided by commas, not " + quoteText(text);
    }
    settings.layers.push_back(layer);
  }
  return {};
}

// What is wrong with settings that are well-formed; empty when nothing is.
std::string findContradiction(Settings& settings) {
  if (settings.IsListing()) return {};
  if (settings.inputs.empty()) return "no INPUT is given";
  if (!settings.output.empty() && !settings.outputFolder.empty()) {
    return "--output and --output-dir exclude each other";
  }
  if (!settings.output.empty() && settings.inputs.size() > 1) {
    return "--output takes the result of one INPUT; use --output-dir for several";
  }
  const auto standardInputs = std::count(settings.inputs.begin(), settings.inputs.end(), "-");
  if (standardInputs > 1) return "standard input can be read only once";
  if (standardInputs == 1 && !settings.outputFolder.empty()) {
    return "standard input has no name for a file in --output-dir; use --output";
  }
  if (settings.preview == "-") return "--preview needs the name of a file";
  for (const std::string& input : settings.inputs) {
    if (input.empty()) return "an INPUT is empty";
  }

  if (settings.format.empty()) {
    if (settings.output.empty() || settings.output == "-") {
      settings.format = "obj";
    } else {
      const Format* format = findFormatOfFile(settings.output);
      if (format == nullptr) {
        return "the name " + quoteText(settings.output) +
               " does not tell the format to write; give --to (" + listWrittenFormats() + ")";
      }
      settings.format = format->name;
    }
  }
  const Format* format = findFormat(settings.format);
  if (format == nullptr) {
    std::vector<std::string> names;
    for (const Format& known : kFormats) {
      if (known.isWritten) names.emplace_back(known.name);
    }
    const std::string suggestion = suggestInWords(settings.format, names);
    return "unknown format " + quoteText(settings.format) +
           (suggestion.empty() ? ";" : suggestion) +
           " Formats that can be written: " + listWrittenFormats();
  }
  if (!format->isWritten) {
    return "the format '" + settings.format +
           "' can only be read. Formats that can be written: " + listWrittenFormats();
  }
  return {};
}

}  // namespace

std::string describeUsageProblem(const std::string& problem) {
  return "kova-translate: " + problem + "\nTry 'kova-translate --help'.\n";
}

Parsed parseCommandLine(int count, char** arguments) {
  Parsed parsed;
  Settings& settings = parsed.settings;
  Texts texts;
  texts.progress = "auto";

  CLI::App app("Translates CAD files from one format to another.", "kova-translate");
  app.set_help_flag("-h,--help", "Print this help and exit");
  app.set_version_flag("--version", "kova-translate " KOVA_VERSION, "Print the version and exit");
  app.add_option("INPUT", settings.inputs, "Files to translate");
  app.add_option("-o,--output", settings.output, "Write the result to this file")
      ->type_name("FILE");
  app.add_option("-d,--output-dir", settings.outputFolder, "Write the results into this folder")
      ->type_name("FOLDER");
  app.add_option("-t,--to", settings.format,
                 "Format to write (" + listWrittenFormats() +
                     "); without it the extension of FILE tells, else it is obj")
      ->type_name("FORMAT");
  app.add_option("-u,--unit", texts.unit, "Unit of length of the result: mm, cm, m, in, ft, ...")
      ->type_name("UNIT");
  app.add_option("-c,--config", settings.configurations,
                 "Read options from this file: lines NAME = VALUE before its first section")
      ->type_name("FILE")
      ->allow_extra_args(false);
  app.add_option("-s,--set", texts.assignments, "Give an option a value")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false);
  app.add_option("-j,--jobs", settings.jobs,
                 "Translate up to N files at one time; without it as many as there are processors, "
                 "or VEX_NUM_THREADS")
      ->type_name("N")
      ->check(CLI::Range(1, 1024));
  app.add_option("--tolerance", texts.tolerance,
                 "Greatest distance between a curve and its chords, in millimetres")
      ->type_name("MM");
  app.add_option("--layers", texts.layers, "Take only what is on these layers, such as 1,3")
      ->type_name("NUMBERS")
      ->delimiter(',')
      ->allow_extra_args(false);
  app.add_option("--select", settings.selections,
                 "Take only what has this name; '*' and '?' stand for other characters")
      ->type_name("NAME")
      ->allow_extra_args(false);
  app.add_option("--preview", settings.preview, "Draw a picture of the result, too")
      ->type_name("FILE.svg");
  app.add_flag("--stats{text}", texts.statistics,
               "Print what each file holds on standard output, as a line of text or, with "
               "--stats=json, as a JSON object");
  app.add_option("--progress", texts.progress,
                 "auto: a line on a terminal; json: lines for programs on standard error; or none")
      ->type_name("KIND");
  app.add_option("-l,--log-level", texts.logLevel, "The lowest level of messages for the log")
      ->type_name("LEVEL");
  app.add_option("--log-dir", settings.logFolder, "Write the log into this folder")
      ->type_name("FOLDER");
  app.add_flag("--list", settings.isList,
               "Print the translators that are found, and why others are not");
  app.add_flag("--options", settings.isOptionList, "Print all options with their values");
  app.add_flag("--env", settings.isEnvironmentList,
               "Print all environment variables with their values");
  app.add_flag("--dry-run", settings.isDryRun, "Read and check everything, write nothing");
  app.add_flag("--force", settings.isForced, "Replace results that exist already");
  app.footer(kFooter);

  std::string problem;
  try {
    app.parse(count, arguments);
    problem = takeTexts(texts, settings);
    if (problem.empty()) problem = findContradiction(settings);
  } catch (const CLI::CallForHelp&) {
    parsed.text = app.help();
    return parsed;
  } catch (const CLI::CallForVersion& version) {
    parsed.text = std::string(version.what()) + "\n";
    return parsed;
  } catch (const CLI::ExtrasError&) {
    const std::vector<std::string> extras = app.remaining();
    problem = describeUnknownOption(app, extras.empty() ? std::string() : extras.front());
  } catch (const CLI::ParseError& error) {
    problem = error.what();
  }
  if (!problem.empty()) {
    parsed.status = kUsage;
    parsed.text = describeUsageProblem(problem);
    return parsed;
  }
  parsed.isComplete = true;
  return parsed;
}

}  // namespace kova::translate
