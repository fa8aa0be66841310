#include "kovabase/geometry/Gk_Domain.h"

#include "kovabase/geometry/Gk_Def.h"
#include "kovabase/geometry/Gk_Func.h"
#include "kovabase/io/KOVAStreamFormatter.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace {

/// The remainder of from - to, which may overflow, by the period. `from` is not below `to`.
double remainderOfDifference(double from, double to, double period) {
  const double difference = from - to;
  if (std::isfinite(difference)) return std::fmod(difference, period);
  // Halves are exact here: values whose difference overflows are far above the denormal ones, and
  // so is the distance of two different ends among them.
  return 2.0 * std::fmod(0.5 * from - 0.5 * to, 0.5 * period);
}

}  // namespace

void Gk_Domain::swapEnds() {
  std::swap(_low, _high);
  const int below = isBoundedBelow() ? kBoundedAbove : 0;
  const int above = isBoundedAbove() ? kBoundedBelow : 0;
  _endCondition = static_cast<EndCondn>(below | above);
}

Gk_Domain Gk_Domain::operator-() const {
  Gk_Domain mirrored(_endCondition, -_low, -_high, _tolerance);
  mirrored.swapEnds();
  return mirrored;
}

bool Gk_Domain::isDegenerate() const { return isFinite() && std::fabs(_high - _low) < _tolerance; }

bool Gk_Domain::isContained(double x) const {
  return (!isBoundedBelow() || Gk_Func::lesseq(_low, x, _tolerance)) &&
         (!isBoundedAbove() || Gk_Func::lesseq(x, _high, _tolerance));
}

bool Gk_Domain::isInside(double x) const {
  return (!isBoundedBelow() || (x > _low && !isLow(x))) &&
         (!isBoundedAbove() || (x < _high && !isHigh(x)));
}

bool Gk_Domain::isContained(const Gk_Domain& other) const {
  return (other.isBoundedBelow() ? isContained(other._low) : !isBoundedBelow()) &&
         (other.isBoundedAbove() ? isContained(other._high) : !isBoundedAbove());
}

bool Gk_Domain::isInside(const Gk_Domain& other) const {
  return (other.isBoundedBelow() ? isInside(other._low) : !isBoundedBelow()) &&
         (other.isBoundedAbove() ? isInside(other._high) : !isBoundedAbove());
}

bool Gk_Domain::isLow(double x) const { return Gk_Func::equal(x, _low, _tolerance); }

bool Gk_Domain::isHigh(double x) const { return Gk_Func::equal(x, _high, _tolerance); }

bool Gk_Domain::isBoundary(double x) const { return isLow(x) || isHigh(x); }

bool Gk_Domain::isBelow(double x) const { return _low > x + _tolerance; }

bool Gk_Domain::isAbove(double x) const { return x > _high + _tolerance; }

bool Gk_Domain::isSame(const Gk_Domain& other, double tolerance) const {
  if (tolerance == -1.0) tolerance = _tolerance;
  return _endCondition == other._endCondition &&
         (!isBoundedBelow() || Gk_Func::equal(_low, other._low, tolerance)) &&
         (!isBoundedAbove() || Gk_Func::equal(_high, other._high, tolerance));
}

bool Gk_Domain::expand(double distance) {
  if (isBoundedBelow()) _low -= distance;
  if (isBoundedAbove()) _high += distance;
  return true;
}

bool Gk_Domain::extend(double x) {
  if (std::isnan(x)) return false;
  if (_endCondition == kUnbounded) {
    _low = _high = x;
    _endCondition = kBounded;
    return true;
  }
  if (isContained(x)) return false;
  if (isBoundedBelow() && _low > x) _low = x;
  if (isBoundedAbove() && x > _high) _high = x;
  return true;
}

bool Gk_Domain::extend(const Gk_Domain& other) {
  const Gk_Domain source(other);  // it may be this domain
  bool isChanged = source.isBoundedBelow() && extend(source._low);
  if (source.isBoundedAbove() && extend(source._high)) isChanged = true;
  // Opened last: a number would make a domain that is open at both ends finite again.
  const int kept = _endCondition & source._endCondition;
  if (kept != _endCondition) isChanged = true;
  _endCondition = static_cast<EndCondn>(kept);
  return isChanged;
}

Gk_Domain Gk_Domain::intersection(const Gk_Domain& other) const {
  const double tolerance = std::fmax(_tolerance, other._tolerance);
  const EndCondn ends = static_cast<EndCondn>(_endCondition | other._endCondition);
  double low = isBoundedBelow() ? _low : other._low;
  double high = isBoundedAbove() ? _high : other._high;
  if (isBoundedBelow() == other.isBoundedBelow()) low = std::fmax(_low, other._low);
  if (isBoundedAbove() == other.isBoundedAbove()) high = std::fmin(_high, other._high);
  if (ends == kBounded && low > high && Gk_Func::lesseq(low, high, tolerance)) {
    low = high = std::midpoint(low, high);
  }
  return Gk_Domain(ends, low, high, tolerance);
}

double Gk_Domain::stick(double x) const {
  if (isLow(x) || x < _low) return _low;
  if (isHigh(x) || x > _high) return _high;
  return x;
}

double Gk_Domain::principalParam(double t) const {
  if (!isFinite() || !std::isfinite(t)) return t;
  const auto [low, high] = std::minmax(_low, _high);
  if (!std::isfinite(low) || !std::isfinite(high)) return std::fmin(std::fmax(t, low), high);
  const double period = high - low;
  if (period == 0.0) return low;

  // Subtracting or adding the period in a loop would take as long as the parameter is far away, and
  // for ever where the period is below its last place. The rest is below the period, which is the
  // true length rounded, so that the rest is not above the true length and no end is passed.
  if (t > high) {
    const double rest = remainderOfDifference(t, high, period);
    return rest == 0.0 ? high : low + rest;
  }
  if (!Gk_Func::lesseq(low, t, Gk_Def::FuzzReal)) {
    const double rest = remainderOfDifference(low, t, period);
    return rest <= Gk_Def::FuzzReal ? low : high - rest;
  }
  return std::fmax(t, low);
}

Gk_LinMap Gk_Domain::mapTo(const Gk_Domain& other) const {
  const double length = std::fabs(_high - _low);
  if (length == 0.0) return Gk_LinMap(0.0, other._low);
  const double scale = std::fabs(other._high - other._low) / length;
  return Gk_LinMap(scale, other._low - _low * scale);
}

void Gk_Domain::apply(const Gk_LinMap& map) {
  _low = map(_low);
  _high = map(_high);
  if (map.isReversed()) swapEnds();
}

void Gk_Domain::dump(KOVAStreamFormatter& formatter) const {
  if (isBoundedBelow()) {
    formatter << '[' << _low;
  } else {
    formatter << "(-inf";
  }
  formatter << ", ";
  if (isBoundedAbove()) {
    formatter << _high << ']';
  } else {
    formatter << "inf)";
  }
  formatter << ", tolerance " << _tolerance;
}

KOVAStreamFormatter& operator<<(KOVAStreamFormatter& formatter, const Gk_Domain& domain) {
  domain.dump(formatter);
  return formatter;
}
