#pragma once

#include "kovabase/units/KOVAUnit.h"
#include "translators/step/Records.h"

#include <unordered_map>

namespace kova::translators::step {

/// The units of a representation context.
struct ContextUnits {
  /// Metres in one unit of length; 0 when the file names none.
  double metres = 0.0;
  /// The unit of that length; unknown when it is none of the library's.
  KOVAUnit unit = KOVAUnitUnknown;
  /// Radians in one unit of plane angle.
  double radians = 1.0;
};

/// Reads the units of representation contexts: SI units with their prefixes, and units that are
/// made of others by a factor, such as the inch and the degree. A factor that is within 1e-7 of one
/// of the library's units, or of a degree, is taken for it.
class Units {
 public:
  explicit Units(Document& document) : _document(document) {}

  /// @param context  kNoRecord gives no unit of length, and radians.
  const ContextUnits& Get(RecordNumber context);

 private:
  ContextUnits Read(RecordNumber context);
  /// How many metres or radians a unit has; 0 when that is not known.
  double Measure(RecordNumber unit, bool isLength);

  Document& _document;
  std::unordered_map<RecordNumber, ContextUnits> _known;
};

}  // namespace kova::translators::step
