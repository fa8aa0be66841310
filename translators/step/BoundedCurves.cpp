#include "translators/step/CurveTools.h"
#include "translators/step/Curves.h"

#include <utility>

namespace kova::translators::step {

using namespace curves;

namespace {

constexpr int kMostDepth = 32;
constexpr int kMostPieces = 200000;
// Composites in composites double with every level, whatever the size of the file.
constexpr int kMostNestedPieces = 10000;

class Polyline final : public BoundedCurve {
 public:
  explicit Polyline(std::vector<Point> points)
      : BoundedCurve(0.0, static_cast<double>(points.size() - 1)), _points(std::move(points)) {
    double size = 0.0;
    for (const Point& point : _points) size = std::max(size, distance(point, _points[0]));
    Close(size);
  }

  Point Evaluate(double parameter) const override {
    const double t = Wrap(parameter);
    const std::size_t i = FindPiece(t);
    const double along = t - static_cast<double>(i);
    // Corners are exactly what the file says.
    if (along == 1.0) return _points[i + 1];
    return _points[i] + along * (_points[i + 1] - _points[i]);
  }
  Point EvaluateDerivative(double parameter) const override {
    const std::size_t i = FindPiece(Wrap(parameter));
    return _points[i + 1] - _points[i];
  }
  double FindParameter(const Point& point) const override {
    Nearest nearest;
    for (std::size_t i = 0; i + 1 < _points.size(); ++i) {
      const Point step = _points[i + 1] - _points[i];
      const double squared = dot(step, step);
      const double along =
          squared > 0.0 ? std::clamp(dot(point - _points[i], step) / squared, 0.0, 1.0) : 0.0;
      nearest.Take(static_cast<double>(i) + along,
                   squaredDistance(point, _points[i] + along * step));
    }
    return LeaveSeam(nearest.parameter);
  }
  double Measure(double low, double high) const override {
    return (high - low) * length(EvaluateDerivative(low + 0.5 * (high - low)));
  }
  void AddPoints(double, double, const ChainLimits&, std::vector<Point>&) const override {}
  int CountPieces() const override {
    return static_cast<int>(std::min<std::size_t>(_points.size() - 1, kMostPieces + 1));
  }

 protected:
  void AddOwnBreaks(double low, double high, std::vector<double>& breaks) const override {
    for (double corner = std::floor(low) + 1.0; corner < high; corner += 1.0) {
      breaks.push_back(corner);
    }
  }

 private:
  std::size_t FindPiece(double t) const {
    const std::size_t last = _points.size() - 2;
    return t > 0.0 ? std::min(static_cast<std::size_t>(t), last) : 0;
  }

  std::vector<Point> _points;
};

class Trimmed final : public BoundedCurve {
 public:
  Trimmed(SpaceCurveHandle basis, double start, double direction, double span)
      : BoundedCurve(0.0, span), _basis(std::move(basis)), _start(start), _direction(direction) {
    Close(length(Evaluate(0.5 * span) - Evaluate(0.0)));
  }

  const SpaceCurveHandle& GetBasis() const { return _basis; }
  double GetDirection() const { return _direction; }
  double ToBasis(double parameter) const { return _start + _direction * parameter; }

  Point Evaluate(double parameter) const override {
    return _basis->Evaluate(ToBasis(Wrap(parameter)));
  }
  Point EvaluateDerivative(double parameter) const override {
    return _direction * _basis->EvaluateDerivative(ToBasis(Wrap(parameter)));
  }
  double FindParameter(const Point& point) const override {
    double t = (_basis->FindParameter(point) - _start) * _direction;
    if (_basis->IsPeriodic()) {
      const double period = _basis->GetHigh() - _basis->GetLow();
      t -= std::floor(t / period) * period;
    }
    if (t >= 0.0 && t <= GetHigh()) return LeaveSeam(t);
    // An end, but for rounding.
    const double margin = 1e-12 * (std::fabs(_start) + GetHigh());
    if (_basis->IsPeriodic() && _basis->GetHigh() - _basis->GetLow() - t <= margin) return 0.0;
    if (std::fabs(t) <= margin) return 0.0;
    if (std::fabs(t - GetHigh()) <= margin) return LeaveSeam(GetHigh());
    // The basis is nearest outside the piece.
    Nearest nearest;
    std::vector<double> breaks;
    AddBreaks(0.0, GetHigh(), breaks);
    breaks.push_back(GetHigh());
    double low = 0.0;
    for (const double high : breaks) {
      findNearest(*this, low, high, 12 * _basis->GetParts(), point, nearest);
      low = high;
    }
    return LeaveSeam(nearest.parameter);
  }
  double Measure(double low, double high) const override {
    const auto [a, b] = OnBasis(low, high);
    return _basis->Measure(a, b);
  }
  void AddPoints(double low, double high, const ChainLimits& limits,
                 std::vector<Point>& points) const override {
    const auto before = static_cast<std::ptrdiff_t>(points.size());
    const auto [a, b] = OnBasis(low, high);
    _basis->AddPoints(a, b, limits, points);
    if (_direction < 0.0) std::reverse(points.begin() + before, points.end());
  }
  int GetParts() const override { return _basis->GetParts(); }
  int CountPieces() const override { return _basis->CountPieces(); }
  int GetDepth() const override { return _basis->GetDepth(); }

