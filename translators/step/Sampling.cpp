#include "translators/step/CurveTools.h"
#include "translators/step/Curves.h"

#include <array>
#include <numbers>
#include <utility>

namespace kova::translators::step {

using namespace curves;

namespace {

// A piece of a curve with the five points that tell how far it is from its chord.
struct Stretch {
  double low;
  double high;
  std::array<Point, 5> points;

  double At(int quarter) const { return low + 0.25 * quarter * (high - low); }
};

double squaredDistanceToChord(const Point& point, const Point& start, const Point& end) {
  const Point chord = end - start;
  const Point offset = point - start;
  const double along = dot(offset, chord);
  const double squaredChord = dot(chord, chord);
  if (!(along > 0.0) || !(squaredChord > 0.0)) return dot(offset, offset);
  if (along >= squaredChord) return squaredDistance(point, end);
  return squaredDistance(offset, (along / squaredChord) * chord);
}

bool keepsWithin(const Stretch& stretch, const ChainLimits& limits) {
  const auto& points = stretch.points;
  std::array<double, 3> squared;
  for (std::size_t i = 0; i < 3; ++i) {
    squared[i] = squaredDistanceToChord(points[i + 1], points[0], points[4]);
  }
  const auto [least, greatest] = std::minmax(squared[0], squared[2]);
  // An even arc is farthest in the middle. Otherwise the farthest point may be between the samples.
  const bool isEven = least > 0.4 * squared[1] && greatest < 0.75 * squared[1];
  const double most = limits.tolerance * limits.tolerance * (isEven ? 1.0 : 0.36);
  if (std::max(squared[1], greatest) > most) return false;
  // Three of the four quarters of the turn are seen. A cusp turns at once however close one looks:
  // what is tiny beside the tolerance may turn as it likes.
  std::array<Point, 4> steps;
  double way = 0.0;
  for (std::size_t i = 0; i < 4; ++i) {
    steps[i] = points[i + 1] - points[i];
    way += std::sqrt(dot(steps[i], steps[i]));
  }
  if (way < 1e-3 * limits.tolerance) return true;
  double turn = 0.0;
  for (std::size_t i = 0; i < 3; ++i) {
    const Point across = cross(steps[i], steps[i + 1]);
    const double sine = std::sqrt(dot(across, across));
    const double cosine = dot(steps[i], steps[i + 1]);
    // The tangent is a bound for small angles, and cheap.
    turn += cosine > 0.0 && sine < 0.1 * cosine ? sine / cosine : std::atan2(sine, cosine);
  }
  return !(turn > 0.75 * limits.angle);
}

ChainLimits makeSound(ChainLimits limits) {
  if (!(limits.tolerance > 0.0)) limits.tolerance = std::numeric_limits<double>::min();
  if (!(limits.angle > 0.0)) limits.angle = std::numbers::pi;
  limits.angle = std::max(limits.angle, 1e-4);
  limits.mostPoints = std::max(limits.mostPoints, 2);
  return limits;
}

// Drops breaks that are next to an end or to each other, and what is out of order.
void clean(std::vector<double>& breaks, double low, double high) {
  const double margin = 1e-12 * std::max({std::fabs(low), std::fabs(high), high - low});
  double last = low;
  std::erase_if(breaks, [&](double parameter) {
    const bool isClose = !(parameter - last > margin && high - parameter > margin);
    if (!isClose) last = parameter;
    return isClose;
  });
}

}  // namespace

void SpaceCurve::AddBreaks(double, double, std::vector<double>&) const {}

double SpaceCurve::Measure(double low, double high) const {
  // Gauss's rule with three nodes inside Kronrod's with seven. Where the two agree, the latter
  // is right to far more digits; where the speed has a kink, the piece shrinks to nothing.
  constexpr std::array<double, 3> kNodes{0.434243749346802558002, 0.774596669241483377036,
                                         0.960491268708020283424};
  constexpr std::array<double, 3> kWeights{0.401397414775962222905, 0.268488089868333440729,
                                           0.104656226026467265194};
  constexpr double kMiddleWeight = 0.450916538658474142345;
  constexpr int kMostDepth = 48;
  const int parts = GetParts();
  int budget = 256 + parts;
  double total = 0.0;
  for (int part = 0; part < parts; ++part) {
    std::array<std::pair<double, double>, kMostDepth + 2> pending;
    std::size_t count = 1;
    pending[0] = {low + (high - low) * part / parts, low + (high - low) * (part + 1) / parts};
    double scale = -1.0;
    while (count > 0) {
      const auto [start, end] = pending[--count];
      const double middle = start + 0.5 * (end - start);
      const double half = 0.5 * (end - start);
      const auto speed = [&](double at) {
        const Point derivative = EvaluateDerivative(middle + half * at);
        return std::sqrt(dot(derivative, derivative));
      };
      const double central = speed(0.0);
      std::array<double, 3> sums;
      for (std::size_t i = 0; i < 3; ++i) sums[i] = speed(-kNodes[i]) + speed(kNodes[i]);
      const double gauss = half * (8.0 * central + 5.0 * sums[1]) / 9.0;
      double kronrod = kMiddleWeight * central;
      for (std::size_t i = 0; i < 3; ++i) kronrod += kWeights[i] * sums[i];
      kronrod *= half;
      if (scale < 0.0) scale = kronrod;
      const double error = std::fabs(gauss - kronrod);
      if (error > 5e-7 * kronrod && error > 1e-9 * scale && count < kMostDepth && --budget > 0) {
        pending[count++] = {middle, end};
        pending[count++] = {start, middle};
      } else {
        total += kronrod;
      }
    }
  }
  return total;
}

void SpaceCurve::AddPoints(double low, double high, const ChainLimits& limits,
                           std::vector<Point>& points) const {
  const int parts = std::min(GetParts(), limits.mostPoints + 1);
  if (parts < 1) return;
  const auto makeStretch = [this](double start, const Point& first, double end, const Point& middle,
                                  const Point& last) {
    Stretch stretch{start, end, {first, {}, middle, {}, last}};
    stretch.points[1] = Evaluate(stretch.At(1));
    stretch.points[3] = Evaluate(stretch.At(3));
    return stretch;
  };
  const auto makeFresh = [&](double start, const Point& first, double end) {
    return makeStretch(start, first, end, Evaluate(start + 0.5 * (end - start)), Evaluate(end));
  };
  const Stretch whole = makeFresh(low, Evaluate(low), high);
  if (parts == 1 && (limits.mostPoints < 1 || keepsWithin(whole, limits))) return;

  // Level by level, so that few points are spread over the whole piece.
  std::vector<Stretch> active;
  std::vector<Stretch> next;
  std::vector<std::pair<double, Point>> ends;
  if (parts == 1) {
    active.push_back(whole);
  } else {
    Point first = whole.points[0];
    for (int part = 0; part < parts; ++part) {
      active.push_back(makeFresh(low + (high - low) * part / parts, first,
                                 low + (high - low) * (part + 1) / parts));
      first = active.back().points[4];
    }
  }
  int count = parts - 1;
  constexpr int kMostLevels = 48;
  for (int level = 0; !active.empty(); ++level) {
    next.clear();
    for (const Stretch& stretch : active) {
      if (level == kMostLevels || count >= limits.mostPoints || keepsWithin(stretch, limits)) {
        ends.emplace_back(stretch.high, stretch.points[4]);
        continue;
      }
      ++count;
      const auto& p = stretch.points;
      const double middle = stretch.At(2);
      next.push_back(makeStretch(stretch.low, p[0], middle, p[1], p[2]));
      next.push_back(makeStretch(middle, p[2], stretch.high, p[3], p[4]));
    }
    active.swap(next);
  }
  const auto isLess = [](const auto& a, const auto& b) { return a.first < b.first; };
  if (!std::is_sorted(ends.begin(), ends.end(), isLess)) {
    std::sort(ends.begin(), ends.end(), isLess);
  }
  ends.pop_back();
  for (const auto& end : ends) points.push_back(end.second);
}

void curves::findNearest(const SpaceCurve& curve, double low, double high, int intervals,
                         const Point& point, Nearest& nearest) {
  // Half the slope of the squared distance, and its slope as Gauss and Newton estimate it.
  const auto slopeAt = [&](double parameter, double& growth) {
    const Point derivative = curve.EvaluateDerivative(parameter);
    const Point offset = curve.Evaluate(parameter) - point;
    nearest.Take(parameter, dot(offset, offset));
    growth = dot(derivative, derivative);
    return dot(offset, derivative);
  };
  nearest.Take(low, squaredDistance(curve.Evaluate(low), point));
  nearest.Take(high, squaredDistance(curve.Evaluate(high), point));
  // A little inside, because the curve may have corners at its ends.
  const double inset = 1e-9 * (high - low);
  double growth = 0.0;
  double start = low + inset;
  double startSlope = slopeAt(start, growth);
  for (int i = 1; i <= intervals; ++i) {
    const double end = i == intervals ? high - inset : low + (high - low) * i / intervals;
    const double endSlope = slopeAt(end, growth);
    // At a cusp the slope is 0 between two that are not.
    if (startSlope <= 0.0 && endSlope >= 0.0 && startSlope < endSlope) {
      const double along = startSlope / (startSlope - endSlope);
      const bool isInside = along > 0.0 && along < 1.0;
      findRoot(start, end, start + (isInside ? along : 0.5) * (end - start), slopeAt);
    }
    start = end;
    startSlope = endSlope;
  }
}

bool sample(const SpaceCurve& curve, double from, double to, const ChainLimits& asked,
            Chain& chain) {
  chain.points.clear();
  chain.length = 0.0;
  if (!std::isfinite(from) || !std::isfinite(to)) return false;
  ChainLimits limits = makeSound(asked);
  if (curve.IsPeriodic()) {
    const double period = curve.GetHigh() - curve.GetLow();
    to = std::clamp(to, from - period, from + period);
  }
  const double low = std::min(from, to);
  const double high = std::max(from, to);
  std::vector<double> breaks;
  breaks.reserve(8);
  curve.AddBreaks(low, high, breaks);
  clean(breaks, low, high);

  // Breaks come first; what is left for other points is shared out evenly.
  const std::size_t most = static_cast<std::size_t>(limits.mostPoints) - 2;
  std::size_t spare = most - std::min(most, breaks.size());
  chain.points.push_back(curve.Evaluate(low));
  double start = low;
  for (std::size_t i = 0; i <= breaks.size(); ++i) {
    const double end = i < breaks.size() ? breaks[i] : high;
    if (end > start) {
      chain.length += curve.Measure(start, end);
      limits.mostPoints = static_cast<int>(spare / (breaks.size() + 1 - i));
      if (limits.mostPoints > 0) {
        const std::size_t before = chain.points.size();
        curve.AddPoints(start, end, limits, chain.points);
        spare -= std::min(spare, chain.points.size() - before);
      }
    }
    const bool isKept =
        i == breaks.size() || breaks.size() <= most ||
        (i + 1) * (most + 1) / (breaks.size() + 1) != i * (most + 1) / (breaks.size() + 1);
    if (isKept) chain.points.push_back(curve.Evaluate(end));
    start = end;
  }
  if (to < from) std::reverse(chain.points.begin(), chain.points.end());
  return std::isfinite(chain.length) &&
         std::all_of(chain.points.begin(), chain.points.end(),
                     [](const Point& point) { return isFinite(point); });
}

bool sampleEdge(const SpaceCurve& curve, const Point& start, const Point& end, bool isForward,
                const ChainLimits& limits, Chain& chain) {
  chain.points.clear();
  chain.length = 0.0;
  if (!isFinite(start) || !isFinite(end)) return false;
  double from = curve.FindParameter(start);
  double to = start == end ? from : curve.FindParameter(end);
  const double low = curve.GetLow();
  const double high = curve.GetHigh();
  const double gap = distance(start, end);
  const double meeting = 1e-4 * limits.tolerance;
  if (curve.IsPeriodic() && std::isfinite(from) && std::isfinite(to)) {
    const double period = high - low;
    const double margin = 1e-9 * period;
    const double speed = length(curve.EvaluateDerivative(from));
    double span = isForward ? to - from : from - to;
    if (span < 0.0) span += period;
    if (gap <= std::min(meeting, 1e-6 * period * speed) || span < margin) span = period;
    if (from - low < margin || high - from < margin) {
      from = isForward ? low : high;
    } else if (!isForward && from - span < low - margin && from + margin >= high) {
      from = high;
    }
    to = isForward ? from + span : from - span;
  } else if (std::isfinite(low) && std::isfinite(high)) {
    // Ends that meet within the tolerance alone: a vertex there may mean either.
    const Point first = curve.Evaluate(low);
    const Point last = curve.Evaluate(high);
    if (distance(first, last) <= limits.tolerance) {
      if (gap <= meeting && distance(first, start) <= limits.tolerance) {
        from = isForward ? low : high;
        to = isForward ? high : low;
      } else if (to != from && (to > from) != isForward) {
        if (distance(first, start) <= limits.tolerance) from = isForward ? low : high;
        if (distance(first, end) <= limits.tolerance) to = isForward ? high : low;
      }
    }
  }
  if (!sample(curve, from, to, limits, chain)) return false;
  chain.points.front() = start;
  chain.points.back() = end;
  return true;
}

}  // namespace kova::translators::step
