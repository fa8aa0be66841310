#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAReferenceCount.h"
#include "kovabase/foundation/KOVAReferenceHandle.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/io/KOVAOutputStream.h"

#include <cstddef>
#include <cstring>

class KOVAString;

/// Writes indented text to an output stream: event descriptions, error records, dumps.
///
/// The indentation is written before the first text of a line, three blanks for each level, so
/// that empty lines hold no blanks and a margin that has ended does not reach the next line. A
/// line ends with `KOVAEndLine`; a "\n" inside a text is written as it is and starts no
/// indented line.
///
/// The formatter owns nothing; the stream must live as long as it does. Failures are the stream's:
/// ask `GetResult`. One thread at a time.
class KOVABASE_API KOVAStreamFormatter {
 public:
  using Manipulator = KOVAStreamFormatter& (*)(KOVAStreamFormatter&);

  /// Blanks in one level of indentation.
  static constexpr int kIndentation = 3;

  /// @param stream  null makes a formatter that writes nothing.
  explicit KOVAStreamFormatter(KOVAOutputStream* stream) : _stream(stream) {}
  KOVAStreamFormatter(const KOVAStreamFormatter&) = delete;
  KOVAStreamFormatter& operator=(const KOVAStreamFormatter&) = delete;

  /// Zero-terminated; null writes nothing. The bytes are written as they are.
  KOVAStreamFormatter& operator<<(const char* text) {
    return text != nullptr ? WriteText(text, std::strlen(text)) : *this;
  }
  /// The character itself, not its code.
  KOVAStreamFormatter& operator<<(char character) { return WriteText(&character, 1); }
  /// As UTF-8.
  KOVAStreamFormatter& operator<<(const KOVAString& text);
  /// 1 or 0.
  KOVAStreamFormatter& operator<<(bool value) { return *this << (value ? '1' : '0'); }
  KOVAStreamFormatter& operator<<(int value) { return *this << static_cast<long long>(value); }
  KOVAStreamFormatter& operator<<(long value) { return *this << static_cast<long long>(value); }
  KOVAStreamFormatter& operator<<(long long value);
  KOVAStreamFormatter& operator<<(unsigned value) {
    return *this << static_cast<unsigned long long>(value);
  }
  KOVAStreamFormatter& operator<<(unsigned long value) {
    return *this << static_cast<unsigned long long>(value);
  }
  KOVAStreamFormatter& operator<<(unsigned long long value);
  /// The shortest text that reads back to the same double, see `KOVAFloatUtil::ToText`.
  KOVAStreamFormatter& operator<<(double value);
  KOVAStreamFormatter& operator<<(Manipulator manipulator) { return manipulator(*this); }
  /// Without this an address would be written as a bool.
  KOVAStreamFormatter& operator<<(const void* address) = delete;

  /// Writes `count` bytes of text, the indentation before them when they start a line.
  KOVAStreamFormatter& WriteText(const char* text, std::size_t count) {
    if (_stream == nullptr || count == 0) return *this;
    if (!_isInLine) StartLine();
    _stream->Write(text, count);
    return *this;
  }

  /// What `KOVAEndLine` does: writes "\n"; the next text starts a line.
  KOVAStreamFormatter& EndLine();

  /// Success, or the first failure of the stream; Success without a stream.
  KOVAResult GetResult() const {
    return _stream != nullptr ? _stream->GetResult() : KOVAResult(KOVAResultCode::kSuccess);
  }

  /// The current level, 0 at first.
  int GetIndentation() const { return _indentation; }

  /// Indents by one more level from its making until its end; a line that has begun before is not
  /// moved. Margins nest and may end in any order; none may outlive its formatter.
  ///
  ///     KOVAStreamFormatter::KOVAStreamFormatterMargin margin(formatter);
  class KOVABASE_API KOVAStreamFormatterMargin : public KOVAReferenceCount {
   public:
    explicit KOVAStreamFormatterMargin(KOVAStreamFormatter& formatter);
    KOVAStreamFormatterMargin(const KOVAStreamFormatterMargin&) = delete;
    ~KOVAStreamFormatterMargin() override;

    /// "KOVAStreamFormatterMargin".
    const char* GetName() override;

   private:
    KOVAStreamFormatter& _formatter;
  };
  using KOVAStreamFormatterMarginHandle = KOVATypedHandle<KOVAStreamFormatterMargin>;

  /// Writes an object as a block: its name and "{" on a line, what is written in its lifetime one
  /// level deeper, then "}" on a line of its own, which first ends a line that is still open.
  /// Objects nest and end in the reverse order; none may outlive its formatter.
  class KOVABASE_API KOVAStreamFormatterObject : public KOVAReferenceCount {
   public:
    /// @param name  zero-terminated; null or empty leaves the "{" alone.
    KOVAStreamFormatterObject(KOVAStreamFormatter& formatter, const char* name);
    KOVAStreamFormatterObject(const KOVAStreamFormatterObject&) = delete;
    ~KOVAStreamFormatterObject() override;

    /// "KOVAStreamFormatterObject".
    const char* GetName() override;

   private:
    KOVAStreamFormatter& _formatter;
  };
  using KOVAStreamFormatterObjectHandle = KOVATypedHandle<KOVAStreamFormatterObject>;

 private:
  void StartLine();

  KOVAOutputStream* _stream;
  int _indentation = 0;
  bool _isInLine = false;
};

/// Ends the line; `formatter << KOVAEndLine`.
KOVABASE_API KOVAStreamFormatter& KOVAEndLine(KOVAStreamFormatter& formatter);
