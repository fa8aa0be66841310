#include "translators/stl/StlReader.h"

#include "translators/stl/StlForms.h"

#include <algorithm>
#include <string_view>

namespace kova::translators {

namespace {

constexpr std::size_t kWindowBytes = std::size_t{256} << 10;
constexpr std::size_t kProbedBytes = 1024;

bool isText(std::string_view bytes) {
  return std::none_of(bytes.begin(), bytes.end(), [](char c) {
    const unsigned char byte = static_cast<unsigned char>(c);
    return byte < 0x20 && (byte < '\t' || byte > '\r');
  });
}

bool isBinary(const ByteWindow& window) {
  if (window.size() >= stlBinary::kHeaderBytes) {
    // The one certain sign, whatever the comment says.
    const std::uint32_t triangles = stlBinary::getTriangleCount(window.begin());
    if (window.GetByteCount() == stlBinary::getFileBytes(triangles)) return true;
  }
  const std::string_view start(window.begin(), std::min(window.size(), kProbedBytes));
  if (isText(start)) return false;
  // A text with a stray control character is reported as one, by its line.
  return !(start.starts_with("solid") && start.find("facet") != std::string_view::npos);
}

class StlReader : public KOVAFormatReader {
 public:
  explicit StlReader(const ReadRequest& request)
      : KOVAFormatReader(request.file),
        _request(request),
        _input(openInput(request, _opened)),
        _window(_input, kWindowBytes),
        _ascii(_window, request.model, request.report) {
    _buffer = _input;
    _headerSections.add(new FunctionSectionReader(_buffer, [this] { return ReadForm(); }));
    _fileInfoSections.add(new FunctionSectionReader(_buffer, [this] { return ReadStart(); }));
    _dataSections.add(new DataSection(*this));
  }

 private:
  class DataSection : public KOVASectionReader {
   public:
    explicit DataSection(StlReader& reader) : _reader(reader) {}

    /// The triangles of a binary file; of an ASCII file each solid, found when the one before has
    /// been read.
    KOVAEntityReader* GetNextKey() override {
      if (_reader.HasNext()) {
        AddEntityReader(new FunctionReader(_reader._buffer, [this] { return _reader.ReadNext(); }));
      }
      return KOVASectionReader::GetNextKey();
    }

    KOVAResult PostProcess() override { return _reader.Finish(); }

   private:
    StlReader& _reader;
  };

  KOVAResult ReadForm();
  KOVAResult ReadStart();
  bool HasNext() const;
  KOVAResult ReadNext();
  KOVAResult Finish();

  const ReadRequest _request;
  KOVAResult _opened;
  KOVABufferHandle _input;
  ByteWindow _window;
  stlAscii::Parser _ascii;
  bool _isBinary = false;
  std::uint32_t _triangles = 0;
  KOVAResult _result = KOVAResultCode::kSuccess;
  bool _isDone = false;
};

KOVAResult StlReader::ReadForm() {
  if (_opened.IsFailure()) return _opened;
  _window.Require(kProbedBytes);
  if (_window.size() == 0 && !_window.HasFailed()) {
    return _request.report.Fail(KOVAResultCode::kInvalidFile, Place::Byte(0), "the file is empty");
  }
  _isBinary = isBinary(_window);
  _request.header.AddEntry("Format", _isBinary ? "STL, binary" : "STL, ASCII");
  if (!_isBinary) return KOVAResultCode::kSuccess;
  const std::size_t most = std::min(_window.size(), stlBinary::kCommentBytes);
  const std::string_view comment(_window.begin(), most);
  const KOVAString text = decodeText(comment.substr(0, comment.find('\0')));
  if (!text.isEmpty()) _request.header.AddEntry("Comment", text);
  return KOVAResultCode::kSuccess;
}

KOVAResult StlReader::ReadStart() {
  _result = _isBinary ? stlBinary::readTriangleCount(_window, _request.report, _triangles)
                      : _ascii.ReadStart();
  return _result;
}

bool StlReader::HasNext() const {
  return _result.IsSuccess() && !_isDone && (_isBinary || _ascii.HasSolid());
}

KOVAResult StlReader::ReadNext() {
  if (_isBinary) {
    _isDone = true;
    _result = stlBinary::readTriangles(_window, _triangles, _request.model, _request.report);
  } else {
    _result = _ascii.ReadSolid();
  }
  return _result;
}

KOVAResult StlReader::Finish() {
  if (_result.IsFailure()) return _result;
  if (!_isBinary) _ascii.Finish();
  if (_request.model.parts.size() == 0) {
    _request.report.Warn({}, "there are no triangles in the file");
  }
  return KOVAResultCode::kSuccess;
}

}  // namespace

KOVAFormatReader* createStlReader(const ReadRequest& request) { return new StlReader(request); }

}  // namespace kova::translators
