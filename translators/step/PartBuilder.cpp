#include "translators/step/PartBuilder.h"

#include "translators/step/Fields.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <tuple>

namespace kova::translators::step {

namespace {

constexpr int kMostSubedges = 16;
// Of one chain.
constexpr std::uint64_t kMostPoints = 10000;

double getDistance(const Point& a, const Point& b) {
  return std::hypot(a.x - b.x, a.y - b.y, a.z - b.z);
}

}  // namespace

Allowance::Allowance(std::uint64_t fileBytes)
    : points(150000 + fileBytes / 4),
      curves(100000 + fileBytes / 16),
      triangles(300000 + fileBytes / 3),
      vertices(200000 + fileBytes / 8) {}

PartBuilder::PartBuilder(Document& document, Geometry& geometry, const Styles& styles,
                         double tolerance, double angle)
    : _document(document),
      _geometry(geometry),
      _styles(styles),
      _tolerance(tolerance),
      _angle(angle),
      _allowance(document.GetText().size()),
      _visited(document.GetRecords().GetCount(), 0) {}

void PartBuilder::Begin() {
  _part = Part();
  ++_partNumber;
  _meshByLooks.clear();
}

const Part& PartBuilder::Finish() {
  _firstMesh += static_cast<std::uint32_t>(_part.meshes.size());
  return _part;
}

void PartBuilder::Add(RecordNumber representation, const std::vector<RecordNumber>& items,
                      const ContextUnits& units, double scale) {
  _scale = scale;
  _millimetres = units.metres > 0.0 ? units.metres * 1000.0 : 1.0;
  _geometry.SetAngleUnit(units.radians);
  _list = items;
  PushAll(_styles.Get(representation, Looks(), false));
  Walk();
  AddSides();
}

void PartBuilder::Push(RecordNumber record, const Looks& looks) {
  if (record == kNoRecord || _visited[record] == _partNumber) return;
  _stack.push_back({record, looks});
}

void PartBuilder::PushAll(const Looks& looks) {
  for (auto record = _list.rbegin(); record != _list.rend(); ++record) Push(*record, looks);
}

void PartBuilder::Walk() {
  while (!_stack.empty() && !_allowance.isExhausted) {
    const Visit visit = _stack.back();
    _stack.pop_back();
    if (_visited[visit.record] == _partNumber) continue;
    _visited[visit.record] = _partNumber;
    VisitRecord(visit.record, visit.looks);
  }
  _stack.clear();
}

void PartBuilder::Follow(RecordNumber record, int position, const Looks& looks) {
  Fields fields(_document, record);
  Push(fields.Skip(position).Reference(), looks);
}

void PartBuilder::FollowList(RecordNumber record, int position, const Looks& looks) {
  Fields fields(_document, record);
  _list.clear();
  fields.Skip(position).References(_list);
  PushAll(looks);
}

void PartBuilder::VisitRecord(RecordNumber record, const Looks& around) {
  const Keyword keyword = _document.GetKeyword(record);
  if (Geometry::IsCurve(keyword)) {
    AddCurve(record, _styles.Get(record, around, true));
    return;
  }
  if (_document.GetRecords()[record].IsComplex()) {
    // Only curves are written so, and what styles them.
    if (keyword != Keyword::kMappedItem) _document.LeaveOut(record);
    return;
  }
  const Looks looks = _styles.Get(record, around, false);
  switch (keyword) {
    case Keyword::kSolidWithVoids: {
      Fields fields(_document, record);
      const RecordNumber outer = fields.Skip().Reference();
      _list.clear();
      fields.References(_list);
      PushAll(looks);
      Push(outer, looks);
      break;
    }
    case Keyword::kSolid:
    case Keyword::kFaceBound: Follow(record, 1, looks); break;
    case Keyword::kOrientedShell:
    case Keyword::kOrientedFace: Follow(record, 2, looks); break;
    case Keyword::kOrientedEdge: Follow(record, 3, looks); break;
    case Keyword::kSurfaceModel:
    case Keyword::kFaceSet:
    case Keyword::kFace:
    case Keyword::kEdgeLoop:
    case Keyword::kPath:
    case Keyword::kEdgeSet:
    case Keyword::kWireShell:
    case Keyword::kWireModel:
    case Keyword::kGeometricSet:
    case Keyword::kTessellatedGroup: FollowList(record, 1, looks); break;
    case Keyword::kPolyLoop: AddPolyLoop(record, looks); break;
    case Keyword::kEdgeCurve:
    case Keyword::kSubedge: AddEdge(record, around); break;
    case Keyword::kTriangulatedFace:
      AddTriangles(record, true, Tessellation::kTriangles, looks);
      break;
    case Keyword::kTriangulatedSet:
      AddTriangles(record, false, Tessellation::kTriangles, looks);
      break;
    case Keyword::kComplexTriangulatedFace:
      AddTriangles(record, true, Tessellation::kStrips, looks);
      break;
    case Keyword::kComplexTriangulatedSet:
      AddTriangles(record, false, Tessellation::kStrips, looks);
      break;
    case Keyword::kTessellatedCurveSet: AddLineStrips(record, false, looks); break;
    case Keyword::kTessellatedEdge: AddLineStrips(record, true, looks); break;
    // These have no edges.
    case Keyword::kMappedItem:
    case Keyword::kAxis2Placement:
    case Keyword::kTransformationOperator:
    case Keyword::kStyledItem:
    case Keyword::kOverridingStyledItem:
    case Keyword::kVertexPoint:
    case Keyword::kVertexLoop:
    case Keyword::kVertexShell:
    case Keyword::kTessellatedVertex: break;
    default: _document.LeaveOut(record); break;
  }
}

ChainLimits PartBuilder::GetLimits() const {
  // Towards the end of what is allowed, chords become longer.
  constexpr std::uint64_t kShare = 16;
  ChainLimits limits;
  limits.tolerance = _tolerance / _millimetres;
  limits.angle = _angle;
  limits.mostPoints = static_cast<int>(std::clamp<std::uint64_t>(
      _allowance.points / kShare, Allowance::kPointsPerCurve, kMostPoints));
  return limits;
}

void PartBuilder::AddEdge(RecordNumber record, const Looks& around) {
  Fields fields(_document, record);
  const RecordNumber startRecord = fields.Skip().Reference();
  const RecordNumber endRecord = fields.Reference();
  RecordNumber curveRecord = fields.Reference();
  bool isForward = true;
  if (_document.GetKeyword(record) == Keyword::kEdgeCurve) {
    isForward = fields.Logical();
  } else {
    // A part of another edge, which has the curve.
    for (int i = 0; fields && i < kMostSubedges; ++i) {
      const Keyword keyword = _document.GetKeyword(curveRecord);
      if (keyword != Keyword::kEdgeCurve && keyword != Keyword::kSubedge) break;
      Fields parent(_document, curveRecord);
      curveRecord = parent.Skip(3).Reference();
      if (!parent) return;
      if (keyword == Keyword::kEdgeCurve) {
        isForward = parent.Logical();
        break;
      }
    }
  }
  Point start{};
  Point end{};
  if (!fields || !_geometry.ReadVertex(startRecord, start) ||
      !_geometry.ReadVertex(endRecord, end)) {
    return;
  }
  const SpaceCurveHandle curve = _geometry.ReadCurve(curveRecord);
  if (curve == nullptr) return;
  const ChainLimits limits = GetLimits();
  if (!sampleEdge(*curve, start, end, isForward, limits, _chain)) {
    _document.Complain(record, "the curve between the ends of the edge is not finite");
    return;
  }
  CheckChain(record, limits);
  AddChain(record, _styles.Get(record, _styles.Get(curveRecord, around, true), true));
}

void PartBuilder::AddCurve(RecordNumber record, const Looks& looks) {
  const SpaceCurveHandle curve = _geometry.ReadCurve(record);
  if (curve == nullptr) return;
  const double low = curve->GetLow();
  const double high = curve->GetHigh();
  if (!std::isfinite(low) || !std::isfinite(high)) {
    _document.Complain(record, "a curve without ends is not translated");
    return;
  }
  const ChainLimits limits = GetLimits();
  if (!sample(*curve, low, high, limits, _chain)) {
    _document.Complain(record, "the curve is not finite");
    return;
  }
  CheckChain(record, limits);
  AddChain(record, looks);
}

void PartBuilder::CheckChain(RecordNumber record, const ChainLimits& limits) {
  if (_chain.points.size() < static_cast<std::size_t>(limits.mostPoints)) return;
  _document.Complain(record, "it is shown by fewer points than the tolerance asks for");
}

void PartBuilder::AddChain(RecordNumber record, const Looks& looks) {
  if (_chain.points.size() < 2) return;
  for (Point& point : _chain.points) {
    point = {_scale * point.x, _scale * point.y, _scale * point.z};
    if (std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z)) continue;
    _document.Complain(record, "a point is too far away");
    return;
  }
  Curve curve;
  curve.firstPoint = static_cast<std::uint32_t>(_part.points.size());
  curve.pointCount = static_cast<std::uint32_t>(_chain.points.size());
  curve.length = _scale * _chain.length;
  curve.looks = looks;
  if (!std::isfinite(curve.length)) {
    _document.Complain(record, "its length is too large");
    return;
  }
  const std::uint64_t count = _chain.points.size();
  if (!_allowance.Take(_allowance.curves, 1) ||
      !_allowance.Take(_allowance.points, count - std::min(count, Allowance::kPointsPerCurve))) {
    return;
  }
  for (const Point& point : _chain.points) _part.points.add(point);
  _part.curves.add(curve);
}

