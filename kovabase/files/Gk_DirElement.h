#pragma once

#include "kovabase/containers/KOVADynamicArray.h"
#include "kovabase/files/Gk_FileElement.h"
#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"

/// A directory and, once read, the files and directories directly in it, each in the order of their
/// names. Whoever walks down a tree leaves links to directories out, or may never come to an end.
/// Copies share what was read.
class KOVABASE_API Gk_DirElement : public Gk_FileElement {
 public:
  Gk_DirElement() = default;
  explicit Gk_DirElement(const KOVAFilePath& path, bool isLink = false)
      : Gk_FileElement(path, isLink) {}
  Gk_DirElement(const Gk_DirElement& other) = default;
  Gk_DirElement& operator=(const Gk_DirElement& other) = default;
  ~Gk_DirElement() override;

  bool IsDirectory() const override;

  /// Reads the directory, anew when it was read before.
  /// @return as KOVADirReader::Open; nothing is in the directory then.
  KOVAResult Read();

  /// 0 before Read. What is no directory counts as a file.
  int GetFileCount() const noexcept { return _files.size(); }
  int GetDirectoryCount() const noexcept { return _directories.size(); }
  /// An element without a path for an index out of range.
  Gk_FileElement GetFile(int index) const;
  /// Not read yet.
  Gk_DirElement GetDirectory(int index) const;

 private:
  KOVADynamicArray<Gk_FileElement> _files;
  KOVADynamicArray<Gk_FileElement> _directories;
};
