#include "kovabase/events/KOVAFileTaskEvents.h"

#include "kovabase/events/KOVCEventBus.h"
#include "kovabase/io/KOVAFileHeader.h"
#include "kovabase/io/KOVAStreamFormatter.h"

#include <cstddef>
#include <string>

namespace {

constexpr KOVAEventLevel kLevel = KOVAEventLevels::kMessage;

// The text in the default code page, '*' for each character that it lacks.
std::string toNarrow(const KOVAString& text) {
  const int size = text.getConvertToMBCSSize(nullptr);
  if (size < 1) return {};
  std::string narrow(static_cast<std::size_t>(size), '\0');
  if (text.convertToMBCS(narrow.data(), size, nullptr, true, '*').IsFailure()) return {};
  narrow.resize(narrow.find('\0'));
  return narrow;
}

KOVAEventText nameOrNull(const char* name) {
  return name != nullptr && *name != '\0' ? KOVAEventText(name) : KOVAEventText();
}

// Whoever looks at the header next finds its first configuration active.
class FirstConfigurationAtEnd {
 public:
  explicit FirstConfigurationAtEnd(KOVAFileHeader& header) : _header(header) {}
  FirstConfigurationAtEnd(const FirstConfigurationAtEnd&) = delete;
  FirstConfigurationAtEnd& operator=(const FirstConfigurationAtEnd&) = delete;
  ~FirstConfigurationAtEnd() { _header.SetActiveConfiguration(0); }

 private:
  KOVAFileHeader& _header;
};

}  // namespace

KOVAStartReadFileTaskEvent::KOVAStartReadFileTaskEvent(const KOVAString& fileName)
    : KOVAStartReadFileTaskEvent(toNarrow(fileName).c_str()) {}

KOVAStartReadFileTaskEvent::KOVAStartReadFileTaskEvent(const char* fileName)
    : KOVCStartTaskEvent("KOVAStartReadFileTaskEvent", "Read File", kLevel),
      _fileName(nameOrNull(fileName)) {}

KOVAStartReadFileTaskEvent::KOVAStartReadFileTaskEvent(const KOVAStartReadFileTaskEvent& other) =
    default;

void KOVAStartReadFileTaskEvent::Fire(const KOVAString& fileName) {
  KOVAStartReadFileTaskEvent event(fileName);
  KOVCEventBus::Fire(event);
}

void KOVAStartReadFileTaskEvent::Fire(const char* fileName) {
  KOVAStartReadFileTaskEvent event(fileName);
  KOVCEventBus::Fire(event);
}

KOVCEvent* KOVAStartReadFileTaskEvent::Clone() const {
  return new KOVAStartReadFileTaskEvent(*this);
}

KOVAEndReadFileTaskEvent::KOVAEndReadFileTaskEvent(KOVAResult result, KOVAFileHeader* header)
    : KOVAEndTaskEvent(result, "File Reading", "Read File", kLevel), _header(header) {}

KOVAEndReadFileTaskEvent::KOVAEndReadFileTaskEvent(const KOVAEndReadFileTaskEvent& other) = default;

void KOVAEndReadFileTaskEvent::Fire(const KOVAResult& result, KOVAFileHeader* header) {
  KOVAEndReadFileTaskEvent event(result, header);
  KOVCEventBus::Fire(event);
}

void KOVAEndReadFileTaskEvent::GetFormattedDescription(KOVAOutputStream* stream) {
  if (_header == nullptr || IsQuiet()) return;
  const FirstConfigurationAtEnd reset(*_header);
  const int configurations = _header->GetNumberOfConfigurations();
  bool hasEntries = false;
  for (int i = 0; i < configurations; ++i) {
    _header->SetActiveConfiguration(i);
    hasEntries |= _header->GetNumberOfEntries() > 0;
  }
  if (!hasEntries) return;

  KOVAStreamFormatter formatter(stream);
  formatter << "-------------------------Source File Header Information-------------------------"
            << KOVAEndLine;
  for (int i = 0; i < configurations; ++i) {
    _header->SetActiveConfiguration(i);
    if (configurations > 1) formatter << "Model " << i + 1 << KOVAEndLine;
    _header->Write(formatter);
    WriteSeparator(formatter);
  }
}

KOVCEvent* KOVAEndReadFileTaskEvent::Clone() const { return new KOVAEndReadFileTaskEvent(*this); }

KOVAStartWriteFileTaskEvent::KOVAStartWriteFileTaskEvent(const KOVAFilePath& path)
    : KOVCStartTaskEvent("Writing File", "File Write", kLevel), _path(path) {}

KOVAStartWriteFileTaskEvent::KOVAStartWriteFileTaskEvent(const KOVAStartWriteFileTaskEvent& other) =
    default;

void KOVAStartWriteFileTaskEvent::Fire(const KOVAFilePath& path) {
  KOVAStartWriteFileTaskEvent event(path);
  KOVCEventBus::Fire(event);
}

KOVCEvent* KOVAStartWriteFileTaskEvent::Clone() const {
  return new KOVAStartWriteFileTaskEvent(*this);
}

KOVAEndWriteFileTaskEvent::KOVAEndWriteFileTaskEvent(KOVAResult result, const KOVAString& fileName)
    : KOVAEndTaskEvent(result, "File Write", "File Write", kLevel), _fileName(fileName) {}

KOVAEndWriteFileTaskEvent::KOVAEndWriteFileTaskEvent(const KOVAEndWriteFileTaskEvent& other) =
    default;

void KOVAEndWriteFileTaskEvent::Fire(const KOVAResult& result, const KOVAString& fileName) {
  KOVAEndWriteFileTaskEvent event(result, fileName);
  KOVCEventBus::Fire(event);
}

void KOVAEndWriteFileTaskEvent::GetFormattedDescription(KOVAOutputStream* stream) {
  if (IsQuiet()) return;
  KOVAStreamFormatter formatter(stream);
  formatter << "Output File ";
  if (_fileName.length() > 0) formatter << "\"" << toNarrow(_fileName).c_str() << "\" ";
  const KOVAResult result = getTaskResult();
  if (result == KOVAResultCode::kSuccess) {
    formatter << "is Successfully Written\n";
  } else if (result == KOVAResultCode::kAborted) {
    formatter << "Writing is Aborted\n";
  } else {
    formatter << "Writing has Failed with code " << static_cast<long>(result) << "\n";
  }
  WriteSeparator(formatter);
}

KOVCEvent* KOVAEndWriteFileTaskEvent::Clone() const { return new KOVAEndWriteFileTaskEvent(*this); }
