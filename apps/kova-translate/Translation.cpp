#include "apps/kova-translate/Translation.h"

#include "kovabase/foundation/KOVAAllocException.h"
#include "kovabase/platform/InputFile.h"
#include "kovabase/platform/OutputFile.h"
#include "kovabase/platform/Process.h"

#include <chrono>
#include <filesystem>
#include <new>
#include <system_error>

namespace kova::translate {

namespace {

using translators::Place;

class FileSource : public translators::Source {
 public:
  bool Open(const std::string& input) {
    return input == "-" ? _file.openStandardInput(_reason) : _file.open(input, _reason);
  }
  std::int64_t Read(char* bytes, std::size_t capacity) override {
    return _file.read(bytes, capacity, _reason);
  }
  std::int64_t GetByteCount() const override { return _file.size(); }
  const char* GetFailureReason() const override { return _reason.c_str(); }

 private:
  platform::InputFile _file;
  std::string _reason;
};

// Standard input has no name to tell its format.
const Format& formatOfStandardInput() { return *findFormat("stl"); }

// Two spellings of one place become the same, also while nothing stands there.
std::string normalise(const std::string& path) {
  std::error_code error;
  const std::filesystem::path normal = std::filesystem::weakly_canonical(path, error);
  return error ? path : normal.string();
}

}  // namespace

/// Shows the messages about one file and counts them.
class Translation::FileReport : public translators::Report {
 public:
  FileReport(Console& console, const std::string& file, Statistics& statistics)
      : _console(console), _file(file), _statistics(statistics) {}

 protected:
  void HandleWarning(Place place, const char* text) override {
    ++_statistics.warnings;
    _console.TellWarning(_file, place, text);
  }
  void HandleError(Place place, const char* text) override {
    ++_statistics.errors;
    _console.TellError(_file, place, text);
  }

