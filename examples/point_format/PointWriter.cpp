#include "PointFormat.h"

namespace {

using TextBuffer = KOVADefaultTxtBuffer;

class PointEntity : public KOVAEntityWriter {
 public:
  PointEntity(const KOVADefaultTxtBufferHandle& buffer, const PointFile& file)
      : KOVAEntityWriter(static_cast<TextBuffer*>(buffer)), _text(buffer), _file(file) {}

 protected:
  KOVADefaultTxtBufferHandle _text;
  const PointFile& _file;
};

class HeaderEntity : public PointEntity {
 public:
  using PointEntity::PointEntity;
  KOVAResult Write() override { return _text->WriteLine(KOVAString("POINTS 1 ")); }
};

class UnitEntity : public PointEntity {
 public:
  using PointEntity::PointEntity;

  KOVAResult Write() override {
    KOVAString unit;
    GetUnitName(_file.unit, unit);
    return _text->WriteLine(KOVAString("UNIT ") + unit);
  }
};

class PointsEntity : public PointEntity {
 public:
  using PointEntity::PointEntity;

  KOVAResult Write() override {
    KOVAResult result = _text->WriteULngInt(_file.points.size());
    result &= _text->WriteLine(KOVAString());
    for (const KOVAVector& point : _file.points) {
      for (int axis = 0; axis < 3; ++axis) result &= _text->WriteDouble(point[axis]);
      result &= _text->WriteLine(KOVAString());
    }
    return result;
  }
};

template <class Entity>
class Section : public KOVASectionWriter {
 public:
  Section(const KOVADefaultTxtBufferHandle& buffer, const PointFile& file) {
    AddEntityWriter(new Entity(buffer, file));
  }
};

class PointFormatWriter : public KOVAFormatWriter {
 public:
  PointFormatWriter(const KOVAFileHandle& path, const PointFile& file) : KOVAFormatWriter(path) {
    const KOVADefaultTxtBufferHandle text(new TextBuffer(path, 1));
    _buffer = KOVABufferHandle(static_cast<TextBuffer*>(text));
    _text = text;
    _headerSections.add(new Section<HeaderEntity>(text, file));
    _fileInfoSections.add(new Section<UnitEntity>(text, file));
    _dataSections.add(new Section<PointsEntity>(text, file));
  }

  // The last step: only now is it known whether everything has arrived.
  KOVAResult Resolve() override { return _text->Flush(); }

 private:
  KOVADefaultTxtBufferHandle _text;
};

}  // namespace

KOVAResult writePointFile(const KOVAFilePath& path, const PointFile& file) {
  const KOVAFileHandle handle(new KOVAFile(path));
  KOVAWriter writer(KOVAFormatWriterHandle(new PointFormatWriter(handle, file)));
  KOVAResult result = writer.WriteHeaderSection();
  result &= writer.WriteFileInfoSection();
  result &= writer.WriteDataSection();
  result &= writer.Resolve();
  writer.ReleaseEntityWriters();
  return result;
}