void PartBuilder::AddPolyLoop(RecordNumber record, const Looks& looks) {
  Fields fields(_document, record);
  _list.clear();
  fields.Skip().References(_list);
  for (std::size_t i = 0; i < _list.size(); ++i) {
    const RecordNumber a = _list[i];
    const RecordNumber b = _list[(i + 1) % _list.size()];
    if (a == b) continue;
    _sides.push_back(
        {std::min(a, b), std::max(a, b), static_cast<std::uint32_t>(_sides.size()), looks});
  }
}

void PartBuilder::AddSides() {
  // Each once, in the order in which they came.
  const auto getEnds = [](const Side& side) { return std::tuple(side.from, side.to); };
  std::sort(_sides.begin(), _sides.end(), [&](const Side& a, const Side& b) {
    return std::tuple(a.from, a.to, a.order) < std::tuple(b.from, b.to, b.order);
  });
  _sides.erase(std::unique(_sides.begin(), _sides.end(),
                           [&](const Side& a, const Side& b) { return getEnds(a) == getEnds(b); }),
               _sides.end());
  std::sort(_sides.begin(), _sides.end(),
            [](const Side& a, const Side& b) { return a.order < b.order; });
  for (const Side& side : _sides) {
    _chain.points.resize(2);
    if (_allowance.isExhausted || !_geometry.ReadPoint(side.from, _chain.points[0]) ||
        !_geometry.ReadPoint(side.to, _chain.points[1])) {
      continue;
    }
    _chain.length = getDistance(_chain.points[0], _chain.points[1]);
    AddChain(side.from, side.looks);
  }
  _sides.clear();
}

