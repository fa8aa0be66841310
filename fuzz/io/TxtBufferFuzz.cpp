// The text buffer over a block of memory, over a file, and over a file that is being written, whose
// window has 2,048 bytes, against a plain model of the tokens over the whole block. Input: the size
// of the data, its seed, then the steps.

#include "fuzz/io/Model.h"
#include "kovabase/io/KOVADefaultTxtBuffer.h"
#include "kovabase/strings/KOVAString.h"

#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

constexpr const char* kSpace = " \t\n\r";

bool isIn(const char* set, int c) { return c > 0 && std::strchr(set, c) != nullptr; }

// The rules of the tokens, character by character, with no thought of windows.
class Model {
 public:
  explicit Model(const std::string& text) : _text(text) {}

  int at(std::size_t place) const {
    return place < _text.size() ? static_cast<unsigned char>(_text[place]) : -1;
  }

  bool extract(std::size_t limit, std::string& token) {
    token.clear();
    if (at(offset) < 0) return false;
    int previous = 0;
    while (token.size() < limit - 1) {
      const int c = at(offset);
      if (c < 0) break;
      if (isIn(" \t", c)) {
        ++offset;
        break;
      }
      if (!isIn("0123456789+-.eE\r\n", c)) {
        if (isIn("eE", previous)) {
          --offset;
          token.pop_back();
        }
        break;
      }
      if (!isIn("\r\n", c)) token += static_cast<char>(c);
      previous = c;
      ++offset;
    }
    if (token.empty()) return false;
    if (token.size() < limit - 1) return true;
    std::size_t next = offset;
    while (at(next) == '\n') ++next;
    return isIn(" \t", at(next));
  }

  // 1 for a number, 0 for none, -1 for a failure.
  int readToken(std::string& token) {
    if (at(offset) == '?') {
      ++offset;
      return 0;
    }
    if (at(offset) < 0) return 0;
    return extract(128, token) ? 1 : -1;
  }

  // atoi with a range.
  static bool toLong(const std::string& token, long lowest, long highest, long& value) {
    errno = 0;
    value = std::strtol(token.c_str(), nullptr, 10);
    return errno == 0 && value >= lowest && value <= highest;
  }

  void skip(const char* set) {
    while (isIn(set, at(offset))) ++offset;
  }

  std::size_t size() const { return _text.size(); }

  std::size_t offset = 0;

 private:
  const std::string& _text;
};

template <class T, class Read>
void readInteger(Model& model, long lowest, long highest, long missing, Read read) {
  std::string token;
  T value = static_cast<T>(7);
  long expected = missing;
  const int kind = model.readToken(token);
  bool isGood = kind >= 0;
  long number = 0;
  if (kind == 1) {
    isGood = Model::toLong(token, lowest, highest, number);
    if (isGood) expected = number;
  }
  require(read(value).IsSuccess() == isGood);
  require(value == static_cast<T>(expected));
}

void readDouble(Model& model, KOVADefaultTxtBuffer& buffer) {
  std::string token;
  const int kind = model.readToken(token);
  double value = 7.0;
  const bool isGood = buffer.ReadDouble(value).IsSuccess();
  if (kind != 1) {
    require(isGood == (kind == 0) && value == 7.0);
    return;
  }
  const double expected = std::strtod(token.c_str(), nullptr);
  require(isGood == std::isfinite(expected));
  require(value == (isGood ? expected : 7.0));
}

void run(KOVADefaultTxtBuffer& buffer, Model model, Steps steps) {
  while (!steps.isEmpty()) {
    const unsigned step = steps.next() % 10;
    const std::size_t count = steps.next();
    std::string token;
    switch (step) {
      case 0:
      case 1:
        readInteger<int>(model, INT_MIN, INT_MAX, KOVADefaultTxtBuffer::kUnsetInt,
                         [&](int& value) { return buffer.ReadInt(value); });
        break;
      case 2:
        readInteger<short>(model, SHRT_MIN, SHRT_MAX, 7,
                           [&](short& value) { return buffer.ReadShort(value); });
        break;
      case 3:
        model.skip(kSpace);
        readInteger<unsigned long>(model, INT_MIN, INT_MAX, 7,
                                   [&](unsigned long& value) { return buffer.ReadULngInt(value); });
        break;
      case 4:
      case 5: readDouble(model, buffer); break;
      case 6: {
        const std::size_t limit = count % 40 + 2;
        std::vector<char> number(limit);
        const bool isGood = model.extract(limit, token);
        require(buffer.ExtractNumberBuffer(static_cast<int>(limit), number.data()).IsSuccess() ==
                isGood);
        if (isGood) require(token == number.data());
        break;
      }
      case 7: {
        model.skip(kSpace);
        const std::size_t begin = model.offset;
        while (model.at(model.offset) >= 0 && !isIn(kSpace, model.at(model.offset))) {
          ++model.offset;
        }
        KOVAString word;
        require(buffer.ReadWord(word).IsSuccess() == (model.offset > begin));
        break;
      }
      case 8: {
        const bool isThere = model.at(model.offset) >= 0;
        while (model.at(model.offset) >= 0 && !isIn("\r\n", model.at(model.offset))) {
          ++model.offset;
        }
        const int end = model.at(model.offset);
        if (end >= 0) ++model.offset;
        if (end == '\r' && model.at(model.offset) == '\n') ++model.offset;
        KOVAString line;
        require(buffer.ReadLine(line).IsSuccess() == isThere);
        break;
      }
      default: {
        const long place = static_cast<long>(steps.next() * std::size_t{256} + count) - 4;
        const bool isThere = place >= 0 && place <= static_cast<long>(model.size());
        require(buffer.SetOffset(place).IsSuccess() == isThere);
        if (isThere) model.offset = static_cast<std::size_t>(place);
      }
    }
    require(buffer.GetOffset() == static_cast<long>(model.offset));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Steps steps(data, size);
  const std::size_t bytes = steps.next() * std::size_t{64} + 1;
  std::string seed;
  for (std::size_t count = steps.next() % 64 + 1U; count > 0; --count) {
    const std::uint8_t c = steps.next();
    // Mostly what numbers are made of.
    seed += c < 128 ? "0123456789eE+-. \t\r\n?,"[c % 22] : static_cast<char>(c);
  }
  std::string block = spread(seed, bytes, true);
  KOVADefaultTxtBuffer memory(reinterpret_cast<unsigned char*>(block.data()), block.size());
  run(memory, Model(block), steps);

  if (std::FILE* const stream = std::fopen(filePath().c_str(), "wb")) {
    require(std::fwrite(block.data(), 1, block.size(), stream) == block.size());
    require(std::fclose(stream) == 0);
  }
  KOVADefaultTxtBuffer input(fuzzFile(), 0);
  run(input, Model(block), steps);

  // A buffer that writes can be read in windows that are smaller than the data.
  struct Output : KOVADefaultTxtBuffer {
    using KOVADefaultTxtBuffer::KOVADefaultTxtBuffer;
    void fill(const std::string& text) {
      require(WriteBytes(text.data(), static_cast<int>(text.size())).IsSuccess());
      require(SetOffset(0).IsSuccess());
    }
  } output(fuzzFile(), 1);
  output.fill(block);
  run(output, Model(block), steps);
  return 0;
}
