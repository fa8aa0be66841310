#pragma once

#include <cstdint>
#include <string_view>

namespace kova::translators::step {

/// The keywords that the reader knows, in the order of their importance: a complex record goes by
/// the first of its keywords here. Types that differ in nothing that matters share one entry.
enum class Keyword : std::uint16_t {
  kNone,

  // What complex records are mostly known by.
  kRelationshipWithTransformation,
  kUnitContext,
  kLengthUnit,
  kPlaneAngleUnit,
  kRationalBSplineCurve,
  kBSplineCurveWithKnots,
  kBezierCurve,
  kQuasiUniformCurve,
  kUniformCurve,
  kBSplineCurve,
  kSiUnit,
  kConversionBasedUnit,
  kLengthMeasureWithUnit,
  kPlaneAngleMeasureWithUnit,
  kMeasureWithUnit,
  kNamedUnit,

  // Products.
  kContextDependentShapeRepresentation,
  kShapeDefinitionRepresentation,
  kAssemblyUsage,
  kProductDefinition,
  kProductDefinitionFormation,
  kProductDefinitionShape,
  kProduct,
  kItemDefinedTransformation,
  kShapeRelationship,
  kRelationship,
  kShapeRepresentation,
  kRepresentation,
  kRepresentationMap,
  kMappedItem,

  // Placements.
  kPoint,
  kDirection,
  kVector,
  kAxis2Placement,
  kTransformationOperator,

  // Curves.
  kLine,
  kCircle,
  kEllipse,
  kHyperbola,
  kParabola,
  kPolyline,
  kTrimmedCurve,
  kCompositeCurve,
  kCompositeCurveSegment,
  kSurfaceCurve,
  kPcurve,

  // Topology.
  kVertexPoint,
  kEdgeCurve,
  kSubedge,
  kOrientedEdge,
  kPath,
  kEdgeLoop,
  kPolyLoop,
  kVertexLoop,
  kFaceBound,
  kFace,
  kOrientedFace,
  kFaceSet,
  kOrientedShell,
  kSolid,
  kSolidWithVoids,
  kSurfaceModel,
  kEdgeSet,
  kWireShell,
  kVertexShell,
  kWireModel,
  kGeometricSet,

  // Tessellation.
  kCoordinates,
  kTriangulatedFace,
  kComplexTriangulatedFace,
  kTriangulatedSet,
  kComplexTriangulatedSet,
  kTessellatedGroup,
  kTessellatedCurveSet,
  kTessellatedEdge,
  kTessellatedVertex,

  // Looks.
  kStyledItem,
  kOverridingStyledItem,
  kLayerAssignment,
  kStyleHolder,
  kSurfaceStyle,
  kCurveStyle,
  kColourRgb,
  kPredefinedColour,
};

/// @return kNone for any other word.
Keyword findKeyword(std::string_view word);

}  // namespace kova::translators::step
