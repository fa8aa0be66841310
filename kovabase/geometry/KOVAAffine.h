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

  /// Negative for a map that mirrors.
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

  /// The map that leaves all points where they are.
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
  /// @param elements  in column order, as many as the square of the dimension; null gives the
  ///   identity.
  explicit KOVAAffine(int dimension, const double* elements = nullptr)
      : KOVAAffine(elements != nullptr ? elements
                   : dimension == 2    ? kIdentity2D
                                       : kIdentity3D,
                   dimension) {}
  KOVAAffine(const KOVAAffine&) = default;
  KOVAAffine& operator=(const KOVAAffine&) = default;
  ~KOVAAffine() = default;

 private:
  static constexpr double kIdentity2D[4] = {1.0, 0.0, 0.0, 1.0};
  static constexpr double kIdentity3D[9] = {1.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0};

  // Each element is written once: placements are built in large numbers.
  KOVAAffine(const double* m, int dimension)
      : _elements{m[0],
                  m[1],
                  m[2],
                  m[3],
                  dimension == 3 ? m[4] : 0.0,
                  dimension == 3 ? m[5] : 0.0,
                  dimension == 3 ? m[6] : 0.0,
                  dimension == 3 ? m[7] : 0.0,
                  dimension == 3 ? m[8] : 0.0},
        _dimension(dimension) {}

  bool IsInside(int index) const { return index >= 0 && index < _dimension; }

  // First, so that copies move the pairs that computations have stored.
  double _elements[9];
  int _dimension;
};

/// Writes the rows, "(1, 0), (0, 1)", no line end.
KOVABASE_API KOVAStreamFormatter& operator<<(KOVAStreamFormatter& formatter,
                                             const KOVAAffine& affine);
