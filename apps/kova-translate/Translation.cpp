#include "apps/kova-translate/Translation.h"

#include "apps/kova-translate/Preview.h"
#include "apps/kova-translate/Text.h"
#include "apps/kova-translate/system/OutputFile.h"
#include "kovabase/events/KOVAFileTaskEvents.h"
#include "kovabase/events/KOVAMessageEvents.h"
#include "kovabase/events/KOVATaskEvents.h"
#include "kovabase/events/KOVCEventBus.h"
#include "kovabase/foundation/Gk_Exception.h"
#include "kovabase/foundation/KOVAAbortException.h"
#include "kovabase/foundation/KOVAAllocException.h"
#include "kovabase/foundation/KOVAArchiveException.h"
#include "kovabase/foundation/KOVAException.h"
#include "kovabase/io/KOVAFileOutputStream.h"
#include "kovabase/options/KOVAProcessUtils.h"
#include "kovabase/translation/KOVAReader.h"
#include "kovabase/translation/KOVAWriter.h"
#include "kovabase/units/KOVAUnitValue.h"

#include <chrono>
#include <exception>
#include <filesystem>
#include <new>
#include <optional>

namespace kova::translate {

namespace {

using translators::Model;
using translators::Report;

using ReaderHandle = KOVATypedHandle<KOVAReader>;
using WriterHandle = KOVATypedHandle<KOVAWriter>;

// Not every format has the step.
KOVAResult takeAsOptional(KOVAResult result) {
  return result == KOVAResultCode::kNotImplemented ? KOVAResult(KOVAResultCode::kSuccess) : result;
}

KOVAResult readSections(KOVAReader& reader) {
  KOVAResult result = reader.ReadHeaderSection();
  if (result.IsFailure()) return result;
  result = reader.ReadFileInfoSection();
  if (result.IsFailure()) return result;
  KOVAStartReadEntitiesTaskEvent::Fire();
  result = reader.ReadDataSection();
  KOVAEndReadEntitiesTaskEvent::Fire(result);
  if (result.IsFailure()) return result;
  return takeAsOptional(reader.Resolve());
}

KOVAResult writeSections(KOVAWriter& writer) {
  KOVAResult result = writer.WriteHeaderSection();
  if (result.IsFailure()) return result;
  result = writer.WriteFileInfoSection();
  if (result.IsFailure()) return result;
  result = writer.WriteDataSection();
  if (result.IsFailure()) return result;
  return takeAsOptional(writer.Resolve());
}

std::string nameOutput(const std::string& output) {
  return output == "-" ? "standard output" : quoteText(output);
}

KOVAResult failToWrite(const Report& report, const std::string& output, const std::string& reason) {
  return report.Fail(KOVAResultCode::kFileSaveError, {}, "%s cannot be written: %s",
                     nameOutput(output).c_str(), reason.c_str());
}

// To the unit of the result, when one is asked for.
KOVAResult changeUnit(const Report& report, Model& model) {
  if (model.unit == KOVAUnitUnknown || model.unit == KOVAUnitModel) {
    model.unit = KOVAUnitValue::GetUnitWhenUnspecified();
  }
  const KOVAUnit unit = KOVAUnitValue::GetWriteUnit();
  if (unit == KOVAUnitModel || unit == KOVAUnitUnknown || unit == model.unit) {
    return KOVAResultCode::kSuccess;
  }
  const double factor = KOVAUnitValue::GetScalingFactor(model.unit, unit);
  if (translators::scaleModel(model, factor, unit)) return KOVAResultCode::kSuccess;
  return report.Fail(KOVAResultCode::kInvalidWriteUnit, {},
                     "its lengths are too large for the unit of the result");
}

std::string nameUnit(KOVAUnit unit) {
  KOVAString text;
  if (unit == KOVAUnitUnknown || unit == KOVAUnitModel ||
      KOVAUnitValue::GetUnitAsString(unit, text).IsFailure()) {
    return {};
  }
  return toLower(toUtf8(text));
}

// The picture in a file of its own, which waits for the result.
KOVAResult drawPreview(const FileRun& run, bool isForced, const Report& report, const Model& model,
                       OutputFile& file) {
  std::string reason;
  if (!file.Create(run.task.preview, isForced, reason)) {
    return failToWrite(report, run.task.preview, reason);
  }
  const std::string title =
      run.task.input == "-" ? run.task.name : std::filesystem::path(run.task.input).stem().string();
  std::optional<CreationGuard> guard(std::in_place);
  KOVAFileOutputStream stream(file.GetPath().c_str());
  guard.reset();
  writePreview(model, run.statistics.summary, title, stream);
  if (stream.Close().IsSuccess()) return KOVAResultCode::kSuccess;
  return failToWrite(report, run.task.preview, stream.GetFailureReason());
}

}  // namespace

void Translation::Run(FileRun& run) const {
  const auto start = std::chrono::steady_clock::now();
  run.statistics.file = run.task.input;
  const Report report(run.task.name);
  KOVAMessageEvent::Fire("Translating %s to %s", run.task.name.c_str(),
                         nameOutput(run.task.output).c_str());
  KOVCStartTaskEvent startEvent("Translation", "Translation", KOVAEventLevels::kMessage);
  KOVCEventBus::Fire(startEvent);

  KOVAResult result = KOVAResultCode::kUnexpectedError;
  run.status = kFileFailed;
  const auto failUnexpectedly = [&](const char* what) {
    report.Fail(result, {}, "internal error: %s", what);
    run.status = kInternal;
  };
  try {
    result = Translate(run, report);
    if (result.IsSuccess()) run.status = kAllTranslated;
  } catch (const std::bad_alloc&) {
    report.Fail(result, {}, "there is not enough memory for it");
  } catch (const KOVAAllocException&) {
    report.Fail(result, {}, "there is not enough memory for it");
  } catch (const KOVAAbortException&) {
    result = KOVAResultCode::kAborted;
    report.Fail(result, {}, "its translation was stopped");
  } catch (const KOVAException& failure) {
    report.Fail(result, {}, "%s", toUtf8(failure.GetDiagnostic()).c_str());
  } catch (const Gk_Exception& failure) {
    report.Fail(result, {}, "%s", failure.getMessage() != nullptr ? failure.getMessage() : "?");
  } catch (const KOVAArchiveException& failure) {
    report.Fail(result, {}, "it is damaged (reason %d)", static_cast<int>(failure.GetReason()));
  } catch (const std::exception& failure) {
    failUnexpectedly(failure.what());
  } catch (...) {
    failUnexpectedly("an exception of an unknown kind");
  }
  if (result.IsFailure() && run.outbox.GetErrorCount() == 0) {
    report.Fail(result, {}, "it cannot be translated: %s", result.GetMessage());
  }
  KOVAEndTranslationTaskEvent::Fire(result, false);

  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
  run.statistics.seconds = elapsed.count();
  run.statistics.peakBytes = KOVAProcessUtils::GetPeakMemory();
  run.statistics.warnings = run.outbox.GetWarningCount();
  run.statistics.errors = run.outbox.GetErrorCount();
}

KOVAResult Translation::Translate(FileRun& run, const Report& report) const {
  const Task& task = run.task;
  if (!task.problem.empty()) {
    return report.Fail(KOVAResultCode::kFailure, {}, "%s", task.problem.c_str());
  }
  Model model;
  KOVAResult result = Read(run, report, model);
  if (result.IsFailure()) return result;
  KOVCConversionTaskEvent::Fire();
  result = Convert(report, model);
  KOVAEndTaskEvent::Fire(result, "Conversion", "Conversion", KOVAEventLevels::kMessage, true);
  if (result.IsFailure()) return result;
  if (_settings.statistics != Settings::Statistics::kNone || !task.preview.empty()) {
    run.statistics.summary = translators::summarize(model);
    run.statistics.unit = nameUnit(model.unit);
  }
  return _settings.isDryRun ? result : Write(run, report, model);
}

KOVAResult Translation::Read(FileRun& run, const Report& report, Model& model) const {
  const Task& task = run.task;
  if (task.input != "-") {
    model.name = fromUtf8(std::filesystem::path(task.input).stem().string());
  }
  KOVAFileHandle file;
  if (task.input != "-") file = KOVAFileHandle(new KOVAFile(KOVAFilePath(toPathText(task.input))));
  const translators::ReadRequest request{
      file, task.block.bytes.get(), task.block.count, report, _options, run.header, model};
  KOVAStartReadFileTaskEvent::Fire(task.input == "-" ? task.name.c_str() : task.input.c_str());
  KOVAResult result = KOVAResultCode::kFailure;
  {
    const KOVAFormatReaderHandle formatReader(
        _translators.Get(*task.source).translator.createReader(&request));
    ReaderHandle reader(new KOVAReader(formatReader));
    result = readSections(*reader);
    reader->ReleaseEntityReaders();
  }
  KOVAEndReadFileTaskEvent::Fire(result, &run.header);
  return result;
}

KOVAResult Translation::Convert(const Report& report, Model& model) const {
  KOVAStartPreprocessDocumentEvent::Fire(true);
  KOVAResult result = Filter(report, model);
  KOVAEndPreprocessDocumentEvent::Fire(result, true);
  if (result.IsFailure()) return result;
  KOVAStartPreprocessDocumentEvent::Fire(false);
  result = changeUnit(report, model);
  KOVAEndPreprocessDocumentEvent::Fire(result, false);
  return result;
}

KOVAResult Translation::Filter(const Report& report, Model& model) const {
  const bool isEmpty = model.instances.size() == 0;
  if (!_settings.layers.empty()) {
    translators::keepLayers(
        model, KOVALayerFilterC(static_cast<int>(_settings.layers.size()), _settings.layers.data(),
                                KOVAString(), true, KOVALayerFilterC::kDefaultType));
    if (!isEmpty && model.instances.size() == 0) {
      return report.Fail(KOVAResultCode::kFailure, {},
                         "nothing in it is on the layers of --layers");
    }
  }
  if (_settings.selections.empty()) return KOVAResultCode::kSuccess;
  KOVASelectionSet selected("selected", true);
  for (const std::string& pattern : _settings.selections) {
    if (translators::select(model, fromUtf8(pattern), selected) == 0) {
      return report.Fail(KOVAResultCode::kInvalidArgument, {}, "nothing in it is called %s",
                         quoteText(pattern).c_str());
    }
  }
  translators::keepSelected(model, selected);
  return KOVAResultCode::kSuccess;
}

KOVAResult Translation::Write(const FileRun& run, const Report& report, const Model& model) const {
  const Task& task = run.task;
  std::string reason;
  OutputFile output;
  if (!output.Create(task.output, _settings.isForced, reason)) {
    return failToWrite(report, task.output, reason);
  }
  const KOVAString name =
      task.output == "-" ? KOVAString("standard output") : toPathText(task.output);
  KOVAStartWriteFileTaskEvent::Fire(KOVAFilePath(name));
  const Report writerReport(nameOutput(task.output));
  const translators::WriteRequest request{
      KOVAFileHandle(new KOVAFile(KOVAFilePath(toPathText(output.GetPath())))), writerReport,
      _options, model};
  KOVAResult result = KOVAResultCode::kFailure;
  {
    std::optional<CreationGuard> guard(std::in_place);
    const KOVAFormatWriterHandle formatWriter(
        _translators.Get(*task.target).translator.createWriter(&request));
    guard.reset();
    WriterHandle writer(new KOVAWriter(formatWriter));
    result = writeSections(*writer);
    writer->ReleaseEntityWriters();
  }
  KOVAEndWriteFileTaskEvent::Fire(result, name);
  if (result.IsFailure()) return result;

  KOVAStartPostprocessDocumentEvent::Fire();
  OutputFile picture;
  if (!task.preview.empty()) {
    result = drawPreview(run, _settings.isForced, report, model, picture);
  }
  if (result.IsSuccess() && !output.Commit(reason)) {
    result = failToWrite(report, task.output, reason);
  }
  if (result.IsSuccess() && !task.preview.empty() && !picture.Commit(reason)) {
    result = failToWrite(report, task.preview, reason);
  }
  KOVAEndPostprocessDocumentEvent::Fire(result);
  return result;
}

}  // namespace kova::translate
