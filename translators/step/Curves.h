#pragma once

#include "translators/model/Model.h"

#include <memory>
#include <vector>

/// The curves of ISO 10303-42 in space: points by parameter, parameters of points, lengths, and
/// chains of points that stand for them.
namespace kova::translators::step {

/// A right-handed frame of unit vectors at right angles.
struct Frame {
  Point origin;
  Point x;
  Point y;
  Point z;

  /// As `build_axes` of ISO 10303-42 makes it from an AXIS2_PLACEMENT_3D.
  /// @param axis, reference  null when the file leaves them out. A zero axis, and a reference
  ///   along the axis, are replaced by the defaults.
  static Frame Make(const Point& origin, const Point* axis, const Point* reference);

  /// origin + a x + b y + c z.
  Point At(double a, double b, double c) const;
};

/// Bounds for chains, whatever the curve.
struct ChainLimits {
  /// The greatest distance of the curve from its chords, above 0.
  double tolerance = 0.01;
  /// No chord turns by more than this, in radians.
  double angle = 0.35;
  /// The most points of one chain; beyond it chords are longer.
  int mostPoints = 10000;
};

/// A curve in the parametrisation of ISO 10303-42; angles are in radians. Immutable: any thread may
/// use it.
class SpaceCurve {
 public:
  virtual ~SpaceCurve() = default;

  /// The range of the parameter; infinite for lines and open conics, 0 to 2 pi for closed ones.
  virtual double GetLow() const = 0;
  virtual double GetHigh() const = 0;
  /// Whether parameters repeat after GetHigh() - GetLow().
  virtual bool IsPeriodic() const { return false; }

  virtual Point Evaluate(double parameter) const = 0;
  virtual Point EvaluateDerivative(double parameter) const = 0;
  /// The parameter of the point of the curve that is nearest to `point`.
  virtual double FindParameter(const Point& point) const = 0;

  /// Parameters strictly between `low` and `high`, in order, at which the curve is not smooth: it
  /// is sampled and measured piece by piece.
  virtual void AddBreaks(double low, double high, std::vector<double>& breaks) const;

  /// The length of a piece without breaks, `low` <= `high`.
  virtual double Measure(double low, double high) const;
  /// Points strictly between `low` and `high`, in order, that divide a piece without breaks so that
  /// its chords keep within the limits. At most `limits.mostPoints` of them.
  virtual void AddPoints(double low, double high, const ChainLimits& limits,
                         std::vector<Point>& points) const;
  /// Into how many parts a piece without breaks is divided before its samples are trusted.
  virtual int GetParts() const { return 1; }
  /// How many pieces there are between breaks, and how deep composites are in each other. The
  /// makers give null for more than 200,000 pieces of a composite, 10,000 when it holds others,
  /// and for more than 32 levels.
  virtual int CountPieces() const { return 1; }
  virtual int GetDepth() const { return 0; }
};

using SpaceCurveHandle = std::shared_ptr<const SpaceCurve>;

/// The makers give null for what is no curve: a zero direction, radius or degree, numbers that are
/// not finite, weights that are not positive, knots that fall or do not fit the poles.
/// `direction` carries the magnitude of the VECTOR.
SpaceCurveHandle makeLine(const Point& origin, const Point& direction);
SpaceCurveHandle makeCircle(const Frame& frame, double radius);
SpaceCurveHandle makeEllipse(const Frame& frame, double semiAxis1, double semiAxis2);
SpaceCurveHandle makeHyperbola(const Frame& frame, double semiAxis, double semiImaginaryAxis);
SpaceCurveHandle makeParabola(const Frame& frame, double focalDistance);
SpaceCurveHandle makePolyline(std::vector<Point> points);
/// @param weights  empty for a curve that is not rational.
/// @param degree  at most 32.
/// @param knots  every knot as often as its multiplicity: poles + degree + 1 of them.
SpaceCurveHandle makeBSpline(int degree, std::vector<Point> poles, std::vector<double> weights,
                             std::vector<double> knots);
/// The knots that ISO 10303-42 gives to the forms that come without: of the same count as above.
/// Empty when there can be none, as for a Bezier curve with a wrong number of poles.
std::vector<double> makeUniformKnots(int degree, int poles);
std::vector<double> makeQuasiUniformKnots(int degree, int poles);
std::vector<double> makeBezierKnots(int degree, int poles);
/// The piece from `from` to `to`. Parameters run from 0 to |to - from|, along the basis curve or,
/// unless `isForward`, against it. On a periodic basis the piece wraps around as needed.
SpaceCurveHandle makeTrimmed(SpaceCurveHandle basis, double from, double to, bool isForward);

struct Segment {
  SpaceCurveHandle curve;
  bool isForward = true;
};
/// Segments one after the other, each over its whole range, which must be finite. Parameters run
/// from 0 to the number of segments, one for each.
SpaceCurveHandle makeComposite(std::vector<Segment> segments);

/// A piece of a curve as a chain of points.
struct Chain {
  /// At least two; every one on the curve, but the ends where the caller gave them.
  std::vector<Point> points;
  /// Of the curve, with a relative error below 1e-6.
  double length = 0.0;
};

/// The piece from parameter `from` to `to`, in this direction also when `to` < `from`; on a
/// periodic curve once around at most.
/// @return false when it is not finite.
bool sample(const SpaceCurve& curve, double from, double to, const ChainLimits& limits,
            Chain& chain);

/// The piece of an edge, from its start vertex to its end vertex, which become the first and the
/// last point. Parameters are those of the vertices; on a periodic curve the piece goes from the
/// start forward to the end when `isForward`, else backward, and once around when the two
/// coincide. A B-spline that closes in itself behaves like a periodic curve.
/// @return false when it is not finite.
bool sampleEdge(const SpaceCurve& curve, const Point& start, const Point& end, bool isForward,
                const ChainLimits& limits, Chain& chain);

}  // namespace kova::translators::step
