#include "translators/step/Keywords.h"

#include <array>
#include <cstddef>

namespace kova::translators::step {

namespace {

struct Entry {
  std::string_view word;
  Keyword keyword;
};

constexpr Entry kEntries[] = {
    {"REPRESENTATION_RELATIONSHIP_WITH_TRANSFORMATION", Keyword::kRelationshipWithTransformation},
    {"SHAPE_REPRESENTATION_RELATIONSHIP_WITH_TRANSFORMATION",
     Keyword::kRelationshipWithTransformation},
    {"GLOBAL_UNIT_ASSIGNED_CONTEXT", Keyword::kUnitContext},
    {"LENGTH_UNIT", Keyword::kLengthUnit},
    {"PLANE_ANGLE_UNIT", Keyword::kPlaneAngleUnit},
    {"RATIONAL_B_SPLINE_CURVE", Keyword::kRationalBSplineCurve},
    {"B_SPLINE_CURVE_WITH_KNOTS", Keyword::kBSplineCurveWithKnots},
    {"BEZIER_CURVE", Keyword::kBezierCurve},
    {"QUASI_UNIFORM_CURVE", Keyword::kQuasiUniformCurve},
    {"UNIFORM_CURVE", Keyword::kUniformCurve},
    {"B_SPLINE_CURVE", Keyword::kBSplineCurve},
    {"SI_UNIT", Keyword::kSiUnit},
    {"CONVERSION_BASED_UNIT", Keyword::kConversionBasedUnit},
    {"LENGTH_MEASURE_WITH_UNIT", Keyword::kLengthMeasureWithUnit},
    {"PLANE_ANGLE_MEASURE_WITH_UNIT", Keyword::kPlaneAngleMeasureWithUnit},
    {"MEASURE_WITH_UNIT", Keyword::kMeasureWithUnit},
    {"NAMED_UNIT", Keyword::kNamedUnit},

    {"CONTEXT_DEPENDENT_SHAPE_REPRESENTATION", Keyword::kContextDependentShapeRepresentation},
    {"SHAPE_DEFINITION_REPRESENTATION", Keyword::kShapeDefinitionRepresentation},
    {"NEXT_ASSEMBLY_USAGE_OCCURRENCE", Keyword::kAssemblyUsage},
    {"PRODUCT_DEFINITION", Keyword::kProductDefinition},
    {"PRODUCT_DEFINITION_WITH_ASSOCIATED_DOCUMENTS", Keyword::kProductDefinition},
    {"PRODUCT_DEFINITION_FORMATION", Keyword::kProductDefinitionFormation},
    {"PRODUCT_DEFINITION_FORMATION_WITH_SPECIFIED_SOURCE", Keyword::kProductDefinitionFormation},
    {"PRODUCT_DEFINITION_SHAPE", Keyword::kProductDefinitionShape},
    {"PRODUCT", Keyword::kProduct},
    {"ITEM_DEFINED_TRANSFORMATION", Keyword::kItemDefinedTransformation},
    {"SHAPE_REPRESENTATION_RELATIONSHIP", Keyword::kShapeRelationship},
    {"REPRESENTATION_RELATIONSHIP", Keyword::kRelationship},
    {"SHAPE_REPRESENTATION", Keyword::kShapeRepresentation},
    {"ADVANCED_BREP_SHAPE_REPRESENTATION", Keyword::kShapeRepresentation},
    {"FACETED_BREP_SHAPE_REPRESENTATION", Keyword::kShapeRepresentation},
    {"ELEMENTARY_BREP_SHAPE_REPRESENTATION", Keyword::kShapeRepresentation},
    {"MANIFOLD_SURFACE_SHAPE_REPRESENTATION", Keyword::kShapeRepresentation},
    {"NON_MANIFOLD_SURFACE_SHAPE_REPRESENTATION", Keyword::kShapeRepresentation},
    {"EDGE_BASED_WIREFRAME_SHAPE_REPRESENTATION", Keyword::kShapeRepresentation},
    {"SHELL_BASED_WIREFRAME_SHAPE_REPRESENTATION", Keyword::kShapeRepresentation},
    {"GEOMETRICALLY_BOUNDED_WIREFRAME_SHAPE_REPRESENTATION", Keyword::kShapeRepresentation},
    {"GEOMETRICALLY_BOUNDED_SURFACE_SHAPE_REPRESENTATION", Keyword::kShapeRepresentation},
    {"CSG_SHAPE_REPRESENTATION", Keyword::kShapeRepresentation},
    {"TESSELLATED_SHAPE_REPRESENTATION", Keyword::kShapeRepresentation},
    {"REPRESENTATION", Keyword::kRepresentation},
    {"REPRESENTATION_MAP", Keyword::kRepresentationMap},
    {"MAPPED_ITEM", Keyword::kMappedItem},

    {"CARTESIAN_POINT", Keyword::kPoint},
    {"DIRECTION", Keyword::kDirection},
    {"VECTOR", Keyword::kVector},
    {"AXIS2_PLACEMENT_3D", Keyword::kAxis2Placement},
    {"CARTESIAN_TRANSFORMATION_OPERATOR_3D", Keyword::kTransformationOperator},

    {"LINE", Keyword::kLine},
    {"CIRCLE", Keyword::kCircle},
    {"ELLIPSE", Keyword::kEllipse},
    {"HYPERBOLA", Keyword::kHyperbola},
    {"PARABOLA", Keyword::kParabola},
    {"POLYLINE", Keyword::kPolyline},
    {"TRIMMED_CURVE", Keyword::kTrimmedCurve},
    {"COMPOSITE_CURVE", Keyword::kCompositeCurve},
    {"COMPOSITE_CURVE_SEGMENT", Keyword::kCompositeCurveSegment},
    {"SURFACE_CURVE", Keyword::kSurfaceCurve},
    {"SEAM_CURVE", Keyword::kSurfaceCurve},
    {"INTERSECTION_CURVE", Keyword::kSurfaceCurve},
    {"BOUNDED_SURFACE_CURVE", Keyword::kSurfaceCurve},
    {"PCURVE", Keyword::kPcurve},
    {"BOUNDED_PCURVE", Keyword::kPcurve},

    {"VERTEX_POINT", Keyword::kVertexPoint},
    {"EDGE_CURVE", Keyword::kEdgeCurve},
    {"SUBEDGE", Keyword::kSubedge},
    {"ORIENTED_EDGE", Keyword::kOrientedEdge},
    {"PATH", Keyword::kPath},
    {"OPEN_PATH", Keyword::kPath},
    {"EDGE_LOOP", Keyword::kEdgeLoop},
    {"POLY_LOOP", Keyword::kPolyLoop},
    {"VERTEX_LOOP", Keyword::kVertexLoop},
    {"FACE_BOUND", Keyword::kFaceBound},
    {"FACE_OUTER_BOUND", Keyword::kFaceBound},
    {"ADVANCED_FACE", Keyword::kFace},
    {"FACE_SURFACE", Keyword::kFace},
    {"FACE", Keyword::kFace},
    {"SUBFACE", Keyword::kFace},
    {"ORIENTED_FACE", Keyword::kOrientedFace},
    {"CLOSED_SHELL", Keyword::kFaceSet},
    {"OPEN_SHELL", Keyword::kFaceSet},
    {"CONNECTED_FACE_SET", Keyword::kFaceSet},
    {"CONNECTED_FACE_SUB_SET", Keyword::kFaceSet},
    {"ORIENTED_CLOSED_SHELL", Keyword::kOrientedShell},
    {"ORIENTED_OPEN_SHELL", Keyword::kOrientedShell},
    {"MANIFOLD_SOLID_BREP", Keyword::kSolid},
    {"FACETED_BREP", Keyword::kSolid},
    {"BREP_WITH_VOIDS", Keyword::kSolidWithVoids},
    {"SHELL_BASED_SURFACE_MODEL", Keyword::kSurfaceModel},
    {"FACE_BASED_SURFACE_MODEL", Keyword::kSurfaceModel},
    {"CONNECTED_EDGE_SET", Keyword::kEdgeSet},
    {"CONNECTED_EDGE_SUB_SET", Keyword::kEdgeSet},
    {"WIRE_SHELL", Keyword::kWireShell},
    {"VERTEX_SHELL", Keyword::kVertexShell},
    {"EDGE_BASED_WIREFRAME_MODEL", Keyword::kWireModel},
    {"SHELL_BASED_WIREFRAME_MODEL", Keyword::kWireModel},
    {"GEOMETRIC_CURVE_SET", Keyword::kGeometricSet},
    {"GEOMETRIC_SET", Keyword::kGeometricSet},

    {"COORDINATES_LIST", Keyword::kCoordinates},
    {"TRIANGULATED_FACE", Keyword::kTriangulatedFace},
    {"COMPLEX_TRIANGULATED_FACE", Keyword::kComplexTriangulatedFace},
    {"TRIANGULATED_SURFACE_SET", Keyword::kTriangulatedSet},
    {"COMPLEX_TRIANGULATED_SURFACE_SET", Keyword::kComplexTriangulatedSet},
    {"TESSELLATED_SHELL", Keyword::kTessellatedGroup},
    {"TESSELLATED_SOLID", Keyword::kTessellatedGroup},
    {"TESSELLATED_WIRE", Keyword::kTessellatedGroup},
    {"TESSELLATED_GEOMETRIC_SET", Keyword::kTessellatedGroup},
    {"TESSELLATED_CURVE_SET", Keyword::kTessellatedCurveSet},
    {"TESSELLATED_EDGE", Keyword::kTessellatedEdge},
    {"TESSELLATED_CONNECTING_EDGE", Keyword::kTessellatedEdge},
    {"TESSELLATED_VERTEX", Keyword::kTessellatedVertex},

    {"STYLED_ITEM", Keyword::kStyledItem},
    {"OVER_RIDING_STYLED_ITEM", Keyword::kOverridingStyledItem},
    {"PRESENTATION_LAYER_ASSIGNMENT", Keyword::kLayerAssignment},
    {"PRESENTATION_STYLE_ASSIGNMENT", Keyword::kStyleHolder},
    {"PRESENTATION_STYLE_BY_CONTEXT", Keyword::kStyleHolder},
    {"SURFACE_SIDE_STYLE", Keyword::kStyleHolder},
    {"SURFACE_STYLE_FILL_AREA", Keyword::kStyleHolder},
    {"FILL_AREA_STYLE", Keyword::kStyleHolder},
    {"FILL_AREA_STYLE_COLOUR", Keyword::kStyleHolder},
    {"SURFACE_STYLE_RENDERING", Keyword::kStyleHolder},
    {"SURFACE_STYLE_RENDERING_WITH_PROPERTIES", Keyword::kStyleHolder},
    {"SURFACE_STYLE_USAGE", Keyword::kSurfaceStyle},
    {"CURVE_STYLE", Keyword::kCurveStyle},
    {"COLOUR_RGB", Keyword::kColourRgb},
    {"DRAUGHTING_PRE_DEFINED_COLOUR", Keyword::kPredefinedColour},
    {"PRE_DEFINED_COLOUR", Keyword::kPredefinedColour},
};

constexpr std::size_t kSlots = 512;
static_assert(std::size(kEntries) * 3 < kSlots);

constexpr std::size_t getSlot(std::string_view word) {
  std::uint32_t hash = static_cast<std::uint32_t>(word.size());
  for (const char c : word) hash = (hash ^ static_cast<unsigned char>(c)) * 0x01000193U;
  return (hash ^ (hash >> 16)) % kSlots;
}

// Open addressing; the number of an entry plus 1, 0 is a free slot.
constexpr std::array<std::uint8_t, kSlots> makeTable() {
  std::array<std::uint8_t, kSlots> table{};
  std::uint8_t number = 0;
  for (const Entry& entry : kEntries) {
    std::size_t slot = getSlot(entry.word);
    while (table[slot] != 0) slot = (slot + 1) % kSlots;
    table[slot] = ++number;
  }
  return table;
}

constexpr std::array<std::uint8_t, kSlots> kTable = makeTable();

}  // namespace

Keyword findKeyword(std::string_view word) {
  for (std::size_t slot = getSlot(word); kTable[slot] != 0; slot = (slot + 1) % kSlots) {
    const Entry& entry = kEntries[kTable[slot] - 1];
    if (entry.word == word) return entry.keyword;
  }
  return Keyword::kNone;
}

}  // namespace kova::translators::step
