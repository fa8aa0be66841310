#pragma once

#include "kovabase/foundation/KOVAExport.h"

class KOVAString;

/// Base of the two helpers that hold a text in the form that a C function wants, for as long as the
/// helper lives.
class KOVABASE_API KOVAStringCharUtil {
 public:
  KOVAStringCharUtil(const KOVAStringCharUtil&) = delete;
  KOVAStringCharUtil& operator=(const KOVAStringCharUtil&) = delete;
  virtual ~KOVAStringCharUtil();

 protected:
  KOVAStringCharUtil() = default;
};

/// The US-ASCII form of a text.
class KOVABASE_API KOVAStringAsciiCharUtil : public KOVAStringCharUtil {
 public:
  /// @param substitute  stands for each character outside US-ASCII when `useSubstitute` is true;
  ///   otherwise byte 26 does.
  KOVAStringAsciiCharUtil(const KOVAString& text, bool useSubstitute, char substitute);
  ~KOVAStringAsciiCharUtil() override;

  /// Zero-terminated, the helper's own; null when the conversion failed.
  const char* GetBuffer() const noexcept { return _buffer; }

 private:
  char* _buffer = nullptr;
};

/// The UTF-16 form of a text.
class KOVABASE_API KOVAStringUnicodeWCharUtil : public KOVAStringCharUtil {
 public:
  explicit KOVAStringUnicodeWCharUtil(const KOVAString& text);
  ~KOVAStringUnicodeWCharUtil() override;

  /// Zero-terminated, the helper's own; null when the conversion failed.
  const unsigned short* GetBuffer() const noexcept { return _buffer; }

 private:
  unsigned short* _buffer = nullptr;
};
