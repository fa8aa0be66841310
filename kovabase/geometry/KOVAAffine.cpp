#include "kovabase/geometry/KOVAAffine.h"

#include "kovabase/geometry/internal/LinearMath.h"
#include "kovabase/io/KOVAStreamFormatter.h"

#include <algorithm>
#include <utility>

using kova::internal::computeAdjugate;
using kova::internal::invertMatrix;
using kova::internal::isIdentityMatrix;
using kova::internal::multiplyMatrices;

bool KOVAAffine::SetElement(int row, int column, double value) {
  if (!IsInside(row) || !IsInside(column)) return false;
  _elements[column * _dimension + row] = value;
  return true;
}

bool KOVAAffine::GetRow(int row, double* values) const {
  if (!IsInside(row) || values == nullptr) return false;
  for (int i = 0; i < _dimension; ++i) values[i] = _elements[i * _dimension + row];
  return true;
}

bool KOVAAffine::SetRow(int row, const double* values) {
  if (!IsInside(row) || values == nullptr) return false;
  for (int i = 0; i < _dimension; ++i) _elements[i * _dimension + row] = values[i];
  return true;
}

bool KOVAAffine::GetColumn(int column, double* values) const {
  if (!IsInside(column) || values == nullptr) return false;
  for (int i = 0; i < _dimension; ++i) values[i] = _elements[column * _dimension + i];
  return true;
}

bool KOVAAffine::SetColumn(int column, const double* values) {
  if (!IsInside(column) || values == nullptr) return false;
  for (int i = 0; i < _dimension; ++i) _elements[column * _dimension + i] = values[i];
  return true;
}

bool KOVAAffine::operator==(const KOVAAffine& other) const {
  return _dimension == other._dimension &&
         std::equal(_elements, _elements + _dimension * _dimension, other._elements);
}

bool KOVAAffine::IsIdentity() const {
  return _dimension == 2 ? isIdentityMatrix<2>(_elements) : isIdentityMatrix<3>(_elements);
}

double KOVAAffine::Determinant() const {
  double adjugate[9];
  return _dimension == 2 ? computeAdjugate<2>(_elements, adjugate)
                         : computeAdjugate<3>(_elements, adjugate);
}

double KOVAAffine::DeterminantOfCofactor(int row, int column) const {
  if (!IsInside(row) || !IsInside(column)) return 0.0;
  double adjugate[9];
  if (_dimension == 2) {
    computeAdjugate<2>(_elements, adjugate);
  } else {
    computeAdjugate<3>(_elements, adjugate);
  }
  return adjugate[row * _dimension + column];
}

bool KOVAAffine::GetInverse(KOVAAffine& inverse) const {
  if (inverse._dimension != _dimension) return false;
  double elements[9];
  if (!(_dimension == 2 ? invertMatrix<2>(_elements, elements)
                        : invertMatrix<3>(_elements, elements))) {
    return false;
  }
  std::copy(elements, elements + _dimension * _dimension, inverse._elements);
  return true;
}

bool KOVAAffine::GetTranspose(KOVAAffine& transpose) const {
  if (!transpose.SetTo(*this)) return false;
  transpose.Transpose();
  return true;
}

void KOVAAffine::Transpose() {
  for (int row = 1; row < _dimension; ++row) {
    for (int column = 0; column < row; ++column) {
      std::swap(_elements[row * _dimension + column], _elements[column * _dimension + row]);
    }
  }
}

void KOVAAffine::MakeIdentity() {
  Initialize(0.0);
  for (int i = 0; i < _dimension; ++i) _elements[i * (_dimension + 1)] = 1.0;
}

void KOVAAffine::Initialize(double value) {
  std::fill(_elements, _elements + _dimension * _dimension, value);
}

void KOVAAffine::Multiply(double factor) {
  for (int i = 0; i < _dimension * _dimension; ++i) _elements[i] *= factor;
}

void KOVAAffine::Divide(double divisor) {
  for (int i = 0; i < _dimension * _dimension; ++i) _elements[i] /= divisor;
}

bool KOVAAffine::Multiply(const KOVAAffine& right, KOVAAffine& product) const {
  if (right._dimension != _dimension || product._dimension != _dimension) return false;
  double elements[9];
  if (_dimension == 2) {
    multiplyMatrices<2>(_elements, right._elements, elements);
  } else {
    multiplyMatrices<3>(_elements, right._elements, elements);
  }
  std::copy(elements, elements + _dimension * _dimension, product._elements);
  return true;
}

bool KOVAAffine::SetTo(const KOVAAffine& other) {
  if (other._dimension != _dimension) return false;
  *this = other;
  return true;
}

KOVAStreamFormatter& operator<<(KOVAStreamFormatter& formatter, const KOVAAffine& affine) {
  for (int row = 0; row < affine.GetDimension(); ++row) {
    formatter << (row > 0 ? ", (" : "(");
    for (int column = 0; column < affine.GetDimension(); ++column) {
      formatter << (column > 0 ? ", " : "") << affine.GetElement(row, column);
    }
    formatter << ')';
  }
  return formatter;
}
