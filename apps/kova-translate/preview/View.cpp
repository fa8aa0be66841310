#include "apps/kova-translate/preview/View.h"

#include <cmath>

namespace kova::translate::preview {

View::View(const translators::Summary& summary) {
  const double largest = std::max({std::fabs(summary.lowest.x), std::fabs(summary.lowest.y),
                                   std::fabs(summary.lowest.z), std::fabs(summary.highest.x),
                                   std::fabs(summary.highest.y), std::fabs(summary.highest.z)});
  const int exponent = largest > 0.0 ? std::clamp(std::ilogb(largest), -1000, 1000) : 0;
  _factor = std::ldexp(1.0, -exponent);
  const auto middle = [this](double low, double high) {
    return low * _factor / 2.0 + high * _factor / 2.0;
  };
  _centre = {middle(summary.lowest.x, summary.highest.x),
             middle(summary.lowest.y, summary.highest.y),
             middle(summary.lowest.z, summary.highest.z)};
  _ground = summary.lowest.z * _factor - _centre.z;
}

ViewPoint View::GetShadow(const translators::Point& point) const {
  const double height = point.z * _factor - _centre.z - _ground;
  return Turn({point.x * _factor - _centre.x + height * 0.17,
               point.y * _factor - _centre.y + height * 0.27, _ground});
}

}  // namespace kova::translate::preview
