#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAReferenceCount.h"
#include "kovabase/foundation/KOVAReferenceHandle.h"

class KOVAAffine;
class KOVAMorph;
class KOVAStreamFormatter;

/// A point of dimension 0 to 3 with coordinates in double precision, in whatever length unit the
/// caller works in. It can be held by counted handles; as a value it is copied freely.
///
/// Where two points meet and their dimensions differ, the work runs over the dimension of this
/// point, and a coordinate that the other point lacks counts as 0.
///
/// Distinct points may be used on distinct threads; one point belongs to one thread at a time.
/// Points hold no pointer into themselves and survive a move as raw bytes.
class KOVABASE_API KOVAPoint : public KOVAReferenceCount {
 public:
  /// The origin. A dimension below 0 becomes 0, one above 3 becomes 3.
  explicit KOVAPoint(int dimension)
      : _dimension(dimension < 0 ? 0 : (dimension > kMaxDimension ? kMaxDimension : dimension)) {}
  /// The copy is a new object that no handle holds yet.
  KOVAPoint(const KOVAPoint& other) : KOVAReferenceCount(other), _dimension(other._dimension) {
    for (int i = 0; i < kMaxDimension; ++i) _coordinates[i] = other._coordinates[i];
  }
  /// Copies the coordinates alone: the dimension and the handles of this point stay.
  // NOLINTNEXTLINE(bugprone-unhandled-self-assignment): a coordinate may be copied onto itself
  KOVAPoint& operator=(const KOVAPoint& other) {
    for (int i = 0; i < _dimension; ++i) _coordinates[i] = other._coordinates[i];
    return *this;
  }
  ~KOVAPoint() override = default;

  const char* GetName() override;

  /// Coordinate `index`, counted from 0; 0 when the index is not below the dimension.
  virtual double operator[](int index) const;
  /// The same to write to. Out of range it is a scratch value of the calling thread that reads 0
  /// after each such call and belongs to no point.
  virtual double& operator[](int index);
  virtual int GetDimension() const;
  /// Square root of the plain sum of squares: it overflows and underflows as the squares do.
  virtual double Length() const;
  virtual void Negate();
  virtual void Multiply(double factor);
  /// Divides coordinate by coordinate; a divisor of 0 gives infinities and NaN.
  virtual void Divide(double divisor);
  /// Subtracts in place. The spelling is kept.
  virtual void Substract(const KOVAPoint& point);
  virtual void Add(const KOVAPoint& point);
  /// Copies the coordinates that both points have into `point`.
  virtual void CopyIn(KOVAPoint& point) const;
  /// Writes "(x, y, z)" with as many coordinates as the dimension, no line end.
  virtual void Dump(KOVAStreamFormatter& formatter) const;
  /// Does nothing here, nor in a derived class when the dimensions differ.
  /// @param noTranslation  true transforms a direction or an offset.
  virtual void Transform(const KOVAMorph& morph, bool noTranslation = false);
  virtual void Transform(const KOVAAffine& affine);

  /// Euclidean distance over the dimension of this point, by a plain sum of squares.
  /// Throws `KOVAAbortException` when an abort was asked for.
  double DistanceTo(const KOVAPoint& point) const;

  /// True when each coordinate differs from that of `point` by at most |tolerance|: a box test, not
  /// a distance test. A NaN is never within; a point of dimension 0 always is.
  /// Throws `KOVAAbortException` when an abort was asked for.
  bool IsWithinTolerance(const KOVAPoint& point, double tolerance) const;
  /// The same with a tolerance for each coordinate, |tolerance[i]|.
  bool IsWithinTolerance(const KOVAPoint& point, const KOVAPoint& tolerance) const;

  /// The three stored doubles; those beyond the dimension are 0.
  const double* GetStoredCoordinates() const { return _coordinates; }

 protected:
  /// The most coordinates of a point.
  static constexpr int kMaxDimension = 3;

  /// A double of the calling thread, set to 0 by this call.
  static double& GetScratch();

  /// Those beyond the dimension are 0 and stay so.
  double _coordinates[kMaxDimension] = {0.0, 0.0, 0.0};

 private:
  int _dimension;
};

using KOVAPointHandle = KOVATypedHandle<KOVAPoint>;

/// `point.Dump(formatter)`.
KOVABASE_API KOVAStreamFormatter& operator<<(KOVAStreamFormatter& formatter,
                                             const KOVAPoint& point);
