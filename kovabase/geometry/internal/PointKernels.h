#pragma once

#include <cstddef>
#include <cstring>

#define KOVA_INLINE inline __attribute__((always_inline))

/// The inner loops of `KOVATransformPoints`. They are templates over the number of points that
/// are transformed side by side, and always inlined, so that each caller compiles them for its own
/// processor. All of them do the operations of one point in the order of the single forms.
namespace kova::internal {

template <typename T, int lanes>
struct VectorOf {
  typedef T Type __attribute__((vector_size(sizeof(T) * lanes)));
};
template <typename T, int lanes>
using Vector = typename VectorOf<T, lanes>::Type;

// Loads and stores of `lanes` points, x, y and z each in a vector of its own. A vector of 32 bytes
// is two halves of 16 that hold neighbouring groups of points and never mix, because shuffles
// within a half are the cheap ones. Vectors go by reference: their passing by value depends on the
// processor that a file is compiled for.
template <typename T, int lanes>
class Points {
  static constexpr int kHalf = static_cast<int>(16 / sizeof(T));
  static_assert(lanes == kHalf || lanes == 2 * kHalf);

 public:
  using Lanes = Vector<T, lanes>;

  static KOVA_INLINE void load(const T* points, Lanes& x, Lanes& y, Lanes& z) {
    Lanes first, second, third;
    loadHalves(points, first);
    loadHalves(points + kHalf, second);
    loadHalves(points + 2 * kHalf, third);
    if constexpr (sizeof(T) == sizeof(double)) {
      // x0 y0, z0 x1, y1 z1
      shuffle<0, 1>(first, second, x);
      shuffle<1, 0>(first, third, y);
      shuffle<0, 1>(second, third, z);
    } else {
      // x0 y0 z0 x1, y1 z1 x2 y2, z2 x3 y3 z3
      Lanes lastXy, firstYz;
      shuffle<2, 3, 1, 2>(second, third, lastXy);
      shuffle<1, 2, 0, 1>(first, second, firstYz);
      shuffle<0, 3, 0, 2>(first, lastXy, x);
      shuffle<0, 2, 1, 3>(firstYz, lastXy, y);
      shuffle<1, 3, 0, 3>(firstYz, third, z);
    }
  }

  static KOVA_INLINE void store(T* points, const Lanes& x, const Lanes& y, const Lanes& z) {
    Lanes first, second, third;
    if constexpr (sizeof(T) == sizeof(double)) {
      shuffle<0, 0>(x, y, first);
      shuffle<0, 1>(z, x, second);
      shuffle<1, 1>(y, z, third);
    } else {
      Lanes evenXy, oddYz, zx;
      shuffle<0, 2, 0, 2>(x, y, evenXy);
      shuffle<1, 3, 1, 3>(y, z, oddYz);
      shuffle<0, 2, 1, 3>(z, x, zx);
      shuffle<0, 2, 0, 2>(evenXy, zx, first);
      shuffle<0, 2, 1, 3>(oddYz, evenXy, second);
      shuffle<1, 3, 1, 3>(zx, oddYz, third);
    }
    storeHalves(points, first);
    storeHalves(points + kHalf, second);
    storeHalves(points + 2 * kHalf, third);
  }

 private:
  using Half = Vector<T, kHalf>;

  static KOVA_INLINE void loadHalves(const T* values, Lanes& vector) {
    Half low;
    std::memcpy(&low, values, sizeof(Half));
    if constexpr (lanes == kHalf) {
      vector = low;
    } else {
      Half high;
      std::memcpy(&high, values + 3 * kHalf, sizeof(Half));
      if constexpr (kHalf == 2) {
        vector = __builtin_shufflevector(low, high, 0, 1, 2, 3);
      } else {
        vector = __builtin_shufflevector(low, high, 0, 1, 2, 3, 4, 5, 6, 7);
      }
    }
  }

  static KOVA_INLINE void storeHalves(T* values, const Lanes& vector) {
    if constexpr (lanes == kHalf) {
      std::memcpy(values, &vector, sizeof(Half));
    } else {
      Half low, high;
      if constexpr (kHalf == 2) {
        low = __builtin_shufflevector(vector, vector, 0, 1);
        high = __builtin_shufflevector(vector, vector, 2, 3);
      } else {
        low = __builtin_shufflevector(vector, vector, 0, 1, 2, 3);
        high = __builtin_shufflevector(vector, vector, 4, 5, 6, 7);
      }
      std::memcpy(values, &low, sizeof(Half));
      std::memcpy(values + 3 * kHalf, &high, sizeof(Half));
    }
  }

