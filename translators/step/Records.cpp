#include "translators/step/Records.h"

#include "translators/interface/Report.h"
#include "translators/step/Syntax.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace kova::translators::step {

namespace {

constexpr std::size_t kShownWordBytes = 80;
// As "#1=A();" has.
constexpr std::size_t kLeastRecordBytes = 8;

// A keyword as it may stand in a message.
std::string shorten(std::string_view word) {
  if (word.size() <= kShownWordBytes) return std::string(word);
  return std::string(word.substr(0, kShownWordBytes)) + "...";
}

// The id at a '#', and what stands behind the '='.
std::uint64_t readId(const char* at, const char*& behind) {
  Parameters id(at - 1);
  std::uint64_t value = 0;
  id.TakeReference(value);
  // Only the space and the '=' are left before what the record is.
  const Parameters body(id.GetPosition());
  behind = body.GetPosition();
  return value;
}

}  // namespace

KOVAResult RecordReader::Read() {
  Document& document = _document;
  const auto file = [&](std::vector<RecordNumber>& list) {
    std::uint64_t id = 0;
    GetId(id);
    const RecordNumber number = document.Find(id);
    // Of two records with one id the first holds.
    if (number != kNoRecord && &document.GetRecords()[number] == this) list.push_back(number);
  };
  switch (_keyword) {
    case Keyword::kShapeDefinitionRepresentation: file(document.shapeDefinitions); break;
    case Keyword::kContextDependentShapeRepresentation: file(document.placedOccurrences); break;
    case Keyword::kAssemblyUsage: file(document.occurrences); break;
    case Keyword::kProductDefinition: file(document.productDefinitions); break;
    case Keyword::kShapeRelationship: file(document.relationships); break;
    case Keyword::kRelationshipWithTransformation: file(document.placedRelationships); break;
    case Keyword::kShapeRepresentation: file(document.shapeRepresentations); break;
    case Keyword::kStyledItem:
    case Keyword::kOverridingStyledItem: file(document.styledItems); break;
    case Keyword::kLayerAssignment: file(document.layerAssignments); break;
    default: break;
  }
  return KOVAResultCode::kSuccess;
}

const char* RecordReader::GetId(std::uint64_t& id) const {
  const char* behind = nullptr;
  id = readId(_document.GetText().data() + _offset, behind);
  return behind;
}

KOVAResult RecordReader::GetEntityId(int& id) {
  std::uint64_t value = 0;
  GetId(value);
  if (value > static_cast<std::uint64_t>(std::numeric_limits<int>::max())) {
    return KOVAResultCode::kFailure;
  }
  id = static_cast<int>(value);
  return KOVAResultCode::kSuccess;
}

KOVAString RecordReader::GetEntityType() {
  std::uint64_t id = 0;
  const char* const body = GetId(id);
  if (_isComplex) return KOVAString();
  const char* const end =
      std::find_if(body, _document.GetText().data() + _document.GetText().size(),
                   [](char c) { return c == '(' || c == ' ' || c == '/'; });
  return KOVAString::fromBytes(body, static_cast<int>(end - body), "US-ASCII");
}

void RecordReader::DumpData(unsigned int bytes, std::FILE* stream) {
  KOVABufferHandle buffer = GetBuffer();
  if (!buffer.IsValid()) return;
  const long before = buffer->GetOffset();
  if (buffer->SetOffset(static_cast<long>(_offset)).IsFailure()) return;
  KOVAEntityReader::DumpData(bytes, stream);
  buffer->SetOffset(before);
}

void RecordStore::Clear() {
  // Each record lets go of the buffer.
  for (RecordNumber number = 0; number < _count; ++number) std::destroy_at(At(number));
  _blocks.clear();
  _count = 0;
}

RecordReader* RecordSection::Step(RecordNumber& number) const {
  const RecordNumber end = std::min(_end, _records.GetCount());
  while (number < end) {
    RecordReader& record = _records[number++];
    if (record.IsFileInfo() == _isFileInfo) return &record;
  }
  return nullptr;
}

KOVAEntityReader* RecordSection::GetNextKey() { return Step(_next); }

KOVADynamicArray<KOVAEntityReader*> RecordSection::GetEntityList() {
  KOVADynamicArray<KOVAEntityReader*> list;
  RecordNumber number = _first;
  while (RecordReader* const record = Step(number)) list.add(record);
  return list;
}

std::size_t Troubles::Count(const std::string& kind, std::size_t offset) {
  auto found = _byKind.find(kind);
  if (found == _byKind.end()) {
    const std::string known = _entries.size() >= kMostKinds ? std::string() : kind;
    found = _byKind.find(known);
    if (found == _byKind.end()) {
      _entries.push_back({known, std::string(), offset, 0});
      found = _byKind.emplace(known, _entries.size() - 1).first;
    }
  }
  ++_entries[found->second].count;
  return found->second;
}

