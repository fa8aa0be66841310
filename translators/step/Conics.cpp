#include "translators/step/CurveTools.h"
#include "translators/step/Curves.h"

#include <limits>
#include <numbers>

namespace kova::translators::step {

using namespace curves;

namespace {

using std::numbers::pi;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// A unit vector; the zero vector for what has no direction.
Point normalize(const Point& vector) {
  const double size = length(vector);
  if (!(size > 0.0) || !std::isfinite(size)) return {0.0, 0.0, 0.0};
  const Point unit{vector.x / size, vector.y / size, vector.z / size};
  // Once more, because a quotient of subnormal numbers is coarse.
  return (1.0 / length(unit)) * unit;
}

bool isZero(const Point& vector) { return vector == Point{0.0, 0.0, 0.0}; }

// The part of a unit vector at right angles to `axis`, as a unit vector.
Point projectAcross(const Point& vector, const Point& axis) {
  const Point across = vector - dot(vector, axis) * axis;
  if (length(across) < 1e-9) return {0.0, 0.0, 0.0};
  const Point unit = normalize(across);
  return normalize(unit - dot(unit, axis) * axis);
}

class Line final : public SpaceCurve {
 public:
  Line(const Point& origin, const Point& direction)
      : _origin(origin), _direction(direction), _speed(length(direction)) {
    _unit = normalize(direction);
  }

  double GetLow() const override { return -kInfinity; }
  double GetHigh() const override { return kInfinity; }
  Point Evaluate(double parameter) const override { return _origin + parameter * _direction; }
  Point EvaluateDerivative(double) const override { return _direction; }
  double FindParameter(const Point& point) const override {
    return dot(point - _origin, _unit) / _speed;
  }
  double Measure(double low, double high) const override { return (high - low) * _speed; }
  void AddPoints(double, double, const ChainLimits&, std::vector<Point>&) const override {}

 private:
  Point _origin;
  Point _direction;
  Point _unit;
  double _speed;
};

// A closed conic: breaks at its vertices keep these among the points of chains.
class ClosedConic : public SpaceCurve {
 public:
  double GetLow() const override { return 0.0; }
  double GetHigh() const override { return 2.0 * pi; }
  bool IsPeriodic() const override { return true; }
  void AddBreaks(double low, double high, std::vector<double>& breaks) const override {
    constexpr double kQuarter = 0.5 * pi;
    const double first = std::floor(low / kQuarter) + 1.0;
    for (int i = 0; i < 5; ++i) {
      const double parameter = (first + i) * kQuarter;
      if (parameter > low && parameter < high) breaks.push_back(parameter);
    }
  }

 protected:
  explicit ClosedConic(const Frame& frame) : _frame(frame) {}

  static double ToRange(double angle) { return angle < 0.0 ? angle + 2.0 * pi : angle + 0.0; }

  Frame _frame;
};

class Circle final : public ClosedConic {
 public:
  Circle(const Frame& frame, double radius) : ClosedConic(frame), _radius(radius) {}

  Point Evaluate(double parameter) const override {
    return _frame.At(_radius * std::cos(parameter), _radius * std::sin(parameter), 0.0);
  }
  Point EvaluateDerivative(double parameter) const override {
    return _radius * std::cos(parameter) * _frame.y - _radius * std::sin(parameter) * _frame.x;
  }
  double FindParameter(const Point& point) const override {
    const Point local = toFrame(_frame, point);
    return ToRange(std::atan2(local.y, local.x));
  }
  double Measure(double low, double high) const override { return (high - low) * _radius; }
  void AddPoints(double low, double high, const ChainLimits& limits,
                 std::vector<Point>& points) const override {
    // A chord over the angle h is 2 r sin^2(h / 4) away from its arc.
    const double bow = std::min(1.0, limits.tolerance / (2.0 * _radius));
    const double step = std::min(limits.angle, 4.0 * std::asin(std::sqrt(bow)));
    const double wanted = std::ceil((high - low) / step - 1e-9) - 1.0;
    const double most = std::max(0, limits.mostPoints);
    const int count = static_cast<int>(wanted < most ? std::max(0.0, wanted) : most);
    for (int i = 1; i <= count; ++i) {
      points.push_back(Evaluate(low + (high - low) * i / (count + 1)));
    }
  }

