#include "translators/step/ModelBuilder.h"

#include "translators/interface/Frame.h"
#include "translators/interface/OptionValues.h"
#include "translators/interface/Report.h"
#include "translators/model/Placement.h"
#include "translators/step/Fields.h"
#include "translators/step/Geometry.h"
#include "translators/step/PartBuilder.h"
#include "translators/step/ProductStructure.h"
#include "translators/step/Styles.h"
#include "translators/step/Units.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>
#include <utility>
#include <vector>

namespace kova::translators::step {

namespace {

constexpr double kStandardTolerance = 0.01;
constexpr double kStandardAngle = 20.0;
constexpr double kMostAngle = 180.0;

// What all instances together may be: the model must not outgrow the file by far, and those who
// write it go over every point of every instance.
constexpr std::uint64_t kLeastInstances = 80000;
constexpr std::uint64_t kBytesPerInstance = 24;
constexpr std::uint64_t kLeastNameUnits = 4'000'000;
constexpr double kLeastPlacedPoints = 2e7;
constexpr double kPlacedPointsPerByte = 50.0;

double readPositive(const KOVAOptions& options, const char* name, double standard) {
  const double value = readOption<double>(options, name, standard);
  return std::isfinite(value) && value > 0.0 ? value : standard;
}

// The greatest distance of a coordinate from 0.
double findExtent(const Part& part) {
  double extent = 0.0;
  const auto add = [&extent](const Point& p) {
    extent = std::max({extent, std::fabs(p.x), std::fabs(p.y), std::fabs(p.z)});
  };
  for (const Point& point : part.points) add(point);
  for (const Mesh& mesh : part.meshes) {
    for (const Point& vertex : mesh.vertices) add(vertex);
  }
  return extent;
}

std::uint64_t countPoints(const Part& part) {
  std::uint64_t count = static_cast<std::uint64_t>(part.points.size());
  for (const Mesh& mesh : part.meshes) {
    count += static_cast<std::uint64_t>(mesh.vertices.size()) +
             static_cast<std::uint64_t>(mesh.triangles.size());
  }
  return count;
}

class ModelBuilder {
 public:
  ModelBuilder(Document& document, const KOVAOptions& options, Model& model)
      : _document(document),
        _model(model),
        _progress("read", 2 * document.GetText().size(), Progress::kBytesPerEvent),
        _geometry(document),
        _units(document),
        _styles(document, model),
        _structure(document, _geometry, _units, _styles),
        _parts(document, _geometry, _styles,
               readPositive(options, "Step.Read.Tolerance", kStandardTolerance),
               std::min(readPositive(options, "Step.Read.Angle", kStandardAngle), kMostAngle) *
                   std::numbers::pi / 180.0),
        _nameUnits(kLeastNameUnits + document.GetText().size()) {}

  KOVAResult Run() {
    _structure.Read();
    if (_document.IsExhausted()) return FailExhausted();
    _model.unit = _structure.GetUnit();
    const std::size_t nodes = _structure.GetNodes().size();
    _states.assign(nodes, State{});
    for (const int root : _structure.GetRoots()) {
      const KOVAResult result = Visit(root);
      if (result.IsFailure()) return result;
    }
    for (std::size_t node = 0; node < nodes; ++node) {
      // Not a root, and below none: it is below itself.
      if (!_states[node].isDone && _structure.GetNodes()[node].mustShow) {
        return FailCycle(static_cast<int>(node));
      }
    }
    return AddInstances();
  }

 private:
  struct State {
    bool isOpen = false;
    bool isDone = false;
    int part = -1;
    // Of itself and everything below it; as doubles, which cannot run over.
    double instances = 0.0;
    double points = 0.0;
  };
  struct Step {
    int node;
    std::size_t child;
  };

  const Report& GetReport() const { return _document.GetReport(); }

  KOVAResult FailExhausted() const {
    return GetReport().Fail(KOVAResultCode::kInvalidFile, {},
                            "its records refer to each other so often that reading them would take "
                            "too long");
  }

  KOVAResult FailCycle(int node) const {
    const RecordNumber record = _structure.GetNodes()[static_cast<std::size_t>(node)].record;
    return GetReport().Fail(
        KOVAResultCode::kInvalidFile,
        Place::Line(_document.GetLine(_document.GetRecords()[record].GetOffset())),
        "%s is a part of itself", _document.Describe(record).c_str());
  }

  // Makes the parts at and below a node, and counts what placing them will take.
  KOVAResult Visit(int root) {
    const std::vector<Node>& nodes = _structure.GetNodes();
    std::vector<Step> path;
    const auto enter = [&](int node) {
      State& state = _states[static_cast<std::size_t>(node)];
      state.isOpen = true;
      BuildPart(node);
      path.push_back({node, 0});
    };
    if (_states[static_cast<std::size_t>(root)].isDone) return KOVAResultCode::kSuccess;
    enter(root);
    while (!path.empty()) {
      Step& step = path.back();
      const Node& node = nodes[static_cast<std::size_t>(step.node)];
      State& state = _states[static_cast<std::size_t>(step.node)];
      if (step.child == node.children.size()) {
        state.isOpen = false;
        state.isDone = true;
        path.pop_back();
        if (path.empty()) break;
        State& above = _states[static_cast<std::size_t>(path.back().node)];
        above.instances += state.instances;
        above.points += state.points;
        ++path.back().child;
        continue;
      }
      const int child = node.children[step.child].node;
      State& below = _states[static_cast<std::size_t>(child)];
      if (below.isOpen) return FailCycle(child);
      if (below.isDone) {
        state.instances += below.instances;
        state.points += below.points;
        ++step.child;
      } else {
        enter(child);
      }
    }
    if (_document.IsExhausted()) return FailExhausted();
    if (!_parts.GetAllowance().isExhausted) return KOVAResultCode::kSuccess;
    return GetReport().Fail(KOVAResultCode::kInvalidFile, {},
                            "its shapes share geometry so often that the model would be many times "
                            "as large as the file");
  }

