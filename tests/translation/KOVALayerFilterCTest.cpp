#include "kovabase/translation/KOVALayerFilterC.h"

#include <gtest/gtest.h>
#include <vector>

namespace {

std::vector<int> layersOf(const KOVALayerFilterC& filter) {
  int count = -1;
  filter.GetNumLayers(count);
  std::vector<int> layers(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) filter.GetLayerAt(i, layers[static_cast<std::size_t>(i)]);
  return layers;
}

const int kLayers[] = {7, 1, 7};

}  // namespace

TEST(KOVALayerFilterC, RefusesACountThatDisagreesWithTheArray) {
  KOVALayerFilterC filter(3, kLayers, KOVAString("walls"), true, KOVALayerFilterC::kDefaultType);
  struct {
    int count;
    const int* layers;
  } const refused[] = {{2, nullptr}, {0, kLayers}, {-1, kLayers}, {-1, nullptr}};
  for (const auto& arguments : refused) {
    EXPECT_EQ(filter.Set(arguments.count, arguments.layers, KOVAString("other"), false,
                         KOVALayerFilterC::kAllLayers),
              KOVAResultCode::kFailure);
    EXPECT_EQ(layersOf(filter), std::vector<int>({7, 1, 7}));
    KOVAString name;
    EXPECT_EQ(filter.GetName(name), KOVAResultCode::kSuccess);
    EXPECT_TRUE(name == KOVAString("walls"));
    bool all = true;
    EXPECT_EQ(filter.IsALLLayerFilter(all), KOVAResultCode::kSuccess);
    EXPECT_FALSE(all);
  }
  EXPECT_EQ(
      layersOf(KOVALayerFilterC(2, nullptr, KOVAString("x"), true, KOVALayerFilterC::kAllLayers)),
      std::vector<int>());
}

TEST(KOVALayerFilterC, OutOfRangeLayersAreMinusOne) {
  const KOVALayerFilterC filter(3, kLayers, KOVAString(), false, KOVALayerFilterC::kDefaultType);
  for (const int index : {-1, 3, 1000}) {
    int layer = 5;
    EXPECT_EQ(filter.GetLayerAt(index, layer), KOVAResultCode::kFailure) << index;
    EXPECT_EQ(layer, -1) << index;
  }
}

TEST(KOVALayerFilterC, AnEmptyNameIsNoName) {
  KOVALayerFilterC filter;
  EXPECT_EQ(filter.Set(0, nullptr, KOVAString(), false, KOVALayerFilterC::kAllLayers),
            KOVAResultCode::kSuccess);
  bool all = false;
  filter.IsALLLayerFilter(all);
  EXPECT_TRUE(all);

  KOVAString name("untouched");
  EXPECT_EQ(filter.GetName(name), KOVAResultCode::kFailure);
  EXPECT_TRUE(name == KOVAString("untouched"));
  filter.SetName(KOVAString("roof"));
  EXPECT_EQ(filter.GetName(name), KOVAResultCode::kSuccess);
  EXPECT_TRUE(name == KOVAString("roof"));
  filter.SetName(KOVAString());
  EXPECT_EQ(filter.GetName(name), KOVAResultCode::kFailure);
}

TEST(KOVALayerFilterC, CopiesDoNotShareTheirLayers) {
  KOVALayerFilterC filter(3, kLayers, KOVAString("walls"), true, KOVALayerFilterC::kAllLayers);
  const KOVALayerFilterC copied(filter);
  KOVALayerFilterC assigned;
  assigned = filter;
  const KOVALayerFilterC& self = assigned;
  assigned = self;
  filter.Set(1, kLayers, KOVAString(), false, KOVALayerFilterC::kDefaultType);
  for (const KOVALayerFilterC* kept : {&copied, static_cast<const KOVALayerFilterC*>(&assigned)}) {
    EXPECT_EQ(layersOf(*kept), std::vector<int>({7, 1, 7}));
    bool current = false;
    kept->IsCurrent(current);
    EXPECT_TRUE(current);
  }
}
