// What gdb is asked to show. Every variable of `show` is printed, in this order.

#include "kovabase/KOVABase.h"

#include <cstring>
#include <new>

namespace {

volatile int shown = 0;

void breakHere() { shown = shown + 1; }

void show() {
  const KOVAString emptyText;
  const KOVAString shortText("B\xC3\xBCgel \xF0\x9F\x94\xA7", "UTF-8");
  const KOVAString longText(
      "a text of more than 24 units, \xE2\x82\xAC \xF0\x9F\x94\xA7 at its end", "UTF-8");
  KOVAString loneSurrogate("x");
  loneSurrogate.append(static_cast<unsigned short>(0xD800));
  // Never built: what a variable holds before its constructor has run.
  alignas(KOVAString) unsigned char bytes[sizeof(KOVAString)];
  std::memset(bytes, 0xFF, sizeof bytes);
  [[maybe_unused]] const KOVAString& notYetText = *reinterpret_cast<const KOVAString*>(bytes);
  const Gk_ROString emptyNarrow;
  const Gk_RWString narrow("FOOT");

  [[maybe_unused]] const KOVAResult success = KOVAResultCode::kSuccess;
  [[maybe_unused]] const KOVAResult notFound = KOVAResultCode::kFileNotFound;
  [[maybe_unused]] const KOVAResult unknownResult = KOVAResultCode::kAborted + (7 << 16);

  const KOVADynamicArray<int> emptyArray;
  KOVADynamicArray<double> numbers;
  numbers.add(0.25);
  numbers.add(-2.0);
  const KOVADynamicArray<double> sameNumbers = numbers;
  KOVADynamicArray<KOVAString> texts;
  texts.add(shortText);
  texts.add(longText);
  KOVADynamicArray<KOVADynamicArray<double>> nested;
  nested.add(numbers);

  const KOVAFilePath path(KOVAString("parts/B\xC3\xBCgel.stp", "UTF-8"));
  const KOVAOptionName optionName("Step.Read.Angle");
  KOVAOption option(optionName, 20.0);
  option.SetValue(12.5);
  const KOVAOption flag(KOVAOptionName("Obj.Write.Curves"), true);
  const KOVAOption textOption(KOVAOptionName("Stl.Write.Form"), KOVAString("ascii"));
  const KOVAOption unsetOption;
  const KOVAValue value(-7);

  const KOVAPoint2D point2D(1.0, 0.5);
  const KOVAPoint3D point3D(1.0, -2.5, 1e100);
  const KOVAWeightPoint3D weightPoint(KOVAPoint3D(1.0, 2.0, 3.0), 0.25, false);
  [[maybe_unused]] const KOVAVector vector(0.1, 0.0, -1.0);
  [[maybe_unused]] const KOVAPointf pointf(0.1F, 16777216.0F, -0.0F);
  [[maybe_unused]] const KOVAVectorf vectorf(1.0F, 2.0F, 3.0F);
  [[maybe_unused]] const KOVADirectionf directionf(0.0F, 0.0F, 1.0F);

  const KOVAPoint3DHandle nullHandle;
  const KOVAPoint3DHandle handle(new KOVAPoint3D(7.0, 8.0, 9.0));
  const KOVAPointHandle baseHandle((KOVAPoint3D*)handle);
  breakHere();
}

}  // namespace

int main() { show(); }