 private:
  double _radius;
};

class Ellipse final : public ClosedConic {
 public:
  Ellipse(const Frame& frame, double a, double b) : ClosedConic(frame), _a(a), _b(b) {}

  Point Evaluate(double parameter) const override {
    return _frame.At(_a * std::cos(parameter), _b * std::sin(parameter), 0.0);
  }
  Point EvaluateDerivative(double parameter) const override {
    return _b * std::cos(parameter) * _frame.y - _a * std::sin(parameter) * _frame.x;
  }
  double FindParameter(const Point& point) const override {
    // In the quadrant of the point there is one foot of a perpendicular, and it is the nearest.
    const Point local = toFrame(_frame, point);
    const double size = std::max(_a, _b);
    const double x = std::fabs(local.x) / size;
    const double y = std::fabs(local.y) / size;
    const double a = _a / size;
    const double b = _b / size;
    double angle = 0.0;
    if (x == 0.0 && b * y >= b * b - a * a) {
      angle = 0.5 * pi;
    } else if (y != 0.0 || a * x < a * a - b * b) {
      angle = findRoot(0.0, 0.5 * pi, std::max(std::atan2(y / b, x / a), 1e-12),
                       [=](double t, double& slope) {
                         const double s = std::sin(t);
                         const double c = std::cos(t);
                         slope = (b * b - a * a) * (c * c - s * s) + a * x * c + b * y * s;
                         return (b * b - a * a) * s * c + a * x * s - b * y * c;
                       });
    }
    if (local.x < 0.0) angle = pi - angle;
    return ToRange(local.y < 0.0 ? -angle : angle);
  }

 private:
  double _a;
  double _b;
};

// An open conic, symmetric about its x axis.
class OpenConic : public SpaceCurve {
 public:
  double GetLow() const override { return -kInfinity; }
  double GetHigh() const override { return kInfinity; }
  void AddBreaks(double low, double high, std::vector<double>& breaks) const override {
    if (low < 0.0 && high > 0.0) breaks.push_back(0.0);
  }

 protected:
  explicit OpenConic(const Frame& frame) : _frame(frame) {}

  Frame _frame;
};

class Hyperbola final : public OpenConic {
 public:
  Hyperbola(const Frame& frame, double a, double b) : OpenConic(frame), _a(a), _b(b) {}

  Point Evaluate(double parameter) const override {
    return _frame.At(_a * std::cosh(parameter), _b * std::sinh(parameter), 0.0);
  }
  Point EvaluateDerivative(double parameter) const override {
    return _a * std::sinh(parameter) * _frame.x + _b * std::cosh(parameter) * _frame.y;
  }
  double FindParameter(const Point& point) const override {
    const Point local = toFrame(_frame, point);
    const double size = std::max(_a, _b);
    const double x = local.x / size;
    const double y = std::fabs(local.y) / size;
    const double a = _a / size;
    const double b = _b / size;
    const double guess = std::asinh(y / b);
    const double high = std::max(guess, std::acosh(std::max(1.0, x / a)));
    if (!std::isfinite(high)) return high;
    // The perpendicular's equation divided by cosh^2, which would overflow.
    const double t = findRoot(0.0, high, guess, [=](double u, double& slope) {
      const double tangent = std::tanh(u);
      const double inverse = 1.0 / std::cosh(u);
      const double sum = a * a + b * b;
      slope = sum * (1.0 - tangent * tangent) - a * x * inverse * (1.0 - 2.0 * tangent * tangent) +
              b * y * inverse * tangent;
      return sum * tangent - a * x * tangent * inverse - b * y * inverse;
    });
    return local.y < 0.0 ? -t : t;
  }

