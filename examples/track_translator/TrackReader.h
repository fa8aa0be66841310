#pragma once

#include <cstdint>
#include <translators/interface/ByteWindow.h>
#include <translators/interface/Text.h>
#include <translators/interface/Translator.h>

/// Reads survey tracks, a small text format:
///
///     TRACK 1          header: the format's name and version
///     UNIT meter       file information: the unit of length
///     LINE Shore road  data: each line by its name, then its points
///     0 0 0
///     12.5 3 0.25
// [reader]
class TrackReader : public KOVAFormatReader {
 public:
  explicit TrackReader(const kova::translators::ReadRequest& request);

 private:
  class LineSection;

  KOVAResult ReadHeader();
  KOVAResult ReadUnit();
  bool HasLine() const { return _result.IsSuccess() && _words.GetWord() == "LINE"; }
  KOVAResult ReadLine();
  KOVAResult ReadEnd();
  bool ReadPoint(kova::translators::Point& point);
  KOVAResult Refuse(const char* expected);

  const kova::translators::ReadRequest _request;
  KOVAResult _opened;
  KOVABufferHandle _input;
  kova::translators::ByteWindow _window;
  kova::translators::WordScanner _words;
  KOVAResult _result = KOVAResultCode::kSuccess;
  /// Lines that have no length, told once at the end.
  int _leftOut = 0;
  std::uint64_t _firstLeftOut = 0;
};
// [reader]
