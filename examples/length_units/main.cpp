// Finds units by their names and lengths, converts between them, and shows them to people.

#include <kovabase/KOVABase.h>

#include <cstdio>

namespace {

void show(const char* name) {
  KOVAUnit unit = KOVAUnitUnknown;
  if (KOVAUnitValue::GetUnitFromString(unit, name).IsFailure()) {
    std::printf("'%s' is no unit\n", name);
    return;
  }
  KOVAString text;
  KOVAUnitUtils::KOVAUnit_To_String(unit, text);
  char shown[32];
  text.convertToUTF8(shown, sizeof shown);
  std::printf("'%s' is %s: %g mm\n", name, shown,
              KOVAUnitValue::GetScalingFactor(unit, KOVAUnitMillimeter));
}

}  // namespace

int main() {
  for (const char* name : {"mm", "Inches", "FT", "mil", "mils", "furlong"}) show(name);

  // [by-length]
  // A file gives a length in metres; which unit is it?
  KOVAUnit unit = KOVAUnitUnknown;
  GetKOVAUnit(0.0254, unit);
  std::printf("0.0254 m: %d, as the inch is %d\n", unit, KOVAUnitInch);
  // [by-length]

  // [settings]
  // What the host works in and what the file is to be in: set before the translation starts.
  KOVAUnitValue::SetApplicationUnit(KOVAUnitMeter);
  KOVAUnitValue::SetWriteUnit(KOVAUnitInch);
  std::printf("a metre of the host is %.4f inches of the file\n",
              KOVAUnitValue::GetScalingFactor(KOVAUnitValue::GetApplicationUnit(),
                                              KOVAUnitValue::GetWriteUnit()));
  // [settings]

  // [own]
  // A unit that only one format knows.
  const Gk_Unit point("point", 25.4 / 72.0);
  std::printf("72 points are %g mm\n", 72.0 * point.mapTo(Gk_Unit("millimetre", 1.0)));
  // [own]
  return 0;
}
