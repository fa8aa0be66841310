#include "apps/kova-generate/StepAssembly.h"

#include "apps/kova-generate/StepSolid.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <string>
#include <utility>
#include <vector>

namespace kova::generate {

namespace {

using std::numbers::pi;

constexpr Point3D kOrigin{0, 0, 0};
constexpr Point3D kUp{0, 0, 1};
constexpr Point3D kAlong{1, 0, 0};

// A part or an assembly that others can use.
struct Product {
  Reference definition;
  Reference representation;
  Reference frame;
};

// A product in its place in an assembly.
struct Usage {
  Product product;
  std::string name;
  Point3D origin = kOrigin;
  // By which it is turned about z.
  double angle = 0;
};

struct Colour {
  double red;
  double green;
  double blue;
};

// What a part consists of.
struct Pieces {
  std::vector<Reference> solids;
  std::vector<Reference> tessellations;
  std::vector<Reference> curveSets;
};

// Records that products share. Repeated gear trains have their own.
class ProductWriter {
 public:
  explicit ProductWriter(StepFile& file) : _file(file) {
    _application = file.Add("APPLICATION_CONTEXT('managed model based 3d engineering')");
    file.Add(
        "APPLICATION_PROTOCOL_DEFINITION('international standard',"
        "'ap242_managed_model_based_3d_engineering',2014,",
        _application, ")");
    _productContext = file.Add("PRODUCT_CONTEXT('',", _application, ",'mechanical')");
    _definitionContext =
        file.Add("PRODUCT_DEFINITION_CONTEXT('part definition',", _application, ",'design')");
    const Reference radian = file.Add("(NAMED_UNIT(*)PLANE_ANGLE_UNIT()SI_UNIT($,.RADIAN.))");
    const Reference steradian = file.Add("(NAMED_UNIT(*)SI_UNIT($,.STERADIAN.)SOLID_ANGLE_UNIT())");
    const Reference millimetre = file.Add("(LENGTH_UNIT()NAMED_UNIT(*)SI_UNIT(.MILLI.,.METRE.))");
    _millimetres = WriteContext("millimetres", millimetre, radian, steradian);

    const Reference inchMeasure =
        file.Add("LENGTH_MEASURE_WITH_UNIT(LENGTH_MEASURE(25.4),", millimetre, ")");
    const Reference inchExponents = file.Add("DIMENSIONAL_EXPONENTS(1.,0.,0.,0.,0.,0.,0.)");
    const Reference inch = file.Add("(CONVERSION_BASED_UNIT('INCH',", inchMeasure,
                                    ")LENGTH_UNIT()NAMED_UNIT(", inchExponents, "))");
    const Reference degreeMeasure = file.Add(
        "PLANE_ANGLE_MEASURE_WITH_UNIT(PLANE_ANGLE_MEASURE(0.017453292519943295),", radian, ")");
    const Reference degreeExponents = file.Add("DIMENSIONAL_EXPONENTS(0.,0.,0.,0.,0.,0.,0.)");
    const Reference degree = file.Add("(CONVERSION_BASED_UNIT('DEGREE',", degreeMeasure,
                                      ")NAMED_UNIT(", degreeExponents, ")PLANE_ANGLE_UNIT())");
    _inches = WriteContext("inches", inch, degree, steradian);
  }

  Reference GetMillimetres() const { return _millimetres; }
  Reference GetInches() const { return _inches; }

  Product WritePart(const std::string& name, Reference context, const Pieces& pieces) {
    Product part;
    part.frame = writeFrame(_file, kOrigin, kUp, kAlong);
    part.representation = _file.Add("SHAPE_REPRESENTATION('',(", part.frame, "),", context, ")");
    WriteProduct(name, part);
    Relate(part, "ADVANCED_BREP_SHAPE_REPRESENTATION", pieces.solids, context);
    Relate(part, "TESSELLATED_SHAPE_REPRESENTATION", pieces.tessellations, context);
    Relate(part, "GEOMETRICALLY_BOUNDED_WIREFRAME_SHAPE_REPRESENTATION", pieces.curveSets, context);
    return part;
  }

