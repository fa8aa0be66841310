#pragma once

#include "translators/model/Model.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kova::translators {

/// Makes a mesh of triangles that come with their corners' coordinates, and finds the corners that
/// coincide: equal coordinates become one vertex. Vertices are numbered in the order in which they
/// first appear, so that the same triangles always give the same mesh.
class MeshBuilder {
 public:
  /// The most triangles, and the most vertices, of one mesh.
  static constexpr int kMostElements = 0x7FFFFFFF;

  /// @param isSinglePrecision  as in Mesh.
  explicit MeshBuilder(bool isSinglePrecision);

  /// Makes room for this many triangles.
  void Reserve(int triangles);

  /// The coordinates must be finite; negative zero becomes zero.
  /// @return false, with the mesh as it was, when it might grow beyond `kMostElements`.
  bool AddTriangle(const Point (&corners)[3]);

  /// The mesh of all triangles that were added; the builder is of no more use then.
  Mesh& Finish();

  /// Triangles of which two corners are the same vertex, known after `Finish`.
  std::uint64_t GetDegenerateCount() const { return _degenerates; }

 private:
  /// Half of the hash, and the vertex number plus 1; 0 is a free slot.
  struct Slot {
    std::uint32_t hash;
    std::uint32_t vertex;
  };

  /// A corner that waits while the memory fetches its slot of the table. In large meshes this
  /// wait, one corner after the other, would be most of the time.
  struct Corner {
    Point point;
    std::uint32_t hash;
  };
  static constexpr int kWaitingTriangles = 32;

  struct Seed {
    std::uint64_t words[3];
  };

  static const Seed& GetProcessSeed();
  std::uint32_t GetHash(const Point& point) const;
  void AddWaiting();
  std::uint32_t FindVertex(const Corner& corner);
  void GrowTable();

  const Seed _seed;
  Mesh _mesh;
  // Open addressing with linear probing; a power of two slots, at most 5/8 of them in use.
  std::vector<Slot> _table;
  std::size_t _mask;
  std::size_t _mostVertices;
  Corner _waiting[kWaitingTriangles][3];
  int _waitingCount = 0;
  std::uint64_t _degenerates = 0;
};

}  // namespace kova::translators
