#pragma once

#include "translators/model/Model.h"
#include "translators/step/Curves.h"
#include "translators/step/Geometry.h"
#include "translators/step/Records.h"
#include "translators/step/Styles.h"
#include "translators/step/Units.h"

#include <cstdint>
#include <map>
#include <unordered_map>
#include <utility>
#include <vector>

namespace kova::translators::step {

/// How much larger than the file all parts together may be. It grows with the file, and no file
/// whose parts have their geometry to themselves comes near it.
struct Allowance {
  explicit Allowance(std::uint64_t fileBytes);

  /// Points that come with each curve.
  static constexpr std::uint64_t kPointsPerCurve = 4;

  /// Of curves, beyond those that come with them.
  std::uint64_t points;
  std::uint64_t curves;
  std::uint64_t triangles;
  std::uint64_t vertices;
  /// Something did not fit and was left out: the model is not complete.
  bool isExhausted = false;

  /// @return false, and takes nothing, when there is less left.
  bool Take(std::uint64_t& left, std::uint64_t count) {
    if (count > left) {
      isExhausted = true;
      return false;
    }
    left -= count;
    return true;
  }
};

/// Makes parts of representations: walks their solids, shells, faces, wires and sets, and adds each
/// edge once, however many faces it bounds. Walks with a list of its own, whatever the nesting.
///
/// What a face, shell or solid looks like holds for the edges of it that say nothing themselves; an
/// edge between two faces takes it from the one that comes first.
class PartBuilder {
 public:
  /// @param tolerance  in millimetres. @param angle  in radians.
  PartBuilder(Document& document, Geometry& geometry, const Styles& styles, double tolerance,
              double angle);

  /// Begins a new part.
  void Begin();
  /// Adds what the items of a representation show by themselves; mapped items are left to others.
  /// @param scale  what its lengths are multiplied by.
  void Add(RecordNumber representation, const std::vector<RecordNumber>& items,
           const ContextUnits& units, double scale);
  /// The part; its curves and meshes may be none.
  const Part& Finish();

  const Allowance& GetAllowance() const { return _allowance; }

 private:
  struct Visit {
    RecordNumber record;
    Looks looks;
  };
  /// An edge between two corners of plane faces.
  struct Side {
    RecordNumber from;
    RecordNumber to;
    std::uint32_t order;
    Looks looks;
  };
  struct Coordinates {
    std::vector<Point> points;
    /// The number of the mesh, and of the vertex in it, that a point has become.
    std::vector<std::pair<std::uint32_t, std::uint32_t>> vertices;
  };
  enum class Tessellation { kTriangles, kStrips };

  void Push(RecordNumber record, const Looks& looks);
  void PushAll(const Looks& looks);
  void Walk();
  void VisitRecord(RecordNumber record, const Looks& around);
  /// Goes on with one record, or with a list of them, that is parameter `position`.
  void Follow(RecordNumber record, int position, const Looks& looks);
  void FollowList(RecordNumber record, int position, const Looks& looks);
  void AddEdge(RecordNumber record, const Looks& around);
  void AddCurve(RecordNumber record, const Looks& looks);
  void AddPolyLoop(RecordNumber record, const Looks& looks);
  void AddSides();
  void AddChain(RecordNumber record, const Looks& looks);
  ChainLimits GetLimits() const;
  void CheckChain(RecordNumber record, const ChainLimits& limits);

  Coordinates* ReadCoordinates(RecordNumber record);
  void AddTriangles(RecordNumber record, bool isFace, Tessellation form, const Looks& looks);
  void AddLineStrips(RecordNumber record, bool isEdge, const Looks& looks);
  bool AddVertex(Coordinates& coordinates, std::size_t index, std::uint32_t mesh,
                 std::uint32_t& vertex);
  std::uint32_t FindMesh(const Looks& looks);

  Document& _document;
  Geometry& _geometry;
  const Styles& _styles;
  double _tolerance;
  double _angle;
  Allowance _allowance;

  Part _part;
  double _scale = 1.0;
  double _millimetres = 1.0;
  std::uint32_t _partNumber = 0;
  /// The part for which a record was visited last.
  std::vector<std::uint32_t> _visited;
  std::vector<Visit> _stack;
  std::vector<RecordNumber> _list;
  std::vector<Side> _sides;
  Chain _chain;
  std::unordered_map<RecordNumber, Coordinates> _coordinates;
  std::map<std::pair<int, int>, std::uint32_t> _meshByLooks;
  /// Counts the meshes of all parts.
  std::uint32_t _firstMesh = 1;
};

}  // namespace kova::translators::step
