#include "kovabase/io/KOVAFileHeader.h"

#include "kovabase/io/KOVAStreamFormatter.h"

KOVAFileHeader::KOVAFileHeader() : _configurations(1) {}

KOVAFileHeader::KOVAFileHeader(const KOVAFileHeader&) = default;

KOVAFileHeader& KOVAFileHeader::operator=(const KOVAFileHeader&) = default;

KOVAFileHeader::~KOVAFileHeader() = default;

int KOVAFileHeader::GetNumberOfConfigurations() { return static_cast<int>(_configurations.size()); }

void KOVAFileHeader::SetActiveConfiguration(int index) {
  if (index >= 0 && index < GetNumberOfConfigurations()) _active = static_cast<std::size_t>(index);
}

int KOVAFileHeader::GetNumberOfEntries() { return static_cast<int>(GetActive().size()); }

void KOVAFileHeader::Write(KOVAStreamFormatter& formatter) {
  for (const Entry& entry : GetActive()) {
    formatter << entry.key << " : " << entry.value << KOVAEndLine;
  }
}

int KOVAFileHeader::AddConfiguration() {
  _configurations.emplace_back();
  _active = _configurations.size() - 1;
  return static_cast<int>(_active);
}

void KOVAFileHeader::AddEntry(const KOVAString& key, const KOVAString& value) {
  GetActive().push_back({key, value});
}
