#pragma once

#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/io/KOVAOutputStream.h"
#include "translators/interface/Report.h"
#include "translators/interface/Source.h"
#include "translators/model/Model.h"

/// What a translator library offers to the program that loads it by name. The library of the
/// format `stl` is `libkova_stl.so`; it defines the functions at the end of this file.
namespace kova::translators {

/// Stands for everything that program and translator must agree on: these classes, the model and
/// the entry points. It grows with every change to them.
inline constexpr int kInterfaceNumber = 1;

/// Reads files of one format. One object reads one file at a time.
class Reader {
 public:
  Reader() = default;
  Reader(const Reader&) = delete;
  Reader& operator=(const Reader&) = delete;
  virtual ~Reader() = default;

  /// Adds what the source holds to `model`, which is worth nothing after a failure. The first
  /// failure has been reported before this returns.
  virtual KOVAResult Read(Source& source, Model& model, Report& report) = 0;
};

/// Writes files of one format.
class Writer {
 public:
  Writer() = default;
  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;
  virtual ~Writer() = default;

  /// Writes the whole model. What the stream refuses is the stream's failure: it comes back as the
  /// result and is not reported.
  virtual KOVAResult Write(const Model& model, KOVAOutputStream& stream, Report& report) = 0;
};

/// What a translator says about itself; static texts.
struct Description {
  /// For people: "Stereolithography meshes, binary and ASCII".
  const char* title;
  /// File name extensions in lower case, each with its dot, divided by blanks: ".stl".
  const char* extensions;
};

}  // namespace kova::translators

#define KOVA_TRANSLATOR_EXPORT extern "C" __attribute__((visibility("default")))

/// The entry points. All but the two `Create` functions are required; a library without
/// `KOVATranslatorCreateReader` does not read, one without `KOVATranslatorCreateWriter` does not
/// write. What they create is deleted by the caller, before it finalises the library.

/// The `kInterfaceNumber` that the library was built with. Called before anything else.
KOVA_TRANSLATOR_EXPORT int KOVATranslatorInterfaceNumber();
/// Called once after loading, and once before unloading when everything created is deleted.
KOVA_TRANSLATOR_EXPORT void KOVATranslatorInitialize();
KOVA_TRANSLATOR_EXPORT void KOVATranslatorFinalize();
KOVA_TRANSLATOR_EXPORT const kova::translators::Description* KOVATranslatorDescribe();
KOVA_TRANSLATOR_EXPORT kova::translators::Reader* KOVATranslatorCreateReader();
KOVA_TRANSLATOR_EXPORT kova::translators::Writer* KOVATranslatorCreateWriter();