 protected:
  void AddOwnBreaks(double low, double high, std::vector<double>& breaks) const override {
    const auto before = static_cast<std::ptrdiff_t>(breaks.size());
    const auto [a, b] = OnBasis(low, high);
    _basis->AddBreaks(a, b, breaks);
    for (auto i = breaks.begin() + before; i != breaks.end(); ++i) {
      *i = (*i - _start) * _direction;
    }
    if (_direction < 0.0) std::reverse(breaks.begin() + before, breaks.end());
  }

 private:
  std::pair<double, double> OnBasis(double low, double high) const {
    return std::minmax({ToBasis(low), ToBasis(high)});
  }

  SpaceCurveHandle _basis;
  double _start;
  double _direction;
};

class Composite final : public BoundedCurve {
 public:
  explicit Composite(std::vector<Segment> segments)
      : BoundedCurve(0.0, static_cast<double>(segments.size())), _segments(std::move(segments)) {
    long long pieces = 0;
    double size = 0.0;
    const Point first = Evaluate(0.0);
    for (std::size_t i = 0; i < _segments.size(); ++i) {
      pieces += _segments[i].curve->CountPieces();
      _depth = std::max(_depth, _segments[i].curve->GetDepth() + 1);
      size = std::max(size, distance(Evaluate(static_cast<double>(i) + 0.5), first));
    }
    _pieces = static_cast<int>(std::min<long long>(pieces, kMostPieces + 1));
    Close(size);
  }

  Point Evaluate(double parameter) const override {
    const double t = Wrap(parameter);
    const std::size_t i = FindSegment(t);
    return _segments[i].curve->Evaluate(ToSegment(i, t));
  }
  Point EvaluateDerivative(double parameter) const override {
    const double t = Wrap(parameter);
    const std::size_t i = FindSegment(t);
    const SpaceCurve& curve = *_segments[i].curve;
    const double range = curve.GetHigh() - curve.GetLow();
    return (_segments[i].isForward ? range : -range) * curve.EvaluateDerivative(ToSegment(i, t));
  }
  double FindParameter(const Point& point) const override {
    Nearest nearest;
    for (std::size_t i = 0; i < _segments.size(); ++i) {
      const SpaceCurve& curve = *_segments[i].curve;
      const double parameter = curve.FindParameter(point);
      nearest.Take(FromSegment(i, parameter), squaredDistance(curve.Evaluate(parameter), point));
    }
    return LeaveSeam(nearest.parameter);
  }
  double Measure(double low, double high) const override {
    const std::size_t i = FindPiece(low, high);
    const auto [a, b] = OnSegment(i, low, high);
    return _segments[i].curve->Measure(a, b);
  }
  void AddPoints(double low, double high, const ChainLimits& limits,
                 std::vector<Point>& points) const override {
    const auto before = static_cast<std::ptrdiff_t>(points.size());
    const std::size_t i = FindPiece(low, high);
    const auto [a, b] = OnSegment(i, low, high);
    _segments[i].curve->AddPoints(a, b, limits, points);
    if (!_segments[i].isForward) std::reverse(points.begin() + before, points.end());
  }
  int GetParts() const override {
    int parts = 1;
    for (const Segment& segment : _segments) parts = std::max(parts, segment.curve->GetParts());
    return parts;
  }
  int CountPieces() const override { return _pieces; }
  int GetDepth() const override { return _depth; }

 protected:
  void AddOwnBreaks(double low, double high, std::vector<double>& breaks) const override {
    for (double start = std::floor(low); start < high; start += 1.0) {
      const std::size_t i = FindSegment(start);
      const auto before = static_cast<std::ptrdiff_t>(breaks.size());
      const auto [a, b] = OnSegment(i, std::max(low, start), std::min(high, start + 1.0));
      _segments[i].curve->AddBreaks(a, b, breaks);
      for (auto j = breaks.begin() + before; j != breaks.end(); ++j) *j = FromSegment(i, *j);
      if (!_segments[i].isForward) std::reverse(breaks.begin() + before, breaks.end());
      if (start + 1.0 < high) breaks.push_back(start + 1.0);
    }
  }

