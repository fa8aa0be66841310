#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/geometry/Gk_LinMap.h"

class KOVAStreamFormatter;

/// A parameter interval with a tolerance, as curves and surfaces have it. Each end may be open to
/// infinity, and its number then means nothing. A domain whose low end is above its high end is
/// empty; nothing keeps one from being built.
///
/// The tolerance is absolute, in the unit of the parameter; it belongs to the domain and is what
/// every comparison uses that is not given one. A NaN lies in no bounded domain.
class KOVABASE_API Gk_Domain {
 public:
  /// A set of two bits.
  enum EndCondn : int {
    kUnbounded = 0,
    kBoundedBelow = 1,
    kBoundedAbove = 2,
    kBounded = kBoundedBelow | kBoundedAbove,
  };

  /// The finite interval; the ends are kept as they are given.
  Gk_Domain(double low, double high, double tolerance)
      : _low(low), _high(high), _tolerance(tolerance), _endCondition(kBounded) {}
  /// Bits of `endCondition` other than the two are dropped.
  Gk_Domain(EndCondn endCondition, double low, double high, double tolerance)
      : _low(low),
        _high(high),
        _tolerance(tolerance),
        _endCondition(static_cast<EndCondn>(endCondition & kBounded)) {}

  double getLow() const { return _low; }
  double getHigh() const { return _high; }
  double getTolerance() const { return _tolerance; }
  EndCondn getEndCondition() const { return _endCondition; }
  bool isBoundedBelow() const { return (_endCondition & kBoundedBelow) != 0; }
  bool isBoundedAbove() const { return (_endCondition & kBoundedAbove) != 0; }

  /// Mirrored at 0: ends and end conditions change places.
  Gk_Domain operator-() const;

  /// Bounded at both ends.
  bool isFinite() const { return _endCondition == kBounded; }
  /// Finite and shorter than the tolerance.
  bool isDegenerate() const;
  /// High minus low, whatever the end conditions; negative when the domain is empty.
  double length() const { return _high - _low; }
  /// The parameter at the fraction `t`: low at 0, high at 1, whatever the end conditions.
  double locate(double t) const { return (1.0 - t) * _low + t * _high; }

  /// Between the ends that are bounded, or beyond one by at most the tolerance.
  bool isContained(double x) const;
  /// Between the ends that are bounded, and farther from each than the tolerance.
  bool isInside(double x) const;
  /// The same for both ends of another domain. Where the other is open to infinity, this one must
  /// be open too.
  bool isContained(const Gk_Domain& other) const;
  bool isInside(const Gk_Domain& other) const;

  /// Comparisons with one end, whatever the end conditions: within the tolerance of an end.
  bool isLow(double x) const;
  bool isHigh(double x) const;
  /// Within the tolerance of one of the ends.
  bool isBoundary(double x) const;
  /// Beyond the end by more than the tolerance, whatever the end conditions.
  bool isBelow(double x) const;
  bool isAbove(double x) const;

  /// Equal end conditions, and ends equal within `tolerance` where they are bounded.
  /// @param tolerance  exactly -1 stands for the tolerance of this domain.
  bool isSame(const Gk_Domain& other, double tolerance = -1.0) const;

  /// Moves each bounded end outwards by `distance`, a negative one inwards. @return true.
  bool expand(double distance);

  /// Extends the domain to a parameter that is not yet in it, within the tolerance. An unbounded
  /// domain becomes the finite domain of this one parameter. A NaN is no parameter.
  /// @return whether the domain changed.
  bool extend(double x);
  /// Extends by the bounded ends of the other domain, then opens each end that is open there.
  bool extend(const Gk_Domain& other);

  /// The overlap: the larger of the low ends and the smaller of the high ends that are bounded.
  /// Two domains that miss each other by no more than the larger of their tolerances touch in one
  /// point, the middle of the gap. When they miss by more, low is above high in the answer. The
  /// answer has the larger tolerance, so that the order of the two does not matter.
  Gk_Domain intersection(const Gk_Domain& other) const;

  /// The parameter of the domain that is nearest to `x`, whatever the end conditions: an end when
  /// `x` is beyond it or within the tolerance of it, else `x`.
  double stick(double x) const;

  /// Reduces a parameter of a periodic curve into the domain, whose length is the period.
  ///
  /// What lies in the domain stays. From above the answer is above low, so that high plus whole
  /// periods gives high; from below it is under high, so that low minus whole periods gives low,
  /// and so does what misses that by less than `Gk_Def::FuzzReal` on the lower side. The answer
  /// never leaves [low, high], however large or small `t` and the period are; it is low when the
  /// period is 0.
  ///
  /// A domain that is not bounded at both ends, and a `t` that is not finite, give `t`. The ends of
  /// an empty domain change places. An infinite end leaves no period: what is beyond an end is
  /// pinned to it.
  double principalParam(double t) const;

  /// The map that carries this domain onto the other, low end to low end, never reversing. From a
  /// domain of length 0 all goes to the low end of the other.
  Gk_LinMap mapTo(const Gk_Domain& other) const;

  /// Maps both ends; a reversing map makes the ends and their conditions change places. The
  /// tolerance stays.
  void apply(const Gk_LinMap& map);

  /// Writes "[0, 1], tolerance 1e-06", no line end; an end that is not bounded as "(-inf" or
  /// "inf)".
  void dump(KOVAStreamFormatter& formatter) const;

 private:
  void swapEnds();

  double _low;
  double _high;
  double _tolerance;
  EndCondn _endCondition;
};

/// `domain.dump(formatter)`.
KOVABASE_API KOVAStreamFormatter& operator<<(KOVAStreamFormatter& formatter,
                                             const Gk_Domain& domain);