  void BuildPart(int number) {
    const Node& node = _structure.GetNodes()[static_cast<std::size_t>(number)];
    State& state = _states[static_cast<std::size_t>(number)];
    if (node.representations.empty() || _parts.GetAllowance().isExhausted) return;
    _parts.Begin();
    for (const RecordNumber representation : node.representations) {
      _parts.Add(representation, _structure.GetItems(representation),
                 _structure.GetContextUnits(representation), _structure.GetScale(representation));
    }
    const std::size_t bytes = _document.GetText().size();
    _progress.Reach(bytes + bytes * ++_builtNodes / _structure.GetNodes().size());
    const Part& part = _parts.Finish();
    if (part.curves.size() == 0 && part.meshes.size() == 0) return;
    state.part = _model.parts.size();
    state.instances = 1.0;
    state.points = static_cast<double>(countPoints(part));
    _model.parts.add(part);
    TakeName(_structure.GetName(number), node.record, _model.parts[state.part].name);
    _extents.push_back(findExtent(part));
  }

  KOVAResult AddInstances() {
    double instances = 0.0;
    double points = 0.0;
    for (const int root : _structure.GetRoots()) {
      instances += _states[static_cast<std::size_t>(root)].instances;
      points += _states[static_cast<std::size_t>(root)].points;
    }
    const double bytes = static_cast<double>(_document.GetText().size());
    if (instances > static_cast<double>(kLeastInstances) + bytes / kBytesPerInstance ||
        points > kLeastPlacedPoints + kPlacedPointsPerByte * bytes) {
      return GetReport().Fail(KOVAResultCode::kInvalidFile, {},
                              "its assembly has %.3g instances with %.3g points, which is too much "
                              "for a file of its size",
                              instances, points);
    }
    if (instances == 0.0) {
      GetReport().Warn({}, "there are no edges and no triangles in the file");
      return KOVAResultCode::kNoTranslatableGeometry;
    }
    _model.instances.reserve(static_cast<int>(instances));
    for (const int root : _structure.GetRoots()) Place(root);
    return KOVAResultCode::kSuccess;
  }

  // There is no cycle, so that this ends; branches without a part are not entered.
  void Place(int root) {
    struct Level {
      int node;
      std::size_t child;
      KOVAMorph3D placement;
      RecordNumber occurrence;
      Looks looks;
    };
    std::vector<Level> path;
    const auto enter = [&](int node, const KOVAMorph3D& placement, RecordNumber occurrence,
                           const Looks& looks) {
      const State& state = _states[static_cast<std::size_t>(node)];
      if (state.instances == 0.0) return;
      if (state.part >= 0) AddInstance(state.part, placement, occurrence, looks);
      path.push_back({node, 0, placement, occurrence, looks});
    };
    enter(root, KOVAMorph3D(), kNoRecord, Looks());
    while (!path.empty()) {
      Level& level = path.back();
      const Node& node = _structure.GetNodes()[static_cast<std::size_t>(level.node)];
      if (level.child == node.children.size()) {
        path.pop_back();
        continue;
      }
      const Child& child = node.children[level.child++];
      Looks looks = level.looks;
      if (child.looks.layer != 0) looks.layer = child.looks.layer;
      if (child.looks.colour >= 0) looks.colour = child.looks.colour;
      enter(child.node, child.placement.multiply(level.placement),
            child.occurrence == kNoRecord ? level.occurrence : child.occurrence, looks);
    }
  }

  // A long name may be that of very many instances, and each has a copy.
  void TakeName(const KOVAString& name, RecordNumber record, KOVAString& copy) {
    const std::uint64_t units = static_cast<std::uint64_t>(name.length());
    if (units > _nameUnits) {
      _document.Complain(record, "its name is too long to be given to all that have it");
      return;
    }
    _nameUnits -= units;
    copy = name;
  }

  void AddInstance(int part, const KOVAMorph3D& placement, RecordNumber occurrence,
                   const Looks& looks) {
    // Everything that it moves must stay finite.
    const double extent = _extents[static_cast<std::size_t>(part)];
    const kova::translators::Placement place(placement);
    for (int corner = 0; corner < 8; ++corner) {
      const Point moved =
          place({(corner & 1) != 0 ? extent : -extent, (corner & 2) != 0 ? extent : -extent,
                 (corner & 4) != 0 ? extent : -extent});
      if (std::isfinite(moved.x) && std::isfinite(moved.y) && std::isfinite(moved.z)) continue;
      if (occurrence != kNoRecord) _document.Complain(occurrence, "it is placed too far away");
      return;
    }
    Instance instance;
    instance.part = part;
    instance.placement = placement;
    instance.looks = looks;
    if (occurrence != kNoRecord) {
      TakeName(_structure.GetOccurrenceName(occurrence), occurrence, instance.name);
    }
    _model.instances.add(instance);
  }

  Document& _document;
  Model& _model;
  Progress _progress;
  Geometry _geometry;
  Units _units;
  Styles _styles;
  ProductStructure _structure;
  PartBuilder _parts;
  std::vector<State> _states;
  std::vector<double> _extents;
  std::size_t _builtNodes = 0;
  std::uint64_t _nameUnits;
};

}  // namespace

KOVAResult buildModel(Document& document, const KOVAOptions& options, Model& model) {
  return ModelBuilder(document, options, model).Run();
}

}  // namespace kova::translators::step
