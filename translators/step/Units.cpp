#include "translators/step/Units.h"

#include "translators/step/Fields.h"

#include <cmath>
#include <numbers>
#include <string_view>
#include <vector>

namespace kova::translators::step {

namespace {

constexpr double kSameUnit = 1e-7;
constexpr int kMostConversions = 16;
constexpr std::size_t kMostUnits = 64;

struct Prefix {
  std::string_view name;
  double factor;
};

constexpr Prefix kPrefixes[] = {
    {"EXA", 1e18},  {"PETA", 1e15},  {"TERA", 1e12},   {"GIGA", 1e9},
    {"MEGA", 1e6},  {"KILO", 1e3},   {"HECTO", 1e2},   {"DECA", 1e1},
    {"DECI", 1e-1}, {"CENTI", 1e-2}, {"MILLI", 1e-3},  {"MICRO", 1e-6},
    {"NANO", 1e-9}, {"PICO", 1e-12}, {"FEMTO", 1e-15}, {"ATTO", 1e-18},
};

bool isSame(double a, double b) { return std::fabs(a - b) <= kSameUnit * std::fabs(b); }

}  // namespace

const ContextUnits& Units::Get(RecordNumber context) {
  const auto found = _known.find(context);
  if (found != _known.end()) return found->second;
  return _known.emplace(context, context == kNoRecord ? ContextUnits() : Read(context))
      .first->second;
}

ContextUnits Units::Read(RecordNumber context) {
  ContextUnits units;
  const char* const list = _document.FindPart(context, Keyword::kUnitContext);
  if (list == nullptr) return units;
  Fields fields(_document, context, list);
  // As a simple record it has the context's identifier and type first.
  if (!_document.GetRecords()[context].IsComplex()) fields.Skip(2);
  std::vector<RecordNumber> members;
  fields.References(members);
  if (members.size() > kMostUnits) members.resize(kMostUnits);
  for (const RecordNumber member : members) {
    if (_document.FindPart(member, Keyword::kLengthUnit) != nullptr) {
      units.metres = Measure(member, true);
    } else if (_document.FindPart(member, Keyword::kPlaneAngleUnit) != nullptr) {
      const double radians = Measure(member, false);
      if (radians > 0.0) units.radians = radians;
    }
  }
  constexpr double kDegree = std::numbers::pi / 180.0;
  if (isSame(units.radians, kDegree)) units.radians = kDegree;
  for (int i = KOVAUnitNanometer; i <= KOVAUnitMicroinch; ++i) {
    double metres = 0.0;
    const KOVAUnit unit = static_cast<KOVAUnit>(i);
    if (GetUnitScaleFactor(unit, metres).IsFailure() || !isSame(units.metres, metres)) continue;
    units.unit = unit;
    units.metres = metres;
    break;
  }
  return units;
}

double Units::Measure(RecordNumber unit, bool isLength) {
  double factor = 1.0;
  for (int i = 0; i < kMostConversions; ++i) {
    if (const char* const si = _document.FindPart(unit, Keyword::kSiUnit)) {
      Fields fields(_document, unit, si);
      // As a simple record it has the dimensions first.
      if (!_document.GetRecords()[unit].IsComplex()) fields.Skip();
      Parameters& parameters = fields.GetParameters();
      std::string_view prefix;
      if (parameters.GetKind() == Parameters::Kind::kEnumeration) {
        parameters.TakeEnumeration(prefix);
      } else {
        parameters.Skip();
      }
      const std::string_view name = fields.Enumeration();
      if (!fields) return 0.0;
      if (name != (isLength ? "METRE" : "RADIAN")) {
        _document.Complain(unit, "the unit is not of its kind");
        return 0.0;
      }
      for (const Prefix& known : kPrefixes) {
        if (known.name == prefix) factor *= known.factor;
      }
      return std::isfinite(factor) && factor > 0.0 ? factor : 0.0;
    }
    const char* const conversion = _document.FindPart(unit, Keyword::kConversionBasedUnit);
    if (conversion == nullptr) break;
    Fields fields(_document, unit, conversion);
    if (!_document.GetRecords()[unit].IsComplex()) fields.Skip();
    const RecordNumber measure = fields.Skip().Reference();
    if (!fields) return 0.0;
    const char* list = nullptr;
    for (const Keyword keyword : {Keyword::kMeasureWithUnit, Keyword::kLengthMeasureWithUnit,
                                  Keyword::kPlaneAngleMeasureWithUnit}) {
      list = _document.FindPart(measure, keyword);
      // Of a complex record only the supertype has the parameters.
      if (list != nullptr && !Parameters(list).IsAtEnd()) break;
    }
    Fields value(_document, measure, list);
    factor *= value.Number();
    unit = value.Reference();
    if (!value) return 0.0;
  }
  _document.Complain(unit, "it says of no unit how long it is");
  return 0.0;
}

}  // namespace kova::translators::step