  Product WriteAssembly(const std::string& name, const std::vector<Usage>& usages) {
    Product assembly;
    assembly.frame = writeFrame(_file, kOrigin, kUp, kAlong);
    std::vector<Reference> frames{assembly.frame};
    for (const Usage& usage : usages) {
      frames.push_back(
          writeFrame(_file, usage.origin, kUp, {std::cos(usage.angle), std::sin(usage.angle), 0}));
    }
    assembly.representation =
        _file.Add("SHAPE_REPRESENTATION('',", toList(frames), ",", _millimetres, ")");
    WriteProduct(name, assembly);
    for (std::size_t i = 0; i < usages.size(); ++i) {
      const Usage& usage = usages[i];
      const Reference transformation = _file.Add("ITEM_DEFINED_TRANSFORMATION('','',",
                                                 usage.product.frame, ",", frames[i + 1], ")");
      const Reference relationship =
          _file.Add("(REPRESENTATION_RELATIONSHIP('','',", usage.product.representation, ",",
                    assembly.representation, ")REPRESENTATION_RELATIONSHIP_WITH_TRANSFORMATION(",
                    transformation, ")SHAPE_REPRESENTATION_RELATIONSHIP())");
      const Reference occurrence = _file.Add(
          "NEXT_ASSEMBLY_USAGE_OCCURRENCE('", static_cast<int>(i + 1), "',", toText(usage.name),
          ",'',", assembly.definition, ",", usage.product.definition, ",$)");
      const Reference shape =
          _file.Add("PRODUCT_DEFINITION_SHAPE('Placement','',", occurrence, ")");
      _file.Add("CONTEXT_DEPENDENT_SHAPE_REPRESENTATION(", relationship, ",", shape, ")");
    }
    return assembly;
  }

  // A PRESENTATION_STYLE_ASSIGNMENT for faces and curves.
  // @param colour  a COLOUR or a subtype of it.
  Reference WriteStyle(Reference colour) {
    const Reference fill = _file.Add("FILL_AREA_STYLE_COLOUR('',", colour, ")");
    const Reference area = _file.Add("FILL_AREA_STYLE('',(", fill, "))");
    const Reference surface = _file.Add("SURFACE_STYLE_FILL_AREA(", area, ")");
    const Reference side = _file.Add("SURFACE_SIDE_STYLE('',(", surface, "))");
    const Reference usage = _file.Add("SURFACE_STYLE_USAGE(.BOTH.,", side, ")");
    const Reference font = _file.Add("DRAUGHTING_PRE_DEFINED_CURVE_FONT('continuous')");
    const Reference curve =
        _file.Add("CURVE_STYLE('',", font, ",POSITIVE_LENGTH_MEASURE(0.2),", colour, ")");
    return _file.Add("PRESENTATION_STYLE_ASSIGNMENT((", usage, ",", curve, "))");
  }
  Reference WriteStyle(const Colour& colour) {
    return WriteStyle(
        _file.Add("COLOUR_RGB('',", colour.red, ",", colour.green, ",", colour.blue, ")"));
  }

  void Paint(Reference style, const Pieces& pieces, Reference context) {
    std::vector<Reference> styled;
    for (const auto* items : {&pieces.solids, &pieces.tessellations, &pieces.curveSets}) {
      for (const Reference item : *items) {
        styled.push_back(_file.Add("STYLED_ITEM('',(", style, "),", item, ")"));
      }
    }
    _file.Add("MECHANICAL_DESIGN_GEOMETRIC_PRESENTATION_REPRESENTATION('',", toList(styled), ",",
              context, ")");
  }

  void WriteLayer(const std::string& name, const std::vector<Pieces>& pieces) {
    std::vector<Reference> all;
    for (const Pieces& piece : pieces) {
      for (const auto* items : {&piece.solids, &piece.tessellations, &piece.curveSets}) {
        all.insert(all.end(), items->begin(), items->end());
      }
    }
    _file.Add("PRESENTATION_LAYER_ASSIGNMENT(", toText(name), ",'',", toList(all), ")");
  }