PartBuilder::Coordinates* PartBuilder::ReadCoordinates(RecordNumber record) {
  if (record == kNoRecord) return nullptr;
  if (_document.GetKeyword(record) != Keyword::kCoordinates) {
    _document.Complain(record, "it is referred to as a list of coordinates");
    return nullptr;
  }
  const auto known = _coordinates.find(record);
  if (known != _coordinates.end()) return &known->second;
  Coordinates& coordinates = _coordinates[record];
  Fields fields(_document, record);
  fields.Skip(2).OpenList();
  while (fields.HasMore()) {
    Point point{};
    fields.OpenList();
    point.x = fields.Number();
    point.y = fields.Number();
    point.z = fields.Number();
    fields.CloseList();
    if (fields) coordinates.points.push_back(point);
  }
  coordinates.vertices.resize(coordinates.points.size());
  return &coordinates;
}

std::uint32_t PartBuilder::FindMesh(const Looks& looks) {
  const auto [entry, isNew] = _meshByLooks.emplace(std::pair(looks.layer, looks.colour),
                                                   static_cast<std::uint32_t>(_part.meshes.size()));
  if (isNew) {
    Mesh mesh;
    mesh.looks = looks;
    _part.meshes.add(mesh);
  }
  return entry->second;
}

bool PartBuilder::AddVertex(Coordinates& coordinates, std::size_t index, std::uint32_t mesh,
                            std::uint32_t& vertex) {
  auto& [meshNumber, number] = coordinates.vertices[index];
  if (meshNumber != _firstMesh + mesh) {
    const Point& point = coordinates.points[index];
    const Point scaled{_scale * point.x, _scale * point.y, _scale * point.z};
    if (!std::isfinite(scaled.x) || !std::isfinite(scaled.y) || !std::isfinite(scaled.z)) {
      return false;
    }
    if (!_allowance.Take(_allowance.vertices, 1)) return false;
    KOVADynamicArray<Point>& vertices = _part.meshes[static_cast<int>(mesh)].vertices;
    meshNumber = _firstMesh + mesh;
    number = static_cast<std::uint32_t>(vertices.size());
    vertices.add(scaled);
  }
  vertex = number;
  return true;
}

