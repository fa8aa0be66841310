#include "PointFormat.h"

namespace {

using TextBuffer = KOVADefaultTxtBuffer;

// Each record has its entity reader. All of them read on where the one before has stopped.
class PointEntity : public KOVAEntityReader {
 public:
  PointEntity(const KOVADefaultTxtBufferHandle& buffer, PointFile& file)
      : KOVAEntityReader(static_cast<TextBuffer*>(buffer)), _text(buffer), _file(file) {}

 protected:
  KOVAResult Refuse(const char* what) {
    KOVAErrorEvent::Fire("byte %ld: %s expected", _text->GetOffset(), what);
    return KOVAResultCode::kInvalidFile;
  }

  KOVADefaultTxtBufferHandle _text;
  PointFile& _file;
};

class HeaderEntity : public PointEntity {
 public:
  using PointEntity::PointEntity;

  KOVAResult Read() override {
    KOVAString name;
    unsigned long version = 0;
    _text->ReadWord(name);
    if (name != KOVAString("POINTS")) return Refuse("the word POINTS");
    if (_text->ReadULngInt(version).IsFailure() || version != 1) return Refuse("the version 1");
    return KOVAResultCode::kSuccess;
  }
};

class UnitEntity : public PointEntity {
 public:
  using PointEntity::PointEntity;

  KOVAResult Read() override {
    KOVAString keyword;
    KOVAString unit;
    _text->ReadWord(keyword);
    _text->ReadWord(unit);
    if (keyword != KOVAString("UNIT")) return Refuse("the word UNIT");
    if (KOVAUnitValue::GetUnitFromString(_file.unit, unit).IsFailure()) return Refuse("a unit");
    return KOVAResultCode::kSuccess;
  }
};

class PointsEntity : public PointEntity {
 public:
  using PointEntity::PointEntity;

  KOVAResult Read() override {
    unsigned long count = 0;
    if (_text->ReadULngInt(count).IsFailure()) return Refuse("a number of points");
    for (unsigned long i = 0; i < count; ++i) {
      double coordinates[3];
      for (double& coordinate : coordinates) {
        _text->SkipChars(" \r\n");
        if (_text->GetOffset() == _text->GetSize()) return Refuse("one more coordinate");
        if (_text->ReadDouble(coordinate).IsFailure()) return Refuse("a coordinate");
      }
      _file.points.emplace_back(coordinates);
    }
    return KOVAResultCode::kSuccess;
  }
};

// A section that holds one record.
template <class Entity>
class Section : public KOVASectionReader {
 public:
  Section(const KOVADefaultTxtBufferHandle& buffer, PointFile& file) {
    AddEntityReader(new Entity(buffer, file));
  }
};

class PointFormatReader : public KOVAFormatReader {
 public:
  PointFormatReader(const KOVAFileHandle& path, PointFile& file) : KOVAFormatReader(path) {
    const KOVADefaultTxtBufferHandle text(new TextBuffer(path, 0));
    _buffer = KOVABufferHandle(static_cast<TextBuffer*>(text));
    _headerSections.add(new Section<HeaderEntity>(text, file));
    _fileInfoSections.add(new Section<UnitEntity>(text, file));
    _dataSections.add(new Section<PointsEntity>(text, file));
  }
};

}  // namespace

KOVAResult readPointFile(const KOVAFilePath& path, PointFile& file) {
  const KOVAFileHandle handle(new KOVAFile(path));
  if (!handle->DoesExist()) return KOVAResultCode::kFileNotFound;
  KOVAReader reader(KOVAFormatReaderHandle(new PointFormatReader(handle, file)));
  KOVAResult result = reader.ReadHeaderSection();
  if (result.IsSuccess()) result &= reader.ReadFileInfoSection();
  if (result.IsSuccess()) result &= reader.ReadDataSection();
  reader.ReleaseEntityReaders();
  return result;
}
