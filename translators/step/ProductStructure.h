#pragma once

#include "kovabase/geometry/KOVAMorph3D.h"
#include "kovabase/strings/KOVAString.h"
#include "translators/model/Model.h"
#include "translators/step/Geometry.h"
#include "translators/step/Records.h"
#include "translators/step/Styles.h"
#include "translators/step/Units.h"

#include <unordered_map>
#include <utility>
#include <vector>

namespace kova::translators::step {

/// One placed use of a node in another.
struct Child {
  int node = 0;
  /// From the child's coordinates to those of the node above, in the unit of the model.
  KOVAMorph3D placement;
  /// What gives it a name; kNoRecord when nothing does.
  RecordNumber occurrence = kNoRecord;
  Looks looks;
};

/// A product definition, or shapes that belong to none: what becomes a part, and what it is made
/// of. Nodes may be used several times, and a broken file may use a node in itself.
struct Node {
  /// What it is known by in messages.
  RecordNumber record = kNoRecord;
  /// Representations that share one coordinate system.
  std::vector<RecordNumber> representations;
  std::vector<Child> children;
  /// Used by another node.
  bool isUsed = false;
  /// It must be at or below a root.
  bool mustShow = false;
};

/// The products of a file, their shapes and their assembly.
///
/// A product owns the representations that its definition names, and those that plain relationships
/// between representations join to them. Occurrences place products in products, mapped items and
/// relationships with a transformation place shapes in shapes. An occurrence without a placement of
/// its own is the structure behind a mapped item of the same product, if there is one.
class ProductStructure {
 public:
  ProductStructure(Document& document, Geometry& geometry, Units& units, const Styles& styles)
      : _document(document), _geometry(geometry), _units(units), _styles(styles) {}

  void Read();

  const std::vector<Node>& GetNodes() const { return _nodes; }
  /// Nodes that no other one uses, in the order of the file.
  const std::vector<int>& GetRoots() const { return _roots; }
  /// That of the first root, when it is one of the library's, else the millimetre; unknown when the
  /// file names none.
  KOVAUnit GetUnit() const { return _unit; }
  const std::vector<RecordNumber>& GetItems(RecordNumber representation) {
    return GetRepresentation(representation).items;
  }
  const ContextUnits& GetContextUnits(RecordNumber representation);
  /// From the lengths of a representation to those of the model.
  double GetScale(RecordNumber representation);

  /// The product's name, else its id; of shapes without a product the representation's name.
  const KOVAString& GetName(int node);
  const KOVAString& GetOccurrenceName(RecordNumber occurrence);

 private:
  struct Relationship {
    RecordNumber record = kNoRecord;
    RecordNumber first = kNoRecord;
    RecordNumber second = kNoRecord;
    /// kNoRecord when both have the same coordinates.
    RecordNumber transformation = kNoRecord;
  };
  struct Representation {
    std::vector<RecordNumber> items;
    /// The same when they have been asked for.
    std::vector<RecordNumber> sortedItems;
    std::vector<RecordNumber> mappedItems;
    RecordNumber context = kNoRecord;
  };
  enum class LinkKind { kOccurrence, kMappedItem, kRelationship, kSharedShape };
  /// A child whose placement is still to be read.
  struct Link {
    LinkKind kind;
    int parent;
    int child;
    /// The occurrence, mapped item or relationship.
    RecordNumber record;
    /// Of a mapped item, the one that lists it.
    RecordNumber representation;
  };

  int FindProduct(RecordNumber definition);
  RecordNumber FindDefinition(RecordNumber shape, Keyword keyword);
  void ReadShapeDefinitions();
  void ReadOccurrencePlacements();
  bool ReadRelationship(RecordNumber record, Relationship& relationship);
  void ReadRelationships();
  void Claim(RecordNumber representation, int node);
  int FindOrMakeNode(RecordNumber representation);
  int GetOwner(RecordNumber representation) const;
  void FollowClaimed();
  void FollowMappedItem(RecordNumber representation, RecordNumber item);
  void ReadOccurrences();
  /// Whether it shows more than placements.
  bool HasShape(RecordNumber representation);
  void ReadOtherShapes();
  void FindRoots();
  void FindUnit();
  void PlaceChildren();
  bool IsSuperseded(const Link& link);
  bool ReadPlacement(const Link& link, KOVAMorph3D& placement);
  bool ReadTransformation(const Relationship& relationship, KOVAMorph3D& placement);
  Representation& GetRepresentation(RecordNumber record);
  bool Lists(RecordNumber representation, RecordNumber item);

  Document& _document;
  Geometry& _geometry;
  Units& _units;
  const Styles& _styles;
  std::vector<Node> _nodes;
  std::vector<Link> _links;
  std::vector<int> _roots;
  KOVAUnit _unit = KOVAUnitUnknown;
  /// Of the unit of the model; 0 when the file names none.
  double _metres = 0.0;

  std::unordered_map<RecordNumber, int> _nodeByDefinition;
  std::unordered_map<RecordNumber, int> _nodeByRepresentation;
  std::unordered_map<RecordNumber, Representation> _representations;
  /// By product, representation or occurrence.
  std::unordered_map<RecordNumber, KOVAString> _names;
  /// The relationship that places an occurrence.
  std::unordered_map<RecordNumber, RecordNumber> _placementByOccurrence;
  /// Relationships that place occurrences; sorted.
  std::vector<RecordNumber> _usedRelationships;
  /// Representations of nodes in the order in which they were claimed.
  std::vector<RecordNumber> _claimed;
  /// Shapes of details of products; sorted.
  std::vector<RecordNumber> _details;
  std::size_t _joined = 0;
  std::size_t _followed = 0;
  /// Plain relationships, both ways, by their first representation.
  std::vector<std::pair<RecordNumber, RecordNumber>> _related;
  /// Relationships with a transformation, by their second representation.
  std::vector<Relationship> _placed;
  /// Parent and child of the occurrences that have a placement, and of mapped items; sorted.
  std::vector<std::pair<int, int>> _placedPairs;
  std::vector<std::pair<int, int>> _mappedPairs;
};

}  // namespace kova::translators::step