 private:
  Reference WriteContext(const char* name, Reference length, Reference angle,
                         Reference solidAngle) {
    const Reference uncertainty = _file.Add("UNCERTAINTY_MEASURE_WITH_UNIT(LENGTH_MEASURE(1.E-06),",
                                            length, ",'distance_accuracy_value','')");
    return _file.Add("(GEOMETRIC_REPRESENTATION_CONTEXT(3)GLOBAL_UNCERTAINTY_ASSIGNED_CONTEXT((",
                     uncertainty, "))GLOBAL_UNIT_ASSIGNED_CONTEXT((", length, ",", angle, ",",
                     solidAngle, "))REPRESENTATION_CONTEXT('','", name, "'))");
  }

  void WriteProduct(const std::string& name, Product& product) {
    // Names need not differ; ids should.
    const Reference item = _file.Add("PRODUCT('KG-", std::to_string(product.frame.number), "',",
                                     toText(name), ",'',(", _productContext, "))");
    _file.Add("PRODUCT_RELATED_PRODUCT_CATEGORY('part',$,(", item, "))");
    const Reference formation = _file.Add("PRODUCT_DEFINITION_FORMATION('','',", item, ")");
    product.definition =
        _file.Add("PRODUCT_DEFINITION('design','',", formation, ",", _definitionContext, ")");
    const Reference shape = _file.Add("PRODUCT_DEFINITION_SHAPE('','',", product.definition, ")");
    _file.Add("SHAPE_DEFINITION_REPRESENTATION(", shape, ",", product.representation, ")");
  }

  void Relate(const Product& part, const char* kind, const std::vector<Reference>& items,
              Reference context) {
    if (items.empty()) return;
    const Reference representation = _file.Add(kind, "('',", toList(items), ",", context, ")");
    _file.Add("SHAPE_REPRESENTATION_RELATIONSHIP('','',", part.representation, ",", representation,
              ")");
  }

