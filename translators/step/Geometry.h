#pragma once

#include "kovabase/geometry/KOVAMorph3D.h"
#include "translators/step/Curves.h"
#include "translators/step/Records.h"

#include <cstdint>
#include <vector>

namespace kova::translators::step {

/// Reads the geometry of records: points, placements and curves, in the units of the file. Trouble
/// is told, and what has it is left out.
class Geometry {
 public:
  explicit Geometry(Document& document);

  /// How many radians the parameters of circles and ellipses have in one unit.
  void SetAngleUnit(double radians) { _radians = radians; }

  /// A CARTESIAN_POINT; a missing z is 0.
  bool ReadPoint(RecordNumber record, Point& point);
  /// The point of a vertex.
  bool ReadVertex(RecordNumber record, Point& point);
  /// An AXIS2_PLACEMENT_3D.
  bool ReadFrame(RecordNumber record, Frame& frame);
  /// An AXIS2_PLACEMENT_3D or a CARTESIAN_TRANSFORMATION_OPERATOR_3D as the map from its own
  /// coordinates.
  /// @param scale  what its lengths are multiplied by.
  bool ReadPlacement(RecordNumber record, double scale, KOVAMorph3D& morph);
  /// The curve of a record, whatever its kind; null when there is none. The work that curves make
  /// is limited by the size of the file, so that a small file which uses a large curve very often
  /// does not take for ever.
  SpaceCurveHandle ReadCurve(RecordNumber record);

  static bool IsCurve(Keyword keyword) {
    return (keyword >= Keyword::kRationalBSplineCurve && keyword <= Keyword::kBSplineCurve) ||
           (keyword >= Keyword::kLine && keyword <= Keyword::kPcurve &&
            keyword != Keyword::kCompositeCurveSegment);
  }

 private:
  struct Curve {
    SpaceCurveHandle curve;
    /// What its parameters in the file are multiplied by.
    double factor = 1.0;
    /// Pieces that have to be sampled one by one.
    std::uint64_t pieces = 1;
  };

  Curve Read(RecordNumber record, int depth);
  Curve ReadLine(RecordNumber record);
  Curve ReadConic(RecordNumber record, Keyword keyword);
  Curve ReadPolyline(RecordNumber record);
  Curve ReadTrimmed(RecordNumber record, int depth);
  Curve ReadComposite(RecordNumber record, int depth);
  Curve ReadBSpline(RecordNumber record, Keyword keyword);
  bool ReadTrim(RecordNumber record, class Fields& fields, const Curve& basis, bool prefersPoint,
                double& parameter);
  bool ReadDirection(RecordNumber record, Point& direction);
  bool ReadPoints(const std::vector<RecordNumber>& records, std::vector<Point>& points);
  bool Expect(RecordNumber record, Keyword keyword, const char* what);
  Curve Refuse(RecordNumber record, const char* reason);

  Document& _document;
  double _radians = 1.0;
  std::int64_t _work;
};

}  // namespace kova::translators::step