 private:
  std::size_t FindSegment(double t) const {
    const std::size_t last = _segments.size() - 1;
    return t > 0.0 ? std::min(static_cast<std::size_t>(t), last) : 0;
  }
  std::size_t FindPiece(double low, double high) const {
    return FindSegment(Wrap(low + 0.5 * (high - low)));
  }
  double ToSegment(std::size_t i, double t) const {
    const SpaceCurve& curve = *_segments[i].curve;
    const double along = std::clamp(t - static_cast<double>(i), 0.0, 1.0);
    const double low = curve.GetLow();
    const double high = curve.GetHigh();
    if (along == 1.0) return _segments[i].isForward ? high : low;
    return _segments[i].isForward ? low + along * (high - low) : high - along * (high - low);
  }
  double FromSegment(std::size_t i, double parameter) const {
    const SpaceCurve& curve = *_segments[i].curve;
    const double along = (parameter - curve.GetLow()) / (curve.GetHigh() - curve.GetLow());
    return static_cast<double>(i) + (_segments[i].isForward ? along : 1.0 - along);
  }
  // The piece may lie beyond the seam; it is within one segment all the same.
  std::pair<double, double> OnSegment(std::size_t i, double low, double high) const {
    const double middle = low + 0.5 * (high - low);
    const double turn = middle - Wrap(middle);
    return std::minmax({ToSegment(i, low - turn), ToSegment(i, high - turn)});
  }

  std::vector<Segment> _segments;
  int _depth = 1;
  int _pieces = 0;
};

}  // namespace

void BoundedCurve::Close(double size) {
  _isClosed = distance(Evaluate(_low), Evaluate(_high)) <= 1e-7 * size;
}

double BoundedCurve::Wrap(double parameter) const {
  if (parameter >= _low && parameter <= _high) return parameter;
  if (!_isClosed) return parameter < _low ? _low : _high;
  const double period = _high - _low;
  const double turns = std::floor((parameter - _low) / period);
  return std::clamp(parameter - turns * period, _low, _high);
}

double BoundedCurve::LeaveSeam(double parameter) const {
  return _isClosed && _high - parameter <= 1e-12 * (_high - _low) ? _low : parameter;
}

void BoundedCurve::AddBreaks(double low, double high, std::vector<double>& breaks) const {
  if (!_isClosed || (low >= _low && high <= _high)) {
    AddOwnBreaks(std::max(low, _low), std::min(high, _high), breaks);
    return;
  }
  const double period = _high - _low;
  const double firstTurn = std::floor((low - _low) / period);
  // Chains go around once at most, which touches three turns.
  std::vector<double> own;
  for (int i = 0; i < 3; ++i) {
    const double shift = (firstTurn + i) * period;
    const double start = _low + shift;
    if (start >= high) break;
    if (start > low) breaks.push_back(start);
    own.clear();
    AddOwnBreaks(std::max(low - shift, _low), std::min(high - shift, _high), own);
    for (const double parameter : own) breaks.push_back(parameter + shift);
  }
}

SpaceCurveHandle makePolyline(std::vector<Point> points) {
  bool isPoint = true;
  for (const Point& point : points) {
    if (!isFinite(point)) return nullptr;
    isPoint = isPoint && point == points[0];
  }
  if (isPoint) return nullptr;
  return std::make_shared<Polyline>(std::move(points));
}

SpaceCurveHandle makeTrimmed(SpaceCurveHandle basis, double from, double to, bool isForward) {
  if (!basis || !std::isfinite(from) || !std::isfinite(to)) return nullptr;
  double direction = isForward ? 1.0 : -1.0;
  double span = direction * (to - from);
  if (basis->IsPeriodic()) {
    const double period = basis->GetHigh() - basis->GetLow();
    span -= std::floor(span / period) * period;
    if (!(span > 1e-12 * period && span < (1.0 - 1e-12) * period)) span = period;
    from -= std::floor((from - basis->GetLow()) / period) * period;
  } else {
    from = std::clamp(from, basis->GetLow(), basis->GetHigh());
    to = std::clamp(to, basis->GetLow(), basis->GetHigh());
    // The parameters tell the direction.
    direction = to < from ? -1.0 : 1.0;
    span = std::fabs(to - from);
  }
  if (!(span > 0.0) || !std::isfinite(span)) return nullptr;
  if (const auto* inner = dynamic_cast<const Trimmed*>(basis.get())) {
    from = inner->ToBasis(from);
    direction *= inner->GetDirection();
    basis = SpaceCurveHandle(inner->GetBasis());
  }
  return std::make_shared<Trimmed>(std::move(basis), from, direction, span);
}

SpaceCurveHandle makeComposite(std::vector<Segment> segments) {
  if (segments.empty()) return nullptr;
  for (const Segment& segment : segments) {
    if (!segment.curve || segment.curve->GetDepth() >= kMostDepth ||
        !std::isfinite(segment.curve->GetLow()) || !std::isfinite(segment.curve->GetHigh())) {
      return nullptr;
    }
  }
  auto composite = std::make_shared<Composite>(std::move(segments));
  const int most = composite->GetDepth() > 1 ? kMostNestedPieces : kMostPieces;
  if (composite->CountPieces() > most) return nullptr;
  return composite;
}

}  // namespace kova::translators::step
