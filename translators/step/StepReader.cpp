#include "translators/step/StepReader.h"

#include "kovabase/foundation/KOVAAllocException.h"
#include "translators/interface/Frame.h"
#include "translators/step/Header.h"
#include "translators/step/ModelBuilder.h"
#include "translators/step/Records.h"
#include "translators/step/Syntax.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>
#include <vector>

namespace kova::translators::step {

namespace {

constexpr std::size_t kPieceBytes = std::size_t{4} << 20;
constexpr std::uint64_t kMostBytes = 0xFFFFFFFF;

class StepFormatReader : public KOVAFormatReader {
 public:
  explicit StepFormatReader(const ReadRequest& request)
      : KOVAFormatReader(request.file), _request(request), _document(request.report) {
    _buffer = openInput(request, _opened);
    _headerSections.add(new FunctionSectionReader(
        _buffer, [this] { return Guard([this] { return ReadHeader(); }); }));
    _fileInfoSections.add(
        new FunctionSectionReader(_buffer, [this] { return Guard([this] { return Split(); }); }));
  }

  KOVAResult Resolve() override {
    return Guard([this] {
      const KOVAResult result = buildModel(_document, _request.options, _request.model);
      _document.TellTroubles();
      return result;
    });
  }

  KOVAResult ReleaseEntityReaders() override {
    _headerSections.clear();
    _fileInfoSections.clear();
    _dataSections.clear();
    _document.GetRecords().Clear();
    _document.SetText({});
    _bytes.reset();
    return KOVAResultCode::kSuccess;
  }

 private:
  const Report& GetReport() const { return _request.report; }

  template <class Step>
  KOVAResult Guard(Step step) {
    try {
      return step();
    } catch (const std::bad_alloc&) {
    } catch (const KOVAAllocException&) {
    }
    _document.GetRecords().Clear();
    return GetReport().Fail(KOVAResultCode::kFailure, {}, "there is not enough memory for it");
  }

  KOVAResult FailSyntax(const Scanner& scanner) {
    return GetReport().Fail(KOVAResultCode::kInvalidFile,
                            Place::Line(_document.GetLine(scanner.GetOffset())), "%s",
                            scanner.GetReason().c_str());
  }

  // The text, in one piece.
  KOVAResult Load() {
    const std::uint64_t size = static_cast<std::uint64_t>(std::max(_buffer->GetSize(), 0L));
    if (size == 0) {
      return GetReport().Fail(KOVAResultCode::kInvalidFile, {}, "the file is empty");
    }
    if (size > kMostBytes) {
      return GetReport().Fail(KOVAResultCode::kFileFormatNotSupported, {}, "it has 4 GiB or more");
    }
    if (_request.block != nullptr && !_request.file.IsValid()) {
      _document.SetText({reinterpret_cast<const char*>(_request.block), size});
      return KOVAResultCode::kSuccess;
    }
    // Not filled beforehand: what the system has not handed out costs nothing.
    _bytes.reset(new char[size]);
    for (std::size_t done = 0; done < size;) {
      const std::size_t piece = std::min(kPieceBytes, static_cast<std::size_t>(size) - done);
      const KOVAResult result =
          _buffer->PeekBytes(static_cast<long>(done), static_cast<int>(piece),
                             reinterpret_cast<unsigned char*>(_bytes.get()) + done);
      if (result.IsFailure()) {
        return GetReport().Fail(KOVAResultCode::kInvalidFile, Place::Byte(done),
                                "the file cannot be read any further");
      }
      done += piece;
    }
    _document.SetText({_bytes.get(), size});
    return KOVAResultCode::kSuccess;
  }

  KOVAResult ReadHeader() {
    if (_opened.IsFailure()) return _opened;
    const KOVAResult loaded = Load();
    if (loaded.IsFailure()) return loaded;
    const std::string_view text = _document.GetText();
    _scanner = std::make_unique<Scanner>(text.data(), text.data() + text.size());
    if (!readHeader(*_scanner, _request.header, GetReport(), _document)) {
      return FailSyntax(*_scanner);
    }
    return KOVAResultCode::kSuccess;
  }

