#pragma once

#include "kovabase/foundation/KOVAExport.h"

class KOVAStreamFormatter;

/// A square linear map of dimension 2 or 3 in double precision; rows and columns count from 0.
/// Points are columns: the map takes p to matrix * p.
///
/// What fails returns false and leaves its output as it was. Outputs may be the operands.
class KOVABASE_API KOVAAffine {
 public:
  int GetDimension() const { return _dimension; }

  /// 0 when an index is out of range.
  double GetElement(int row, int column) const {
    return IsInside(row) && IsInside(column) ? _elements[column * _dimension + row] : 0.0;
  }
  /// False when an index is out of range.
  bool SetElement(int row, int column, double value);

  /// Arrays of as many doubles as the dimension. False when the index is out of range or the array
  /// is null.
  bool GetRow(int row, double* values) const;
  bool SetRow(int row, const double* values);
  bool GetColumn(int column, double* values) const;
  bool SetColumn(int column, const double* values);

  /// All elements in column order, as many as the square of the dimension n: row r, column c is
  /// entry n * c + r.
  const double* GetElements() const { return _elements; }
  double* GetElements() { return _elements; }

  /// Exact, element by element; maps of different dimension differ.
  bool operator==(const KOVAAffine& other) const;
  /// Exact.
  bool IsIdentity() const;

  double Determinant() const;
  /// The cofactor: the determinant without that row and column, with the sign of its position in a
  /// chessboard. 0 when an index is out of range.
  double DeterminantOfCofactor(int row, int column) const;
  /// The adjugate divided by the determinant. False when the determinant is 0 or not finite, or
  /// the dimensions differ.
  bool GetInverse(KOVAAffine& inverse) const;
  /// False when the dimensions differ.
  bool GetTranspose(KOVAAffine& transpose) const;
  void Transpose();

  void MakeIdentity();
  /// Sets every element to `value`.
  void Initialize(double value);
  void Multiply(double factor);
  /// Divides every element; a divisor of 0 gives infinities and NaN.
  void Divide(double divisor);
  /// product = this * right, the map that applies `right` first. False when a dimension differs.
  bool Multiply(const KOVAAffine& right, KOVAAffine& product) const;
  /// Copies all elements. False when the dimensions differ.
  bool SetTo(const KOVAAffine& other);

 protected:
  /// The identity.
  /// @param dimension  2 or 3.
  explicit KOVAAffine(int dimension) : _elements{1.0}, _dimension(dimension) {
    for (int i = 1; i < dimension; ++i) _elements[i * (dimension + 1)] = 1.0;
  }
  KOVAAffine(const KOVAAffine&) = default;
  KOVAAffine& operator=(const KOVAAffine&) = default;
  ~KOVAAffine() = default;

 private:
  bool IsInside(int index) const { return index >= 0 && index < _dimension; }

  // First, so that copies move the pairs that computations have stored.
  double _elements[9];
  int _dimension;
};

/// Writes the rows, "(1, 0), (0, 1)", no line end.
KOVABASE_API KOVAStreamFormatter& operator<<(KOVAStreamFormatter& formatter,
                                             const KOVAAffine& affine);
