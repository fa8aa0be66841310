#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"

class KOVAAffine;
class KOVAPoint;
class KOVAStreamFormatter;

/// A placement: a linear part, a uniform scale and a translation, applied in this order. The two
/// kinds are KOVAMorph2D and KOVAMorph3D, which are values and freely copied.
///
/// Each part is marked as present by an exact comparison: the linear part when it is not the
/// identity, the scale when it is not 1, the translation when it is not zero. An absent part is
/// skipped, so that it changes no coordinate, not even the sign of a zero.
class KOVABASE_API KOVAMorph {
 public:
  virtual ~KOVAMorph() = default;

  /// 2 or 3.
  virtual int GetDimension() const = 0;
  virtual const KOVAAffine& GetAffine() const = 0;
  virtual const KOVAPoint& GetTranslation() const = 0;
  double GetScale() const { return _scale; }

  bool isAffine() const { return (_flags & kAffine) != 0; }
  bool isScale() const { return (_flags & kScale) != 0; }
  bool isTranslation() const { return (_flags & kTranslation) != 0; }
  bool isIdentity() const { return _flags == 0; }
  /// True when the determinant of the linear part is negative.
  bool isMirror() const;

  /// Makes this the placement that moves nothing.
  virtual void SetToIdentity() = 0;

  /// Multiplies the translation by the scale and makes the scale 1. It works once: the morph and
  /// its copies are marked, and a marked one stays as it is. Products, inverses and
  /// `SetToIdentity` carry no mark.
  virtual void FixScaleFactor() = 0;

  /// @param inverse  may be this morph.
  /// @return Success; Failure, `inverse` the identity, when the scale has no finite reciprocal or
  ///   the linear part is singular; InvalidArgument, `inverse` untouched, when its dimension
  ///   differs.
  virtual KOVAResult Inverse(KOVAMorph& inverse) const = 0;

  /// The morph that applies this one first and `other` second.
  /// @param result  may be this morph or `other`.
  /// @return Success; InvalidArgument, `result` untouched, when a dimension differs.
  virtual KOVAResult Multiply(const KOVAMorph& other, KOVAMorph& result) const = 0;

 protected:
  /// Recomputes the marks from the parts.
  virtual void fixMorphFlags() = 0;

 private:
  friend class KOVAMorph2D;
  friend class KOVAMorph3D;

  enum Flag : unsigned { kAffine = 1, kScale = 2, kTranslation = 4 };

  /// There are no other kinds, so that the dimension tells the class.
  KOVAMorph() = default;
  explicit KOVAMorph(double scale) : _scale(scale) {}
  KOVAMorph(const KOVAMorph&) = default;
  KOVAMorph& operator=(const KOVAMorph&) = default;

  void setFlags(bool affine, bool translation) {
    _flags =
        (affine ? kAffine : 0U) | (_scale != 1.0 ? kScale : 0U) | (translation ? kTranslation : 0U);
  }

  unsigned _flags = 0;
  double _scale = 1.0;
  bool _scaleFixed = false;
};

/// Writes "linear (1, 0), (0, 1), scale 1, translation (0, 0)", no line end.
KOVABASE_API KOVAStreamFormatter& operator<<(KOVAStreamFormatter& formatter,
                                             const KOVAMorph& morph);
