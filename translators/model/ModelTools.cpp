#include "translators/model/ModelTools.h"

#include "translators/model/Placement.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace kova::translators {

namespace {

void extend(Summary& summary, const Point& point) {
  if (!summary.hasBox) {
    summary.hasBox = true;
    summary.lowest = summary.highest = point;
    return;
  }
  summary.lowest = {std::min(summary.lowest.x, point.x), std::min(summary.lowest.y, point.y),
                    std::min(summary.lowest.z, point.z)};
  summary.highest = {std::max(summary.highest.x, point.x), std::max(summary.highest.y, point.y),
                     std::max(summary.highest.z, point.z)};
}

void extend(Summary& summary, const KOVADynamicArray<Point>& points, const Placement& placement) {
  if (placement.IsIdentity()) {
    for (const Point& point : points) extend(summary, point);
  } else {
    for (const Point& point : points) extend(summary, placement(point));
  }
}

/// Of a part where it is.
struct PartSize {
  std::uint64_t triangles = 0;
  double edgeLength = 0.0;
};

double getLargest(const KOVADynamicArray<Point>& points) {
  double largest = 0.0;
  for (const Point& p : points) {
    largest = std::max({largest, std::fabs(p.x), std::fabs(p.y), std::fabs(p.z)});
  }
  return largest;
}

/// A bound for the size of every number that the model has and makes.
double getBound(const Model& model) {
  double bound = 0.0;
  std::vector<double> largest;
  largest.reserve(static_cast<std::size_t>(model.parts.size()));
  for (const Part& part : model.parts) {
    double ofPart = getLargest(part.points);
    for (const Mesh& mesh : part.meshes) ofPart = std::max(ofPart, getLargest(mesh.vertices));
    for (const Curve& curve : part.curves) bound = std::max(bound, std::fabs(curve.length));
    bound = std::max(bound, ofPart);
    largest.push_back(ofPart);
  }
  for (const Instance& instance : model.instances) {
    const KOVAMorph3D& placement = instance.placement;
    const KOVAPoint3D& translation = placement.GetTranslation();
    double linear = 0.0;
    for (int i = 0; i < 9; ++i) linear += std::fabs(placement.GetAffine().GetElements()[i]);
    double moved =
        std::fabs(placement.GetScale()) * linear * largest[static_cast<std::size_t>(instance.part)];
    for (int i = 0; i < 3; ++i) moved += std::fabs(translation[i]);
    bound = std::max(bound, moved);
  }
  return bound;
}

KOVADynamicArray<Point> scale(const KOVADynamicArray<Point>& points, double factor) {
  KOVADynamicArray<Point> scaled = points.copy();
  for (Point& point : scaled) {
    point = {point.x * factor, point.y * factor, point.z * factor};
  }
  return scaled;
}

bool areFloats(const KOVADynamicArray<Point>& points) {
  return std::all_of(points.begin(), points.end(), [](const Point& point) {
    const auto isFloat = [](double value) {
      return std::fabs(value) <= 3.0e38 && static_cast<double>(static_cast<float>(value)) == value;
    };
    return isFloat(point.x) && isFloat(point.y) && isFloat(point.z);
  });
}

/// The part without the points that no curve uses. The points of a curve stay together.
void dropUnusedPoints(Part& part) {
  std::vector<std::uint32_t> places(static_cast<std::size_t>(part.points.size()), 0);
  for (const Curve& curve : part.curves) {
    std::fill_n(places.begin() + curve.firstPoint, curve.pointCount, 1U);
  }
  KOVADynamicArray<Point> points;
  for (std::size_t i = 0; i < places.size(); ++i) {
    const bool isUsed = places[i] != 0;
    places[i] = static_cast<std::uint32_t>(points.size());
    if (isUsed) points.add(part.points[static_cast<int>(i)]);
  }
  for (Curve& curve : part.curves) {
    if (curve.pointCount != 0) curve.firstPoint = places[curve.firstPoint];
  }
  part.points = points;
}

class LayerList {
 public:
  explicit LayerList(const KOVALayerFilterC& filter) {
    int count = 0;
    filter.GetNumLayers(count);
    for (int i = 0; i < count; ++i) {
      int layer = 0;
      if (filter.GetLayerAt(i, layer).IsSuccess()) _numbers.push_back(layer);
    }
    std::sort(_numbers.begin(), _numbers.end());
  }

