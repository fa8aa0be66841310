#pragma once

#include "kovabase/translation/KOVAEntityReader.h"
#include "kovabase/translation/KOVASectionReader.h"
#include "translators/step/Keywords.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kova::translators {
class Report;
}

namespace kova::translators::step {

class Document;

/// A record by its place in the file: 0 is the first of the first data section.
using RecordNumber = std::uint32_t;
inline constexpr RecordNumber kNoRecord = 0xFFFFFFFF;

/// One record of a data section. There are as many as the file has lines, so that it is small: it
/// knows where it begins, and its parameters are looked at when they are needed.
class RecordReader : public KOVAEntityReader {
 public:
  /// @param offset  of its '#'.
  RecordReader(const KOVABufferHandle& buffer, Document& document, std::uint32_t offset,
               Keyword keyword, bool isComplex)
      : KOVAEntityReader(buffer),
        _document(document),
        _offset(offset),
        _keyword(keyword),
        _isComplex(isComplex) {}

  /// Files the record with the document when it is one that is looked for by its kind.
  KOVAResult Read() override;
  /// Failure, with `id` untouched, for an id that no int holds.
  KOVAResult GetEntityId(int& id) override;
  /// The keyword as it stands in the file; empty for a complex record.
  KOVAString GetEntityType() override;
  /// Whether it joins a product with its shape.
  bool IsEntityRoot() const override { return _keyword == Keyword::kShapeDefinitionRepresentation; }
  /// Of the bytes of the record, wherever the buffer stands.
  void DumpData(unsigned int bytes, std::FILE* stream) override;

  std::uint32_t GetOffset() const { return _offset; }
  /// @return where behind the '=' the keyword or the parenthesis stands.
  const char* GetId(std::uint64_t& id) const;
  Keyword GetKeyword() const { return _keyword; }
  bool IsComplex() const { return _isComplex; }
  /// Whether it belongs to the file-information section: units and product structure.
  bool IsFileInfo() const {
    return (_keyword > Keyword::kNone && _keyword < Keyword::kRationalBSplineCurve) ||
           (_keyword > Keyword::kBSplineCurve && _keyword <= Keyword::kRelationship);
  }

 private:
  Document& _document;
  std::uint32_t _offset;
  Keyword _keyword;
  bool _isComplex;
};

/// The records of a file in blocks, which nobody moves: the entity readers live here and nowhere
/// else, because a block of its own for each would double their memory.
class RecordStore {
 public:
  RecordStore() = default;
  RecordStore(const RecordStore&) = delete;
  RecordStore& operator=(const RecordStore&) = delete;
  ~RecordStore() { Clear(); }

  RecordNumber GetCount() const { return _count; }
  RecordReader& operator[](RecordNumber number) { return *At(number); }
  const RecordReader& operator[](RecordNumber number) const { return *At(number); }

  template <class... Arguments>
  void Add(Arguments&&... arguments) {
    if (_count % kBlockRecords == 0) _blocks.emplace_back(new Slot[kBlockRecords]);
    RecordReader* const reader =
        ::new (static_cast<void*>(At(_count))) RecordReader(std::forward<Arguments>(arguments)...);
    ++_count;
    // The store's own hold: a handle that comes and goes does not delete it.
    reader->RaiseReference();
  }

  void Clear();

 private:
  static constexpr RecordNumber kBlockRecords = 1024;
  struct alignas(RecordReader) Slot {
    std::byte bytes[sizeof(RecordReader)];
  };

  RecordReader* At(RecordNumber number) const {
    return std::launder(reinterpret_cast<RecordReader*>(_blocks[number / kBlockRecords].get() +
                                                        number % kBlockRecords));
  }

  std::vector<std::unique_ptr<Slot[]>> _blocks;
  RecordNumber _count = 0;
};

/// Some of the records of a file as a section of the reader frame: those of one data section, or
/// those of all that belong to the file information.
class RecordSection : public KOVASectionReader {
 public:
  RecordSection(RecordStore& records, RecordNumber first, RecordNumber end, bool isFileInfo)
      : _records(records), _next(first), _first(first), _end(end), _isFileInfo(isFileInfo) {}

  KOVAEntityReader* GetNextKey() override;
  KOVADynamicArray<KOVAEntityReader*> GetEntityList() override;

 private:
  RecordReader* Step(RecordNumber& number) const;

