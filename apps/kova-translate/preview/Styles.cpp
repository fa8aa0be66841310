#include "apps/kova-translate/preview/Styles.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace kova::translate::preview {

namespace {

constexpr int kParts = 64;
constexpr std::size_t kMostColours = 64;

/// The pure colours that files like to have are too loud side by side.
SeenColour soften(const SeenColour& colour) {
  constexpr double kStrongest = 0.17;
  const double strength = std::hypot(colour.greenRed, colour.blueYellow);
  const double share = strength > kStrongest ? kStrongest / strength : 1.0;
  return {colour.lightness, colour.greenRed * share, colour.blueYellow * share};
}

translators::Colour unpack(std::uint32_t packed) {
  const auto toAmount = [packed](unsigned shift) {
    return static_cast<float>(packed >> shift & 0xFF) / 255.0F;
  };
  return {toAmount(16), toAmount(8), toAmount(0)};
}

}  // namespace

Styles::Styles(const translators::Model& model) : _model(model) {
  std::vector<std::uint32_t> known;
  for (const translators::Colour& colour : model.colours) known.push_back(Pack(colour));
  std::sort(known.begin(), known.end());
  known.erase(std::unique(known.begin(), known.end()), known.end());
  _isCoarse = known.size() > kMostColours;
}

int Styles::GetStyle(const translators::Looks& piece, const translators::Instance& instance) {
  const int colour = IsColour(piece.colour) ? piece.colour : instance.looks.colour;
  const bool isFromFile = IsColour(colour);
  const int part = instance.part % kParts;
  const std::uint32_t key =
      isFromFile ? Pack(_model.colours[colour]) : 1U << 31 | static_cast<std::uint32_t>(part);
  const auto [found, isNew] = _numbers.try_emplace(key, static_cast<int>(_styles.size()));
  if (isNew) {
    _styles.push_back(
        {isFromFile ? soften(SeenColour::FromColour(unpack(key))) : getPartColour(part),
         isFromFile});
  }
  return found->second;
}

SeenColour Styles::GetFaceColour(int style, double light) const {
  const auto& [base, isFromFile] = _styles[static_cast<std::size_t>(style)];
  const double lightness = isFromFile ? std::clamp(base.lightness, 0.34, 0.86) : base.lightness;
  SeenColour face = base.WithLightness(std::min(lightness * (0.58 + 0.54 * light), 0.955));
  const double fade = std::clamp((0.975 - face.lightness) / 0.12, 0.0, 1.0);
  face.greenRed *= fade;
  face.blueYellow *= fade;
  return face;
}

SeenColour Styles::GetLineColour(int style) const {
  const auto& [base, isFromFile] = _styles[static_cast<std::size_t>(style)];
  if (isFromFile) return base.WithLightness(std::clamp(base.lightness, 0.22, 0.60));
  return {base.lightness - 0.23, base.greenRed * 1.3, base.blueYellow * 1.3};
}

std::uint32_t Styles::Pack(const translators::Colour& colour) const {
  const auto toByte = [](float amount) {
    const float pinned = amount > 0.0F ? std::min(amount, 1.0F) : 0.0F;
    return static_cast<std::uint32_t>(std::lround(pinned * 255.0F));
  };
  const std::uint32_t packed =
      toByte(colour.red) << 16 | toByte(colour.green) << 8 | toByte(colour.blue);
  // Two bits of each are left, and the middle of what they stand for.
  return _isCoarse ? (packed & 0xC0C0C0U) | 0x202020U : packed;
}

}  // namespace kova::translate::preview