  bool Has(int layer) const { return std::binary_search(_numbers.begin(), _numbers.end(), layer); }

  /// The pieces of the part on these layers, and those that leave it to the instance if `with`.
  Part Keep(const Part& part, bool with) const {
    Part kept;
    kept.name = part.name;
    const auto isKept = [&](const Looks& looks) {
      return looks.layer == 0 ? with : Has(looks.layer);
    };
    for (const Curve& curve : part.curves) {
      if (isKept(curve.looks)) kept.curves.add(curve);
    }
    for (const Mesh& mesh : part.meshes) {
      if (isKept(mesh.looks)) kept.meshes.add(mesh);
    }
    kept.points = part.points;
    if (kept.curves.size() != part.curves.size()) dropUnusedPoints(kept);
    return kept;
  }

 private:
  std::vector<int> _numbers;
};

void dropUnplacedParts(Model& model) {
  std::vector<int> places(static_cast<std::size_t>(model.parts.size()), -1);
  for (const Instance& instance : model.instances) {
    places[static_cast<std::size_t>(instance.part)] = 0;
  }
  KOVADynamicArray<Part> parts;
  for (int i = 0; i < model.parts.size(); ++i) {
    int& place = places[static_cast<std::size_t>(i)];
    if (place < 0) continue;
    place = parts.size();
    parts.add(model.parts[i]);
  }
  // The caller has made the instances the model's own.
  for (Instance& instance : model.instances) {
    instance.part = places[static_cast<std::size_t>(instance.part)];
  }
  model.parts = parts;
}

/// Reads the code points of a text, one after the other.
class CodePoints {
 public:
  explicit CodePoints(const KOVAString& text) {
    _points.reserve(static_cast<std::size_t>(text.length()));
    for (int i = 0; i < text.length(); ++i) {
      const int unit = text.charAt(i);
      const int next = text.charAt(i + 1);
      if ((unit & 0xFC00) == 0xD800 && i + 1 < text.length() && (next & 0xFC00) == 0xDC00) {
        _points.push_back(0x10000 + ((unit & 0x3FF) << 10 | (next & 0x3FF)));
        ++i;
      } else {
        _points.push_back(unit);
      }
    }
  }
  int operator[](std::size_t i) const { return _points[i]; }
  std::size_t size() const { return _points.size(); }

