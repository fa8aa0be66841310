#include "translators/step/ProductStructure.h"

#include "translators/step/Fields.h"

#include <algorithm>

namespace kova::translators::step {

namespace {

constexpr double kMetresPerMillimetre = 0.001;

template <class Value>
void sortAll(std::vector<Value>& list) {
  std::sort(list.begin(), list.end());
}

template <class Value>
bool contains(const std::vector<Value>& sorted, const Value& value) {
  return std::binary_search(sorted.begin(), sorted.end(), value);
}

}  // namespace

void ProductStructure::Read() {
  ReadShapeDefinitions();
  ReadOccurrencePlacements();
  ReadRelationships();
  FollowClaimed();
  ReadOccurrences();
  ReadOtherShapes();
  sortAll(_placedPairs);
  sortAll(_mappedPairs);
  std::erase_if(_links, [this](const Link& link) { return IsSuperseded(link); });
  FindRoots();
  FindUnit();
  PlaceChildren();
}

int ProductStructure::FindProduct(RecordNumber definition) {
  if (definition == kNoRecord || _document.GetKeyword(definition) != Keyword::kProductDefinition) {
    return -1;
  }
  const auto [entry, isNew] =
      _nodeByDefinition.emplace(definition, static_cast<int>(_nodes.size()));
  if (isNew) {
    _nodes.emplace_back();
    _nodes.back().record = definition;
  }
  return entry->second;
}

RecordNumber ProductStructure::FindDefinition(RecordNumber shape, Keyword keyword) {
  if (shape == kNoRecord || _document.GetRecords()[shape].IsComplex() ||
      _document.GetKeyword(shape) != Keyword::kProductDefinitionShape) {
    return kNoRecord;
  }
  Fields fields(_document, shape);
  const RecordNumber definition = fields.Skip(2).Reference();
  if (!fields || _document.GetKeyword(definition) != keyword) return kNoRecord;
  return definition;
}

void ProductStructure::ReadShapeDefinitions() {
  // In the order of the products, whatever that of their shapes.
  for (const RecordNumber definition : _document.productDefinitions) FindProduct(definition);
  for (const RecordNumber record : _document.shapeDefinitions) {
    Fields fields(_document, record);
    const RecordNumber shape = fields.Reference();
    const RecordNumber representation = fields.Reference();
    if (!fields) continue;
    // Shapes of something else, such as a detail of a product, are not the product's.
    const int node = FindProduct(FindDefinition(shape, Keyword::kProductDefinition));
    if (node < 0) {
      _details.push_back(representation);
      continue;
    }
    const int owner = GetOwner(representation);
    if (owner < 0) {
      Claim(representation, node);
    } else if (owner != node) {
      _links.push_back({LinkKind::kSharedShape, node, owner, record, kNoRecord});
    }
  }
}

void ProductStructure::ReadOccurrencePlacements() {
  for (const RecordNumber record : _document.placedOccurrences) {
    Fields fields(_document, record);
    const RecordNumber relationship = fields.Reference();
    const RecordNumber shape = fields.Reference();
    if (!fields) continue;
    const RecordNumber occurrence = FindDefinition(shape, Keyword::kAssemblyUsage);
    if (occurrence == kNoRecord) continue;
    _placementByOccurrence.emplace(occurrence, relationship);
    _usedRelationships.push_back(relationship);
  }
  sortAll(_usedRelationships);
}

bool ProductStructure::ReadRelationship(RecordNumber record, Relationship& relationship) {
  const Keyword keyword = _document.GetKeyword(record);
  const bool hasTransformation = keyword == Keyword::kRelationshipWithTransformation;
  if (!hasTransformation && keyword != Keyword::kShapeRelationship &&
      keyword != Keyword::kRelationship) {
    _document.Complain(record, "it is referred to as a relationship between shapes");
    return false;
  }
  const bool isComplex = _document.GetRecords()[record].IsComplex();
  Fields fields(
      _document, record,
      isComplex ? _document.FindPart(record, Keyword::kRelationship) : _document.GetList(record));
  relationship.record = record;
  relationship.first = fields.Skip(2).Reference();
  relationship.second = fields.Reference();
  if (hasTransformation) {
    if (isComplex) {
      Fields operation(_document, record,
                       _document.FindPart(record, Keyword::kRelationshipWithTransformation));
      relationship.transformation = operation.Reference();
      if (!operation) return false;
    } else {
      relationship.transformation = fields.Reference();
    }
  }
  return static_cast<bool>(fields);
}

void ProductStructure::ReadRelationships() {
  for (const RecordNumber record : _document.relationships) {
    Relationship relationship;
    if (contains(_usedRelationships, record) || !ReadRelationship(record, relationship)) continue;
    _related.emplace_back(relationship.first, relationship.second);
    _related.emplace_back(relationship.second, relationship.first);
  }
  std::stable_sort(_related.begin(), _related.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  for (const RecordNumber record : _document.placedRelationships) {
    Relationship relationship;
    if (contains(_usedRelationships, record) || !ReadRelationship(record, relationship)) continue;
    _placed.push_back(relationship);
  }
  std::stable_sort(
      _placed.begin(), _placed.end(),
      [](const Relationship& a, const Relationship& b) { return a.second < b.second; });
}

void ProductStructure::Claim(RecordNumber representation, int node) {
  _nodeByRepresentation.emplace(representation, node);
  _nodes[static_cast<std::size_t>(node)].representations.push_back(representation);
  _claimed.push_back(representation);
}

int ProductStructure::GetOwner(RecordNumber representation) const {
  const auto found = _nodeByRepresentation.find(representation);
  return found == _nodeByRepresentation.end() ? -1 : found->second;
}

int ProductStructure::FindOrMakeNode(RecordNumber representation) {
  const int owner = GetOwner(representation);
  if (owner >= 0) return owner;
  const int node = static_cast<int>(_nodes.size());
  _nodes.emplace_back();
  _nodes.back().record = representation;
  Claim(representation, node);
  return node;
}

void ProductStructure::FollowClaimed() {
  for (;;) {
    // Products take what is joined to their shapes before anything is taken for a shape alone.
    for (; _joined < _claimed.size(); ++_joined) {
      const RecordNumber representation = _claimed[_joined];
      const int node = GetOwner(representation);
      auto related = std::lower_bound(
          _related.begin(), _related.end(), representation,
          [](const auto& pair, RecordNumber record) { return pair.first < record; });
      for (; related != _related.end() && related->first == representation; ++related) {
        if (GetOwner(related->second) < 0) Claim(related->second, node);
      }
    }
    if (_followed == _claimed.size()) return;
    const RecordNumber representation = _claimed[_followed++];
    for (const RecordNumber item : GetRepresentation(representation).mappedItems) {
      FollowMappedItem(representation, item);
    }
    auto placed = std::lower_bound(_placed.begin(), _placed.end(), representation,
                                   [](const Relationship& relationship, RecordNumber record) {
                                     return relationship.second < record;
                                   });
    for (; placed != _placed.end() && placed->second == representation; ++placed) {
      _links.push_back({LinkKind::kRelationship, GetOwner(representation),
                        FindOrMakeNode(placed->first), placed->record, representation});
    }
  }
}

void ProductStructure::FollowMappedItem(RecordNumber representation, RecordNumber item) {
  Fields fields(_document, item);
  const RecordNumber map = fields.Skip().Reference();
  if (!fields) return;
  if (_document.GetKeyword(map) != Keyword::kRepresentationMap) {
    _document.Complain(map, "it is referred to as a map of a representation");
    return;
  }
  Fields parts(_document, map);
  const RecordNumber mapped = parts.Skip().Reference();
  if (!parts) return;
  const int parent = GetOwner(representation);
  const int child = FindOrMakeNode(mapped);
  if (child == parent && mapped != representation) {
    _document.Complain(item, "it maps a shape to where the same shape is already");
    return;
  }
  _links.push_back({LinkKind::kMappedItem, parent, child, item, representation});
  _mappedPairs.emplace_back(parent, child);
}

void ProductStructure::ReadOccurrences() {
  for (const RecordNumber record : _document.occurrences) {
    Fields fields(_document, record);
    const RecordNumber relating = fields.Skip(3).Reference();
    const RecordNumber related = fields.Reference();
    if (!fields) continue;
    const int parent = FindProduct(relating);
    const int child = FindProduct(related);
    if (parent < 0 || child < 0) {
      _document.Complain(record, "it does not join two products");
      continue;
    }
    _links.push_back({LinkKind::kOccurrence, parent, child, record, kNoRecord});
    if (_placementByOccurrence.count(record) != 0) _placedPairs.emplace_back(parent, child);
  }
}

bool ProductStructure::HasShape(RecordNumber representation) {
  const std::vector<RecordNumber>& items = GetItems(representation);
  return std::any_of(items.begin(), items.end(), [this](RecordNumber item) {
    const Keyword keyword = _document.GetKeyword(item);
    return keyword != Keyword::kAxis2Placement && keyword != Keyword::kMappedItem &&
           keyword != Keyword::kPoint;
  });
}

void ProductStructure::ReadOtherShapes() {
  sortAll(_details);
  const bool hasProductShape =
      std::any_of(_claimed.begin(), _claimed.end(),
                  [this](RecordNumber representation) { return HasShape(representation); });
  for (const RecordNumber representation : _document.shapeRepresentations) {
    if (GetOwner(representation) >= 0 || contains(_details, representation)) continue;
    if (!hasProductShape) {
      // No product shows anything, so that all shapes do.
      FindOrMakeNode(representation);
      FollowClaimed();
    } else if (HasShape(representation)) {
      _document.Complain(representation, "it belongs to no product and is not translated");
    }
  }
}

bool ProductStructure::IsSuperseded(const Link& link) {
  const std::pair pair(link.parent, link.child);
  switch (link.kind) {
    case LinkKind::kOccurrence:
      // Then the mapped item has the placement.
      return _placementByOccurrence.count(link.record) == 0 && contains(_mappedPairs, pair);
    case LinkKind::kMappedItem:
    case LinkKind::kRelationship: return contains(_placedPairs, pair);
    default: return false;
  }
}

void ProductStructure::FindRoots() {
  for (const Link& link : _links) {
    _nodes[static_cast<std::size_t>(link.child)].isUsed = true;
    _nodes[static_cast<std::size_t>(link.parent)].mustShow = true;
  }
  for (std::size_t i = 0; i < _nodes.size(); ++i) {
    Node& node = _nodes[i];
    node.mustShow |= !node.representations.empty();
    if (node.mustShow && !node.isUsed) _roots.push_back(static_cast<int>(i));
  }
}

void ProductStructure::FindUnit() {
  // Of the first root that has one, else of any shape.
  const auto find = [this](const Node& node) {
    for (const RecordNumber representation : node.representations) {
      const ContextUnits& units = GetContextUnits(representation);
      if (units.metres <= 0.0) continue;
      _unit = units.unit;
      _metres = units.metres;
      if (_unit == KOVAUnitUnknown) {
        _unit = KOVAUnitMillimeter;
        _metres = kMetresPerMillimetre;
      }
      return true;
    }
    return false;
  };
  for (const int root : _roots) {
    if (find(_nodes[static_cast<std::size_t>(root)])) return;
  }
  for (const Node& node : _nodes) {
    if (find(node)) return;
  }
}

void ProductStructure::PlaceChildren() {
  for (const Link& link : _links) {
    Child child;
    child.node = link.child;
    if (link.kind == LinkKind::kOccurrence) child.occurrence = link.record;
    if (link.kind == LinkKind::kMappedItem) child.looks = _styles.Get(link.record, Looks(), false);
    if (!ReadPlacement(link, child.placement)) {
      _document.Complain(link.record, "it has no placement, and stands where its origin is");
      child.placement = KOVAMorph3D();
    }
    _nodes[static_cast<std::size_t>(link.parent)].children.push_back(child);
  }
  _links = {};
}

bool ProductStructure::ReadPlacement(const Link& link, KOVAMorph3D& placement) {
  switch (link.kind) {
    case LinkKind::kSharedShape: return true;
    case LinkKind::kMappedItem: {
      Fields fields(_document, link.record);
      const RecordNumber map = fields.Skip().Reference();
      const RecordNumber target = fields.Reference();
      if (!fields) return false;
      Fields parts(_document, map);
      const RecordNumber origin = parts.Reference();
      const RecordNumber mapped = parts.Reference();
      KOVAMorph3D from;
      KOVAMorph3D to;
      if (!parts || !_geometry.ReadPlacement(origin, GetScale(mapped), from) ||
          !_geometry.ReadPlacement(target, GetScale(link.representation), to)) {
        return false;
      }
      placement = from.inverse().multiply(to);
      return true;
    }
    case LinkKind::kRelationship: {
      Relationship relationship;
      return ReadRelationship(link.record, relationship) &&
             ReadTransformation(relationship, placement);
    }
    case LinkKind::kOccurrence: break;
  }
  const auto found = _placementByOccurrence.find(link.record);
  Relationship relationship;
  if (found == _placementByOccurrence.end() || !ReadRelationship(found->second, relationship)) {
    return false;
  }
  // A plain relationship says that both have the same coordinates.
  if (relationship.transformation == kNoRecord) return true;
  if (!ReadTransformation(relationship, placement)) return false;
  // From the first to the second; mostly the first one is that of the child.
  const int first = GetOwner(relationship.first);
  const int second = GetOwner(relationship.second);
  const bool isReversed = first != link.child && second != link.parent &&
                          (second == link.child || first == link.parent);
  if (isReversed) placement = placement.inverse();
  return true;
}

bool ProductStructure::ReadTransformation(const Relationship& relationship,
                                          KOVAMorph3D& placement) {
  const RecordNumber operation = relationship.transformation;
  const double firstScale = GetScale(relationship.first);
  const double secondScale = GetScale(relationship.second);
  if (_document.GetKeyword(operation) == Keyword::kTransformationOperator) {
    return _geometry.ReadPlacement(operation, secondScale, placement);
  }
  if (_document.GetKeyword(operation) != Keyword::kItemDefinedTransformation) {
    _document.LeaveOut(operation);
    return false;
  }
  Fields fields(_document, operation);
  RecordNumber firstItem = fields.Skip(2).Reference();
  RecordNumber secondItem = fields.Reference();
  if (!fields) return false;
  // Some systems give the items the other way around, which shows where they are listed.
  if (!Lists(relationship.first, firstItem) && !Lists(relationship.second, secondItem) &&
      Lists(relationship.first, secondItem) && Lists(relationship.second, firstItem)) {
    std::swap(firstItem, secondItem);
  }
  KOVAMorph3D from;
  KOVAMorph3D to;
  if (!_geometry.ReadPlacement(firstItem, firstScale, from) ||
      !_geometry.ReadPlacement(secondItem, secondScale, to)) {
    return false;
  }
  placement = from.inverse().multiply(to);
  return true;
}

ProductStructure::Representation& ProductStructure::GetRepresentation(RecordNumber record) {
  const auto [entry, isNew] = _representations.emplace(record, Representation());
  Representation& representation = entry->second;
  if (!isNew) return representation;
  const bool isComplex = _document.GetRecords()[record].IsComplex();
  Fields fields(
      _document, record,
      isComplex ? _document.FindPart(record, Keyword::kRepresentation) : _document.GetList(record));
  fields.Skip().References(representation.items);
  representation.context = fields.OptionalReference();
  for (const RecordNumber item : representation.items) {
    if (_document.GetKeyword(item) == Keyword::kMappedItem) {
      representation.mappedItems.push_back(item);
    }
  }
  return representation;
}

bool ProductStructure::Lists(RecordNumber representation, RecordNumber item) {
  Representation& known = GetRepresentation(representation);
  if (known.sortedItems.size() != known.items.size()) {
    known.sortedItems = known.items;
    sortAll(known.sortedItems);
  }
  return contains(known.sortedItems, item);
}

const ContextUnits& ProductStructure::GetContextUnits(RecordNumber representation) {
  return _units.Get(GetRepresentation(representation).context);
}

double ProductStructure::GetScale(RecordNumber representation) {
  const ContextUnits& units = GetContextUnits(representation);
  return units.metres > 0.0 && _metres > 0.0 && units.metres != _metres ? units.metres / _metres
                                                                        : 1.0;
}

const KOVAString& ProductStructure::GetName(int node) {
  RecordNumber record = _nodes[static_cast<std::size_t>(node)].record;
  const bool isProduct = _document.GetKeyword(record) == Keyword::kProductDefinition;
  if (isProduct) {
    Fields definition(_document, record);
    const RecordNumber formation = definition.Skip(2).Reference();
    if (!definition) return _names[kNoRecord];
    Fields version(_document, formation);
    record = version.Skip(2).Reference();
    if (!version) return _names[kNoRecord];
  }
  const auto [entry, isNew] = _names.emplace(record, KOVAString());
  KOVAString& name = entry->second;
  if (!isNew) return name;
  const bool isComplex = _document.GetRecords()[record].IsComplex();
  Fields fields(_document, record,
                isComplex && !isProduct ? _document.FindPart(record, Keyword::kRepresentation)
                                        : _document.GetList(record));
  name = fields.Text();
  if (!isProduct) return name;
  const KOVAString second = fields.Text();
  if (!second.isEmpty()) name = second;
  return name;
}

const KOVAString& ProductStructure::GetOccurrenceName(RecordNumber occurrence) {
  const auto [entry, isNew] = _names.emplace(occurrence, KOVAString());
  if (isNew) {
    Fields fields(_document, occurrence);
    entry->second = fields.Skip().Text();
  }
  return entry->second;
}

}  // namespace kova::translators::step
