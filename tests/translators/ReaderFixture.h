#pragma once

#include "translators/interface/Translator.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

namespace kova::translators {

/// Bytes in memory as a file or, when its length is not to be known, as a pipe, which hands out a
/// few bytes at a time.
class MemorySource : public Source {
 public:
  MemorySource(const void* bytes, std::size_t count, bool isPipe = false)
      : _bytes(static_cast<const char*>(bytes)), _count(count), _isPipe(isPipe) {}
  explicit MemorySource(const std::string& bytes, bool isPipe = false)
      : MemorySource(bytes.data(), bytes.size(), isPipe) {}

  /// From this offset on reading fails.
  void BreakAt(std::size_t offset) { _broken = offset; }

  std::int64_t Read(char* bytes, std::size_t capacity) override {
    if (_offset >= _broken) return -1;
    const std::size_t piece = _isPipe ? 1 + _offset % 4096 : _count;
    const std::size_t count = std::min({capacity, _count - _offset, _broken - _offset, piece});
    if (count != 0) std::memcpy(bytes, _bytes + _offset, count);
    _offset += count;
    return static_cast<std::int64_t>(count);
  }
  std::int64_t GetByteCount() const override {
    return _isPipe ? -1 : static_cast<std::int64_t>(_count);
  }
  const char* GetFailureReason() const override { return "Input/output error"; }

 private:
  const char* _bytes;
  std::size_t _count;
  bool _isPipe;
  std::size_t _offset = 0;
  std::size_t _broken = static_cast<std::size_t>(-1);
};

/// Keeps the messages as texts: "line 3: TEXT", "byte 84: TEXT" or "TEXT".
class RecordingReport : public Report {
 public:
  std::vector<std::string> warnings;
  std::vector<std::string> errors;

 protected:
  void HandleWarning(Place place, const char* text) override {
    warnings.push_back(Describe(place, text));
  }
  void HandleError(Place place, const char* text) override {
    errors.push_back(Describe(place, text));
  }

 private:
  static std::string Describe(Place place, const char* text) {
    if (place.kind == Place::Kind::kNowhere) return text;
    return (place.kind == Place::Kind::kLine ? "line " : "byte ") + std::to_string(place.number) +
           ": " + text;
  }
};

}  // namespace kova::translators