  RecordStore& _records;
  RecordNumber _next;
  RecordNumber _first;
  RecordNumber _end;
  bool _isFileInfo;
};

/// Trouble that does not end the translation: counted, and told once for each kind.
class Troubles {
 public:
  /// @param kind  what trouble of this kind has in common.
  /// @param offset  where in the file.
  /// @param describe  gives what is told of the first one.
  template <class Describe>
  void Add(const std::string& kind, std::size_t offset, Describe describe) {
    const std::size_t entry = Count(kind, offset);
    if (_entries[entry].count == 1) _entries[entry].detail = describe();
  }

  struct Entry {
    std::string kind;
    std::string detail;
    std::size_t offset;
    std::uint64_t count;
  };
  /// In the order of their first occurrence.
  const std::vector<Entry>& GetEntries() const { return _entries; }

 private:
  static constexpr std::size_t kMostKinds = 50;

  std::size_t Count(const std::string& kind, std::size_t offset);

  std::vector<Entry> _entries;
  std::map<std::string, std::size_t, std::less<>> _byKind;
};

/// A file whose syntax has been checked: its text and its records.
class Document {
 public:
  explicit Document(const Report& report) : _report(report) {}
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  const Report& GetReport() const { return _report; }

  /// The text stays the caller's.
  void SetText(std::string_view text) { _text = text; }
  std::string_view GetText() const { return _text; }

  RecordStore& GetRecords() { return _records; }
  /// Adds a record. Of two records with one id the first holds.
  void AddRecord(const KOVABufferHandle& buffer, std::uint64_t id, std::uint32_t offset,
                 Keyword keyword, bool isComplex);
  /// To be called once, when all records are there: from then on they are found.
  void FinishRecords();
  /// @return kNoRecord when the file does not define it.
  RecordNumber Find(std::uint64_t id) const;

  Keyword GetKeyword(RecordNumber record) const { return _records[record].GetKeyword(); }
  /// The opening parenthesis of the record's parameters; of a complex record that of its keywords.
  const char* GetList(RecordNumber record) const;
  /// Of a complex record the parameters of one of its keywords, of another the parameters when it
  /// goes by that keyword; null when there are none.
  const char* FindPart(RecordNumber record, Keyword keyword) const;
  /// "#12=CIRCLE", or "#12=(BOUNDED_CURVE...)" for a complex record.
  std::string Describe(RecordNumber record) const;
  std::uint64_t GetLine(std::size_t offset) const;

  /// Counts text that was looked at, so that a file whose records refer to the same long ones over
  /// and over does not take for ever.
  /// @return false once that is much more than the file has: nothing is to be read any more.
  bool Charge(std::size_t bytes);
  bool IsExhausted() const { return _lookedAt > kLeastLooks + kLooksPerByte * _text.size(); }

  /// Trouble with a record; `text` is what is told behind its description.
  void Complain(RecordNumber record, const std::string& text);
  /// A reference to what the file does not define.
  void ComplainOfReference(RecordNumber record, std::uint64_t id);
  /// A record of a kind that is not translated.
  void LeaveOut(RecordNumber record);
  /// Fires the warnings.
  void TellTroubles() const;

  /// Records that are looked for by their kind, in the order of the file.
  std::vector<RecordNumber> shapeDefinitions;
  std::vector<RecordNumber> placedOccurrences;
  std::vector<RecordNumber> occurrences;
  std::vector<RecordNumber> productDefinitions;
  std::vector<RecordNumber> relationships;
  std::vector<RecordNumber> placedRelationships;
  std::vector<RecordNumber> shapeRepresentations;
  std::vector<RecordNumber> styledItems;
  std::vector<RecordNumber> layerAssignments;

 private:
  static constexpr std::uint64_t kLeastLooks = 500'000'000;
  static constexpr std::uint64_t kLooksPerByte = 50;

  std::string DescribeType(const RecordReader& reader, const char* body) const;
  void ComplainOfDuplicate(RecordNumber record, RecordNumber first);

  const Report& _report;
  std::string_view _text;
  RecordStore _records;
  /// Record number + 1 by id, for ids that are not much larger than there can be records.
  std::vector<RecordNumber> _byId;
  /// The others, sorted.
  std::vector<std::pair<std::uint64_t, RecordNumber>> _byLargeId;
  Troubles _troubles;
  std::uint64_t _lookedAt = 0;
};

}  // namespace kova::translators::step