  KOVAResult Split() {
    if (_scanner == nullptr) return KOVAResultCode::kNotInitialized;
    if (!ScanSections()) {
      _document.GetRecords().Clear();
      return FailSyntax(*_scanner);
    }
    _document.FinishRecords();
    RecordStore& records = _document.GetRecords();
    _fileInfoSections.add(new RecordSection(records, 0, records.GetCount(), true));
    RecordNumber first = 0;
    for (const RecordNumber end : _sectionEnds) {
      _dataSections.add(new RecordSection(records, first, end, false));
      first = end;
    }
    return KOVAResultCode::kSuccess;
  }

  bool ScanSections() {
    Scanner& scanner = *_scanner;
    Progress progress("read", 2 * _document.GetText().size(), Progress::kBytesPerEvent);
    for (;;) {
      const std::size_t offset = scanner.GetOffset();
      std::string_view word;
      if (!scanner.TakeWord(word)) return false;
      if (word == "DATA") {
        if (!ScanData(progress)) return false;
      } else if (word == "ANCHOR" || word == "REFERENCE" || word == "SIGNATURE") {
        GetReport().Warn(Place::Line(_document.GetLine(offset)), "the section %s is not translated",
                         std::string(word).c_str());
        if (!scanner.Expect(';') || !scanner.SkipSection()) return false;
      } else if (word == "END-ISO-10303-21") {
        // What follows is no part of it, as a signature.
        return scanner.Expect(';');
      } else if (scanner.IsAtEnd() && word.empty()) {
        return scanner.Fail("the file ends where a section or 'END-ISO-10303-21;' is expected");
      } else {
        return scanner.Fail(quote(word.data(), std::max<std::size_t>(word.size(), 1)) +
                            " stands where a section or 'END-ISO-10303-21;' is expected");
      }
    }
  }

  bool ScanData(Progress& progress) {
    Scanner& scanner = *_scanner;
    if (!scanner.IsAtEnd() && *scanner.GetPosition() == '(' && !scanner.SkipParameters(false)) {
      return false;
    }
    if (!scanner.Expect(';')) return false;
    for (;;) {
      const std::size_t offset = scanner.GetOffset();
      if (scanner.IsAtEnd() || *scanner.GetPosition() != '#') {
        std::string_view word;
        if (!scanner.TakeWord(word)) return false;
        if (word == "ENDSEC") break;
        return scanner.Fail(scanner.IsAtEnd() && word.empty()
                                ? std::string("the file ends within a data section")
                                : "a record ('#1=...') or 'ENDSEC;' is expected");
      }
      std::uint64_t id = 0;
      if (!scanner.TakeId(id) || !scanner.Expect('=')) return false;
      std::string_view word;
      if (!scanner.TakeWord(word)) return false;
      if (scanner.IsAtEnd() || *scanner.GetPosition() != '(') {
        return scanner.Fail("a keyword and its parameters are expected");
      }
      const bool isComplex = word.empty();
      const char* const list = scanner.GetPosition();
      if (!scanner.SkipParameters(isComplex) || !scanner.Expect(';')) return false;
      _document.AddRecord(_buffer, id, static_cast<std::uint32_t>(offset),
                          isComplex ? findComplexKeyword(list) : findKeyword(word), isComplex);
      progress.Reach(scanner.GetOffset());
    }
    _sectionEnds.push_back(_document.GetRecords().GetCount());
    return scanner.Expect(';');
  }

  // The first of its keywords in the order of the enumeration.
  static Keyword findComplexKeyword(const char* list) {
    Keyword best = Keyword::kNone;
    ComplexParts parts(list);
    std::string_view word;
    const char* parameters = nullptr;
    while (parts.Next(word, parameters)) {
      const Keyword keyword = findKeyword(word);
      if (keyword == Keyword::kNone) continue;
      if (best == Keyword::kNone || keyword < best) best = keyword;
    }
    return best;
  }

  const ReadRequest _request;
  KOVAResult _opened;
  std::unique_ptr<char[]> _bytes;
  Document _document;
  std::unique_ptr<Scanner> _scanner;
  std::vector<RecordNumber> _sectionEnds;
};

}  // namespace

KOVAFormatReader* createReader(const ReadRequest& request) { return new StepFormatReader(request); }

}  // namespace kova::translators::step