  StepFile& _file;
  Reference _application;
  Reference _productContext;
  Reference _definitionContext;
  Reference _millimetres;
  Reference _inches;
};

void addPrism(StepFile& file, const Prism& prism, Pieces& pieces) {
  const Reference solid = writeSolid(file, prism);
  pieces.solids.push_back(solid);
  pieces.tessellations.push_back(writeTessellation(file, prism, solid));
}

Point2D polar(double radius, double angle) {
  return {radius * std::cos(angle), radius * std::sin(angle)};
}

constexpr double kShaftDistance = 75;
constexpr double kShaftRadius = 8;
constexpr double kBoltCircle = 22;

// Four places for bolts around a shaft, the first in the direction of `angle`.
std::vector<Point2D> placeBolts(Point2D centre, double angle) {
  std::vector<Point2D> places;
  for (int i = 0; i < 4; ++i) {
    const Point2D place = polar(kBoltCircle, angle + i * pi / 2);
    places.push_back({centre.x + place.x, centre.y + place.y});
  }
  return places;
}

Prism makePlate() {
  Prism plate{makeRoundedRectangle({45, 0}, 200, 130, 16), {}, -12, 0};
  for (const double x : {-42.0, 132.0}) {
    for (const double y : {-52.0, 52.0}) plate.holes.push_back(makeHole({x, y}, 5));
  }
  for (const Point2D& place : placeBolts({0, 0}, pi / 4)) {
    plate.holes.push_back(makeHole(place, 3.3));
  }
  for (const Point2D& place : placeBolts({kShaftDistance, 0}, 0)) {
    plate.holes.push_back(makeHole(place, 3.3));
  }
  plate.holes.push_back(makeHole({0, 0}, kShaftRadius));
  plate.holes.push_back(makeHole({kShaftDistance, 0}, kShaftRadius));
  plate.holes.push_back(makeEllipticHole({27, -48}, 22, 9));
  return plate;
}

Prism makeGearPrism(int teeth, double holeCircle, double holeRadius) {
  Prism gear{makeTeethOutline(teeth, 2.5), {makeHole({0, 0}, kShaftRadius)}, 0, 12};
  for (int i = 0; i < 6; ++i) {
    gear.holes.push_back(makeHole(polar(holeCircle, (i + 0.5) * pi / 3), holeRadius));
  }
  return gear;
}

Prism makeFlange() {
  Prism flange{makeRoundedRectangle({0, 0}, 44, 44, 7), {makeHole({0, 0}, kShaftRadius)}, 0, 5};
  for (const Point2D& place : placeBolts({0, 0}, pi / 4)) {
    flange.holes.push_back(makeHole(place, 3.3));
  }
  return flange;
}

// The weights of four poles at a parameter of a cubic B-spline, whose knots are 0 to `spans` with
// the ends four-fold, and the first of the poles.
std::pair<std::size_t, std::array<double, 4>> weigh(double parameter, int spans) {
  const int span = std::min(static_cast<int>(parameter), spans - 1);
  const auto knot = [&](int i) { return std::clamp(i - 3.0, 0.0, static_cast<double>(spans)); };
  std::array<double, 4> weights{1, 0, 0, 0};
  for (int degree = 1; degree <= 3; ++degree) {
    double saved = 0;
    for (int r = 0; r < degree; ++r) {
      const double right = knot(span + 4 + r);
      const double left = knot(span + 4 + r - degree);
      const double term = weights[static_cast<std::size_t>(r)] / (right - left);
      weights[static_cast<std::size_t>(r)] = saved + (right - parameter) * term;
      saved = (parameter - left) * term;
    }
    weights[static_cast<std::size_t>(degree)] = saved;
  }
  return {static_cast<std::size_t>(span), weights};
}

constexpr double kGripX = 62;
constexpr double kGripZ = 40;

// A bent tube as a cage: four rails, rings of changing width, and two bows over the end.
Reference writeCage(StepFile& file) {
  constexpr double kRadius = 5;
  const double slant = std::sqrt(0.5);
  // Where the middle of the tube is drawn to, and the direction across it, both in the plane y = 0.
  const std::vector<Point2D> middle{{12, 6}, {26, 6},      {42, 4},
                                    {58, 6}, {kGripX, 20}, {kGripX, kGripZ}};
  const std::vector<Point2D> across{{0, 1}, {0, 1}, {0.1, 1}, {-slant, slant}, {-1, 0}, {-1, 0}};
  const int spans = static_cast<int>(middle.size()) - 3;
  const auto writeRail = [&](double side, double up) {
    std::vector<Reference> poles;
    for (std::size_t i = 0; i < middle.size(); ++i) {
      poles.push_back(writePoint(file, {middle[i].x + up * kRadius * across[i].x, side * kRadius,
                                        middle[i].y + up * kRadius * across[i].y}));
    }
    return file.Add("B_SPLINE_CURVE_WITH_KNOTS('',3,", toList(poles),
                    ",.UNSPECIFIED.,.F.,.F.,(4,1,1,4),(0.,1.,2.,3.),.QUASI_UNIFORM_KNOTS.)");
  };
  std::vector<Reference> curves;
  for (const auto& [side, up] : {std::pair(1, 0), {0, 1}, {-1, 0}, {0, -1}}) {
    curves.push_back(writeRail(side, up));
  }
  constexpr int kRings = 9;
  for (int ring = 0; ring <= kRings; ++ring) {
    const auto [first, weights] = weigh(static_cast<double>(spans) * ring / kRings, spans);
    Point2D point{0, 0};
    Point2D direction{0, 0};
    for (std::size_t i = 0; i < 4; ++i) {
      point.x += weights[i] * middle[first + i].x;
      point.y += weights[i] * middle[first + i].y;
      direction.x += weights[i] * across[first + i].x;
      direction.y += weights[i] * across[first + i].y;
    }
    const double size = std::hypot(direction.x, direction.y);
    // The axis of the ring is at right angles to y and to the direction across.
    const Reference frame =
        writeFrame(file, {point.x, 0, point.y}, {direction.y / size, 0, -direction.x / size},
                   {direction.x / size, 0, direction.y / size});
    curves.push_back(file.Add("ELLIPSE('',", frame, ",", kRadius * size, ",", kRadius, ")"));
  }
  // Half circles, exactly.
  for (const auto& [x, y] : {std::pair(kRadius, 0.0), {0.0, kRadius}}) {
    std::vector<Reference> poles;
    for (const auto& [along, up] : {std::pair(1, 0), {1, 1}, {0, 1}, {-1, 1}, {-1, 0}}) {
      poles.push_back(writePoint(file, {kGripX + along * x, along * y, kGripZ + up * kRadius}));
    }
    curves.push_back(file.Add(
        "(BOUNDED_CURVE()B_SPLINE_CURVE(2,", toList(poles),
        ",.CIRCULAR_ARC.,.F.,.F.)B_SPLINE_CURVE_WITH_KNOTS((3,2,3),(0.,0.5,1.),.UNSPECIFIED.)"
        "CURVE()GEOMETRIC_REPRESENTATION_ITEM()RATIONAL_B_SPLINE_CURVE((1.,",
        std::sqrt(0.5), ",1.,", std::sqrt(0.5), ",1.))REPRESENTATION_ITEM(''))"));
  }
  return file.Add("GEOMETRIC_CURVE_SET('',", toList(curves), ")");
}

// An arrow for the sense of rotation: three quarters of a circle that end in a head.
Reference writeArrow(StepFile& file) {
  constexpr double kRadius = 9;
  const Reference circle =
      file.Add("CIRCLE('',", writeFrame(file, kOrigin, kUp, kAlong), ",", kRadius, ")");
  const Reference arc =
      file.Add("TRIMMED_CURVE('',", circle, ",(PARAMETER_VALUE(0.)),(PARAMETER_VALUE(", 1.5 * pi,
               ")),.T.,.PARAMETER.)");
  std::vector<Reference> corners;
  for (const Point2D& corner :
       {Point2D{0, -kRadius}, {0, -kRadius - 3}, {6, -kRadius}, {0, -kRadius + 3}, {0, -kRadius}}) {
    corners.push_back(writePoint(file, {corner.x, corner.y, 0}));
  }
  const Reference head = file.Add("POLYLINE('',", toList(corners), ")");
  const Reference first = file.Add("COMPOSITE_CURVE_SEGMENT(.CONTINUOUS.,.T.,", arc, ")");
  const Reference last = file.Add("COMPOSITE_CURVE_SEGMENT(.DISCONTINUOUS.,.T.,", head, ")");
  const Reference arrow = file.Add("COMPOSITE_CURVE('',(", first, ",", last, "),.F.)");
  return file.Add("GEOMETRIC_CURVE_SET('',(", arrow, "))");
}

Product writeTrain(StepFile& file, ProductWriter& writer) {
  const Reference millimetres = writer.GetMillimetres();
  const Reference inches = writer.GetInches();
  const Reference steel = writer.WriteStyle({0.44, 0.52, 0.6});
  const Reference bronze = writer.WriteStyle({0.8, 0.58, 0.3});
  const Reference green = writer.WriteStyle({0.25, 0.6, 0.45});
  const Reference blue = writer.WriteStyle({0.25, 0.45, 0.75});
  const Reference dark = writer.WriteStyle({0.25, 0.27, 0.3});
  const Reference red = writer.WriteStyle(file.Add("DRAUGHTING_PRE_DEFINED_COLOUR('red')"));

  Pieces plate;
  addPrism(file, makePlate(), plate);
  const Product platePart = writer.WritePart("Plaque d'assise percée", millimetres, plate);
  writer.Paint(steel, plate, millimetres);

  Pieces smallGear;
  addPrism(file, makeGearPrism(24, 17.5, 4), smallGear);
  const Product smallGearPart = writer.WritePart("Zahnrad, 24 Zähne", millimetres, smallGear);
  writer.Paint(green, smallGear, millimetres);

  Pieces largeGear;
  addPrism(file, makeGearPrism(36, 26, 8), largeGear);
  const Product largeGearPart = writer.WritePart("Τροχός, 36 δόντια", millimetres, largeGear);
  writer.Paint(blue, largeGear, millimetres);

  Pieces bushing;
  addPrism(file, makeFlange(), bushing);
  addPrism(file, {makeDisc({0, 0}, 13), {makeHole({0, 0}, kShaftRadius)}, 5, 14}, bushing);
  const Product bushingPart = writer.WritePart("Втулка с фланцем", millimetres, bushing);
  writer.Paint(bronze, bushing, millimetres);

  Pieces shaft;
  addPrism(file, {makeDisc({0, 0}, kShaftRadius), {}, -12, 36}, shaft);
  const Product shaftPart = writer.WritePart("Árbol Ø16", millimetres, shaft);
  writer.Paint(steel, shaft, millimetres);

  // A quarter-inch bolt, half an inch long under its head.
  Pieces bolt;
  addPrism(file, {makeHexagon(0.4375), {}, 0, 0.15625}, bolt);
  addPrism(file, {makeDisc({0, 0}, 0.125), {}, -0.625, 0}, bolt);
  const Product boltPart = writer.WritePart("Śruba ¼″-20 × ⅝″", inches, bolt);
  writer.Paint(dark, bolt, inches);

  Pieces crank;
  addPrism(file, {makeDisc({0, 0}, 13), {makeHole({0, 0}, kShaftRadius)}, 0, 12}, crank);
  crank.curveSets.push_back(writeCage(file));
  const Product crankPart = writer.WritePart("Manivelle coudée", millimetres, crank);
  writer.Paint(steel, crank, millimetres);

  Pieces grip;
  std::vector<Point2D> profile{{0, 0}};
  constexpr int kGripRings = 14;
  for (int i = 0; i <= kGripRings; ++i) {
    const double t = static_cast<double>(i) / kGripRings;
    profile.push_back({6 + 4.5 * std::sin(pi * t) + 1.5 * std::sin(2 * pi * t), 34 * t});
  }
  profile.push_back({0, 36});
  grip.tessellations.push_back(writeTurned(file, profile, 32));
  const Product gripPart = writer.WritePart("Ручка", millimetres, grip);
  writer.Paint(red, grip, millimetres);

  Pieces arrow;
  arrow.curveSets.push_back(writeArrow(file));
  const Product arrowPart = writer.WritePart("Drehrichtung", millimetres, arrow);
  writer.Paint(red, arrow, millimetres);

  std::vector<Usage> bearingUsages{{bushingPart, "Втулка"}, {shaftPart, "Árbol"}};
  for (const Point2D& place : placeBolts({0, 0}, pi / 4)) {
    const int number = static_cast<int>(bearingUsages.size()) - 1;
    bearingUsages.push_back(
        {boltPart, "Śruba " + std::to_string(number), {place.x, place.y, 5}, pi / 12 * number});
  }
  const Product bearing = writer.WriteAssembly("Palier à bride", bearingUsages);
  const Product train = writer.WriteAssembly(
      "Zahnradgetriebe – Größe 2",
      {{platePart, "Plaque"},
       {bearing, "Palier gauche"},
       {bearing, "Palier élevé", {kShaftDistance, 0, 0}, pi / 4},
       {smallGearPart, "Ritzel", {0, 0, 16}},
       // A gap where the other gear has a tooth.
       {largeGearPart, "大歯車", {kShaftDistance, 0, 16}, pi / 36},
       {crankPart, "Manivelle", {kShaftDistance, 0, 29}, pi / 6},
       {gripPart,
        "Ручка",
        {kShaftDistance + kGripX * std::cos(pi / 6), kGripX * std::sin(pi / 6), 29 + kGripZ + 1}},
       {arrowPart, "Pfeil", {117, -44, 0.5}}});

  writer.WriteLayer("Gehäuse", {plate, bushing});
  writer.WriteLayer("Zahnräder", {smallGear, largeGear});
  writer.WriteLayer("Крепёж", {bolt});
  writer.WriteLayer("Antrieb", {shaft, crank, grip, arrow});
  return train;
}

}  // namespace

void writeGearTrain(KOVAOutputStream& stream, std::string_view name, int repeats,
                    std::uint64_t bytes) {
  StepFile file(stream);
  file.Begin(name);
  std::vector<Usage> trains;
  constexpr int kColumns = 10;
  while (stream.GetResult().IsSuccess() &&
         (trains.size() < static_cast<std::size_t>(repeats) || file.GetBytes() < bytes)) {
    ProductWriter writer(file);
    const int index = static_cast<int>(trains.size());
    const int row = index / kColumns;
    trains.push_back({writeTrain(file, writer),
                      "N° " + std::to_string(index + 1),
                      {240.0 * (index % kColumns), 180.0 * row, 0}});
  }
  if (trains.size() > 1) ProductWriter(file).WriteAssembly("Série", trains);
  file.End();
}

}  // namespace kova::generate
