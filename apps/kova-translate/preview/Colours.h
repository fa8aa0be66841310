#pragma once

#include "translators/model/Model.h"

#include <string>

namespace kova::translate::preview {

/// A colour as people see it: lightness from 0 to 1, and two amounts for hue and strength, 0 for
/// grey. This is the OKLab space, in which equal steps look equal.
/// Source: Björn Ottosson, "A perceptual color space for image processing", 2020.
struct SeenColour {
  double lightness = 0.0;
  double greenRed = 0.0;
  double blueYellow = 0.0;

  /// @param colour  sRGB amounts; what is outside 0 to 1 is pinned.
  static SeenColour FromColour(const translators::Colour& colour);
  /// @param hue  in degrees: red 30, yellow 110, green 145, blue 255.
  /// @param strength  0 for grey, 0.1 moderate, 0.2 bright.
  static SeenColour FromHue(double lightness, double strength, double hue);

  /// The same hue as light as this.
  SeenColour WithLightness(double value) const;
  /// From this colour (share 0) to the other (share 1).
  SeenColour Mix(const SeenColour& other, double share) const;

  /// "#rrggbb"; a colour that no screen has is made greyer until it can be shown.
  std::string ToText() const;
};

/// The background of the page, and its texts and outlines.
inline constexpr SeenColour kPaper{0.985, -0.001, -0.003};
inline constexpr SeenColour kInk{0.30, -0.006, -0.025};

/// Colours for the parts of a model that has none: distinct for neighbours in the order, of the
/// same weight for the eye.
SeenColour getPartColour(int index);

}  // namespace kova::translate::preview