 private:
  double _a;
  double _b;
};

class Parabola final : public OpenConic {
 public:
  Parabola(const Frame& frame, double focalDistance) : OpenConic(frame), _focus(focalDistance) {}

  Point Evaluate(double parameter) const override {
    return _frame.At(_focus * parameter * parameter, 2.0 * _focus * parameter, 0.0);
  }
  Point EvaluateDerivative(double parameter) const override {
    return 2.0 * _focus * parameter * _frame.x + 2.0 * _focus * _frame.y;
  }
  double FindParameter(const Point& point) const override {
    const Point local = toFrame(_frame, point);
    const double x = local.x / _focus;
    const double y = std::fabs(local.y) / _focus;
    const double high = std::max(0.5 * y, std::sqrt(std::max(0.0, x)));
    if (!std::isfinite(high)) return high;
    const double t = findRoot(0.0, high, 0.5 * y, [=](double u, double& slope) {
      slope = 3.0 * u * u + 2.0 - x;
      return (u * u + 2.0 - x) * u - y;
    });
    return local.y < 0.0 ? -t : t;
  }
  double Measure(double low, double high) const override {
    // The integral of 2 f sqrt(1 + t^2), on one side of the vertex.
    const auto upTo = [](double t) { return t * std::sqrt(1.0 + t * t) + std::asinh(t); };
    return high - low < 1e-3 ? SpaceCurve::Measure(low, high) : _focus * (upTo(high) - upTo(low));
  }

 private:
  double _focus;
};

bool isLength(double value) { return value > 0.0 && std::isfinite(value); }

}  // namespace

bool curves::isFinite(const Frame& frame) {
  return isFinite(frame.origin) && isFinite(frame.x) && isFinite(frame.y) && isFinite(frame.z);
}

Frame Frame::Make(const Point& origin, const Point* axis, const Point* reference) {
  Frame frame;
  frame.origin = origin;
  frame.z = axis ? normalize(*axis) : Point{0.0, 0.0, 1.0};
  if (isZero(frame.z)) frame.z = {0.0, 0.0, 1.0};
  frame.x = {0.0, 0.0, 0.0};
  if (reference) frame.x = projectAcross(normalize(*reference), frame.z);
  if (isZero(frame.x)) frame.x = projectAcross({1.0, 0.0, 0.0}, frame.z);
  if (isZero(frame.x)) frame.x = projectAcross({0.0, 1.0, 0.0}, frame.z);
  frame.y = cross(frame.z, frame.x);
  return frame;
}

Point Frame::At(double a, double b, double c) const {
  return {origin.x + a * x.x + b * y.x + c * z.x, origin.y + a * x.y + b * y.y + c * z.y,
          origin.z + a * x.z + b * y.z + c * z.z};
}

SpaceCurveHandle makeLine(const Point& origin, const Point& direction) {
  if (!isFinite(origin) || !isLength(length(direction))) return nullptr;
  return std::make_shared<Line>(origin, direction);
}

SpaceCurveHandle makeCircle(const Frame& frame, double radius) {
  if (!isFinite(frame) || !isLength(radius)) return nullptr;
  return std::make_shared<Circle>(frame, radius);
}

SpaceCurveHandle makeEllipse(const Frame& frame, double semiAxis1, double semiAxis2) {
  if (!isFinite(frame) || !isLength(semiAxis1) || !isLength(semiAxis2)) return nullptr;
  return std::make_shared<Ellipse>(frame, semiAxis1, semiAxis2);
}

SpaceCurveHandle makeHyperbola(const Frame& frame, double semiAxis, double semiImaginaryAxis) {
  if (!isFinite(frame) || !isLength(semiAxis) || !isLength(semiImaginaryAxis)) return nullptr;
  return std::make_shared<Hyperbola>(frame, semiAxis, semiImaginaryAxis);
}

SpaceCurveHandle makeParabola(const Frame& frame, double focalDistance) {
  if (!isFinite(frame) || !isLength(focalDistance)) return nullptr;
  return std::make_shared<Parabola>(frame, focalDistance);
}

}  // namespace kova::translators::step
