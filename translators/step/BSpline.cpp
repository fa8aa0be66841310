#include "translators/step/CurveTools.h"
#include "translators/step/Curves.h"

#include <array>

namespace kova::translators::step {

using namespace curves;

namespace {

// Beyond what systems exchange; work grows with its square.
constexpr int kMostDegree = 32;

class BSpline final : public BoundedCurve {
 public:
  // The poles are multiplied by their weights.
  BSpline(int degree, std::vector<Point> poles, std::vector<double> weights,
          std::vector<double> knots)
      : BoundedCurve(knots[static_cast<std::size_t>(degree)], knots[poles.size()]),
        _degree(static_cast<std::size_t>(degree)),
        _poles(std::move(poles)),
        _weights(std::move(weights)),
        _knots(std::move(knots)) {
    _lastSpan = _poles.size() - 1;
    while (_lastSpan > _degree && !(_knots[_lastSpan] < _knots[_lastSpan + 1])) --_lastSpan;
    Point lowest = GetPole(0);
    Point highest = lowest;
    for (std::size_t i = 1; i < _poles.size(); ++i) {
      const Point pole = GetPole(i);
      lowest = {std::min(lowest.x, pole.x), std::min(lowest.y, pole.y), std::min(lowest.z, pole.z)};
      highest = {std::max(highest.x, pole.x), std::max(highest.y, pole.y),
                 std::max(highest.z, pole.z)};
    }
    _size = distance(lowest, highest);
    _first = Evaluate(GetLow());
    _last = Evaluate(GetHigh());
    Close(_size);
  }

  Point Evaluate(double parameter) const override {
    const double t = Wrap(parameter);
    const std::size_t span = FindSpan(t);
    Basis basis;
    FillBasis(span, t, _degree, basis);
    const std::size_t first = span - _degree;
    Point sum = basis[0] * _poles[first];
    for (std::size_t i = 1; i <= _degree; ++i) sum = sum + basis[i] * _poles[first + i];
    if (_weights.empty()) return sum;
    double weight = 0.0;
    for (std::size_t i = 0; i <= _degree; ++i) weight += basis[i] * _weights[first + i];
    return {sum.x / weight, sum.y / weight, sum.z / weight};
  }

  Point EvaluateDerivative(double parameter) const override {
    const double t = Wrap(parameter);
    const std::size_t span = FindSpan(t);
    const std::size_t first = span - _degree;
    Basis basis;
    FillBasis(span, t, _degree - 1, basis);
    Point sum{0.0, 0.0, 0.0};
    double weightSlope = 0.0;
    for (std::size_t i = 1; i <= _degree; ++i) {
      const double width = _knots[first + i + _degree] - _knots[first + i];
      const double factor = basis[i - 1] * static_cast<double>(_degree) / width;
      sum = sum + factor * (_poles[first + i] - _poles[first + i - 1]);
      if (!_weights.empty()) {
        weightSlope += factor * (_weights[first + i] - _weights[first + i - 1]);
      }
    }
    if (_weights.empty()) return sum;
    RaiseBasis(span, t, _degree, basis);
    Point point{0.0, 0.0, 0.0};
    double weight = 0.0;
    for (std::size_t i = 0; i <= _degree; ++i) {
      point = point + basis[i] * _poles[first + i];
      weight += basis[i] * _weights[first + i];
    }
    const double ratio = weightSlope / weight;
    return {(sum.x - ratio * point.x) / weight, (sum.y - ratio * point.y) / weight,
            (sum.z - ratio * point.z) / weight};
  }

