#include "kovabase/geometry/KOVABox.h"

#include "kovabase/geometry/Gk_Func.h"
#include "kovabase/io/KOVAStreamFormatter.h"

#include <cmath>
#include <cstring>
#include <numeric>

namespace {

// Values or vectors of them. A NaN compares as false, so that the bound stays.
template <class T>
T lesser(const T& value, const T& bound) {
  return value < bound ? value : bound;
}

template <class T>
T greater(const T& value, const T& bound) {
  return value > bound ? value : bound;
}

/// Least and greatest coordinate per axis of `count` points, +infinity and -infinity where there
/// is none. The zeros among them have either sign.
template <std::size_t kAxes, class T>
void computeBounds(const T* coordinates, std::size_t count, T* lows, T* highs) {
  typedef T Vector __attribute__((vector_size(16)));
  // The coordinates repeat their axes every kAxes vectors. Two rounds of that make comparisons that
  // wait for none before them, and their bounds fit the registers.
  constexpr std::size_t kVectors = 2 * kAxes;
  constexpr std::size_t kValues = kVectors * sizeof(Vector) / sizeof(T);
  constexpr std::size_t kPoints = kValues / kAxes;
  constexpr T kInfinity = std::numeric_limits<T>::infinity();

  Vector low[kVectors];
  Vector high[kVectors];
  for (std::size_t i = 0; i < kVectors; ++i) {
    low[i] = Vector{} + kInfinity;
    high[i] = Vector{} - kInfinity;
  }
  for (; count >= kPoints; count -= kPoints, coordinates += kValues) {
    for (std::size_t i = 0; i < kVectors; ++i) {
      Vector values;
      std::memcpy(&values, coordinates + i * (kValues / kVectors), sizeof(values));
      low[i] = lesser(values, low[i]);
      high[i] = greater(values, high[i]);
    }
  }

  T leastOf[kValues];
  T greatestOf[kValues];
  std::memcpy(leastOf, low, sizeof(low));
  std::memcpy(greatestOf, high, sizeof(high));
  for (std::size_t i = 0; i < kAxes; ++i) {
    lows[i] = leastOf[i];
    highs[i] = greatestOf[i];
  }
  for (std::size_t i = kAxes; i < kValues; ++i) {
    lows[i % kAxes] = lesser(leastOf[i], lows[i % kAxes]);
    highs[i % kAxes] = greater(greatestOf[i], highs[i % kAxes]);
  }
  for (std::size_t i = 0; i < count * kAxes; ++i) {
    lows[i % kAxes] = lesser(coordinates[i], lows[i % kAxes]);
    highs[i % kAxes] = greater(coordinates[i], highs[i % kAxes]);
  }
}

template <int kDimension>
KOVAStreamFormatter& write(KOVAStreamFormatter& formatter, const KOVABox<kDimension>& box) {
  if (box.IsEmpty()) return formatter << "empty";
  return formatter << box.GetLow() << " to " << box.GetHigh();
}

}  // namespace

template <int kDimension>
void KOVABox<kDimension>::SetToEmpty() {
  for (int axis = 0; axis < kDimension; ++axis) {
    _low[axis] = kInfinity;
    _high[axis] = -kInfinity;
  }
}

template <int kDimension>
bool KOVABox<kDimension>::IsEmpty() const {
  for (int axis = 0; axis < kDimension; ++axis) {
    if (_low[axis] > _high[axis]) return true;
  }
  return false;
}

template <int kDimension>
void KOVABox<kDimension>::Extend(const KOVABox& box) {
  for (int axis = 0; axis < kDimension; ++axis) ExtendAxis(axis, box._low[axis], box._high[axis]);
}

template <int kDimension>
void KOVABox<kDimension>::Extend(const double* coordinates, std::size_t count) {
  if (coordinates == nullptr) return;
  double lows[kAxes];
  double highs[kAxes];
  computeBounds<kAxes>(coordinates, count, lows, highs);
  for (int axis = 0; axis < kDimension; ++axis) ExtendAxis(axis, lows[axis], highs[axis]);
}

