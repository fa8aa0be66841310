#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/io/KOVADefaultBuffer.h"

#include <string>

class KOVAString;

/// Text as numbers, lines and strings.
///
/// A number is a run of digits, signs, points and exponent letters. One blank or tab that ends it
/// is consumed with it, any other character is left; line ends inside it are stepped over, so that
/// a number may go on in the next line. A '?' in the place of a number, and the end of the data,
/// mean that there is none: the reads succeed and leave their output as it says. Numbers have a
/// decimal point whatever the locale.
///
/// Results of reads: Success; Failure with a message for what is no number, out of range or too
/// long, the output unchanged; the failure of a read of the data, with nothing moved;
/// NotInitialized without data. Results of writes: as in the binary
/// buffer.
class KOVABASE_API KOVADefaultTxtBuffer : public KOVADefaultBuffer {
 public:
  /// What ReadInt gives when the text has no number. Kept: formats look for it.
  static constexpr int kUnsetInt = -32764;

  using KOVADefaultBuffer::KOVADefaultBuffer;
  ~KOVADefaultTxtBuffer() override;

  /// No white space is skipped. Without a number the value is -32764.
  KOVAResult ReadInt(int& value);
  /// No white space is skipped; without a number the output is unchanged.
  KOVAResult ReadShort(short& value);
  KOVAResult ReadFloat(float& value);
  KOVAResult ReadDouble(double& value);
  /// Skips blanks, tabs and line ends first. Reads a signed number of 32 bits, and a negative one
  /// wraps around; kept.
  KOVAResult ReadULngInt(unsigned long& value);

  /// The same as `count` single reads in a row, up to the first failure, which is the result.
  /// @param done  receives the number of successful ones, unless null.
  KOVAResult ReadInts(int* values, int count, int* done = nullptr);
  KOVAResult ReadDoubles(double* values, int count, int* done = nullptr);

  /// The rest of the line, read as US-ASCII, without its line end (LF, CR LF or CR).
  /// @return Failure with a message at the end of the data.
  KOVAResult ReadLine(KOVAString& line);
  /// The next `count` characters as US-ASCII.
  /// @return Failure, nothing moved, for a negative count or when fewer are left.
  KOVAResult ReadAsciiString(int count, KOVAString& text);
  /// The characters up to the next blank, tab or line end, which stays. Leading ones are skipped.
  /// @return Failure when none is left.
  KOVAResult ReadWord(KOVAString& word);

  /// Copies the number that begins here to `destination`, zero-terminated.
  /// @param limit  bytes there, the terminator included.
  /// @return Failure without a message for limit < 2 or null, nothing touched; Failure with a
  ///   warning when no number begins here, and with an error when it has limit - 1 characters and
  ///   something else than line feeds and a blank or tab follows.
  KOVAResult ExtractNumberBuffer(int limit, char* destination);

  /// Moves behind all the following characters that are in the set; null is the empty set.
  KOVAResult SkipChars(const char* characters);

  /// The number and a blank. Doubles are the shortest text that reads back to the same value.
  /// @return InvalidArgument, nothing written, for a value that is not finite.
  KOVAResult WriteInt(int value);
  KOVAResult WriteShort(short value) { return WriteInt(value); }
  /// What ReadULngInt reads back to the same value: the numbers near the upper end are written as
  /// the negative ones from which they wrap around.
  /// @return InvalidArgument, nothing written, for a value that does not come back: from 2^31 to
  ///   2^64 - 2^31 - 1.
  KOVAResult WriteULngInt(unsigned long value);
  KOVAResult WriteFloat(float value);
  KOVAResult WriteDouble(double value);
  /// The characters, '_' for what US-ASCII lacks; a line has "\n" behind it.
  KOVAResult WriteAsciiString(const KOVAString& text);
  KOVAResult WriteLine(const KOVAString& line);

 private:
  /// -1 at the end of the data and when it cannot be read, which `_refill` tells apart.
  int TakeChar() {
    if (_cursor != _end) return *_cursor++;
    return PeekNextWindow() >= 0 ? *_cursor++ : -1;
  }
  int PeekChar() { return _cursor != _end ? *_cursor : PeekNextWindow(); }
  int PeekNextWindow();
  bool IsNumberMissing();
  template <class IsEnd>
  KOVAResult TakeRun(std::string& bytes, IsEnd isEnd);
  template <class T, class Convert>
  KOVAResult ReadNumber(T& value, Convert convert);
  bool TakePlainInt(int& value);
  bool TakePlainDouble(double& value);

  KOVAResult _refill = KOVAResultCode::kSuccess;
};

using KOVADefaultTxtBufferHandle = KOVATypedHandle<KOVADefaultTxtBuffer>;