 private:
  std::vector<int> _points;
};

int toLowerAscii(int c) { return c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c; }

bool isSameLetter(int a, int b) {
  if (a == b) return true;
  if (a < 0x80 && b < 0x80) return toLowerAscii(a) == toLowerAscii(b);
  return KOVAString(a).equalsIgnoreCase(KOVAString(b));
}

/// After a mismatch only the last '*' takes one character more: what stands before it was found at
/// the first place where it can be.
bool matches(const CodePoints& name, const CodePoints& pattern) {
  std::size_t n = 0;
  std::size_t p = 0;
  std::size_t star = pattern.size();
  std::size_t afterStar = 0;
  while (n < name.size()) {
    if (p < pattern.size() && pattern[p] == '*') {
      star = p++;
      afterStar = n;
    } else if (p < pattern.size() && (pattern[p] == '?' || isSameLetter(name[n], pattern[p]))) {
      ++n;
      ++p;
    } else if (star != pattern.size()) {
      n = ++afterStar;
      p = star + 1;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == '*') ++p;
  return p == pattern.size();
}

}  // namespace

Summary summarize(const Model& model) {
  Summary summary;
  summary.parts = static_cast<std::uint64_t>(model.parts.size());
  summary.instances = static_cast<std::uint64_t>(model.instances.size());
  std::vector<PartSize> sizes;
  sizes.reserve(static_cast<std::size_t>(model.parts.size()));
  for (const Part& part : model.parts) {
    PartSize size;
    for (const Curve& curve : part.curves) size.edgeLength += curve.length;
    for (const Mesh& mesh : part.meshes) {
      size.triangles += static_cast<std::uint64_t>(mesh.triangles.size());
    }
    sizes.push_back(size);
  }
  for (const Instance& instance : model.instances) {
    const Part& part = model.parts[instance.part];
    const PartSize& size = sizes[static_cast<std::size_t>(instance.part)];
    const Placement placement(instance.placement);
    summary.edges += static_cast<std::uint64_t>(part.curves.size());
    summary.triangles += size.triangles;
    summary.edgeLength += size.edgeLength * placement.GetLengthFactor();
    extend(summary, part.points, placement);
    for (const Mesh& mesh : part.meshes) extend(summary, mesh.vertices, placement);
  }
  return summary;
}

bool scaleModel(Model& model, double factor, KOVAUnit unit) {
  if (!(factor > 0.0) || !std::isfinite(factor)) return false;
  if (factor != 1.0) {
    if (!std::isfinite(getBound(model) * factor)) return false;
    model.parts = model.parts.copy();
    for (Part& part : model.parts) {
      part.points = scale(part.points, factor);
      part.curves = part.curves.copy();
      for (Curve& curve : part.curves) curve.length *= factor;
      part.meshes = part.meshes.copy();
      for (Mesh& mesh : part.meshes) {
        mesh.vertices = scale(mesh.vertices, factor);
        mesh.isSinglePrecision = mesh.isSinglePrecision && areFloats(mesh.vertices);
      }
    }
    model.instances = model.instances.copy();
    for (Instance& instance : model.instances) {
      const KOVAMorph3D& placement = instance.placement;
      const KOVAPoint3D& by = placement.GetTranslation();
      instance.placement = KOVAMorph3D(placement.GetAffine(),
                                       KOVAPoint3D(by[0] * factor, by[1] * factor, by[2] * factor),
                                       placement.GetScale());
    }
  }
  model.unit = unit;
  return true;
}

void keepLayers(Model& model, const KOVALayerFilterC& filter) {
  bool isAll = false;
  filter.IsALLLayerFilter(isAll);
  if (isAll) return;
  const LayerList layers(filter);

  // For pieces that leave their layer to the instance, all that counts is whether its layer is in
  // the list: no part becomes more than these two.
  struct Variants {
    int without = -1;
    int with = -1;
  };
  std::vector<Variants> variants(static_cast<std::size_t>(model.parts.size()));
  KOVADynamicArray<Part> parts;
  KOVADynamicArray<Instance> instances;
  for (const Instance& instance : model.instances) {
    const Part& part = model.parts[instance.part];
    const bool with = layers.Has(instance.looks.layer);
    Variants& ofPart = variants[static_cast<std::size_t>(instance.part)];
    int& variant = with ? ofPart.with : ofPart.without;
    if (variant < 0) {
      variant = parts.size();
      parts.add(layers.Keep(part, with));
      const Part& latest = parts[variant];
      const int other = with ? ofPart.without : ofPart.with;
      if (other >= 0 && parts[other].curves.size() == latest.curves.size() &&
          parts[other].meshes.size() == latest.meshes.size()) {
        parts.endShrink(1);
        variant = other;
      }
    }
    const Part& kept = parts[variant];
    const bool isEmpty = kept.curves.size() == 0 && kept.meshes.size() == 0;
    const bool wasEmpty = part.curves.size() == 0 && part.meshes.size() == 0;
    if (isEmpty && !(wasEmpty && with)) continue;
    Instance moved = instance;
    moved.part = variant;
    instances.add(moved);
  }
  model.parts = parts;
  model.instances = instances;
  dropUnplacedParts(model);
}

int select(const Model& model, const KOVAString& pattern, KOVASelectionSet& set) {
  const CodePoints codes(pattern);
  std::vector<bool> partMatches;
  partMatches.reserve(static_cast<std::size_t>(model.parts.size()));
  for (const Part& part : model.parts) partMatches.push_back(matches(CodePoints(part.name), codes));
  int count = 0;
  for (const Instance& instance : model.instances) {
    if (!partMatches[static_cast<std::size_t>(instance.part)] &&
        (instance.name.isEmpty() || !matches(CodePoints(instance.name), codes))) {
      continue;
    }
    set.AddMember(const_cast<Instance*>(&instance));
    ++count;
  }
  return count;
}

void keepSelected(Model& model, const KOVASelectionSet& set) {
  KOVADynamicArray<Instance> instances;
  for (Instance& instance : model.instances) {
    if (set.IsMember(&instance)) instances.add(instance);
  }
  model.instances = instances;
  dropUnplacedParts(model);
}

}  // namespace kova::translators
