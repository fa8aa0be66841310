// Translates a file: loads a reader and a writer by the names of their formats, and runs them.
// Usage: translate_file INPUT OUTPUT FOLDER...   (the folders where translators are)

#include "Translator.h"
#include <cstdio>
#include <string>

namespace {

using kova::translators::Model;
using kova::translators::ReadRequest;
using kova::translators::Report;
using kova::translators::WriteRequest;

// Shows what the translators report.
class Messages : public KOVCEventListener {
 public:
  Messages() { KOVCEventBus::GetEventBus().AddListener(this); }
  ~Messages() override { KOVCEventBus::GetEventBus().RemoveListener(this); }
  void HandleEvent(KOVCEvent& event) override {
    if (event.GetLevel() < KOVAEventLevels::kMessage) return;
    KOVAStringOutputStream text;
    event.GetFormattedDescription(&text);
    std::printf("%s", text.GetBytes());
  }
};

Report makeReport(const KOVAFilePath& path) {
  char name[256];
  path.GetName().convertToUTF8(name, sizeof name);
  return Report("'" + std::string(name) + "'");
}

// [read]
KOVAResult readModel(const KOVAFilePath& path, const KOVAOptions& options, Model& model) {
  Translator translator(path.GetLastExtension());
  KOVAResult result = translator.Load();
  if (result.IsFailure()) return result;

  const Report report = makeReport(path);
  KOVAFileHeader header;
  model.name = path.GetNameWithoutLastExtension();
  const ReadRequest request{
      KOVAFileHandle(new KOVAFile(path)), nullptr, 0, report, options, header, model};
  const KOVAFormatReaderHandle formatReader(translator.CreateReader(request));
  if (!formatReader.IsValid()) return KOVAResultCode::kNotSupported;
  KOVAReader reader(formatReader);
  KOVAStartReadFileTaskEvent::Fire(path.GetName());
  result = reader.ReadHeaderSection();
  if (result.IsSuccess()) result = reader.ReadFileInfoSection();
  if (result.IsSuccess()) result = reader.ReadDataSection();
  if (result.IsSuccess()) {
    result = reader.Resolve();
    // A format without references has nothing to resolve.
    if (result == KOVAResultCode::kNotImplemented) result = KOVAResultCode::kSuccess;
  }
  reader.ReleaseEntityReaders();
  KOVAEndReadFileTaskEvent::Fire(result, &header);
  return result;
}
// [read]

// [write]
KOVAResult writeModel(const Model& model, const KOVAOptions& options, const KOVAFilePath& path) {
  Translator translator(path.GetLastExtension());
  KOVAResult result = translator.Load();
  if (result.IsFailure()) return result;

  const Report report = makeReport(path);
  const WriteRequest request{KOVAFileHandle(new KOVAFile(path)), report, options, model};
  const KOVAFormatWriterHandle formatWriter(translator.CreateWriter(request));
  if (!formatWriter.IsValid()) return KOVAResultCode::kNotSupported;
  KOVAWriter writer(formatWriter);
  result = writer.WriteHeaderSection();
  if (result.IsSuccess()) result = writer.WriteFileInfoSection();
  if (result.IsSuccess()) result = writer.WriteDataSection();
  if (result.IsSuccess()) result = writer.Resolve();  // only now is the file complete
  writer.ReleaseEntityWriters();
  if (result.IsFailure()) path.RemoveFile();
  return result;
}
// [write]

}  // namespace

int main(int count, char** arguments) {
  if (count < 4) {
    std::fprintf(stderr, "usage: %s INPUT OUTPUT FOLDER...\n", arguments[0]);
    return 2;
  }
  const Messages messages;
  // [translate]
  for (int i = 3; i < count; ++i) KOVALibrary::AddDirectoryToPath(arguments[i]);
  KOVAOptions options;
  options.AddOption("Obj.Write.Curves", true);
  Model model;
  KOVAResult result = readModel(KOVAFilePath(arguments[1]), options, model);
  if (result.IsSuccess()) result = writeModel(model, options, KOVAFilePath(arguments[2]));
  // [translate]
  std::printf("%d parts: %s\n", model.parts.size(), result.GetMessage());

  model = Model();
  // [free]
  KOVALibraryManager::FreeLibraries();  // finalises the translators
  // [free]
  return result.IsSuccess() ? 0 : 1;
}