 private:
  Console& _console;
  const std::string& _file;
  Statistics& _statistics;
};

bool Translation::Run(const std::string& input) {
  const auto start = std::chrono::steady_clock::now();
  Statistics statistics;
  statistics.file = input;
  FileReport report(_console, input, statistics);
  bool isTranslated = false;
  try {
    isTranslated = Translate(input, report, statistics);
  } catch (const std::bad_alloc&) {
    report.Fail(KOVAResultCode::kFailure, {}, "there is not enough memory for it");
  } catch (const KOVAAllocException&) {
    report.Fail(KOVAResultCode::kFailure, {}, "there is not enough memory for it");
  }
  if (_settings.statistics != Settings::Statistics::kNone) {
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    statistics.seconds = elapsed.count();
    statistics.peakBytes = platform::peakMemory();
    const std::string text = _settings.statistics == Settings::Statistics::kJson
                                 ? statistics.ToJson()
                                 : statistics.ToText();
    if (GetTarget(input) == "-") {
      _console.PrintError(text);
    } else {
      _console.Print(text);
    }
  }
  return isTranslated;
}

bool Translation::Translate(const std::string& input, FileReport& report, Statistics& statistics) {
  translators::Model model;
  const std::string target = GetTarget(input);
  if (!Read(input, target, report, model)) return false;
  statistics.Count(model);
  return _settings.isDryRun || Write(target, report, model);
}

bool Translation::Read(const std::string& input, const std::string& target, FileReport& report,
                       translators::Model& model) {
  const Format* format = input == "-" ? &formatOfStandardInput() : findFormatOfFile(input);
  if (format == nullptr || !format->isRead) {
    report.Fail(KOVAResultCode::kFileFormatNotSupported, {},
                "its name does not end like that of a format that can be read (%s)",
                listReadFormats().c_str());
    return false;
  }
  FileSource source;
  if (!source.Open(input)) {
    report.Fail(KOVAResultCode::kFileOpenError, {}, "it cannot be opened: %s",
                source.GetFailureReason());
    return false;
  }
  if (!MayWrite(input, target, report)) return false;
  const Translator* translator = FindTranslator(*format, report);
  if (translator == nullptr) return false;
  const auto reader = translator->CreateReader();
  if (reader == nullptr) {
    report.Fail(KOVAResultCode::kNotSupported, {}, "the translator %s cannot read",
                quoteText(translator->GetPath()).c_str());
    return false;
  }
  const std::string stem =
      input == "-" ? std::string() : std::filesystem::path(input).stem().string();
  model.name = KOVAString(stem.c_str(), "UTF-8");
  return reader->Read(source, model, report).IsSuccess();
}

bool Translation::Write(const std::string& target, FileReport& report,
                        const translators::Model& model) {
  const Translator* translator = FindTranslator(*findFormat(_settings.format), report);
  if (translator == nullptr) return false;
  const auto writer = translator->CreateWriter();
  if (writer == nullptr) {
    report.Fail(KOVAResultCode::kNotSupported, {}, "the translator %s cannot write",
                quoteText(translator->GetPath()).c_str());
    return false;
  }
  const auto writeTo = [&](KOVAOutputStream& stream, const std::string& name) {
    KOVAResult result = writer->Write(model, stream, report);
    result &= stream.Flush();
    if (stream.GetResult().IsFailure()) {
      report.Fail(KOVAResultCode::kFileSaveError, {}, "%s cannot be written: %s", name.c_str(),
                  stream.GetFailureReason());
    }
    return result.IsSuccess();
  };
  if (target == "-") return writeTo(_console.GetOutput(), "standard output");

  const std::string name = quoteText(target);
  platform::OutputFile file;
  std::string reason;
  if (!file.create(target, _settings.isForced, reason)) {
    report.Fail(KOVAResultCode::kFileSaveError, {}, "%s cannot be written: %s", name.c_str(),
                reason.c_str());
    return false;
  }
  KOVAFileOutputStream stream(file.descriptor());
  if (!writeTo(stream, name)) return false;
  if (!file.commit(reason)) {
    report.Fail(KOVAResultCode::kFileSaveError, {}, "%s cannot be written: %s", name.c_str(),
                reason.c_str());
    return false;
  }
  return true;
}

std::string Translation::GetTarget(const std::string& input) const {
  if (!_settings.output.empty()) return _settings.output;
  if (input == "-") return "-";
  std::filesystem::path target(input);
  target.replace_extension(findFormat(_settings.format)->extension);
  if (_settings.outputFolder.empty()) return target.string();
  return (std::filesystem::path(_settings.outputFolder) / target.filename()).string();
}

bool Translation::MayWrite(const std::string& input, const std::string& target,
                           FileReport& report) {
  if (target == "-") return true;
  std::error_code ignored;
  if (input != "-" && std::filesystem::equivalent(input, target, ignored)) {
    report.Fail(KOVAResultCode::kFileSaveError, {}, "its result would take its own place");
    return false;
  }
  // Also with --force no result of this run may replace another one.
  const auto [earlier, isFirst] = _targets.try_emplace(normalise(target), input);
  std::error_code error;
  const bool isRegular =
      std::filesystem::is_regular_file(target, error) || !std::filesystem::exists(target, error);
  if (!isFirst && isRegular) {
    report.Fail(KOVAResultCode::kFileSaveError, {},
                "its result %s would take the place of that of %s", quoteText(target).c_str(),
                quoteText(earlier->second).c_str());
    return false;
  }
  std::string reason;
  if (platform::canCreateOutput(target, _settings.isForced, reason)) return true;
  report.Fail(KOVAResultCode::kFileSaveError, {}, "%s cannot be written: %s",
              quoteText(target).c_str(), reason.c_str());
  return false;
}

const Translator* Translation::FindTranslator(const Format& format, FileReport& report) {
  std::string problem;
  const Translator* translator = _translators.Find(format, problem);
  if (translator != nullptr) return translator;
  // All places may not fit into one message.
  report.Fail(KOVAResultCode::kNotSupported, {},
              "there is no translator for '%s'; tried:", format.name);
  _console.PrintError(problem);
  return nullptr;
}

}  // namespace kova::translate
