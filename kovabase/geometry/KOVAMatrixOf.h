#pragma once

#include "kovabase/containers/KOVADynamicArray.h"
#include "kovabase/foundation/KOVAAllocException.h"
#include "kovabase/geometry/KOVAPoint3D.h"
#include "kovabase/geometry/KOVAWeightPoint3D.h"

#include <algorithm>
#include <limits>

/// A grid of elements with u rows and v columns, such as the control points of a surface. Rows and
/// columns count from 0; the elements lie row by row, so that v runs fastest.
///
/// Like the array that it is made of, a grid shares its elements with its copies: what is changed
/// through one is seen by all. `copy()` is the deep copy; `subset` and `transpose` give grids of
/// their own. Grids that share may be copied and destroyed on different threads; all else belongs
/// to one thread at a time.
template <class T>
class KOVAMatrixOf {
 public:
  /// The grid of 0 by 0.
  KOVAMatrixOf() = default;

  /// Every element is `value`; a size below 0 is 0. Throws KOVAAllocException when there is no
  /// memory for the grid, or it has more elements than an int counts.
  KOVAMatrixOf(int uSize, int vSize, const T& value = T())
      : _uSize(std::max(uSize, 0)),
        _vSize(std::max(vSize, 0)),
        _elements(countElements(_uSize, _vSize), value) {}

  /// Rows and columns.
  int uSize() const { return _uSize; }
  int vSize() const { return _vSize; }

  /// Element in row `i` and column `j`. Out of range it is a scratch element of the calling thread,
  /// which is `T()` after each such call and belongs to no grid.
  T& elem(int i, int j) {
    return isInside(i, j) ? _elements.getArray()[i * _vSize + j] : resetScratch();
  }
  const T& elem(int i, int j) const {
    return isInside(i, j) ? _elements.getArray()[i * _vSize + j] : resetScratch();
  }

  /// The elements one behind the other, row by row; null when there are none.
  T* getArray() { return _elements.getArray(); }
  const T* getArray() const { return _elements.getArray(); }

  /// The rows from `uStart` up to, not including, `uEnd` and the columns alike; all four are pinned
  /// to the grid.
  KOVAMatrixOf subset(int uStart, int uEnd, int vStart, int vEnd) const {
    uEnd = std::clamp(uEnd, 0, _uSize);
    vEnd = std::clamp(vEnd, 0, _vSize);
    uStart = std::clamp(uStart, 0, uEnd);
    vStart = std::clamp(vStart, 0, vEnd);
    KOVAMatrixOf result(uEnd - uStart, vEnd - vStart);
    for (int i = uStart; i < uEnd; ++i) {
      for (int j = vStart; j < vEnd; ++j) result.elem(i - uStart, j - vStart) = elem(i, j);
    }
    return result;
  }

  /// Rows become columns.
  KOVAMatrixOf transpose() const {
    KOVAMatrixOf result(_vSize, _uSize);
    for (int i = 0; i < _uSize; ++i) {
      for (int j = 0; j < _vSize; ++j) result.elem(j, i) = elem(i, j);
    }
    return result;
  }

  /// A grid of its own with the same elements.
  KOVAMatrixOf copy() const { return subset(0, _uSize, 0, _vSize); }

 private:
  static int countElements(int uSize, int vSize) {
    const long long count = static_cast<long long>(uSize) * vSize;
    if (count > std::numeric_limits<int>::max()) throw KOVAAllocException();
    return static_cast<int>(count);
  }

  static T& resetScratch() {
    thread_local T scratch;
    scratch = T();
    return scratch;
  }

  bool isInside(int i, int j) const { return i >= 0 && i < _uSize && j >= 0 && j < _vSize; }

  int _uSize = 0;
  int _vSize = 0;
  KOVADynamicArray<T> _elements;
};

using KOVAMatrixOfdouble = KOVAMatrixOf<double>;
using KOVAMatrixOfKOVAPoint3D = KOVAMatrixOf<KOVAPoint3D>;
using KOVAMatrixOfKOVAWeightPoint3D = KOVAMatrixOf<KOVAWeightPoint3D>;
