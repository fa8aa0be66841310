#include "translators/ply/PlyHeader.h"

#include "translators/interface/Text.h"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace kova::translators::ply {

namespace {

constexpr std::size_t kMostLineBytes = 4096;
constexpr int kMostEntries = 100;

struct TypeName {
  std::string_view name;
  Type type;
};
constexpr TypeName kTypeNames[] = {
    {"char", Type::kInt8},       {"uchar", Type::kUint8},    {"short", Type::kInt16},
    {"ushort", Type::kUint16},   {"int", Type::kInt32},      {"uint", Type::kUint32},
    {"float", Type::kFloat32},   {"double", Type::kFloat64}, {"int8", Type::kInt8},
    {"uint8", Type::kUint8},     {"int16", Type::kInt16},    {"uint16", Type::kUint16},
    {"int32", Type::kInt32},     {"uint32", Type::kUint32},  {"float32", Type::kFloat32},
    {"float64", Type::kFloat64},
};

struct RoleName {
  Kind kind;
  bool isList;
  const char* name;
  Role role;
};
constexpr RoleName kRoleNames[] = {
    {Kind::kVertex, false, "x", Role::kX},
    {Kind::kVertex, false, "y", Role::kY},
    {Kind::kVertex, false, "z", Role::kZ},
    {Kind::kFace, true, "vertex_indices", Role::kIndices},
    {Kind::kFace, true, "vertex_index", Role::kIndices},
    {Kind::kStrips, true, "vertex_indices", Role::kIndices},
    {Kind::kStrips, true, "vertex_index", Role::kIndices},
    {Kind::kEdge, false, "vertex1", Role::kVertex1},
    {Kind::kEdge, false, "vertex2", Role::kVertex2},
};

struct KindName {
  std::string_view name;
  Kind kind;
  /// Without them an element of this kind cannot be used.
  std::vector<Role> roles;
};

const KindName* findKind(std::string_view name) {
  static const KindName kinds[] = {
      {"vertex", Kind::kVertex, {Role::kX, Role::kY, Role::kZ}},
      {"face", Kind::kFace, {Role::kIndices}},
      {"edge", Kind::kEdge, {Role::kVertex1, Role::kVertex2}},
      {"tristrips", Kind::kStrips, {Role::kIndices}},
  };
  for (const KindName& kind : kinds) {
    if (kind.name == name) return &kind;
  }
  return nullptr;
}

const char* getRoleName(Kind kind, Role role) {
  for (const RoleName& name : kRoleNames) {
    if (name.kind == kind && name.role == role) return name.name;
  }
  return "";
}

class Parser {
 public:
  Parser(ByteWindow& window, const Report& report, Header& header, KOVAFileHeader& entries)
      : _window(window), _report(report), _header(header), _entries(entries) {}

  KOVAResult Run();

 private:
  enum class LineEnd { kUnknown, kReturn, kOther };

  bool ReadLine();
  KOVAResult ReadFormat();
  KOVAResult ReadElement();
  KOVAResult ReadProperty();
  KOVAResult CheckElements();
  void AddComment(const char* key);
  bool ReadType(Type& type);
  std::string_view NextWord();
  KOVAResult FailExpecting(const char* expected);

