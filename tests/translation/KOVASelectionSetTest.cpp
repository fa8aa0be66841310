#include "kovabase/translation/KOVASelectionSet.h"

#include <gtest/gtest.h>
#include <vector>

TEST(KOVASelectionSet, HoldsEachObjectOnceThroughManyRehashes) {
  std::vector<int> objects(1000);
  KOVASelectionSet set(KOVAString("bolts"), true);
  EXPECT_EQ(set.AddMember(nullptr), KOVAResultCode::kFailure);
  EXPECT_FALSE(set.IsMember(nullptr));
  for (int round = 0; round < 2; ++round) {
    for (int& object : objects) EXPECT_EQ(set.AddMember(&object), KOVAResultCode::kSuccess);
  }
  EXPECT_EQ(set.SelectionSetLength(), 1000);

  int stranger = 0;
  EXPECT_FALSE(set.IsMember(&stranger));

  KOVASelectionSet copied(set);
  copied.AddMember(&stranger);
  EXPECT_FALSE(set.IsMember(&stranger));
  EXPECT_TRUE(copied.GetName() == KOVAString("bolts"));
  EXPECT_TRUE(copied.IsCurrent());

  KOVASelectionSet::Iterator_t iterator = set.GetIterator();
  for (int& object : objects) EXPECT_EQ(iterator.Next(), &object);
  EXPECT_EQ(iterator.Next(), nullptr);
  EXPECT_EQ(iterator.Next(), nullptr);
}
