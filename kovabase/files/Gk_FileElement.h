#pragma once

#include "kovabase/files/KOVAFilePath.h"
#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/strings/KOVAString.h"

/// Something in a directory as it was found there. A plain value; it may be an array element.
class KOVABASE_API Gk_FileElement {
 public:
  Gk_FileElement() = default;
  explicit Gk_FileElement(const KOVAFilePath& path, bool isLink = false)
      : _path(path), _isLink(isLink) {}
  Gk_FileElement(const Gk_FileElement& other) = default;
  Gk_FileElement& operator=(const Gk_FileElement& other) = default;
  virtual ~Gk_FileElement();

  const KOVAFilePath& GetPath() const noexcept { return _path; }
  KOVAString GetName() const { return _path.GetName(); }
  bool IsLink() const noexcept { return _isLink; }
  virtual bool IsDirectory() const;

 private:
  KOVAFilePath _path;
  bool _isLink = false;
};
