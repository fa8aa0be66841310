#include "kovabase/foundation/KOVAReferenceHandle.h"
#include "kovabase/foundation/KOVAUseCounted.h"

#include <gtest/gtest.h>
#include <set>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

namespace {

/// Notes what happens to it, under its one-letter name.
class Noted : public KOVAReferenceCount {
 public:
  Noted(char name, std::string& notes) : _name(name), _notes(&notes) {}
  Noted(const Noted& other) = default;
  ~Noted() override { note('~'); }

  unsigned RaiseReference() override {
    note('+');
    return KOVAReferenceCount::RaiseReference();
  }
  unsigned LowerReference() override {
    note('-');
    return KOVAReferenceCount::LowerReference();
  }

  int value = 7;

 private:
  void note(char what) { (*_notes += what) += _name; }

  char _name;
  std::string* _notes;
};

using NotedHandle = KOVATypedHandle<Noted>;

TEST(KOVATypedHandleTest, RaisesAndLowersInTheStatedOrder) {
  std::string notes;
  {
    NotedHandle a(new Noted('a', notes));
    EXPECT_TRUE(a.IsLastCall());
    NotedHandle b(new Noted('b', notes));
    const NotedHandle copy(a);
    EXPECT_FALSE(a.IsLastCall());
    notes.clear();
    b = a;  // the last handle to b lets it go before a is raised
    EXPECT_EQ(notes, "-b~b+a");
    notes.clear();
    b = copy;
    NotedHandle& self = b;
    b = self;
    EXPECT_EQ(notes, "");
    EXPECT_EQ(copy->GetCount(), 3U);
  }
  EXPECT_EQ(notes, "-a-a-a~a");
}

TEST(KOVATypedHandleTest, ComparesByTargetAndStandsForIt) {
  std::string notes;
  NotedHandle none(nullptr);
  EXPECT_FALSE(none.IsValid());
  EXPECT_FALSE(none.IsLastCall());
  EXPECT_TRUE(none == nullptr);

  NotedHandle a(new Noted('a', notes));
  const NotedHandle sameA(a);
  NotedHandle b(new Noted('b', notes));
  EXPECT_TRUE(a == sameA && a != b && a != nullptr);
  const std::set<NotedHandle> keys{a, sameA, b, none};
  EXPECT_EQ(keys.size(), 3U);
  EXPECT_TRUE(none < a && !(a < none));

  a->value = 8;
  EXPECT_EQ(sameA->value, 8);
  static_assert(std::is_same_v<decltype(sameA.operator->()), const Noted*>);
  Noted* const target = sameA;
  EXPECT_EQ(target, static_cast<Noted*>(a));
}

TEST(KOVAReferenceCountTest, ACopyIsHeldByNobody) {
  std::string notes;
  const NotedHandle original(new Noted('a', notes));
  const NotedHandle copy(new Noted(*original));
  EXPECT_TRUE(original.IsLastCall());
  EXPECT_TRUE(copy.IsLastCall());
  static_assert(!std::is_copy_assignable_v<Noted>);
}

TEST(KOVAReferenceCountTest, HandlesOfManyThreadsKeepOneTarget) {
  int destroyed = 0;
  std::vector<std::thread> threads;
  {
    struct Quiet : KOVAReferenceCount {
      explicit Quiet(int& count) : destroyed(&count) {}
      ~Quiet() override { ++*destroyed; }
      int* destroyed;
    };
    const KOVATypedHandle<Quiet> shared(new Quiet(destroyed));
    for (int i = 0; i < 4; ++i) {
      threads.emplace_back([handle = shared] {
        for (int round = 0; round < 2000; ++round) {
          KOVATypedHandle<Quiet> copy(handle);
          const KOVATypedHandle<Quiet> another(copy);
          copy = nullptr;
        }
      });
    }
  }
  for (std::thread& thread : threads) thread.join();
  threads.clear();
  EXPECT_EQ(destroyed, 1);
}

TEST(KOVAAtomicCounterTest, WrapsAtThirtyTwoBits) {
  KOVAAtomicCounter counter(0x7FFFFFFF);
  EXPECT_EQ(counter.AtomicIncrement(), -0x80000000L);
  EXPECT_EQ(counter.AtomicDecrement(), 0x7FFFFFFF);
}

class Used : public KOVAUseCounted {
 public:
  explicit Used(int& destroyed) : _destroyed(&destroyed) {}
  Used(const Used&) = default;
  Used& operator=(const Used&) = default;
  ~Used() override { ++*_destroyed; }

 private:
  int* _destroyed;
};

TEST(KOVAUseCountedHolderTest, ReleasesWhatItNoLongerHolds) {
  int destroyed = 0;
  {
    KOVAUseCountedHolder holder(new Used(destroyed));
    const KOVAUseCounted* const first = holder.GetImpl();
    const KOVAUseCountedHolder copy(holder);
    EXPECT_EQ(first->GetCount(), 2);

    holder.SetImpl(first);
    holder = copy;
    KOVAUseCountedHolder& self = holder;
    holder = self;
    EXPECT_EQ(first->GetCount(), 2);

    holder.SetImpl(new Used(destroyed));
    EXPECT_EQ(first->GetCount(), 1);
    holder = copy;
    EXPECT_EQ(destroyed, 1);
    holder.SetImpl(nullptr);
    EXPECT_TRUE(holder.IsEmpty() && !copy.IsEmpty());

    const Used twin(static_cast<const Used&>(*copy.GetImpl()));
    EXPECT_EQ(twin.GetCount(), 1) << "a copy takes the count over";
  }
  EXPECT_EQ(destroyed, 3);
}

}  // namespace