  double FindParameter(const Point& point) const override {
    // Nearly every edge ends where its curve does.
    const double margin = 1e-24 * _size * _size;
    if (squaredDistance(point, _first) <= margin) return GetLow();
    if (squaredDistance(point, _last) <= margin) return LeaveSeam(GetHigh());
    // The box of its poles bounds how near a span can come.
    std::size_t promising = _lastSpan;
    double leastBound = std::numeric_limits<double>::infinity();
    for (std::size_t span = _degree; span < _poles.size(); ++span) {
      if (!(_knots[span] < _knots[span + 1])) continue;
      const double bound = BoundSquaredDistance(span, point);
      if (bound < leastBound) {
        leastBound = bound;
        promising = span;
      }
    }
    // What is not on the curve is looked for more closely.
    Nearest nearest;
    const double close = 1e-12 * _size * _size;
    for (const int intervals :
         {2 * static_cast<int>(_degree) + 2, 12 * static_cast<int>(_degree)}) {
      if (nearest.squared <= close) break;
      SearchSpan(promising, intervals, point, nearest);
      for (std::size_t span = _degree; span < _poles.size(); ++span) {
        if (nearest.squared <= margin) break;
        if (span == promising || !(_knots[span] < _knots[span + 1])) continue;
        if (BoundSquaredDistance(span, point) < nearest.squared) {
          SearchSpan(span, intervals, point, nearest);
        }
      }
    }
    return LeaveSeam(nearest.squared < std::numeric_limits<double>::infinity() ? nearest.parameter
                                                                               : GetLow());
  }

  double Measure(double low, double high) const override {
    // Straight, at an even speed.
    if (_degree == 1 && _weights.empty()) {
      return (high - low) * length(EvaluateDerivative(low + 0.5 * (high - low)));
    }
    return SpaceCurve::Measure(low, high);
  }
  void AddPoints(double low, double high, const ChainLimits& limits,
                 std::vector<Point>& points) const override {
    if (_degree == 1) return;
    ChainLimits bearable = limits;
    bearable.mostPoints =
        std::min(limits.mostPoints, 1000000 / static_cast<int>(_degree * _degree));
    SpaceCurve::AddPoints(low, high, bearable, points);
  }
  int GetParts() const override { return std::max(1, static_cast<int>((_degree + 2) / 4)); }
  int CountPieces() const override { return static_cast<int>(_poles.size() - _degree); }

 protected:
  void AddOwnBreaks(double low, double high, std::vector<double>& breaks) const override {
    const auto last = _knots.begin() + static_cast<std::ptrdiff_t>(_poles.size());
    auto knot = std::upper_bound(_knots.begin() + static_cast<std::ptrdiff_t>(_degree), last, low);
    for (double previous = low; knot != last && *knot < high; ++knot) {
      if (*knot > previous) breaks.push_back(*knot);
      previous = *knot;
    }
  }

 private:
  using Basis = std::array<double, kMostDegree + 1>;

  Point GetPole(std::size_t i) const {
    const Point& pole = _poles[i];
    if (_weights.empty()) return pole;
    return {pole.x / _weights[i], pole.y / _weights[i], pole.z / _weights[i]};
  }

  // The span of the knots [i, i + 1) in which a parameter of the range is.
  std::size_t FindSpan(double t) const {
    if (!(t < GetHigh())) return _lastSpan;
    const auto begin = _knots.begin() + static_cast<std::ptrdiff_t>(_degree) + 1;
    const auto end = _knots.begin() + static_cast<std::ptrdiff_t>(_poles.size());
    return static_cast<std::size_t>(std::upper_bound(begin, end, t) - _knots.begin()) - 1;
  }

  // One step of the recurrence of Cox and de Boor, in place. No term is negative, so nothing is
  // lost whatever the degree and the multiplicities.
  void RaiseBasis(std::size_t span, double t, std::size_t degree, Basis& basis) const {
    double saved = 0.0;
    for (std::size_t r = 0; r < degree; ++r) {
      const double right = _knots[span + 1 + r];
      const double left = _knots[span + 1 + r - degree];
      const double term = basis[r] / (right - left);
      basis[r] = saved + (right - t) * term;
      saved = (t - left) * term;
    }
    basis[degree] = saved;
  }

  void FillBasis(std::size_t span, double t, std::size_t degree, Basis& basis) const {
    basis[0] = 1.0;
    for (std::size_t i = 1; i <= degree; ++i) RaiseBasis(span, t, i, basis);
  }