  // Half of each half from the same half of `left`, the other from `right`.
  template <int a, int b>
  static KOVA_INLINE void shuffle(const Lanes& left, const Lanes& right, Lanes& result) {
    if constexpr (lanes == kHalf) {
      result = __builtin_shufflevector(left, right, a, b + 2);
    } else {
      result = __builtin_shufflevector(left, right, a, b + 4, a + 2, b + 6);
    }
  }
  template <int a, int b, int c, int d>
  static KOVA_INLINE void shuffle(const Lanes& left, const Lanes& right, Lanes& result) {
    if constexpr (lanes == kHalf) {
      result = __builtin_shufflevector(left, right, a, b, c + 4, d + 4);
    } else {
      result =
          __builtin_shufflevector(left, right, a, b, c + 8, d + 8, a + 4, b + 4, c + 12, d + 12);
    }
  }
};

// What a transform is made of. An absent translation is -0.0, the one number whose addition changes
// nothing; an absent scale is 1.
template <typename T>
struct Parts {
  T matrix[9] = {};  // In column order.
  T scale = 1;
  T translation[3] = {-T(0), -T(0), -T(0)};
};

enum class Kind { kScaleAndTranslation, kLinear, kScaledLinear };

// The coordinates are numbers or vectors of them.
template <Kind kind, std::size_t n, typename T, typename Value>
KOVA_INLINE void transform(const Parts<T>& parts, Value (&coordinates)[n]) {
  if constexpr (kind != Kind::kScaleAndTranslation) {
    Value sums[n];
    for (std::size_t row = 0; row < n; ++row) {
      sums[row] = parts.matrix[row] * coordinates[0];
      for (std::size_t k = 1; k < n; ++k) sums[row] += parts.matrix[n * k + row] * coordinates[k];
    }
    for (std::size_t i = 0; i < n; ++i) coordinates[i] = sums[i];
  }
  for (std::size_t i = 0; i < n; ++i) {
    if constexpr (kind != Kind::kLinear) coordinates[i] *= parts.scale;
    coordinates[i] += parts.translation[i];
  }
}

template <Kind kind, std::size_t n, typename T, typename Coordinate>
KOVA_INLINE void transformOneByOne(const Parts<T>& parts, const Coordinate* points,
                                   Coordinate* result, std::size_t count) {
  for (std::size_t point = 0; point < count; ++point) {
    T coordinates[n];
    for (std::size_t i = 0; i < n; ++i) coordinates[i] = points[n * point + i];
    transform<kind>(parts, coordinates);
    for (std::size_t i = 0; i < n; ++i) {
      result[n * point + i] = static_cast<Coordinate>(coordinates[i]);
    }
  }
}

// Computes in the type T.
template <Kind kind, int lanes, typename T, typename Coordinate>
KOVA_INLINE void transformInLanes(const Parts<T>& sharedParts, const Coordinate* points,
                                  Coordinate* result, std::size_t count) {
  const Parts<T> parts = sharedParts;  // No store to the result can change these.
  const std::size_t whole = count - count % lanes;
  for (std::size_t i = 0; i < 3 * whole; i += 3 * lanes) {
    Vector<Coordinate, lanes> narrow[3];
    Points<Coordinate, lanes>::load(points + i, narrow[0], narrow[1], narrow[2]);
    if constexpr (sizeof(Coordinate) == sizeof(T)) {
      transform<kind>(parts, narrow);
    } else {
      Vector<T, lanes> wide[3];
      for (int k = 0; k < 3; ++k) wide[k] = __builtin_convertvector(narrow[k], Vector<T, lanes>);
      transform<kind>(parts, wide);
      for (int k = 0; k < 3; ++k) {
        narrow[k] = __builtin_convertvector(wide[k], Vector<Coordinate, lanes>);
      }
    }
    Points<Coordinate, lanes>::store(result + i, narrow[0], narrow[1], narrow[2]);
  }
  transformOneByOne<kind, 3>(parts, points + 3 * whole, result + 3 * whole, count - whole);
}

}  // namespace kova::internal

#undef KOVA_INLINE
