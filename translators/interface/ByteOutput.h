#pragma once

#include "kovabase/io/KOVADefaultBuffer.h"

#include <charconv>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>

namespace kova::translators {

/// The buffer of a writer: gathers small pieces into blocks and hands these to the file. What the
/// system refuses shows in the result of `Finish`.
class ByteOutput : public KOVADefaultBuffer {
 public:
  /// Creates the file, or makes it empty; see KOVADefaultBuffer.
  explicit ByteOutput(const KOVAFileHandle& file);
  ~ByteOutput() override;

  /// Makes room for at least `kRoom` bytes, which may be put without asking again: a line of short
  /// texts and a few numbers.
  void MakeRoom() {
    if (_next > _bytes.get() + kCapacity - kRoom) Send();
  }
  void Put(char c) { *_next++ = c; }
  void PutBytes(const void* bytes, std::size_t count) {
    std::memcpy(_next, bytes, count);
    _next += count;
  }
  /// At most 32 bytes: the shortest text that reads back to the same value.
  template <typename Number>
  void PutNumber(Number value) {
    _next = std::to_chars(_next, _next + kMostNumberBytes, value).ptr;
  }
  /// Text or bytes of any length; needs no room.
  void PutText(std::string_view text);

  /// Hands everything to the system.
  /// @return FileSaveError when it has refused something since the beginning.
  KOVAResult Finish();

  static constexpr std::size_t kRoom = 512;

 private:
  static constexpr std::size_t kCapacity = std::size_t{256} << 10;
  static constexpr std::size_t kMostNumberBytes = 32;

  void Send();

  std::unique_ptr<char[]> _bytes;
  char* _next;
  KOVAResult _result = KOVAResultCode::kSuccess;
};

using ByteOutputHandle = KOVATypedHandle<ByteOutput>;

}  // namespace kova::translators
