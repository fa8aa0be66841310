#include "kovabase/containers/KOVADynamicArray.h"
#include "kovabase/strings/KOVAString.h"
#include "tests/support/AllocationFailure.h"

#include <deque>
#include <filesystem>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

/// An element that is counted and can refuse to be copied.
class Element {
 public:
  Element() : Element(-1) {}
  explicit Element(int value) : _value(std::make_unique<int>(value)) { ++s_living; }
  Element(const Element& other) : Element(*other._value) {
    if (s_copiesLeft-- == 0) throw std::runtime_error("no more copies");
  }
  Element& operator=(const Element& other) {
    *_value = *other._value;
    return *this;
  }
  ~Element() { --s_living; }

  int value() const { return *_value; }

  static inline int s_living = 0;
  static inline int s_copiesLeft = -1;

 private:
  std::unique_ptr<int> _value;
};

using Elements = KOVADynamicArray<Element>;

Elements elements(std::initializer_list<int> values) {
  Elements array;
  for (const int value : values) array.add(Element(value));
  return array;
}

std::vector<int> values(const Elements& array) {
  std::vector<int> result;
  for (const Element& element : array) result.push_back(element.value());
  return result;
}

using Values = std::vector<int>;

class KOVADynamicArrayTest : public ::testing::Test {
 protected:
  void TearDown() override { EXPECT_EQ(Element::s_living, 0) << "each element ends once"; }
};

TEST_F(KOVADynamicArrayTest, SharesItsBlockUntilItIsCopied) {
  Elements array = elements({1, 2});
  Elements sharer(array);
  Elements other = elements({9});
  other = array;
  const Elements own = array.copy();
  array.add(Element(3));
  EXPECT_EQ(values(sharer), (Values{1, 2, 3}));
  EXPECT_EQ(values(other), (Values{1, 2, 3}));
  EXPECT_EQ(values(own), (Values{1, 2}));
  EXPECT_TRUE(array == sharer && sharer == other);
  EXPECT_FALSE(array == own);
  EXPECT_EQ(array.getHash(), sharer.getHash());

  const Elements& self = sharer;
  sharer = self;
  sharer.purge();
  EXPECT_EQ(sharer.size(), 0);
  EXPECT_EQ(values(other), (Values{1, 2, 3}));
}

TEST_F(KOVADynamicArrayTest, AssignmentFromWithinAnElement) {
  struct Node {
    KOVADynamicArray<Node> children;
    Element element;
  };
  Node leaf;
  leaf.element = Element(5);
  Node inner;
  inner.children.add(leaf);
  KOVADynamicArray<Node> nodes(1, inner);
  inner.children.purge();
  nodes = nodes[0].children;
  ASSERT_EQ(nodes.size(), 1);
  EXPECT_EQ(nodes[0].element.value(), 5);
}

// What the array does step by step is replayed against std::vector by its fuzz target.
TEST_F(KOVADynamicArrayTest, TakesAnyNumberForACount) {
  constexpr int kLeast = std::numeric_limits<int>::min();
  constexpr int kMost = std::numeric_limits<int>::max();
  Elements array(3, Element(7));
  EXPECT_TRUE(array.frontGrow(kLeast) && array.endGrow(0) && array.frontShrink(-1) &&
              array.endShrink(kLeast) && array.reserve(kLeast));
  array.insert(kLeast, Element(8));
  array.insert(kMost, Element(9));  // into the slot that was opened, not into slot kMost
  EXPECT_FALSE(array.removeAt(kMost) || array.removeAt(kLeast));
  EXPECT_EQ(values(array), (Values{7, 7, 7, 9}));
  EXPECT_TRUE(array.frontShrink(kMost));
  EXPECT_TRUE(array.resize(2) && array.resize(kLeast));
  EXPECT_EQ(array.size(), 0);
  EXPECT_TRUE(array.begin() == nullptr && array.end() == nullptr && array.getArray() == nullptr);
  EXPECT_EQ(Elements(kLeast, Element(7)).size(), 0);
}

