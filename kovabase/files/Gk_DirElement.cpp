#include "kovabase/files/Gk_DirElement.h"

#include "kovabase/files/KOVADirReader.h"

#include <algorithm>

namespace {

struct Entry {
  KOVAString name;
  bool isDirectory = false;
  bool isLink = false;
};

}  // namespace

Gk_DirElement::~Gk_DirElement() = default;

bool Gk_DirElement::IsDirectory() const { return true; }

KOVAResult Gk_DirElement::Read() {
  _files.purge();
  _directories.purge();
  KOVADirReader reader(GetPath());
  const KOVAResult result = reader.Open();

  KOVADynamicArray<Entry> entries;
  for (Entry entry;
       result.IsSuccess() && reader.GetNext(entry.name, entry.isDirectory, entry.isLink);) {
    entries.add(entry);
  }
  std::sort(entries.begin(), entries.end(),
            [](const Entry& a, const Entry& b) { return a.name < b.name; });
  for (const Entry& entry : entries) {
    // Not with operator+, which takes a name that starts with a dot for an extension.
    const Gk_FileElement element(KOVAFilePath(GetPath().GetPath(), entry.name), entry.isLink);
    (entry.isDirectory ? _directories : _files).add(element);
  }
  return result;
}

Gk_FileElement Gk_DirElement::GetFile(int index) const {
  return _files.isValidIndex(index) ? _files[index] : Gk_FileElement();
}

Gk_DirElement Gk_DirElement::GetDirectory(int index) const {
  if (!_directories.isValidIndex(index)) return Gk_DirElement();
  const Gk_FileElement& element = _directories[index];
  return Gk_DirElement(element.GetPath(), element.IsLink());
}
