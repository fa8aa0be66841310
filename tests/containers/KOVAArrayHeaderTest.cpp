#include "kovabase/containers/KOVAArrayHeader.h"
#include "kovabase/foundation/KOVAAllocException.h"

#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace {

constexpr int kMost = std::numeric_limits<int>::max();

/// A block of one-byte slots that hold the text.
KOVAArrayHeader* blockOf(const std::string& text, int capacity = 1) {
  KOVAArrayHeader* header = kovaArrayAllocate(capacity, 1);
  for (const char& character : text) {
    kovaArrayAdd(header, nullptr);
    kovaArraySetAt(header, kovaArrayCount(header) - 1, &character);
  }
  return header;
}

std::string textOf(const KOVAArrayHeader* header) {
  return {static_cast<const char*>(header->data), static_cast<std::size_t>(header->count)};
}

bool isZero(const KOVAArrayHeader* header, int firstSlot) {
  const auto* bytes = static_cast<const unsigned char*>(header->data);
  for (int i = firstSlot * header->elementSize; i < header->capacity * header->elementSize; ++i) {
    if (bytes[i] != 0) return false;
  }
  return true;
}

TEST(KOVAArrayHeaderTest, AnAbsentArrayFailsSoftly) {
  KOVAArrayHeader* none = kovaArrayAllocate(0, 4);
  EXPECT_EQ(none, nullptr);
  EXPECT_EQ(kovaArrayAllocate(4, 0), nullptr);
  char element = 'x';
  EXPECT_EQ(kovaArrayAdd(none, &element), 0);
  EXPECT_EQ(kovaArrayInsertAt(none, 0, &element), 0);
  EXPECT_EQ(kovaArraySetAt(none, 0, &element), 0);
  EXPECT_EQ(kovaArrayRemoveAt(none, 0), 0);
  EXPECT_EQ(kovaArrayClear(none), 0);
  EXPECT_EQ(kovaArrayCount(none), 0);
  EXPECT_EQ(kovaArrayCheck(none), 0);
  EXPECT_EQ(kovaArrayCopy(none), nullptr);
  EXPECT_EQ(kovaArrayRealloc(none), 0);
  EXPECT_EQ(kovaArrayReallocSize(none, 5), 0);
  kovaArrayFree(none, nullptr);
  KOVAArrayHeader* block = blockOf("a");
  EXPECT_EQ(kovaArrayAppend(none, block), 0);
  EXPECT_EQ(kovaArrayAppend(block, nullptr), 0);
  kovaArrayFree(block, nullptr);
}

