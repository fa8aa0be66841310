#include "apps/kova-translate/preview/Colours.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kova::translate::preview {

namespace {

double toLinear(float amount) {
  const double value = std::clamp(static_cast<double>(amount), 0.0, 1.0);
  return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double fromLinear(double value) {
  return value <= 0.0031308 ? value * 12.92 : 1.055 * std::pow(value, 1.0 / 2.4) - 0.055;
}

struct Linear {
  double channels[3];

  bool CanBeShown() const {
    return std::all_of(std::begin(channels), std::end(channels),
                       [](double channel) { return channel > -0.0005 && channel < 1.0005; });
  }
};

Linear toLinear(const SeenColour& c) {
  const double l = c.lightness + 0.3963377774 * c.greenRed + 0.2158037573 * c.blueYellow;
  const double m = c.lightness - 0.1055613458 * c.greenRed - 0.0638541728 * c.blueYellow;
  const double s = c.lightness - 0.0894841775 * c.greenRed - 1.2914855480 * c.blueYellow;
  const double l3 = l * l * l;
  const double m3 = m * m * m;
  const double s3 = s * s * s;
  return {{4.0767416621 * l3 - 3.3077115913 * m3 + 0.2309699292 * s3,
           -1.2684380046 * l3 + 2.6097574011 * m3 - 0.3413193965 * s3,
           -0.0041960863 * l3 - 0.7034186147 * m3 + 1.7076147010 * s3}};
}

}  // namespace

SeenColour SeenColour::FromColour(const translators::Colour& colour) {
  const double r = toLinear(colour.red);
  const double g = toLinear(colour.green);
  const double b = toLinear(colour.blue);
  const double l = std::cbrt(0.4122214708 * r + 0.5363325363 * g + 0.0514459929 * b);
  const double m = std::cbrt(0.2119034982 * r + 0.6806995451 * g + 0.1073969566 * b);
  const double s = std::cbrt(0.0883024619 * r + 0.2817188376 * g + 0.6299787005 * b);
  return {0.2104542553 * l + 0.7936177850 * m - 0.0040720468 * s,
          1.9779984951 * l - 2.4285922050 * m + 0.4505937099 * s,
          0.0259040371 * l + 0.7827717662 * m - 0.8086757660 * s};
}

SeenColour SeenColour::FromHue(double lightness, double strength, double hue) {
  const double angle = hue * std::numbers::pi / 180.0;
  return {lightness, strength * std::cos(angle), strength * std::sin(angle)};
}

SeenColour SeenColour::WithLightness(double value) const { return {value, greenRed, blueYellow}; }

SeenColour SeenColour::Mix(const SeenColour& other, double share) const {
  return {std::lerp(lightness, other.lightness, share), std::lerp(greenRed, other.greenRed, share),
          std::lerp(blueYellow, other.blueYellow, share)};
}

std::string SeenColour::ToText() const {
  SeenColour shown = *this;
  if (!toLinear(shown).CanBeShown()) {
    // By halves and not by steps: shades beside each other stay alike.
    double share = 0.0;
    for (double step = 0.5; step > 0.001; step /= 2.0) {
      const double more = share + step;
      if (toLinear({lightness, more * greenRed, more * blueYellow}).CanBeShown()) share = more;
    }
    shown = {lightness, share * greenRed, share * blueYellow};
  }
  std::string text = "#";
  for (const double channel : toLinear(shown).channels) {
    const int value = static_cast<int>(
        std::lround(255.0 * std::clamp(fromLinear(std::max(channel, 0.0)), 0.0, 1.0)));
    text += "0123456789abcdef"[value / 16];
    text += "0123456789abcdef"[value % 16];
  }
  return text;
}

SeenColour getPartColour(int index) {
  constexpr double kHues[] = {250.0, 55.0, 160.0, 15.0, 300.0, 95.0, 205.0, 340.0, 130.0, 275.0};
  constexpr int kCount = sizeof kHues / sizeof *kHues;
  // The golden angle never comes back to a hue that was there.
  const double hue = index < kCount ? kHues[index] : 137.508 * index;
  const double strength = index < kCount ? 0.100 : 0.07 + 0.02 * (index % 3);
  return SeenColour::FromHue(index % 2 == 0 ? 0.72 : 0.76, strength, hue);
}

}  // namespace kova::translate::preview
