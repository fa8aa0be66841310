#include "translators/step/Geometry.h"

#include "translators/step/Fields.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace kova::translators::step {

namespace {

// Deeper curves of curves are no curves that anybody drew.
constexpr int kMostDepth = 24;
constexpr std::uint64_t kMostPieces = 200000;
constexpr std::int64_t kMostDegree = 32;
// Work is counted in evaluations of a curve of degree 1, about.
constexpr std::int64_t kLeastWork = 20'000'000;
constexpr std::int64_t kWorkPerByte = 60;

bool isFinite(const Point& p) {
  return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

double getLength(const Point& p) { return std::hypot(p.x, p.y, p.z); }

}  // namespace

Geometry::Geometry(Document& document)
    : _document(document),
      _work(kLeastWork + kWorkPerByte * static_cast<std::int64_t>(document.GetText().size())) {}

bool Geometry::Expect(RecordNumber record, Keyword keyword, const char* what) {
  if (record == kNoRecord) return false;
  if (_document.GetKeyword(record) == keyword) return true;
  _document.Complain(record, std::string("it is referred to as ") + what);
  return false;
}

Geometry::Curve Geometry::Refuse(RecordNumber record, const char* reason) {
  _document.Complain(record, reason);
  return {};
}

bool Geometry::ReadPoint(RecordNumber record, Point& point) {
  if (!Expect(record, Keyword::kPoint, "a point")) return false;
  Fields fields(_document, record);
  fields.Skip().OpenList();
  point.x = fields.Number();
  point.y = fields.HasMore() ? fields.Number() : 0.0;
  point.z = fields.HasMore() ? fields.Number() : 0.0;
  if (!fields) return false;
  if (isFinite(point)) return true;
  _document.Complain(record, "a coordinate is too large");
  return false;
}

bool Geometry::ReadVertex(RecordNumber record, Point& point) {
  if (record != kNoRecord && _document.GetKeyword(record) == Keyword::kPoint) {
    return ReadPoint(record, point);
  }
  if (!Expect(record, Keyword::kVertexPoint, "a vertex")) return false;
  Fields fields(_document, record);
  const RecordNumber geometry = fields.Skip().Reference();
  return fields && ReadPoint(geometry, point);
}

bool Geometry::ReadDirection(RecordNumber record, Point& direction) {
  if (!Expect(record, Keyword::kDirection, "a direction")) return false;
  Fields fields(_document, record);
  fields.Skip().OpenList();
  direction.x = fields.Number();
  direction.y = fields.HasMore() ? fields.Number() : 0.0;
  direction.z = fields.HasMore() ? fields.Number() : 0.0;
  if (!fields) return false;
  if (isFinite(direction)) return true;
  _document.Complain(record, "a ratio is too large");
  return false;
}

bool Geometry::ReadFrame(RecordNumber record, Frame& frame) {
  if (!Expect(record, Keyword::kAxis2Placement, "a placement in space")) return false;
  Fields fields(_document, record);
  const RecordNumber location = fields.Skip().Reference();
  const RecordNumber axis = fields.OptionalReference();
  const RecordNumber reference = fields.OptionalReference();
  Point origin{};
  Point z{};
  Point x{};
  if (!fields || !ReadPoint(location, origin)) return false;
  if (axis != kNoRecord && !ReadDirection(axis, z)) return false;
  if (reference != kNoRecord && !ReadDirection(reference, x)) return false;
  frame =
      Frame::Make(origin, axis == kNoRecord ? nullptr : &z, reference == kNoRecord ? nullptr : &x);
  return true;
}

bool Geometry::ReadPlacement(RecordNumber record, double scale, KOVAMorph3D& morph) {
  Frame frame{};
  double factor = 1.0;
  double mirror = 1.0;
  if (record != kNoRecord && _document.GetKeyword(record) == Keyword::kTransformationOperator) {
    // Before the last five parameters there is a name, or three of them.
    Fields fields(_document, record);
    int before = -5;
    for (Fields all = fields; all.HasMore(); ++before) all.Skip();
    const RecordNumber axis1 = fields.Skip(before).OptionalReference();
    const RecordNumber axis2 = fields.OptionalReference();
    const RecordNumber location = fields.Reference();
    factor = fields.OptionalNumber(1.0);
    const RecordNumber axis3 = fields.OptionalReference();
    Point origin{};
    Point x{};
    Point y{};
    Point z{};
    if (!fields || !ReadPoint(location, origin)) return false;
    if (axis1 != kNoRecord && !ReadDirection(axis1, x)) return false;
    if (axis2 != kNoRecord && !ReadDirection(axis2, y)) return false;
    if (axis3 != kNoRecord && !ReadDirection(axis3, z)) return false;
    frame =
        Frame::Make(origin, axis3 == kNoRecord ? nullptr : &z, axis1 == kNoRecord ? nullptr : &x);
    // The second axis may point the other way: then the placement is a mirror.
    if (axis2 != kNoRecord && frame.y.x * y.x + frame.y.y * y.y + frame.y.z * y.z < 0.0) {
      mirror = -1.0;
    }
    if (!std::isfinite(factor) || factor <= 0.0) {
      _document.Complain(record, "the scale is not above 0");
      return false;
    }
  } else if (!ReadFrame(record, frame)) {
    return false;
  }
  const double elements[9] = {frame.x.x,          frame.x.y,          frame.x.z,
                              mirror * frame.y.x, mirror * frame.y.y, mirror * frame.y.z,
                              frame.z.x,          frame.z.y,          frame.z.z};
  // A KOVAMorph3D scales before it moves.
  morph = KOVAMorph3D(
      KOVAAffine3D(elements),
      KOVAPoint3D(scale * frame.origin.x, scale * frame.origin.y, scale * frame.origin.z), factor);
  return true;
}

SpaceCurveHandle Geometry::ReadCurve(RecordNumber record) {
  const Curve curve = Read(record, 0);
  return curve.curve;
}

Geometry::Curve Geometry::Read(RecordNumber record, int depth) {
  if (record == kNoRecord) return {};
  if (depth > kMostDepth) return Refuse(record, "curves are nested too deep, or in a circle");
  if (_work <= 0) return Refuse(record, "curves are used too often for the size of the file");
  _work -= 100;
  const Keyword keyword = _document.GetKeyword(record);
  Curve curve;
  switch (keyword) {
    case Keyword::kLine: curve = ReadLine(record); break;
    case Keyword::kCircle:
    case Keyword::kEllipse:
    case Keyword::kHyperbola:
    case Keyword::kParabola: curve = ReadConic(record, keyword); break;
    case Keyword::kPolyline: curve = ReadPolyline(record); break;
    case Keyword::kTrimmedCurve: return ReadTrimmed(record, depth);
    case Keyword::kCompositeCurve: return ReadComposite(record, depth);
    case Keyword::kSurfaceCurve: {
      const char* const list = _document.FindPart(record, Keyword::kSurfaceCurve);
      const RecordReader& reader = _document.GetRecords()[record];
      Fields fields(_document, record, list);
      // The keywords of a complex record stand for themselves: the curve is with SURFACE_CURVE.
      if (!reader.IsComplex()) fields.Skip();
      const RecordNumber curve3d = fields.Reference();
      return fields ? Read(curve3d, depth + 1) : Curve();
    }
    case Keyword::kRationalBSplineCurve:
    case Keyword::kBSplineCurveWithKnots:
    case Keyword::kBezierCurve:
    case Keyword::kQuasiUniformCurve:
    case Keyword::kUniformCurve:
    case Keyword::kBSplineCurve: curve = ReadBSpline(record, keyword); break;
    default: _document.LeaveOut(record); return {};
  }
  return curve;
}

Geometry::Curve Geometry::ReadLine(RecordNumber record) {
  Fields fields(_document, record);
  const RecordNumber location = fields.Skip().Reference();
  const RecordNumber vector = fields.Reference();
  Point origin{};
  Point direction{};
  if (!fields || !ReadPoint(location, origin) || !Expect(vector, Keyword::kVector, "a vector")) {
    return {};
  }
  Fields parts(_document, vector);
  const RecordNumber orientation = parts.Skip().Reference();
  const double magnitude = parts.Number();
  if (!parts || !ReadDirection(orientation, direction)) return {};
  // The ratios of a direction say nothing of a length.
  const double factor = magnitude / getLength(direction);
  Curve line;
  line.curve = makeLine(origin, {factor * direction.x, factor * direction.y, factor * direction.z});
  if (line.curve == nullptr) return Refuse(record, "the line has no direction");
  return line;
}

Geometry::Curve Geometry::ReadConic(RecordNumber record, Keyword keyword) {
  Fields fields(_document, record);
  const RecordNumber position = fields.Skip().Reference();
  const bool hasTwo = keyword == Keyword::kEllipse || keyword == Keyword::kHyperbola;
  const double first = fields.Number();
  const double second = hasTwo ? fields.Number() : 0.0;
  Frame frame{};
  if (!fields || !ReadFrame(position, frame)) return {};
  Curve conic;
  switch (keyword) {
    case Keyword::kCircle: conic.curve = makeCircle(frame, first); break;
    case Keyword::kEllipse: conic.curve = makeEllipse(frame, first, second); break;
    case Keyword::kHyperbola: conic.curve = makeHyperbola(frame, first, second); break;
    default: conic.curve = makeParabola(frame, first); break;
  }
  if (conic.curve == nullptr) return Refuse(record, "a radius or distance is not above 0");
  if (keyword == Keyword::kCircle || keyword == Keyword::kEllipse) conic.factor = _radians;
  return conic;
}

bool Geometry::ReadPoints(const std::vector<RecordNumber>& records, std::vector<Point>& points) {
  points.reserve(records.size());
  for (const RecordNumber record : records) {
    Point point{};
    if (!ReadPoint(record, point)) return false;
    points.push_back(point);
  }
  return true;
}

Geometry::Curve Geometry::ReadPolyline(RecordNumber record) {
  Fields fields(_document, record);
  std::vector<RecordNumber> records;
  fields.Skip().References(records);
  _work -= static_cast<std::int64_t>(10 * records.size());
  std::vector<Point> points;
  if (!fields || !ReadPoints(records, points)) return {};
  Curve polyline;
  polyline.pieces = points.size();
  polyline.curve = makePolyline(std::move(points));
  if (polyline.curve == nullptr) return Refuse(record, "the polyline has less than two points");
  return polyline;
}

bool Geometry::ReadTrim(RecordNumber record, Fields& fields, const Curve& basis, bool prefersPoint,
                        double& parameter) {
  // A point, a parameter, or both.
  double value = 0.0;
  Point point{};
  bool hasValue = false;
  bool hasPoint = false;
  if (!fields.OpenList()) return false;
  while (fields.HasMore()) {
    const Parameters::Kind kind = fields.GetParameters().GetKind();
    if (kind == Parameters::Kind::kReference) {
      const RecordNumber reference = fields.Reference();
      hasPoint = fields && ReadPoint(reference, point);
    } else if (kind == Parameters::Kind::kTyped || kind == Parameters::Kind::kNumber) {
      value = fields.Number();
      hasValue = fields && std::isfinite(value);
    } else {
      fields.Skip();
    }
  }
  fields.CloseList();
  if (!fields) return false;
  if (hasPoint && (prefersPoint || !hasValue)) {
    parameter = basis.curve->FindParameter(point);
  } else if (hasValue) {
    parameter = value * basis.factor;
  } else {
    _document.Complain(record, "an end of the trimmed curve is given by no point or parameter");
    return false;
  }
  return true;
}

Geometry::Curve Geometry::ReadTrimmed(RecordNumber record, int depth) {
  Fields fields(_document, record);
  const RecordNumber basisRecord = fields.Skip().Reference();
  if (!fields) return {};
  const Curve basis = Read(basisRecord, depth + 1);
  if (basis.curve == nullptr) return {};
  // What is preferred comes last.
  Fields preference = fields;
  preference.Skip(3);
  const bool prefersPoint = preference && preference.Enumeration() == "CARTESIAN";
  _work -= 100 * static_cast<std::int64_t>(basis.pieces);
  double from = 0.0;
  double to = 0.0;
  if (!ReadTrim(record, fields, basis, prefersPoint, from) ||
      !ReadTrim(record, fields, basis, prefersPoint, to)) {
    return {};
  }
  const bool isForward = fields.Logical();
  if (!fields) return {};
  Curve trimmed = basis;
  trimmed.curve = makeTrimmed(basis.curve, from, to, isForward);
  if (trimmed.curve == nullptr) return Refuse(record, "the ends of the trimmed curve do not fit");
  return trimmed;
}

Geometry::Curve Geometry::ReadComposite(RecordNumber record, int depth) {
  Fields fields(_document, record);
  std::vector<RecordNumber> records;
  fields.Skip().References(records);
  _work -= static_cast<std::int64_t>(10 * records.size());
  if (!fields) return {};
  Curve composite;
  composite.pieces = 0;
  std::vector<Segment> segments;
  for (const RecordNumber segmentRecord : records) {
    if (!Expect(segmentRecord, Keyword::kCompositeCurveSegment, "a segment of a curve")) return {};
    Fields parts(_document, segmentRecord);
    parts.Skip();
    const bool isForward = parts.Logical();
    const RecordNumber parent = parts.Reference();
    if (!parts) return {};
    const Curve curve = Read(parent, depth + 1);
    if (curve.curve == nullptr) return {};
    composite.pieces += curve.pieces;
    if (composite.pieces > kMostPieces) return Refuse(record, "the curve has too many pieces");
    segments.push_back({curve.curve, isForward});
  }
  _work -= 100 * static_cast<std::int64_t>(composite.pieces);
  composite.curve = makeComposite(std::move(segments));
  if (composite.curve == nullptr) return Refuse(record, "a segment of the curve has no ends");
  return composite;
}

Geometry::Curve Geometry::ReadBSpline(RecordNumber record, Keyword keyword) {
  const bool isComplex = _document.GetRecords()[record].IsComplex();
  const char* const basic =
      isComplex ? _document.FindPart(record, Keyword::kBSplineCurve) : _document.GetList(record);
  Fields fields(_document, record, basic);
  if (!isComplex) fields.Skip();
  const std::int64_t degree = fields.Integer();
  std::vector<RecordNumber> records;
  fields.References(records);
  fields.Skip(3);
  _work -= static_cast<std::int64_t>(10 * records.size());
  if (!fields) return {};
  if (degree < 1 || degree > kMostDegree) return Refuse(record, "the degree is not 1 to 32");
  _work -= static_cast<std::int64_t>(10 * records.size()) * (degree + 1) * (degree + 1);
  std::vector<Point> poles;
  if (!ReadPoints(records, poles)) return {};
  if (poles.size() > static_cast<std::size_t>(std::numeric_limits<int>::max() / 2)) return {};

  const int poleCount = static_cast<int>(poles.size());
  const int curveDegree = static_cast<int>(degree);
  std::vector<double> knots;
  const char* const withKnots =
      isComplex ? _document.FindPart(record, Keyword::kBSplineCurveWithKnots)
                : (keyword == Keyword::kBSplineCurveWithKnots ? basic : nullptr);
  if (withKnots != nullptr) {
    std::vector<std::int64_t> multiplicities;
    std::vector<double> values;
    Fields knotFields = isComplex ? Fields(_document, record, withKnots) : fields;
    knotFields.Integers(multiplicities);
    knotFields.Numbers(values);
    if (!knotFields) return {};
    const std::size_t wanted = poles.size() + static_cast<std::size_t>(degree) + 1;
    bool fits = multiplicities.size() == values.size();
    for (std::size_t i = 0; fits && i < values.size(); ++i) {
      fits = multiplicities[i] >= 1 &&
             static_cast<std::uint64_t>(multiplicities[i]) <= wanted - knots.size();
      if (fits) knots.insert(knots.end(), static_cast<std::size_t>(multiplicities[i]), values[i]);
    }
    if (!fits || knots.size() != wanted) {
      return Refuse(record, "the knots and their multiplicities do not fit the poles");
    }
  } else if (keyword == Keyword::kBezierCurve ||
             _document.FindPart(record, Keyword::kBezierCurve) != nullptr) {
    knots = makeBezierKnots(curveDegree, poleCount);
  } else if (keyword == Keyword::kQuasiUniformCurve ||
             _document.FindPart(record, Keyword::kQuasiUniformCurve) != nullptr) {
    knots = makeQuasiUniformKnots(curveDegree, poleCount);
  } else {
    knots = makeUniformKnots(curveDegree, poleCount);
  }

  std::vector<double> weights;
  if (isComplex) {
    if (const char* const rational = _document.FindPart(record, Keyword::kRationalBSplineCurve)) {
      Fields weightFields(_document, record, rational);
      weightFields.Numbers(weights);
      if (!weightFields) return {};
      if (weights.size() != poles.size()) return Refuse(record, "there is no weight for each pole");
    }
  }
  Curve spline;
  spline.pieces = poles.size();
  spline.curve = makeBSpline(curveDegree, std::move(poles), std::move(weights), std::move(knots));
  if (spline.curve == nullptr) return Refuse(record, "poles, knots and weights make no curve");
  return spline;
}

}  // namespace kova::translators::step
