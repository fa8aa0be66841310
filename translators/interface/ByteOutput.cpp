#include "translators/interface/ByteOutput.h"

#include <cstring>

namespace kova::translators {

ByteOutput::ByteOutput(const KOVAFileHandle& file)
    : KOVADefaultBuffer(file, 1), _bytes(new char[kCapacity]), _next(_bytes.get()) {}

ByteOutput::~ByteOutput() { Send(); }

void ByteOutput::PutText(std::string_view text) {
  if (text.size() > kCapacity / 4) {
    Send();
    while (!text.empty()) {
      const std::string_view piece = text.substr(0, kCapacity);
      _result &= WriteBytes(piece.data(), static_cast<int>(piece.size()));
      text.remove_prefix(piece.size());
    }
    return;
  }
  if (text.size() > static_cast<std::size_t>(_bytes.get() + kCapacity - _next)) Send();
  std::memcpy(_next, text.data(), text.size());
  _next += text.size();
}

KOVAResult ByteOutput::Finish() {
  Send();
  _result &= Flush();
  return _result;
}

void ByteOutput::Send() {
  const int count = static_cast<int>(_next - _bytes.get());
  if (count != 0) _result &= WriteBytes(_bytes.get(), count);
  _next = _bytes.get();
}

}  // namespace kova::translators
