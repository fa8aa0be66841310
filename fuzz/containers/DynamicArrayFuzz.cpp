// Arrays that share blocks, against shared std::vectors. Two bytes are one step: what to do to
// which array, and an argument.

#include "kovabase/containers/KOVADynamicArray.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <utility>
#include <vector>

namespace {

constexpr int kMostElements = 300;

void require(bool holds) {
  if (!holds) std::abort();
}

/// Owns a block, so that a copy that is missing, or one too many, shows as a fault of memory.
class Element {
 public:
  Element() : Element(0) {}
  explicit Element(int value) : _value(std::make_unique<int>(value)) {}
  Element(const Element& other) : Element(other.value()) {}
  Element& operator=(const Element& other) {
    *_value = other.value();
    return *this;
  }
  ~Element() = default;

  int value() const { return *_value; }

 private:
  std::unique_ptr<int> _value;
};

struct Pair {
  KOVADynamicArray<Element> array;
  std::shared_ptr<std::vector<int>> model = std::make_shared<std::vector<int>>();
};

void compare(const Pair& pair) {
  const std::vector<int>& model = *pair.model;
  const int count = static_cast<int>(model.size());
  require(pair.array.size() == count);
  require(pair.array.end() - pair.array.begin() == count);
  require(std::equal(model.begin(), model.end(), pair.array.begin(),
                     [](int value, const Element& element) { return value == element.value(); }));
  require(!pair.array.isValidIndex(count) && !pair.array.isValidIndex(-1));
}

// One case per function, so that the step numbers of the corpus stay what they are.
void step(unsigned what, int argument, Pair& pair, Pair& other) {
  KOVADynamicArray<Element>& array = pair.array;
  std::vector<int>& model = *pair.model;
  const int count = array.size();
  const bool mayGrow = count + argument + other.array.size() <= kMostElements;
  const auto at = [&](int index) { return model.begin() + std::min(index, count); };
  switch (what) {
    case 0:
      if (!mayGrow) return;
      array.add(Element(argument));
      model.push_back(argument);
      return;
    case 1:
      if (!mayGrow || !array.isValidIndex(argument)) return;
      array.add(array[argument]);
      model.push_back(int(model[static_cast<std::size_t>(argument)]));
      return;
    case 2:
      if (!mayGrow) return;
      array.insert(argument - 2, Element(argument));
      if (argument >= 2) model.insert(at(argument - 2), argument);
      return;
    case 3: {
      if (!mayGrow || !array.isValidIndex(argument)) return;
      const int value = model[static_cast<std::size_t>(argument)];
      array.insert(count - argument, array[argument]);
      model.insert(at(count - argument), value);
      return;
    }
    case 4: {
      const bool isThere = argument < count;
      require(array.removeAt(argument) == isThere);
      if (isThere) model.erase(at(argument));
      return;
    }
    case 5:
      if (!mayGrow) return;
      array.endGrow(argument - 1);
      model.resize(model.size() + static_cast<std::size_t>(std::max(argument - 1, 0)));
      return;
    case 6:
      if (!mayGrow) return;
      array.frontGrow(argument - 1);
      model.insert(model.begin(), static_cast<std::size_t>(std::max(argument - 1, 0)), 0);
      return;
    case 7:
      array.endShrink(argument);
      model.resize(static_cast<std::size_t>(std::max(count - argument, 0)));
      return;
    case 8:
      array.frontShrink(argument);
      model.erase(model.begin(), at(argument));
      return;
    case 9:
      array.resize(argument - 3);
      model.resize(static_cast<std::size_t>(std::max(argument - 3, 0)));
      return;
    case 10: array.reserve(argument); return;
    case 11:
      array.reverse();
      std::reverse(model.begin(), model.end());
      return;
    case 12: {
      if (!mayGrow) return;
      array.append(other.array);
      const std::vector<int> added = *other.model;
      model.insert(model.end(), added.begin(), added.end());
      return;
    }
    case 13: pair = other; return;
    case 14:
      pair.array = other.array.copy();
      pair.model = std::make_shared<std::vector<int>>(*other.model);
      return;
    default:
      if (argument % 2 == 0) {
        array.clear();
        model.clear();
      } else {
        array.purge();
        pair.model = std::make_shared<std::vector<int>>();
      }
      return;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::array<Pair, 3> pairs;
  for (std::size_t i = 0; i + 1 < size; i += 2) {
    const std::size_t which = data[i] / 16 % pairs.size();
    const std::size_t other = data[i] / 64 % pairs.size();
    step(data[i] % 16, data[i + 1] % 64, pairs[which], pairs[other]);
    for (const Pair& a : pairs) {
      compare(a);
      for (const Pair& b : pairs) require((a.array == b.array) == (a.model == b.model));
    }
  }
  return 0;
}
