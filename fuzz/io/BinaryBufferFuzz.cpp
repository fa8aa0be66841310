// The binary buffer over a block of memory, over a file, and over a file that is being written,
// whose window has 2,048 bytes, against a plain model over the whole block. Input: the size of the
// data, its seed, then the steps.

#include "fuzz/io/Model.h"
#include "kovabase/foundation/Gk_Exception.h"
#include "kovabase/io/KOVADefaultBinaryBuffer.h"
#include "kovabase/strings/KOVAString.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace {

enum class End { kRead, kFailed, kPastData };

template <class Read>
End endOf(Read read) {
  try {
    return read().IsSuccess() ? End::kRead : End::kFailed;
  } catch (const Gk_Exception& error) {
    require(std::strcmp(error.getMessage(), "End of Buffer.") == 0);
    return End::kPastData;
  }
}

class Model {
 public:
  explicit Model(std::string& bytes) : _bytes(bytes) {}

  template <class T>
  End read(T* values, std::size_t count) {
    if (count * sizeof(T) > _bytes.size() - offset) return End::kPastData;
    for (std::size_t i = 0; i < count; ++i) {
      char value[sizeof(T)];
      std::memcpy(value, _bytes.data() + offset, sizeof value);
      if (mode == 0) std::reverse(value, value + sizeof value);
      std::memcpy(values + i, value, sizeof value);
      offset += sizeof value;
    }
    return End::kRead;
  }

  template <class T>
  void write(T value) {
    char bytes[sizeof(T)];
    std::memcpy(bytes, &value, sizeof bytes);
    if (mode == 0) std::reverse(bytes, bytes + sizeof bytes);
    if (_bytes.size() < offset + sizeof bytes) _bytes.resize(offset + sizeof bytes);
    std::memcpy(_bytes.data() + offset, bytes, sizeof bytes);
    offset += sizeof bytes;
  }

  bool seek(long place) {
    if (place < 0 || place > static_cast<long>(_bytes.size())) return false;
    offset = static_cast<std::size_t>(place);
    return true;
  }

  std::size_t size() const { return _bytes.size(); }

  std::size_t offset = 0;
  KOVAEndianMode mode = 0;

 private:
  std::string& _bytes;
};

template <class T, class Read>
void readOne(Model& model, Read read) {
  T expected{};
  T value{};
  const End end = model.read(&expected, 1);
  require(endOf([&] { return read(value); }) == end);
  require(std::memcmp(&value, &expected, sizeof value) == 0);
}

template <class T, class Read>
void readSome(Model& model, std::size_t count, Read read) {
  std::vector<T> expected(count + 1);
  std::vector<T> values(count + 1);
  const End end = model.read(expected.data(), count);
  require(endOf([&] { return read(values.data(), static_cast<int>(count)); }) == end);
  if (end != End::kRead) return;
  require(std::memcmp(values.data(), expected.data(), values.size() * sizeof(T)) == 0);
}

