// Limits a translation to some layers of a model and to some of its objects.

#include <kovabase/KOVABase.h>

#include <cstdio>

namespace {

struct Face {
  const char* name;
  int layer;
};

// [passes]
bool passes(const KOVALayerFilterC& filter, int layer) {
  bool all = false;
  filter.IsALLLayerFilter(all);
  if (all) return true;
  int count = 0;
  filter.GetNumLayers(count);
  for (int i = 0; i < count; ++i) {
    int listed = 0;
    if (filter.GetLayerAt(i, listed).IsSuccess() && listed == layer) return true;
  }
  return false;
}
// [passes]

}  // namespace

int main() {
  Face faces[] = {{"top", 1}, {"bottom", 1}, {"thread", 7}, {"sketch", 20}};

  // [filter]
  const int layers[] = {1, 7};
  const KOVALayerFilterC solids(2, layers, "solids", true, KOVALayerFilterC::kDefaultType);
  // [filter]

  // [select]
  KOVASelectionSet selection("to translate", true);
  for (Face& face : faces) {
    if (passes(solids, face.layer)) selection.AddMember(&face);
  }
  // [select]
  std::printf("%d of 4 faces\n", selection.SelectionSetLength());

  // [walk]
  KOVASelectionSet::Iterator_t iterator = selection.GetIterator();
  while (const void* member = iterator.Next()) {
    std::printf("%s\n", static_cast<const Face*>(member)->name);
  }
  // [walk]
  std::printf("the sketch is %s\n", selection.IsMember(&faces[3]) ? "in" : "out");

  const KOVALayerFilterC all(0, nullptr, "", false, KOVALayerFilterC::kAllLayers);
  std::printf("with the filter for all layers it is %s\n", passes(all, 20) ? "in" : "out");
  return 0;
}