void PartBuilder::AddTriangles(RecordNumber record, bool isFace, Tessellation form,
                               const Looks& looks) {
  Fields fields(_document, record);
  Coordinates* const coordinates = ReadCoordinates(fields.Skip().Reference());
  // The highest index and the normals, and of a face the surface, are not used.
  fields.Skip(isFace ? 3 : 2);
  std::vector<std::int64_t> indices;
  fields.Integers(indices);
  std::vector<std::int64_t> corners;
  std::vector<std::size_t> ends;
  fields.IntegerLists(corners, ends);
  const std::size_t strips = ends.size();
  if (form == Tessellation::kStrips) fields.IntegerLists(corners, ends);
  if (!fields || coordinates == nullptr) return;

  const std::uint32_t mesh = FindMesh(looks);
  const auto addTriangle = [&](std::int64_t a, std::int64_t b, std::int64_t c) {
    if (a == b || b == c || c == a) return;  // joins strips
    std::uint32_t vertices[3];
    const std::int64_t numbers[3] = {a, b, c};
    for (int i = 0; i < 3; ++i) {
      std::int64_t number = numbers[i];
      if (!indices.empty()) {
        const bool isKnown = number >= 1 && number <= static_cast<std::int64_t>(indices.size());
        number = isKnown ? indices[static_cast<std::size_t>(number - 1)] : 0;
      }
      if (number < 1 || number > static_cast<std::int64_t>(coordinates->points.size())) {
        _document.Complain(record, "a triangle has a corner that is not in the list");
        return;
      }
      if (!AddVertex(*coordinates, static_cast<std::size_t>(number - 1), mesh, vertices[i])) {
        _document.Complain(record, "a triangle has a corner that is not finite");
        return;
      }
    }
    if (!_allowance.Take(_allowance.triangles, 1)) return;
    _part.meshes[static_cast<int>(mesh)].triangles.add({{vertices[0], vertices[1], vertices[2]}});
  };
  std::size_t begin = 0;
  for (std::size_t i = 0; i < ends.size() && !_allowance.isExhausted; ++i) {
    const std::int64_t* const list = corners.data() + begin;
    const std::size_t count = ends[i] - begin;
    begin = ends[i];
    if (form == Tessellation::kTriangles) {
      if (count != 3) {
        _document.Complain(record, "a triangle has not three corners");
        continue;
      }
      addTriangle(list[0], list[1], list[2]);
      continue;
    }
    for (std::size_t k = 2; k < count && !_allowance.isExhausted; ++k) {
      if (i >= strips) {
        addTriangle(list[0], list[k - 1], list[k]);
      } else if (k % 2 == 0) {
        addTriangle(list[k - 2], list[k - 1], list[k]);
      } else {
        // Every other one the other way around, so that all show the same side.
        addTriangle(list[k - 1], list[k - 2], list[k]);
      }
    }
  }
}

void PartBuilder::AddLineStrips(RecordNumber record, bool isEdge, const Looks& looks) {
  Fields fields(_document, record);
  Coordinates* const coordinates = ReadCoordinates(fields.Skip().Reference());
  std::vector<std::int64_t> numbers;
  std::vector<std::size_t> ends;
  if (isEdge) {
    fields.Skip().Integers(numbers);
    ends.push_back(numbers.size());
  } else {
    fields.IntegerLists(numbers, ends);
  }
  if (!fields || coordinates == nullptr) return;
  std::size_t begin = 0;
  for (const std::size_t end : ends) {
    _chain.points.clear();
    _chain.length = 0.0;
    for (; begin < end; ++begin) {
      const std::int64_t number = numbers[begin];
      if (number < 1 || number > static_cast<std::int64_t>(coordinates->points.size())) {
        _document.Complain(record, "a line has a point that is not in the list");
        continue;
      }
      const Point& point = coordinates->points[static_cast<std::size_t>(number - 1)];
      if (!_chain.points.empty()) _chain.length += getDistance(_chain.points.back(), point);
      _chain.points.push_back(point);
    }
    AddChain(record, looks);
    if (_allowance.isExhausted) return;
  }
}

}  // namespace kova::translators::step
