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

MeshBuilder::MeshBuilder(bool isSinglePrecision)
    : _seed(GetProcessSeed()),
      _table(kFirstSlots),
      _mask(kFirstSlots - 1),
      _mostVertices(kFirstSlots / 8 * 5) {
  _mesh.isSinglePrecision = isSinglePrecision;
}

void MeshBuilder::Reserve(int triangles) { _mesh.triangles.reserve(triangles); }

bool MeshBuilder::AddTriangle(const Point (&corners)[3]) {
  if (_waitingCount == kWaitingTriangles) AddWaiting();
  constexpr int kMargin = 3 * (kWaitingTriangles + 1);
  if (_mesh.triangles.size() > kMostElements - kMargin ||
      _mesh.vertices.size() > kMostElements - kMargin) {
    return false;
  }
  Corner* waiting = _waiting[_waitingCount++];
  for (int i = 0; i < 3; ++i) {
    // Adding zero turns negative zero into zero and leaves all else.
    const Point point{corners[i].x + 0.0, corners[i].y + 0.0, corners[i].z + 0.0};
    waiting[i] = {point, GetHash(point)};
    __builtin_prefetch(&_table[waiting[i].hash & _mask]);
  }
  return true;
}

Mesh& MeshBuilder::Finish() {
  AddWaiting();
  return _mesh;
}

void MeshBuilder::AddWaiting() {
  for (int i = 0; i < _waitingCount; ++i) {
    Triangle triangle;
    for (int k = 0; k < 3; ++k) triangle.corners[k] = FindVertex(_waiting[i][k]);
    const auto& [a, b, c] = triangle.corners;
    if (a == b || b == c || c == a) ++_degenerates;
    _mesh.triangles.add(triangle);
  }
  _waitingCount = 0;
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

std::uint32_t MeshBuilder::FindVertex(const Corner& corner) {
  const auto& [point, hash] = corner;
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
