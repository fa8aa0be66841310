#include "translators/model/MeshBuilder.h"

#include <bit>
#include <random>

namespace kova::translators {

namespace {

constexpr std::size_t kFirstSlots = 64;

// Both halves of the 128-bit product, folded together.
std::uint64_t mix(std::uint64_t a, std::uint64_t b) {
  __extension__ using Wide = unsigned __int128;
  const Wide product = Wide{a} * b;
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

}  // namespace

MeshBuilder::MeshBuilder()
    : _seed(GetProcessSeed()),
      _table(kFirstSlots),
      _mask(kFirstSlots - 1),
      _mostVertices(kFirstSlots / 8 * 5) {}

void MeshBuilder::Reserve(int triangles) { _mesh.triangles.reserve(triangles); }

bool MeshBuilder::AddTriangle(const Point (&corners)[3]) {
  if (_mesh.triangles.size() >= kMostElements || _mesh.vertices.size() > kMostElements - 3) {
    return false;
  }
  Triangle triangle;
  for (int i = 0; i < 3; ++i) {
    const Point& corner = corners[i];
    // Adding zero turns negative zero into zero and leaves all else.
    triangle.corners[i] = FindVertex({corner.x + 0.0, corner.y + 0.0, corner.z + 0.0});
  }
  if (triangle.corners[0] == triangle.corners[1] || triangle.corners[1] == triangle.corners[2] ||
      triangle.corners[2] == triangle.corners[0]) {
    ++_degenerates;
  }
  _mesh.triangles.add(triangle);
  return true;
}

// Nobody can prepare a file whose vertices all fall into one place: the seed differs from process
// to process. It shows in no result, only in the order of the table.
const MeshBuilder::Seed& MeshBuilder::GetProcessSeed() {
  static const Seed seed = [] {
    std::random_device device;
    Seed words{};
    for (std::uint64_t& word : words.words) word = std::uint64_t{device()} << 32 | device();
    return words;
  }();
  return seed;
}

std::uint32_t MeshBuilder::GetHash(const Point& point) const {
  const std::uint64_t x = std::bit_cast<std::uint64_t>(point.x);
  const std::uint64_t y = std::bit_cast<std::uint64_t>(point.y);
  const std::uint64_t z = std::bit_cast<std::uint64_t>(point.z);
  const std::uint64_t plane = mix(x ^ _seed.words[0], y ^ _seed.words[1]);
  return static_cast<std::uint32_t>(mix(plane ^ _seed.words[2], z ^ _seed.words[1]) >> 32);
}

std::uint32_t MeshBuilder::FindVertex(const Point& point) {
  const std::uint32_t hash = GetHash(point);
  const Point* vertices = _mesh.vertices.getArray();
  std::size_t position = hash & _mask;
  for (; _table[position].vertex != 0; position = (position + 1) & _mask) {
    const Slot slot = _table[position];
    if (slot.hash == hash && vertices[slot.vertex - 1] == point) return slot.vertex - 1;
  }
  const std::uint32_t vertex = static_cast<std::uint32_t>(_mesh.vertices.size());
  _mesh.vertices.add(point);
  _table[position] = {hash, vertex + 1};
  if (vertex + 1 > _mostVertices) GrowTable();
  return vertex;
}

void MeshBuilder::GrowTable() {
  std::vector<Slot> table(_table.size() * 2);
  const std::size_t mask = table.size() - 1;
  for (const Slot& slot : _table) {
    if (slot.vertex == 0) continue;
    std::size_t position = slot.hash & mask;
    while (table[position].vertex != 0) position = (position + 1) & mask;
    table[position] = slot;
  }
  _table.swap(table);
  _mask = mask;
  _mostVertices = _table.size() / 8 * 5;
}

}  // namespace kova::translators