  ByteWindow& _window;
  const Report& _report;
  Header& _header;
  KOVAFileHeader& _entries;
  std::uint64_t _line = 0;
  std::string _text;
  // What is left of the line, and the word before.
  std::string_view _rest;
  std::string_view _word;
  LineEnd _lineEnd = LineEnd::kUnknown;
  bool _hasFormat = false;
  int _entryCount = 0;
};

KOVAResult Parser::Run() {
  if (!ReadLine() || NextWord() != "ply" || !NextWord().empty()) {
    return FailExpecting("'ply'");
  }
  for (;;) {
    if (!ReadLine()) return FailExpecting("'end_header'");
    const std::string_view word = NextWord();
    KOVAResult result = KOVAResultCode::kSuccess;
    if (word == "end_header") break;
    if (word == "format") {
      result = ReadFormat();
    } else if (word == "element") {
      result = ReadElement();
    } else if (word == "property") {
      result = ReadProperty();
    } else if (word == "comment") {
      AddComment("Comment");
    } else if (word == "obj_info") {
      AddComment("Information");
    } else if (!word.empty()) {
      result = FailExpecting("'element', 'property', 'comment' or 'end_header'");
    }
    if (result.IsFailure()) return result;
  }
  if (!_hasFormat) {
    return _report.Fail(KOVAResultCode::kInvalidFile, Place::Line(_line),
                        "the header ends without 'format'");
  }
  _header.nextLine = _line + 1;
  return CheckElements();
}

// A file that ends its first line with a carriage return alone does so behind the header as well:
// a line feed there is the first byte of its data.
bool Parser::ReadLine() {
  ++_line;
  _text.clear();
  _rest = _word = {};
  for (;;) {
    if (!_window.Require(1)) return false;
    const char c = *_window.begin();
    _window.Skip(1);
    if (c == '\n' || c == '\r') {
      const bool isPair = c == '\r' && _lineEnd != LineEnd::kReturn && _window.Require(1) &&
                          *_window.begin() == '\n';
      if (isPair) _window.Skip(1);
      if (_lineEnd == LineEnd::kUnknown) {
        _lineEnd = c == '\r' && !isPair ? LineEnd::kReturn : LineEnd::kOther;
      }
      _rest = _text;
      return true;
    }
    if (_text.size() < kMostLineBytes) _text += c;
  }
}

KOVAResult Parser::ReadFormat() {
  const std::string_view form = NextWord();
  if (form == "ascii") {
    _header.form = Form::kAscii;
  } else if (form == "binary_little_endian") {
    _header.form = Form::kLittle;
  } else if (form == "binary_big_endian") {
    _header.form = Form::kBig;
  } else {
    return FailExpecting("'ascii', 'binary_little_endian' or 'binary_big_endian'");
  }
  if (NextWord() != "1.0") return FailExpecting("the version 1.0");
  if (_hasFormat) {
    return _report.Fail(KOVAResultCode::kInvalidFile, Place::Line(_line),
                        "'format' stands here a second time");
  }
  _hasFormat = true;
  return KOVAResultCode::kSuccess;
}

KOVAResult Parser::ReadElement() {
  Element element;
  element.line = _line;
  element.name = NextWord();
  if (element.name.empty()) return FailExpecting("the name of an element");
  const std::string_view count = NextWord();
  const char* const end = count.data() + count.size();
  const auto [stop, error] = std::from_chars(count.data(), end, element.count);
  if (count.empty() || stop != end || error != std::errc()) {
    return FailExpecting("a number of records");
  }
  if (const KindName* const kind = findKind(element.name)) {
    element.kind = kind->kind;
    for (const Element& other : _header.elements) {
      if (other.kind != element.kind) continue;
      return _report.Fail(KOVAResultCode::kInvalidFile, Place::Line(_line),
                          "the element '%s' stands here a second time", element.name.c_str());
    }
  }
  _header.elements.push_back(std::move(element));
  return KOVAResultCode::kSuccess;
}

KOVAResult Parser::ReadProperty() {
  if (_header.elements.empty()) {
    return _report.Fail(KOVAResultCode::kInvalidFile, Place::Line(_line),
                        "a property stands before the first element");
  }
  Element& element = _header.elements.back();
  Property property;
  const std::string_view rest = _rest;
  property.isList = NextWord() == "list";
  if (property.isList) {
    if (!ReadType(property.countType) || !isInteger(property.countType)) {
      return FailExpecting("an integer type for the length of the list");
    }
  } else {
    _rest = rest;
  }
  if (!ReadType(property.type)) return FailExpecting("a type");
  const std::string_view name = NextWord();
  if (name.empty()) return FailExpecting("the name of a property");
  for (const RoleName& role : kRoleNames) {
    if (role.kind != element.kind || role.isList != property.isList || role.name != name) continue;
    if (element.HasRole(role.role)) {
      return _report.Fail(KOVAResultCode::kInvalidFile, Place::Line(_line),
                          "the property %s stands here a second time",
                          quote(name.data(), name.size()).c_str());
    }
    if (element.kind != Kind::kVertex && !isInteger(property.type)) {
      return _report.Fail(KOVAResultCode::kInvalidFile, Place::Line(_line),
                          "the property %s numbers vertices, so it must have an integer type",
                          quote(name.data(), name.size()).c_str());
    }
    property.role = role.role;
  }
  element.properties.push_back(property);
  return KOVAResultCode::kSuccess;
}

KOVAResult Parser::CheckElements() {
  bool hasVertices = false;
  for (const Element& element : _header.elements) {
    const Place place = Place::Line(element.line);
    if (element.kind == Kind::kOther) continue;
    for (const Role role : findKind(element.name)->roles) {
      if (element.HasRole(role)) continue;
      return _report.Fail(KOVAResultCode::kInvalidFile, place,
                          "the element '%s' has no property '%s'", element.name.c_str(),
                          getRoleName(element.kind, role));
    }
    hasVertices |= element.kind == Kind::kVertex;
    if (!hasVertices && element.count != 0) {
      return _report.Fail(KOVAResultCode::kNotSupported, place,
                          "the element '%s' stands before the vertices that it uses",
                          element.name.c_str());
    }
  }
  return KOVAResultCode::kSuccess;
}

void Parser::AddComment(const char* key) {
  constexpr std::string_view kName = "name:";
  const std::size_t start = _rest.find_first_not_of(" \t");
  if (start == std::string_view::npos) return;
  const std::string_view text = _rest.substr(start);
  if (text.starts_with(kName) && _header.name.empty()) {
    _header.name = text.substr(kName.size());
  } else if (_entryCount < kMostEntries) {
    ++_entryCount;
    _entries.AddEntry(key, decodeText(text));
  }
}

bool Parser::ReadType(Type& type) {
  const std::string_view word = NextWord();
  for (const TypeName& name : kTypeNames) {
    if (name.name != word) continue;
    type = name.type;
    return true;
  }
  return false;
}

std::string_view Parser::NextWord() {
  const auto* const first = std::find_if_not(_rest.begin(), _rest.end(), isSpace);
  const auto* const last = std::find_if(first, _rest.end(), isSpace);
  _word = std::string_view(first, static_cast<std::size_t>(last - first));
  _rest.remove_prefix(static_cast<std::size_t>(last - _rest.begin()));
  return _word;
}

KOVAResult Parser::FailExpecting(const char* expected) {
  const Place place = Place::Line(_line);
  if (_window.HasFailed()) {
    return _report.Fail(KOVAResultCode::kFileOpenError, place,
                        "the file cannot be read any further");
  }
  if (_word.empty()) {
    return _report.Fail(KOVAResultCode::kInvalidFile, place, "the %s where %s is expected",
                        _window.Require(1) ? "line ends" : "file ends", expected);
  }
  return _report.Fail(KOVAResultCode::kInvalidFile, place, "%s is expected, not %s", expected,
                      quote(_word.data(), _word.size()).c_str());
}

}  // namespace

bool Element::HasRole(Role role) const {
  return std::any_of(properties.begin(), properties.end(),
                     [role](const Property& property) { return property.role == role; });
}

std::uint64_t Element::GetLeastBytes(Form form) const {
  std::uint64_t bytes = 0;
  for (const Property& property : properties) {
    if (form == Form::kAscii) {
      bytes += bytes == 0 ? 1 : 2;
    } else {
      bytes += getBytes(property.isList ? property.countType : property.type);
    }
  }
  return bytes;
}

KOVAResult readHeader(ByteWindow& window, const Report& report, Header& header,
                      KOVAFileHeader& entries) {
  return Parser(window, report, header, entries).Run();
}

}  // namespace kova::translators::ply
