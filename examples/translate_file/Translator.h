#pragma once

#include "translators/interface/Translator.h"
#include <kovabase/KOVABase.h>

/// A translator library, which the library manager holds until it frees all of them.
class Translator {
 public:
  /// Of the library libkova_FORMAT.so.
  explicit Translator(const KOVAString& format);

  /// Loads the library, checks that it is made for this program, and initialises it.
  /// @return Failure or NotSupported, which has been reported, when it cannot be used.
  KOVAResult Load();

  /// Null, which has been reported, for a translator that does not read.
  KOVAFormatReader* CreateReader(const kova::translators::ReadRequest& request);
  /// Null, which has been reported, for one that does not write.
  KOVAFormatWriter* CreateWriter(const kova::translators::WriteRequest& request);

 private:
  KOVAString _name;
  KOVAVexilLibrary _library;
};