template <int kDimension>
void KOVABox<kDimension>::Extend(const float* coordinates, std::size_t count) {
  if (coordinates == nullptr) return;
  float lows[kAxes];
  float highs[kAxes];
  computeBounds<kAxes>(coordinates, count, lows, highs);
  for (int axis = 0; axis < kDimension; ++axis) {
    ExtendAxis(axis, static_cast<double>(lows[axis]), static_cast<double>(highs[axis]));
  }
}

template <int kDimension>
void KOVABox<kDimension>::Expand(double distance) {
  if (IsEmpty()) return;
  for (int axis = 0; axis < kDimension; ++axis) {
    const double low = _low[axis] - distance;
    const double high = _high[axis] + distance;
    // Infinities may cancel.
    if (!std::isnan(low)) _low[axis] = low + 0.0;
    if (!std::isnan(high)) _high[axis] = high + 0.0;
  }
  if (IsEmpty()) SetToEmpty();
}

template <int kDimension>
typename KOVABox<kDimension>::Point KOVABox<kDimension>::GetCorner(int index) const {
  Point corner;
  for (int axis = 0; axis < kDimension; ++axis) {
    corner[axis] = (index >> axis & 1) != 0 ? _high[axis] : _low[axis];
  }
  return corner;
}

template <int kDimension>
typename KOVABox<kDimension>::Point KOVABox<kDimension>::GetCenter() const {
  Point center;
  if (IsEmpty()) return center;
  for (int axis = 0; axis < kDimension; ++axis) {
    center[axis] = std::midpoint(_low[axis], _high[axis]);
  }
  return center;
}

template <int kDimension>
typename KOVABox<kDimension>::Point KOVABox<kDimension>::GetSize() const {
  return IsEmpty() ? Point() : GetHigh() - GetLow();
}

template <int kDimension>
bool KOVABox<kDimension>::Contains(const Point& point, double tolerance) const {
  const double* const coordinates = point.GetStoredCoordinates();
  for (int axis = 0; axis < kDimension; ++axis) {
    if (!Gk_Func::lesseq(_low[axis], coordinates[axis], tolerance) ||
        !Gk_Func::lesseq(coordinates[axis], _high[axis], tolerance)) {
      return false;
    }
  }
  return true;
}

template <int kDimension>
bool KOVABox<kDimension>::Contains(const KOVABox& box, double tolerance) const {
  return box.IsEmpty() || (Contains(box.GetLow(), tolerance) && Contains(box.GetHigh(), tolerance));
}

template <int kDimension>
bool KOVABox<kDimension>::Intersects(const KOVABox& box, double tolerance) const {
  if (IsEmpty() || box.IsEmpty()) return false;
  for (int axis = 0; axis < kDimension; ++axis) {
    if (!Gk_Func::lesseq(_low[axis], box._high[axis], tolerance) ||
        !Gk_Func::lesseq(box._low[axis], _high[axis], tolerance)) {
      return false;
    }
  }
  return true;
}

template <int kDimension>
KOVABox<kDimension> KOVABox<kDimension>::GetTransformed(const Morph& morph) const {
  KOVABox result;
  if (IsEmpty()) return result;
  for (int index = 0; index < kCornerCount; ++index) {
    Point corner = GetCorner(index);
    corner.Transform(morph);
    for (int axis = 0; axis < kDimension; ++axis) {
      const bool isKnown = !std::isnan(corner[axis]);
      result.ExtendAxis(axis, isKnown ? corner[axis] : -kInfinity,
                        isKnown ? corner[axis] : kInfinity);
    }
  }
  return result;
}

template <int kDimension>
bool KOVABox<kDimension>::operator==(const KOVABox& other) const {
  if (IsEmpty() || other.IsEmpty()) return IsEmpty() && other.IsEmpty();
  for (int axis = 0; axis < kDimension; ++axis) {
    if (_low[axis] != other._low[axis] || _high[axis] != other._high[axis]) return false;
  }
  return true;
}

template class KOVABox<2>;
template class KOVABox<3>;

KOVAStreamFormatter& operator<<(KOVAStreamFormatter& formatter, const KOVABox2D& box) {
  return write(formatter, box);
}

KOVAStreamFormatter& operator<<(KOVAStreamFormatter& formatter, const KOVABox3D& box) {
  return write(formatter, box);
}