  double BoundSquaredDistance(std::size_t span, const Point& point) const {
    Point lowest = GetPole(span - _degree);
    Point highest = lowest;
    for (std::size_t i = span - _degree + 1; i <= span; ++i) {
      const Point pole = GetPole(i);
      lowest = {std::min(lowest.x, pole.x), std::min(lowest.y, pole.y), std::min(lowest.z, pole.z)};
      highest = {std::max(highest.x, pole.x), std::max(highest.y, pole.y),
                 std::max(highest.z, pole.z)};
    }
    const Point nearest{std::clamp(point.x, lowest.x, highest.x),
                        std::clamp(point.y, lowest.y, highest.y),
                        std::clamp(point.z, lowest.z, highest.z)};
    return squaredDistance(point, nearest);
  }

  void SearchSpan(std::size_t span, int intervals, const Point& point, Nearest& nearest) const {
    findNearest(*this, _knots[span], _knots[span + 1], intervals, point, nearest);
  }

  std::size_t _degree;
  std::vector<Point> _poles;
  std::vector<double> _weights;
  std::vector<double> _knots;
  std::size_t _lastSpan = 0;
  double _size = 0.0;
  Point _first{};
  Point _last{};
};

}  // namespace

SpaceCurveHandle makeBSpline(int degree, std::vector<Point> poles, std::vector<double> weights,
                             std::vector<double> knots) {
  if (degree < 1 || degree > kMostDegree || poles.size() <= static_cast<std::size_t>(degree) ||
      knots.size() != poles.size() + static_cast<std::size_t>(degree) + 1 ||
      (!weights.empty() && weights.size() != poles.size())) {
    return nullptr;
  }
  for (const Point& pole : poles) {
    if (!isFinite(pole)) return nullptr;
  }
  for (std::size_t i = 0; i < knots.size(); ++i) {
    if (!std::isfinite(knots[i]) || (i > 0 && knots[i] < knots[i - 1])) return nullptr;
  }
  const double low = knots[static_cast<std::size_t>(degree)];
  const double range = knots[poles.size()] - low;
  if (!(range > 0.0) || !std::isfinite(knots.back() - knots.front())) return nullptr;
  // Knots that differ by rounding are one.
  const double margin = 1e-12 * std::max(range, std::fabs(low));
  for (std::size_t i = 1; i < knots.size(); ++i) {
    if (knots[i] - knots[i - 1] < margin) knots[i] = knots[i - 1];
  }
  if (!(knots[poles.size()] > knots[static_cast<std::size_t>(degree)])) return nullptr;

  double least = std::numeric_limits<double>::infinity();
  double greatest = 0.0;
  for (const double weight : weights) {
    if (!(weight > 0.0) || !std::isfinite(weight)) return nullptr;
    least = std::min(least, weight);
    greatest = std::max(greatest, weight);
  }
  if (least >= greatest) weights.clear();
  for (std::size_t i = 0; i < weights.size(); ++i) {
    weights[i] /= greatest;
    if (!(weights[i] > 0.0)) return nullptr;
    poles[i] = weights[i] * poles[i];
  }
  return std::make_shared<BSpline>(degree, std::move(poles), std::move(weights), std::move(knots));
}

std::vector<double> makeUniformKnots(int degree, int poles) {
  std::vector<double> knots;
  if (degree < 1 || poles <= degree) return knots;
  for (long long i = -static_cast<long long>(degree); i <= poles; ++i) {
    knots.push_back(static_cast<double>(i));
  }
  return knots;
}

std::vector<double> makeQuasiUniformKnots(int degree, int poles) {
  std::vector<double> knots = makeUniformKnots(degree, poles);
  for (double& knot : knots) knot = std::clamp(knot, 0.0, static_cast<double>(poles - degree));
  return knots;
}

std::vector<double> makeBezierKnots(int degree, int poles) {
  std::vector<double> knots;
  if (degree < 1 || poles <= degree || (poles - 1) % degree != 0) return knots;
  knots.push_back(0.0);
  for (int piece = 0; piece <= (poles - 1) / degree; ++piece) {
    knots.insert(knots.end(), static_cast<std::size_t>(degree), piece);
  }
  knots.push_back(knots.back());
  return knots;
}

}  // namespace kova::translators::step