// Slots of 4 bytes begin in the room of the header and leave it, slots of 100 never have room.
TEST(KOVAArrayHeaderTest, GrowsByHalfAndOneAndZeroesNewSlots) {
  for (const int elementSize : {1, 4, 100}) {
    KOVAArrayHeader* header = kovaArrayAllocate(1, elementSize);
    const std::string element(static_cast<std::size_t>(elementSize), '\x5A');
    const int capacities[] = {1, 2, 4, 7, 11, 17, 26, 40, 61, 92};
    for (const int capacity : capacities) {
      EXPECT_EQ(header->capacity, capacity);
      while (header->count < capacity) {
        ASSERT_EQ(kovaArrayAdd(header, nullptr), 1);
        ASSERT_TRUE(isZero(header, header->count - 1));
        kovaArraySetAt(header, header->count - 1, element.data());
      }
      kovaArrayRealloc(header);
    }
    EXPECT_EQ(header->count, 92);
    EXPECT_EQ(std::memcmp(static_cast<char*>(header->data) + 91 * elementSize, element.data(),
                          element.size()),
              0);
    EXPECT_EQ(kovaArrayReallocSize(header, 10'000), 1);
    EXPECT_TRUE(isZero(header, 92));
    EXPECT_EQ(kovaArrayReallocSize(header, 9'999), 0);
    EXPECT_EQ(kovaArrayReallocSize(header, -1), 0);
    EXPECT_EQ(header->capacity, 10'000);
    kovaArrayFree(header, nullptr);
  }
}

TEST(KOVAArrayHeaderTest, OpensAndClosesSlotsAnywhere) {
  KOVAArrayHeader* header = blockOf("ad", 4);
  const char b = 'b';
  EXPECT_EQ(kovaArrayInsertAt(header, -1, &b), 0);
  EXPECT_EQ(kovaArrayInsertAt(header, 1, &b), 1);
  EXPECT_EQ(header->capacity, 4);
  EXPECT_EQ(textOf(header), "add") << "the slot keeps its bytes until the caller fills it";
  EXPECT_EQ(kovaArraySetAt(header, 1, &b), 1);
  EXPECT_EQ(kovaArrayInsertAt(header, 2, nullptr), 1);
  EXPECT_EQ(header->capacity, 7) << "one free slot is too few for an insertion";
  EXPECT_EQ(kovaArrayInsertAt(header, 99, nullptr), 1);
  EXPECT_EQ(header->count, 5);
  EXPECT_EQ(kovaArraySetAt(header, 5, &b), 0);
  EXPECT_EQ(kovaArrayRemoveAt(header, 5), 0);
  EXPECT_EQ(kovaArrayRemoveAt(header, 0), 1);
  EXPECT_EQ(textOf(header).substr(0, 3), "bdd");
  kovaArrayFree(header, nullptr);
}

TEST(KOVAArrayHeaderTest, AppendsFromItsOwnStart) {
  KOVAArrayHeader* destination = blockOf("abc");
  KOVAArrayHeader* source = blockOf("xy");
  EXPECT_EQ(kovaArrayAppend(destination, source), 1);
  EXPECT_EQ(textOf(destination), "abcab");
  EXPECT_EQ(kovaArrayAppend(destination, destination), 1);
  EXPECT_EQ(textOf(destination), "abcababcab");

  // More slots than there are: what is copied overlaps where it goes.
  KOVAArrayHeader* shorter = blockOf("p");
  EXPECT_EQ(kovaArrayAppend(shorter, destination), 1);
  EXPECT_EQ(shorter->count, 11);
  EXPECT_EQ(shorter->capacity, 11);
  EXPECT_EQ(textOf(shorter), std::string("pp") + std::string(9, '\0'));

  KOVAArrayHeader* wider = kovaArrayAllocate(1, 2);
  EXPECT_EQ(kovaArrayAppend(destination, wider), 0);
  for (KOVAArrayHeader* header : {destination, source, shorter, wider}) {
    kovaArrayFree(header, nullptr);
  }
}

TEST(KOVAArrayHeaderTest, TheLastHolderRunsTheCallback) {
  struct Counter : KOVAArrayFreeCallback {
    void Callback() override { ++calls; }
    int calls = 0;
  } counter;
  KOVAArrayHeader* first = blockOf("abc");
  KOVAArrayHeader* second = kovaArrayCopy(first);
  EXPECT_EQ(second, first);
  kovaArrayFree(first, &counter);
  EXPECT_EQ(counter.calls, 0);
  EXPECT_EQ(first, second) << "the pointer of an earlier holder stays";
  kovaArrayFree(second, &counter);
  EXPECT_EQ(counter.calls, 1);
  EXPECT_EQ(second, nullptr);
}

TEST(KOVAArrayHeaderTest, WhatCannotBeHadLeavesTheBlockAsItWas) {
  EXPECT_THROW((void)kovaArrayAllocate(kMost, kMost), KOVAAllocException);
  KOVAArrayHeader* header = kovaArrayAllocate(1, 1 << 20);
  kovaArrayAdd(header, nullptr);
  static_cast<char*>(header->data)[5] = 'q';
  EXPECT_THROW(kovaArrayReallocSize(header, kMost), KOVAAllocException);
  EXPECT_EQ(header->capacity, 1);
  EXPECT_EQ(static_cast<char*>(header->data)[5], 'q');

  // Counts that no int holds, without the memory that they would need.
  KOVAArrayHeader full{kMost, kMost, 1, 1, nullptr};
  KOVAArrayHeader* fullHeader = &full;
  EXPECT_THROW(kovaArrayAdd(fullHeader, nullptr), KOVAAllocException);
  KOVAArrayHeader* one = blockOf("a");
  EXPECT_THROW(kovaArrayAppend(one, fullHeader), KOVAAllocException);
  EXPECT_EQ(textOf(one), "a");
  kovaArrayFree(one, nullptr);
  kovaArrayFree(header, nullptr);
}

}  // namespace
