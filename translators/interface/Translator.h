#pragma once

#include "kovabase/files/KOVAFile.h"
#include "kovabase/io/KOVAFileHeader.h"
#include "kovabase/options/KOVAOptions.h"
#include "kovabase/translation/KOVAFormatReader.h"
#include "kovabase/translation/KOVAFormatWriter.h"
#include "translators/interface/Report.h"
#include "translators/model/Model.h"

/// What a translator library offers to the program that loads it by name. The library of the
/// format `stl` is `libkova_stl.so`; it defines the functions at the end of this file.
namespace kova::translators {

/// Stands for everything that program and translator must agree on: these structures, the model
/// and the entry points. It grows with every change to them.
inline constexpr int kInterfaceNumber = 2;

/// What a program hands to a format reader. What it refers to lives longer than the reader.
///
/// The program then runs KOVAReader over the format reader: ReadHeaderSection, ReadFileInfoSection,
/// ReadDataSection, Resolve and ReleaseEntityReaders, and stops at the first failure, which has
/// been reported by then. `Resolve` may say that it is not supplied. After that the model is
/// complete; after a failure it is worth nothing.
struct ReadRequest {
  /// The file; empty when the bytes are in memory.
  KOVAFileHandle file;
  /// The bytes instead of a file, which nobody changes; null when there is a file. They stay the
  /// caller's, and `block` is not const only because buffers take it so.
  unsigned char* block = nullptr;
  unsigned long blockBytes = 0;
  /// Takes the messages.
  const Report& report;
  /// The settings of the translation, for reading alone.
  const KOVAOptions& options;
  /// Receives what the file says about itself.
  KOVAFileHeader& header;
  /// Receives the model. Its name is set; everything else is empty.
  Model& model;
};

/// What a program hands to a format writer. What it refers to lives longer than the writer.
///
/// The program then runs KOVAWriter over the format writer: WriteHeaderSection,
/// WriteFileInfoSection, WriteDataSection, Resolve and ReleaseEntityWriters, and stops at the first
/// failure, which has been reported by then. `Resolve` hands everything to the system: only after
/// it the file is complete.
struct WriteRequest {
  /// Created, or made empty. The caller renames or removes it afterwards.
  KOVAFileHandle file;
  /// Takes the messages; it calls the file what it will be called in the end.
  const Report& report;
  /// The settings of the translation, for reading alone.
  const KOVAOptions& options;
  const Model& model;
};

/// What a translator says about itself; static texts.
struct Description {
  /// For people: "Stereolithography meshes, binary and ASCII".
  const char* title;
  /// File name extensions in lower case, each with its dot, divided by blanks: ".stl". The first
  /// one is that of files which are written.
  const char* extensions;
};

}  // namespace kova::translators

#define KOVA_TRANSLATOR_EXPORT extern "C" __attribute__((visibility("default")))

/// The entry points. All but the two `Create` functions are required; a library without
/// `KOVATranslatorCreateReader` does not read, one without `KOVATranslatorCreateWriter` does not
/// write. Any thread may create, several at a time. What they create is counted: the caller takes
/// it into a handle at once, and lets go of it before the library is finalised.

/// The `kInterfaceNumber` that the library was built with. Called before anything else.
KOVA_TRANSLATOR_EXPORT int KOVATranslatorInterfaceNumber();
/// Called once after loading, and once before unloading when everything created is gone.
KOVA_TRANSLATOR_EXPORT void KOVATranslatorInitialize();
KOVA_TRANSLATOR_EXPORT void KOVATranslatorFinalize();
KOVA_TRANSLATOR_EXPORT const kova::translators::Description* KOVATranslatorDescribe();
/// Opens the file. A file that cannot be opened is reported, and the first step fails.
KOVA_TRANSLATOR_EXPORT KOVAFormatReader* KOVATranslatorCreateReader(
    const kova::translators::ReadRequest* request);
/// Creates the file. One that cannot be created is reported, and the first step fails.
KOVA_TRANSLATOR_EXPORT KOVAFormatWriter* KOVATranslatorCreateWriter(
    const kova::translators::WriteRequest* request);