void Document::AddRecord(const KOVABufferHandle& buffer, std::uint64_t id, std::uint32_t offset,
                         Keyword keyword, bool isComplex) {
  const RecordNumber number = _records.GetCount();
  _records.Add(buffer, *this, offset, keyword, isComplex);
  if (id >= _text.size() / kLeastRecordBytes) {
    _byLargeId.emplace_back(id, number);
    return;
  }
  const std::size_t index = static_cast<std::size_t>(id);
  if (index >= _byId.size()) _byId.resize(index + 1, 0);
  if (_byId[index] == 0) {
    _byId[index] = number + 1;
  } else {
    ComplainOfDuplicate(number, _byId[index] - 1);
  }
}

void Document::FinishRecords() {
  std::sort(_byLargeId.begin(), _byLargeId.end());
  for (std::size_t i = 1; i < _byLargeId.size(); ++i) {
    if (_byLargeId[i].first == _byLargeId[i - 1].first) {
      ComplainOfDuplicate(_byLargeId[i].second, Find(_byLargeId[i].first));
    }
  }
}

RecordNumber Document::Find(std::uint64_t id) const {
  if (id < _byId.size()) {
    return _byId[static_cast<std::size_t>(id)] - 1;  // none becomes kNoRecord
  }
  const auto found =
      std::lower_bound(_byLargeId.begin(), _byLargeId.end(), std::pair(id, RecordNumber{0}));
  return found != _byLargeId.end() && found->first == id ? found->second : kNoRecord;
}

const char* Document::GetList(RecordNumber record) const {
  std::uint64_t id = 0;
  const RecordReader& reader = _records[record];
  const char* const body = reader.GetId(id);
  if (reader.IsComplex()) return body;
  Parameters parameters(body - 1);
  std::string_view word;
  parameters.TakeTypeName(word);
  return parameters.GetPosition();
}

const char* Document::FindPart(RecordNumber record, Keyword keyword) const {
  const RecordReader& reader = _records[record];
  if (!reader.IsComplex()) return reader.GetKeyword() == keyword ? GetList(record) : nullptr;
  ComplexParts parts(GetList(record));
  std::string_view word;
  const char* list = nullptr;
  while (parts.Next(word, list)) {
    if (findKeyword(word) == keyword) return list;
  }
  return nullptr;
}

std::string Document::Describe(RecordNumber record) const {
  const RecordReader& reader = _records[record];
  std::uint64_t id = 0;
  const char* const body = reader.GetId(id);
  return "#" + std::to_string(id) + "=" + DescribeType(reader, body);
}

std::string Document::DescribeType(const RecordReader& reader, const char* body) const {
  std::string_view word;
  if (reader.IsComplex()) {
    const char* list = nullptr;
    ComplexParts(body).Next(word, list);
    return "(" + shorten(word) + "...)";
  }
  Parameters(body - 1).TakeTypeName(word);
  return shorten(word);
}

std::uint64_t Document::GetLine(std::size_t offset) const {
  // A carriage return counts where it stands alone.
  std::uint64_t line = 1;
  for (std::size_t i = 0; i < offset && i < _text.size(); ++i) {
    const char c = _text[i];
    line += c == '\n' || (c == '\r' && (i + 1 == _text.size() || _text[i + 1] != '\n'));
  }
  return line;
}

bool Document::Charge(std::size_t bytes) {
  // What a record costs besides its bytes.
  constexpr std::size_t kRecordBytes = 32;
  _lookedAt += bytes + kRecordBytes;
  return !IsExhausted();
}

void Document::Complain(RecordNumber record, const std::string& text) {
  _troubles.Add(text, _records[record].GetOffset(), [&] { return Describe(record) + ": " + text; });
}

void Document::ComplainOfReference(RecordNumber record, std::uint64_t id) {
  _troubles.Add("?", _records[record].GetOffset(), [&] {
    return Describe(record) + ": the file does not define #" + std::to_string(id);
  });
}

void Document::LeaveOut(RecordNumber record) {
  std::uint64_t id = 0;
  const RecordReader& reader = _records[record];
  const char* const body = reader.GetId(id);
  const std::string type = DescribeType(reader, body);
  _troubles.Add("=" + type, reader.GetOffset(),
                [&] { return "#" + std::to_string(id) + "=" + type + " is not translated"; });
}

void Document::ComplainOfDuplicate(RecordNumber record, RecordNumber first) {
  _troubles.Add("#", _records[record].GetOffset(), [&] {
    return Describe(record) + ": the id stands for a record of line " +
           std::to_string(GetLine(_records[first].GetOffset())) + " already, which holds";
  });
}

void Document::TellTroubles() const {
  for (const Troubles::Entry& entry : _troubles.GetEntries()) {
    const Place place = Place::Line(GetLine(entry.offset));
    if (entry.kind.empty()) {
      _report.Warn(place, "%s (and %llu more of this and other kinds)", entry.detail.c_str(),
                   static_cast<unsigned long long>(entry.count - 1));
    } else if (entry.count == 1) {
      _report.Warn(place, "%s", entry.detail.c_str());
    } else {
      _report.Warn(place, "%s (the first of %llu)", entry.detail.c_str(),
                   static_cast<unsigned long long>(entry.count));
    }
  }
}

}  // namespace kova::translators::step
