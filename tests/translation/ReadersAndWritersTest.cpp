#include "kovabase/io/KOVADefaultTxtBuffer.h"
#include "kovabase/translation/KOVAReader.h"
#include "kovabase/translation/KOVAWriter.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

std::string& trail() {
  static std::string steps;
  return steps;
}

int& livingEntities() {
  static int count = 0;
  return count;
}

class Entity : public KOVAEntityReader {
 public:
  Entity(const KOVABufferHandle& buffer, char name, int result)
      : KOVAEntityReader(buffer), _name(name), _result(result) {
    ++livingEntities();
  }
  ~Entity() override { --livingEntities(); }

  KOVAResult Read() override {
    trail() += _name;
    return _result;
  }
  KOVAString GetEntityType() override { return KOVAString(static_cast<unsigned short>(_name)); }

 private:
  char _name;
  int _result;
};

class Section : public KOVASectionReader {
 public:
  Section(const KOVABufferHandle& buffer, const std::string& names, int result) {
    for (const char name : names) AddEntityReader(new Entity(buffer, name, result));
  }
  KOVAResult PreProcess(KOVAFormatReader* formatReader) override {
    trail() += formatReader != nullptr ? "<" : "!";
    return KOVAResultCode::kSuccess;
  }
  KOVAResult PostProcess() override {
    trail() += ">";
    return KOVAResultCode::kSuccess;
  }
};

class Format : public KOVAFormatReader {
 public:
  explicit Format(int preprocessed, bool hasBuffer = true)
      : KOVAFormatReader(KOVAFileHandle()), _preprocessed(preprocessed) {
    static unsigned char bytes[] = "The quick brown fox\n";
    if (hasBuffer) _buffer = KOVABufferHandle(new KOVADefaultTxtBuffer(bytes, 20UL));
    _headerSections.add(new Section(_buffer, "ab", KOVAResultCode::kSuccess));
    _fileInfoSections.add(new Section(_buffer, "c", KOVAResultCode::kPartialSuccess));
    _dataSections.add(new Section(_buffer, "de", KOVAResultCode::kInvalidFile));
    _dataSections.add(new Section(_buffer, "", KOVAResultCode::kSuccess));
    _dataSections.add(new Section(_buffer, "f", KOVAResultCode::kSuccess));
  }
  KOVAResult PreprocessData() override {
    trail() += "P";
    return _preprocessed;
  }

 private:
  int _preprocessed;
};

std::string typesOf(const KOVADynamicArray<KOVAEntityReader*>& entities) {
  std::string types;
  for (KOVAEntityReader* entity : entities) {
    types += static_cast<char>(entity->GetEntityType().charAt(0));
  }
  return types;
}

class WritingEntity : public KOVAEntityWriter {
 public:
  using KOVAEntityWriter::KOVAEntityWriter;
  KOVAResult Write() override {
    trail() += "w";
    return KOVAResultCode::kSuccess;
  }
};

class WritingSection : public KOVASectionWriter {
 public:
  WritingSection() { AddEntityWriter(new WritingEntity(KOVABufferHandle())); }
};

class WritingFormat : public KOVAFormatWriter {
 public:
  WritingFormat() : KOVAFormatWriter(KOVAFileHandle()) {
    static unsigned char bytes[] = "x";
    _buffer = KOVABufferHandle(new KOVADefaultTxtBuffer(bytes, 1UL));
    _headerSections.add(new WritingSection);
    _dataSections.add(new WritingSection);
  }
};

}  // namespace