TEST_F(KOVADynamicArrayTest, NewScalarsAreZeroInUsedSlotsToo) {
  KOVADynamicArray<int> array(6, 77);
  array.clear();
  array.endGrow(2);
  array.frontGrow(2);
  array.resize(6);
  for (const int value : array) EXPECT_EQ(value, 0);
}

TEST_F(KOVADynamicArrayTest, AnIndexOutOfRangeIsANullReference) {
  KOVADynamicArray<double> array(3, 1.5);
  const KOVADynamicArray<double>& constArray = array;
  for (const int index : {-1, 3, std::numeric_limits<int>::min(), 1 << 30}) {
    const double* const address = &array[index];
    const double* const constAddress = &constArray[index];
    EXPECT_TRUE(address == nullptr && constAddress == nullptr) << index;
    EXPECT_FALSE(array.isValidIndex(index));
  }
  EXPECT_TRUE(array.isValidIndex(2));
  array[2] = 2.5;
  EXPECT_EQ(constArray[2], 2.5);
  EXPECT_EQ(array.end() - array.begin(), 3);
}

TEST_F(KOVADynamicArrayTest, AThrowingCopyLeavesTheElements) {
  Elements array = elements({1, 2, 3, 4});
  const Element five(5);
  const auto throws = [&](auto change) {
    Element::s_copiesLeft = 0;
    EXPECT_THROW(change(), std::runtime_error);
    Element::s_copiesLeft = -1;
    EXPECT_EQ(values(array), (Values{1, 2, 3, 4}));
  };
  throws([&] { array.add(five); });  // needs to grow
  array.reserve(10);
  throws([&] { array.add(five); });
  throws([&] { array.insert(1, five); });
  throws([&] { (void)array.copy(); });
  throws([&] { const Elements copies(3, five); });
}

TEST_F(KOVADynamicArrayTest, SurvivesAShortageOfMemory) {
  using kova::test::Shortage;
  const auto work = [] {
    try {
      Elements array = elements({1, 2, 3});
      array.insert(1, array[2]);
      array.append(array);
      array.frontGrow(3);
      array.reserve(100);
      Elements copy = array.copy();
      copy.purge();
      return array.size() == 11;
    } catch (const std::bad_alloc&) {
      return true;  // the elements say so themselves
    }
  };
  EXPECT_TRUE(kova::test::survivesFailingAllocations(work));
  EXPECT_TRUE(kova::test::survivesFailingAllocations(work, Shortage::kAllFailFromThere));
}

TEST_F(KOVADynamicArrayTest, HoldersOfManyThreadsEndTheElementsOnce) {
  std::vector<std::thread> threads;
  {
    KOVADynamicArray<KOVAString> shared(100, KOVAString("a text that needs a block of its own"));
    for (int i = 0; i < 4; ++i) {
      threads.emplace_back([array = shared] {
        for (int round = 0; round < 1000; ++round) {
          KOVADynamicArray<KOVAString> holder(array);
          const KOVADynamicArray<KOVAString> another(holder);
          holder.purge();
        }
      });
    }
  }
  for (std::thread& thread : threads) thread.join();
}

TEST_F(KOVADynamicArrayTest, RefusesWhatPointsIntoItself) {
  static_assert(KOVAIsByteMovable<KOVAString>);
  static_assert(KOVAIsByteMovable<std::unique_ptr<int>> && KOVAIsByteMovable<std::vector<int>>);
  static_assert(KOVAIsByteMovable<std::deque<std::string>> &&
                KOVAIsByteMovable<std::pair<int, Elements>>);
  static_assert(!KOVAIsByteMovable<std::string> && !KOVAIsByteMovable<std::u16string>);
  static_assert(!KOVAIsByteMovable<std::filesystem::path>);
  static_assert(!KOVAIsByteMovable<std::list<int>> && !KOVAIsByteMovable<std::set<int>> &&
                !KOVAIsByteMovable<std::multimap<int, int>> &&
                !KOVAIsByteMovable<std::unordered_map<int, int>>);
  static_assert(!KOVAIsByteMovable<std::pair<int, std::string>> &&
                !KOVAIsByteMovable<std::optional<std::tuple<int, std::list<int>>>> &&
                !KOVAIsByteMovable<std::array<std::variant<int, std::string>, 2>>);
}

}  // namespace
