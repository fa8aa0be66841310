#include "kovabase/strings/Gk_Marker.h"

#include <typeinfo>

Gk_Marker::~Gk_Marker() = default;

bool Gk_Marker::operator==(const Gk_Marker& other) const noexcept {
  return typeid(*this) == typeid(other);
}
