// Arrays share their elements until they are copied, and handles keep their targets alive.

#include <kovabase/KOVABase.h>

#include <cstdio>

namespace {

// [target]
class Face : public KOVAReferenceCount {
 public:
  explicit Face(int number) : _number(number) {}
  ~Face() override { std::printf("face %d is gone\n", _number); }
  int GetNumber() const { return _number; }

 private:
  int _number;
};
using FaceHandle = KOVATypedHandle<Face>;
// [target]

}  // namespace

int main() {
  // [share]
  KOVADynamicArray<KOVAString> names;
  names.add("housing");
  KOVADynamicArray<KOVAString> same = names;        // the same elements
  KOVADynamicArray<KOVAString> own = names.copy();  // elements of its own
  same.add("shaft");
  std::printf("%d, %d and %d names\n", names.size(), same.size(), own.size());
  // [share]

  // [index]
  if (!names.isValidIndex(7)) std::printf("there is no name 7\n");
  for (const KOVAString& name : names) {
    char text[16];
    name.convertToUTF8(text, sizeof text);
    std::printf("%s\n", text);
  }
  // [index]

  // [handles]
  KOVADynamicArray<FaceHandle> faces;
  faces.add(new Face(1));
  faces.add(FaceHandle(new Face(2)));
  FaceHandle kept = faces[1];
  faces.purge();  // face 1 has lost its last handle
  std::printf("face %d is kept by %u handle\n", kept->GetNumber(), kept->GetCount());
  kept = nullptr;
  // [handles]
  return 0;
}