void run(KOVADefaultBinaryBuffer& buffer, Model model, Steps steps, bool isWritten) {
  while (!steps.isEmpty()) {
    const unsigned step = steps.next() % 14;
    const std::size_t count = steps.next();
    switch (step) {
      case 0: readOne<int>(model, [&](int& value) { return buffer.ReadInt(value); }); break;
      case 1: readOne<short>(model, [&](short& value) { return buffer.ReadShort(value); }); break;
      case 2:
        readOne<double>(model, [&](double& value) { return buffer.ReadDouble(value); });
        break;
      case 3: readOne<float>(model, [&](float& value) { return buffer.ReadFloat(value); }); break;
      case 4:
        readOne<unsigned long long>(
            model, [&](unsigned long long& value) { return buffer.ReadULngLng(value); });
        break;
      case 5:
        readSome<int>(model, 8 * count, [&](int* v, int n) { return buffer.ReadInts(v, n); });
        break;
      case 6:
        readSome<float>(model, 8 * count, [&](float* v, int n) { return buffer.ReadFloats(v, n); });
        break;
      case 7:
        readSome<double>(model, 8 * count,
                         [&](double* v, int n) { return buffer.ReadDoubles(v, n); });
        break;
      case 8:
      case 9: {
        // Towards the ends of windows and of the data.
        const std::size_t high = steps.next();
        const long place = step == 8 ? static_cast<long>(high * 256 + count) - 4
                                     : static_cast<long>(model.size() + 4 - count % 16);
        require(buffer.SetOffset(place).IsSuccess() == model.seek(place));
        break;
      }
      case 10:
        model.mode = static_cast<KOVAEndianMode>(count % 3);
        buffer.SetEndianness(model.mode);
        break;
      case 11: {
        std::vector<unsigned char> value(count + 1);
        std::vector<unsigned char> expected(count + 1);
        Model stored = model;
        const End end = stored.read(expected.data(), count);
        require(endOf([&] {
                  return buffer.GetBufferBasedOnEndianNess(static_cast<int>(count), value.data());
                }) == end);
        if (end == End::kPastData) break;
        model.offset = stored.offset;
        if (model.mode == 0) std::reverse(expected.data(), expected.data() + count);
        require(value == expected);
        break;
      }
      case 12: {
        std::vector<unsigned char> peeked(count + 1);
        const long place = static_cast<long>(steps.next()) * 100;
        const bool isThere = place + static_cast<long>(count) <= static_cast<long>(model.size());
        require(buffer.PeekBytes(place, static_cast<int>(count), peeked.data()).IsSuccess() ==
                isThere);
        Model there = model;
        if (!isThere || !there.seek(place)) break;
        std::vector<unsigned char> expected(count + 1);
        require(there.read(expected.data(), count) == End::kRead && peeked == expected);
        break;
      }
      default:
        if (isWritten) {
          require(buffer.WriteDouble(static_cast<double>(count)).IsSuccess());
          model.write(static_cast<double>(count));
        } else {
          require(buffer.WriteInt(1) == KOVAResultCode::kNotSupported);
          KOVAString text("as it was");
          const std::size_t begin = model.offset;
          const End end = endOf([&] { return buffer.ReadWString(static_cast<int>(count), text); });
          require(end == (2 * count <= model.size() - begin ? End::kRead : End::kPastData));
          if (end == End::kRead) model.offset += 2 * count;
        }
    }
    require(buffer.GetOffset() == static_cast<long>(model.offset));
    require(buffer.GetSize() == static_cast<long>(model.size()));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Steps steps(data, size);
  const std::size_t bytes = steps.next() * std::size_t{64} + 1;
  std::string seed;
  for (std::size_t count = steps.next() % 16 + 1U; count > 0; --count) {
    seed += static_cast<char>(steps.next());
  }
  std::string block = spread(seed, bytes, false);
  {
    KOVADefaultBinaryBuffer memory(reinterpret_cast<unsigned char*>(block.data()), block.size());
    run(memory, Model(block), steps, false);
  }
  {
    KOVADefaultBinaryBuffer output(fuzzFile(), 1);
    output.SetEndianness(1);
    for (const char byte : block) output.WriteByte(static_cast<unsigned char>(byte));
    require(output.Flush().IsSuccess());
    KOVADefaultBinaryBuffer input(fuzzFile(), 0);
    run(input, Model(block), steps, false);

    require(output.SetOffset(0).IsSuccess());
    output.SetEndianness(0);
    run(output, Model(block), steps, true);
    require(output.Flush().IsSuccess());
  }
  // What the run wrote has arrived.
  KOVADefaultBinaryBuffer written(fuzzFile(), 0);
  std::vector<unsigned char> arrived(block.size());
  require(written.GetSize() == static_cast<long>(block.size()));
  written.SetEndianness(1);
  written.GetBufferBasedOnEndianNess(static_cast<int>(arrived.size()), arrived.data());
  require(std::memcmp(arrived.data(), block.data(), block.size()) == 0);
  return 0;
}