TEST(ReadersAndWriters, AReaderWalksTheSectionsOnceAndRunsEveryStep) {
  trail().clear();
  {
    const KOVAFormatReaderHandle format(new Format(KOVAResultCode::kNotImplemented));
    KOVAReader reader(format);
    EXPECT_EQ(typesOf(reader.GetDataEntityList()), "def");
    EXPECT_EQ(reader.ReadHeaderSection(), KOVAResultCode::kSuccess);
    EXPECT_EQ(reader.ReadFileInfoSection(), KOVAResultCode::kPartialSuccess);
    EXPECT_EQ(reader.ReadDataSection(), KOVAResultCode::kInvalidFile);
    EXPECT_EQ(trail(), "abcP<de><><f>");
    EXPECT_EQ(reader.ReadHeaderSection(), KOVAResultCode::kSuccess);
    EXPECT_EQ(trail(), "abcP<de><><f>");
    EXPECT_EQ(typesOf(reader.GetHeaderEntityList()), "ab");
    EXPECT_EQ(typesOf(reader.GetDataEntityList()), "def");
    EXPECT_EQ(reader.Resolve(), KOVAResultCode::kNotImplemented);
    EXPECT_EQ(reader.ReleaseEntityReaders(), KOVAResultCode::kSuccess);
    EXPECT_EQ(livingEntities(), 6);
  }
  EXPECT_EQ(livingEntities(), 0);
}

TEST(ReadersAndWriters, APreprocessingFailureIsKeptAndStopsNothing) {
  trail().clear();
  KOVAReader reader(KOVAFormatReaderHandle(new Format(KOVAResultCode::kFileEncrypted)));
  EXPECT_EQ(reader.ReadDataSection(), KOVAResultCode::kFileEncrypted);
  EXPECT_EQ(trail(), "P<de><><f>");
}

TEST(ReadersAndWriters, WithoutABufferOrAFormatThereIsNothingToDo) {
  trail().clear();
  const KOVAFormatReaderHandle format(new Format(KOVAResultCode::kSuccess, false));
  KOVAReader unopened(format);
  EXPECT_EQ(unopened.ReadHeaderSection(), KOVAResultCode::kSuccess);
  EXPECT_EQ(unopened.ReadDataSection(), KOVAResultCode::kSuccess);
  EXPECT_EQ(trail(), "P");
  EXPECT_EQ(typesOf(unopened.GetFileInfoEntityList()), "c");
  Format* const target = static_cast<Format*>(static_cast<KOVAFormatReader*>(format));
  EXPECT_EQ(target->ResetBufferToPosition(0), KOVAResultCode::kInvalidObject);

  KOVAReader none{KOVAFormatReaderHandle()};
  EXPECT_EQ(none.ReadHeaderSection(), KOVAResultCode::kSuccess);
  EXPECT_EQ(none.ReadDataSection(), KOVAResultCode::kSuccess);
  EXPECT_EQ(none.GetDataEntityList().size(), 0);
  EXPECT_EQ(none.Resolve(), KOVAResultCode::kInvalidObject);
  EXPECT_EQ(none.ReleaseEntityReaders(), KOVAResultCode::kSuccess);
}

TEST(ReadersAndWriters, AWriterMirrorsTheReader) {
  trail().clear();
  KOVAWriter writer(KOVAFormatWriterHandle(new WritingFormat));
  EXPECT_EQ(writer.WriteHeaderSection(), KOVAResultCode::kSuccess);
  EXPECT_EQ(writer.WriteFileInfoSection(), KOVAResultCode::kSuccess);
  EXPECT_EQ(writer.WriteDataSection(), KOVAResultCode::kSuccess);
  EXPECT_EQ(trail(), "ww");
  EXPECT_EQ(writer.GetDataEntityList().size(), 1);
  EXPECT_EQ(writer.ReleaseEntityWriters(), KOVAResultCode::kSuccess);
}

TEST(ReadersAndWriters, DumpShowsOffsetsBytesAndCharacters) {
  const KOVAFormatReaderHandle format(new Format(KOVAResultCode::kSuccess));
  KOVAReader reader(format);
  Format* const target = static_cast<Format*>(static_cast<KOVAFormatReader*>(format));
  EXPECT_EQ(target->ResetBufferToPosition(1), KOVAResultCode::kSuccess);
  std::FILE* stream = std::tmpfile();
  reader.GetHeaderEntityList()[0]->DumpData(100, stream);
  std::rewind(stream);
  char text[512] = {};
  text[std::fread(text, 1, sizeof text - 1, stream)] = '\0';
  std::fclose(stream);
  EXPECT_STREQ(text,
               "00000001  68 65 20 71 75 69 63 6B 20 62 72 6F 77 6E 20 66  he quick brown f\n"
               "00000011  6F 78 0A                                         ox.\n");
}
