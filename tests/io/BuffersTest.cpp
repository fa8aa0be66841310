#include "kovabase/foundation/Gk_Exception.h"
#include "kovabase/io/KOVABufferFileHandler.h"
#include "kovabase/io/KOVABufferMemoryHandler.h"
#include "kovabase/io/KOVADefaultBinaryBuffer.h"
#include "kovabase/io/KOVADefaultTxtBuffer.h"
#include "kovabase/strings/KOVAString.h"
#include "tests/support/RecordedEvents.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>
#include <sys/stat.h>
#include <vector>

using Lines = std::vector<std::string>;

namespace {

constexpr char kNoNextInput[] =
    "80 Error : KOVABufferInputFileHandler::GetChar: Unable to get next info from buffer!!!\n";
constexpr char kNoNextMemory[] =
    "80 Error : KOVABufferMemoryHandler::GetChar: Unable to get next info from buffer!!!\n";
constexpr char kNoNumber[] = "70 Warning :  Found number with invalid digit length.\n\n";

class Buffers : public testing::Test {
 protected:
  Buffers() {
    std::string name = (std::filesystem::temp_directory_path() / "kova-buffers-XXXXXX").string();
    _folder = mkdtemp(name.data());
  }
  ~Buffers() override { std::filesystem::remove_all(_folder); }

  std::string path(const char* name) const { return _folder + "/" + name; }
  KOVAFileHandle file(const char* name) const {
    return KOVAFileHandle(new KOVAFile(KOVAFilePath(path(name).c_str(), false)));
  }
  KOVAFileHandle file(const char* name, const std::string& bytes) const {
    std::ofstream(path(name), std::ios::binary) << bytes;
    return file(name);
  }

 private:
  std::string _folder;
};

template <class Buffer>
Buffer over(std::string& bytes) {
  return Buffer(reinterpret_cast<unsigned char*>(bytes.data()), bytes.size());
}

std::string endOf(const std::function<void()>& read) {
  try {
    read();
  } catch (const Gk_Exception& error) {
    return error.getMessage();
  }
  return "nothing";
}

}  // namespace

TEST_F(Buffers, WindowsTakeTheSizeOfTheFileWithinTheirBounds) {
  struct {
    std::size_t bytes;
    unsigned window;
  } const table[] = {{0, 2048}, {1, 1}, {0x400000, 0x400000}, {0x400001, 0x400000}};
  for (const auto& row : table) {
    KOVABufferInputFileHandler handler(file("sized", std::string(row.bytes, 'x')));
    EXPECT_EQ(handler.AllocateBuffer(), KOVAResultCode::kWindowSizeUndefined);
    EXPECT_EQ(handler.DecideFileBufferSize(), KOVAResultCode::kSuccess);
    EXPECT_EQ(handler.GetBufferSize(), row.window);
    EXPECT_EQ(handler.GetSize(), row.bytes);
    EXPECT_EQ(handler.AllocateBuffer(), KOVAResultCode::kSuccess);
  }
}

TEST_F(Buffers, ARefillAtTheEndIsSilent) {
  KOVABufferInputFileHandler handler(file("four", "abcd"));
  handler.DecideFileBufferSize();
  handler.AllocateBuffer();
  testing::internal::CaptureStdout();
  EXPECT_EQ(handler.FillBuffer(), KOVAResultCode::kSuccess);
  EXPECT_EQ(handler.GetWindowEnd(), 4);
  EXPECT_EQ(handler.FillBuffer(), KOVAResultCode::kWindowReadFailed);
  std::fflush(stdout);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_FALSE(handler.IsPointerPositionValid(0));

  EXPECT_EQ(handler.AdvancePointerPosition(4), KOVAResultCode::kFailure);
  EXPECT_EQ(handler.AdvancePointerPosition(-1), KOVAResultCode::kFailure);
  EXPECT_EQ(handler.AdvancePointerPosition(2), KOVAResultCode::kSuccess);
  EXPECT_FALSE(handler.IsPointerPositionValid(2));
  unsigned char byte = 0;
  EXPECT_EQ(handler.GetByte(3, byte), KOVAResultCode::kSuccess);
  EXPECT_EQ(byte, 'd');
  EXPECT_EQ(handler.GetBytes(0, -1, &byte), KOVAResultCode::kFailure);
  EXPECT_EQ(handler.GetBytes(0, 1, nullptr), KOVAResultCode::kFailure);
}

TEST_F(Buffers, FillsWithoutASeekGoOnBehindTheWindow) {
  std::string bytes(0x400000, 'a');
  bytes += "bcd";
  KOVABufferInputFileHandler handler(file("two", bytes));
  handler.DecideFileBufferSize();
  handler.AllocateBuffer();
  EXPECT_EQ(handler.FillBuffer(), KOVAResultCode::kSuccess);
  EXPECT_EQ(handler.FillBuffer(), KOVAResultCode::kSuccess);
  EXPECT_EQ(handler.GetWindowStart(), 0x400000);
  unsigned char byte = 0;
  EXPECT_EQ(handler.GetByte(0x400001, byte), KOVAResultCode::kSuccess);
  EXPECT_EQ(byte, 'c');

  // A window made again is empty, one that was made before the file grew stays as small as it was.
  EXPECT_EQ(handler.AllocateBuffer(), KOVAResultCode::kSuccess);
  EXPECT_FALSE(handler.IsPointerPositionValid(0x400001));
  EXPECT_EQ(handler.GetByte(0, byte), KOVAResultCode::kSuccess);
  EXPECT_EQ(byte, 'a');
  KOVABufferInputFileHandler grown(file("grown", "1234"));
  grown.DecideFileBufferSize();
  grown.AllocateBuffer();
  file("grown", std::string(5000, '5'));
  grown.DecideFileBufferSize();
  EXPECT_EQ(grown.FillBuffer(), KOVAResultCode::kSuccess);
  EXPECT_EQ(grown.GetWindowEnd(), 4);
  EXPECT_EQ(grown.GetByte(4999, byte), KOVAResultCode::kSuccess);
  EXPECT_EQ(byte, '5');
}

TEST_F(Buffers, WhatCannotBeReadFailsWithOneEvent) {
  ASSERT_EQ(mkfifo(path("fifo").c_str(), 0600), 0);
  std::filesystem::create_directory(path("folder"));
  std::ofstream(path("huge")).close();
  std::filesystem::resize_file(path("huge"), std::uintmax_t{1} << 32);
  for (const char* name : {"absent", "fifo", "folder"}) {
    kova::test::RecordedEvents events;
    KOVADefaultBinaryBuffer buffer(file(name), 0);
    EXPECT_EQ(events.take(), Lines({"80 Error : could not open input file\n\n"})) << name;
    EXPECT_FALSE(buffer.IsBufferValid());
    int value = 7;
    EXPECT_EQ(buffer.ReadInt(value), KOVAResultCode::kNotInitialized);
    EXPECT_EQ(value, 7);
  }
  kova::test::RecordedEvents events;
  const KOVADefaultTxtBuffer huge(file("huge"), 0);
  EXPECT_EQ(events.take().size(), 2U);
  const KOVADefaultTxtBuffer none(nullptr, 0UL);
  EXPECT_EQ(events.take(), Lines({"80 Error : Input Buffer is Invalid\n\n"}));
  const KOVADefaultTxtBuffer unnamed(KOVAFileHandle(), 0);
  EXPECT_EQ(events.take(), Lines({"80 Error : could not open input file\n\n"}));
}

TEST_F(Buffers, AFileThatShrinksEndsInAFailure) {
  KOVADefaultBinaryBuffer buffer(file("shrinking", std::string(0x400000 + 100, 'x')), 0);
  EXPECT_EQ(buffer.SetOffset(0x400000 - 2), KOVAResultCode::kSuccess);
  int value = 0;
  EXPECT_EQ(buffer.ReadInt(value), KOVAResultCode::kSuccess);
  std::filesystem::resize_file(path("shrinking"), 10);
  EXPECT_EQ(buffer.SetOffset(100), KOVAResultCode::kSuccess);
  kova::test::RecordedEvents events;
  EXPECT_EQ(buffer.ReadInt(value), KOVAResultCode::kWindowReadFailed);
  EXPECT_EQ(events.take(), Lines({kNoNextInput}));
  EXPECT_EQ(buffer.GetOffset(), 100);
}

// What is left of a number, a line or a word is none of them.
TEST_F(Buffers, TextThatCannotBeReadIsNotTakenForItsEnd) {
  struct {
    const char* what;
    std::function<KOVAResult(KOVADefaultTxtBuffer&)> read;
  } const table[] = {
      {"int",
       [](auto& text) {
         int value;
         return text.ReadInt(value);
       }},
      {"long",
       [](auto& text) {
         unsigned long value;
         return text.ReadULngInt(value);
       }},
      {"line",
       [](auto& text) {
         KOVAString value;
         return text.ReadLine(value);
       }},
      {"word",
       [](auto& text) {
         KOVAString value;
         return text.ReadWord(value);
       }},
      {"skip", [](auto& text) { return text.SkipChars("12"); }},
  };
  for (const long begin : {0x400000L - 3, 0x400000L}) {
    for (const auto& row : table) {
      KOVADefaultTxtBuffer buffer(file("cut", std::string(0x400000 + 100, '1')), 0);
      // The first window, which ends at 4 MiB.
      EXPECT_EQ(buffer.SkipChars("0"), KOVAResultCode::kSuccess);
      EXPECT_EQ(buffer.SetOffset(begin), KOVAResultCode::kSuccess);
      std::filesystem::resize_file(path("cut"), 10);
      kova::test::RecordedEvents events;
      EXPECT_EQ(row.read(buffer), KOVAResultCode::kWindowReadFailed) << row.what;
      EXPECT_EQ(buffer.GetOffset(), begin) << row.what;
      EXPECT_EQ(events.take(), Lines({kNoNextInput})) << row.what;
    }
  }
}

TEST_F(Buffers, BinaryValuesFollowTheByteOrder) {
  std::string bytes("\0\0\0\1\1\0\0\0\x12\x34\x3F\xF0\0\0\0\0\0\0", 18);
  auto buffer = over<KOVADefaultBinaryBuffer>(bytes);
  int value = 0;
  short number = 0;
  double real = 0.0;
  EXPECT_EQ(buffer.ReadInt(value), KOVAResultCode::kSuccess);
  EXPECT_EQ(value, 1);
  buffer.SetEndianness(7);
  EXPECT_EQ(buffer.ReadInt(value), KOVAResultCode::kSuccess);
  EXPECT_EQ(value, 1);
  buffer.SetEndianness(0);
  EXPECT_EQ(buffer.ReadShort(number), KOVAResultCode::kSuccess);
  EXPECT_EQ(number, 0x1234);
  EXPECT_EQ(buffer.ReadDouble(real), KOVAResultCode::kSuccess);
  EXPECT_EQ(real, 1.0);

  kova::test::RecordedEvents events;
  EXPECT_EQ(buffer.GetOffset(), buffer.GetSize());
  EXPECT_EQ(endOf([&] { buffer.ReadShort(number); }), "End of Buffer.");
  EXPECT_EQ(events.take(), Lines({kNoNextMemory}));
  EXPECT_EQ(buffer.SetOffset(16), KOVAResultCode::kSuccess);
  EXPECT_EQ(endOf([&] { buffer.ReadInt(value); }), "End of Buffer.");
  EXPECT_EQ(buffer.GetOffset(), 16);
  EXPECT_EQ(value, 1);
  events.take();
  EXPECT_EQ(buffer.SetOffset(19), KOVAResultCode::kFailure);
  EXPECT_EQ(buffer.SetOffset(-1), KOVAResultCode::kFailure);
  EXPECT_EQ(events.take(), Lines(2, "80 Error : Offset Index beyond file length!!!\n"));
  EXPECT_EQ(buffer.GetOffset(), 16);

  // Nothing of nothing is no failure, not even before the first window.
  auto fresh = over<KOVADefaultBinaryBuffer>(bytes);
  KOVAString none("x");
  EXPECT_EQ(fresh.ReadUTF8String(0, none), KOVAResultCode::kSuccess);
  EXPECT_EQ(none.length(), 0);
  unsigned char nothing[1];
  EXPECT_EQ(fresh.GetBufferBasedOnEndianNess(0, nothing), KOVAResultCode::kSuccess);

  unsigned char three[] = {1, 2, 3};
  KOVADefaultBinaryBuffer::MirrorBuffer(3, three);
  EXPECT_EQ(three[0], 3);
  KOVADefaultBinaryBuffer::MirrorBuffer(1, nullptr);
  EXPECT_EQ(buffer.GetBufferBasedOnEndianNess(2, nullptr), KOVAResultCode::kFailure);
}

// Reads across windows of a file equal those of one block in memory, in both orders, single and
// whole.
TEST_F(Buffers, FilesAcrossWindowsReadLikeMemory) {
  std::mt19937 random(5);
  std::string bytes(0x400000 * 2 + 1001, '\0');
  for (char& byte : bytes) byte = static_cast<char>(random());
  KOVADefaultBinaryBuffer fromFile(file("long", bytes), 0);
  auto fromMemory = over<KOVADefaultBinaryBuffer>(bytes);
  for (const int mode : {0, 1}) {
    fromFile.SetEndianness(mode);
    fromMemory.SetEndianness(mode);
    for (int round = 0; round < 200; ++round) {
      const long offset = static_cast<long>(random() % bytes.size());
      // Few values, and so many that they are read past the window.
      const int count = static_cast<int>(random() % (round % 8 == 0 ? 40000 : 3000));
      ASSERT_EQ(fromFile.SetOffset(offset), fromMemory.SetOffset(offset));
      std::vector<double> whole(static_cast<std::size_t>(count), 0.0);
      std::vector<double> single = whole;
      const std::string wholeEnd = endOf([&] { fromFile.ReadDoubles(whole.data(), count); });
      const std::string singleEnd = endOf([&] {
        for (double& value : single) fromMemory.ReadDouble(value);
      });
      ASSERT_EQ(wholeEnd, singleEnd);
      if (wholeEnd != "nothing") {
        EXPECT_EQ(fromFile.GetOffset(), offset);
        continue;
      }
      ASSERT_EQ(fromFile.GetOffset(), fromMemory.GetOffset());
      ASSERT_EQ(std::memcmp(whole.data(), single.data(), whole.size() * sizeof(double)), 0);
    }
  }
}

TEST_F(Buffers, BinaryWritesReadBack) {
  const int ints[] = {1, -2, 0x7FFFFFFF};
  for (const int mode : {0, 1}) {
    {
      KOVADefaultBinaryBuffer output(file("written"), 1);
      output.SetEndianness(mode);
      EXPECT_EQ(output.WriteInt(-5), KOVAResultCode::kSuccess);
      EXPECT_EQ(output.WriteDouble(0.1), KOVAResultCode::kSuccess);
      EXPECT_EQ(output.WriteShort(-7), KOVAResultCode::kSuccess);
      EXPECT_EQ(output.WriteLngString(KOVAString("bolt")), KOVAResultCode::kSuccess);
      EXPECT_EQ(output.WriteUTF8String(KOVAString("\xC3\xA9", "UTF-8")), KOVAResultCode::kSuccess);
      EXPECT_EQ(output.WriteWString(KOVAString("\xC3\xA9t", "UTF-8")), KOVAResultCode::kSuccess);
      EXPECT_EQ(output.WriteInts(ints, 3), KOVAResultCode::kSuccess);
      const long end = output.GetOffset();
      EXPECT_EQ(output.SetOffset(0), KOVAResultCode::kSuccess);
      int first = 0;
      EXPECT_EQ(output.ReadInt(first), KOVAResultCode::kSuccess);
      EXPECT_EQ(first, -5);
      EXPECT_EQ(output.SetOffset(0), KOVAResultCode::kSuccess);
      EXPECT_EQ(output.WriteInt(6), KOVAResultCode::kSuccess);
      EXPECT_EQ(output.GetSize(), end);
      EXPECT_EQ(output.Flush(), KOVAResultCode::kSuccess);
    }
    KOVADefaultBinaryBuffer input(file("written"), 0);
    input.SetEndianness(mode);
    int value = 0;
    double real = 0.0;
    short number = 0;
    KOVAString text;
    int read[3] = {};
    input.ReadInt(value);
    EXPECT_EQ(value, 6);
    input.ReadDouble(real);
    EXPECT_EQ(real, 0.1);
    input.ReadShort(number);
    EXPECT_EQ(number, -7);
    EXPECT_EQ(input.ReadLngString(text), KOVAResultCode::kSuccess);
    EXPECT_TRUE(text == KOVAString("bolt"));
    EXPECT_EQ(input.ReadUTF8String(2, text), KOVAResultCode::kSuccess);
    EXPECT_TRUE(text == KOVAString("\xC3\xA9", "UTF-8"));
    EXPECT_EQ(input.ReadWString(2, text), KOVAResultCode::kSuccess);
    EXPECT_TRUE(text == KOVAString("\xC3\xA9t", "UTF-8"));
    EXPECT_EQ(input.ReadInts(read, 3), KOVAResultCode::kSuccess);
    EXPECT_TRUE(std::equal(ints, ints + 3, read));
    EXPECT_EQ(input.WriteInt(1), KOVAResultCode::kNotSupported);
    // A count that promises more than there is costs nothing and moves nothing.
    input.SetOffset(0);
    EXPECT_EQ(endOf([&] { input.ReadUTF8String(0x7FFFFFFF, text); }), "End of Buffer.");
    EXPECT_EQ(endOf([&] { input.ReadWString(0x7FFFFFFF, text); }), "End of Buffer.");
    EXPECT_EQ(input.GetOffset(), 0);
  }
}

// Long pieces go past the window, short ones into it, some over what is there.
TEST_F(Buffers, PiecesOfAnyLengthLandWhereTheyBelong) {
  std::vector<int> expected;
  {
    KOVADefaultBinaryBuffer output(file("pieces"), 1);
    int next = 0;
    for (const auto& [from, count] : {std::pair{0, 10},
                                      {10, 40000},
                                      {40010, 3},
                                      {5, 20000},
                                      {20005, 2},
                                      {9, 1},
                                      {40013, 30000},
                                      {70013, 600}}) {
      std::vector<int> piece(static_cast<std::size_t>(count));
      for (int& value : piece) value = ++next;
      expected.resize(std::max(expected.size(), static_cast<std::size_t>(from + count)));
      std::copy(piece.begin(), piece.end(), expected.begin() + from);
      ASSERT_EQ(output.SetOffset(4L * from), KOVAResultCode::kSuccess);
      ASSERT_EQ(output.WriteInts(piece.data(), count), KOVAResultCode::kSuccess);
      ASSERT_EQ(output.GetSize(), 4L * static_cast<long>(expected.size()));
      int last = 0;
      ASSERT_EQ(output.SetOffset(4L * (from + count - 1)), KOVAResultCode::kSuccess);
      ASSERT_EQ(output.ReadInt(last), KOVAResultCode::kSuccess);
      ASSERT_EQ(last, next);
    }
  }
  KOVADefaultBinaryBuffer input(file("pieces"), 0);
  std::vector<int> read(expected.size());
  ASSERT_EQ(input.ReadInts(read.data(), static_cast<int>(read.size())), KOVAResultCode::kSuccess);
  EXPECT_EQ(read, expected);
}

TEST_F(Buffers, AFullDiskIsNoticed) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "there is no /dev/full";
  KOVADefaultBinaryBuffer output(KOVAFileHandle(new KOVAFile(KOVAFilePath("/dev/full", false))), 1);
  output.WriteInt(1);
  EXPECT_EQ(output.Flush(), KOVAResultCode::kFileSaveError);
  EXPECT_EQ(output.WriteInt(1), KOVAResultCode::kFileSaveError);
}

TEST_F(Buffers, IntegersEndAsTheirTokensSay) {
  struct {
    const char* text;
    int value;
    int result;
    long offset;
    int events;
  } const table[] = {
      {"12 13", 12, KOVAResultCode::kSuccess, 3, 0},
      {"12\t", 12, KOVAResultCode::kSuccess, 3, 0},
      {"12,", 12, KOVAResultCode::kSuccess, 2, 0},
      {"12", 12, KOVAResultCode::kSuccess, 2, 0},
      {"+7 ", 7, KOVAResultCode::kSuccess, 3, 0},
      {"1\r\n2 ", 12, KOVAResultCode::kSuccess, 5, 0},
      {"-2147483648 and more text behind it", -2147483648, KOVAResultCode::kSuccess, 12, 0},
      {"12ex", 12, KOVAResultCode::kSuccess, 2, 0},
      {"1.9 ", 1, KOVAResultCode::kSuccess, 4, 0},
      {"?9", -32764, KOVAResultCode::kSuccess, 1, 0},
      {"", -32764, KOVAResultCode::kNotInitialized, 0, 0},
      {" 5", -32764, KOVAResultCode::kFailure, 1, 1},
      {"x", -32764, KOVAResultCode::kFailure, 0, 1},
      {"2147483648 and more text behind", -32764, KOVAResultCode::kFailure, 11, 0},
  };
  for (const auto& row : table) {
    std::string text = row.text;
    auto buffer = over<KOVADefaultTxtBuffer>(text);
    kova::test::RecordedEvents events;
    int value = 1;
    EXPECT_EQ(buffer.ReadInt(value), row.result) << row.text;
    EXPECT_EQ(value, row.value) << row.text;
    EXPECT_EQ(buffer.GetOffset(), row.offset) << row.text;
    EXPECT_EQ(events.take(), Lines(static_cast<std::size_t>(row.events), kNoNumber)) << row.text;
  }
}

TEST_F(Buffers, LongNumbersNeedABlankBehindThem) {
  const std::string digits(127, '0');
  struct {
    std::string behind;
    bool isGood;
  } const table[] = {{" ", true}, {"\n\n\t", true}, {"0 ", false},
                     {"", false}, {"\n", false},    {",", false}};
  for (const auto& row : table) {
    std::string text = digits + row.behind;
    auto buffer = over<KOVADefaultTxtBuffer>(text);
    kova::test::RecordedEvents events;
    char number[128] = {};
    EXPECT_EQ(buffer.ExtractNumberBuffer(128, number).IsSuccess(), row.isGood) << row.behind;
    EXPECT_EQ(buffer.GetOffset(), 127) << row.behind;
    EXPECT_EQ(std::string(number), digits);
    EXPECT_EQ(events.take(), row.isGood
                                 ? Lines()
                                 : Lines({"80 Error :  Found number with digit length more than "
                                          "maximum possible length of 128.\n\n"}));
  }
  // The blank behind the longest number stays, however it is read.
  std::string real = digits + " " + digits;
  double value = 1.0;
  auto reals = over<KOVADefaultTxtBuffer>(real);
  EXPECT_EQ(reals.ReadDouble(value), KOVAResultCode::kSuccess);
  EXPECT_EQ(reals.GetOffset(), 127);

  std::string text = "12";
  auto buffer = over<KOVADefaultTxtBuffer>(text);
  char untouched[2] = {'a', 'b'};
  EXPECT_EQ(buffer.ExtractNumberBuffer(1, untouched), KOVAResultCode::kFailure);
  EXPECT_EQ(buffer.ExtractNumberBuffer(5, nullptr), KOVAResultCode::kFailure);
  EXPECT_EQ(untouched[0], 'a');
}

TEST_F(Buffers, TextReadsAndWritesAgree) {
  const double reals[] = {0.1, -1e300, 5e-324, 0.0, 123456789.0, 1e-7};
  {
    KOVADefaultTxtBuffer output(file("text"), 1);
    for (const double real : reals) EXPECT_EQ(output.WriteDouble(real), KOVAResultCode::kSuccess);
    EXPECT_EQ(output.WriteInt(-17), KOVAResultCode::kSuccess);
    EXPECT_EQ(output.WriteLine(KOVAString("a line")), KOVAResultCode::kSuccess);
    EXPECT_EQ(output.WriteAsciiString(KOVAString("  word \r\nlast")), KOVAResultCode::kSuccess);
    EXPECT_EQ(output.WriteDouble(HUGE_VAL), KOVAResultCode::kInvalidArgument);
    EXPECT_EQ(output.WriteLine(KOVAString()), KOVAResultCode::kSuccess);
    EXPECT_EQ(output.WriteULngInt(3000000000UL), KOVAResultCode::kInvalidArgument);
    EXPECT_EQ(output.WriteULngInt(~1UL), KOVAResultCode::kSuccess);
    EXPECT_EQ(output.Flush(), KOVAResultCode::kSuccess);
  }
  KOVADefaultTxtBuffer input(file("text"), 0);
  double read[6] = {};
  int done = 0;
  EXPECT_EQ(input.ReadDoubles(read, 6, &done), KOVAResultCode::kSuccess);
  EXPECT_EQ(done, 6);
  EXPECT_TRUE(std::equal(reals, reals + 6, read));
  short number = 0;
  EXPECT_EQ(input.ReadShort(number), KOVAResultCode::kSuccess);
  EXPECT_EQ(number, -17);
  KOVAString text;
  EXPECT_EQ(input.ReadLine(text), KOVAResultCode::kSuccess);
  EXPECT_TRUE(text == KOVAString("a line"));
  EXPECT_EQ(input.ReadWord(text), KOVAResultCode::kSuccess);
  EXPECT_TRUE(text == KOVAString("word"));
  EXPECT_EQ(input.ReadLine(text), KOVAResultCode::kSuccess);
  EXPECT_EQ(input.ReadLine(text), KOVAResultCode::kSuccess);
  EXPECT_TRUE(text == KOVAString("last"));
  unsigned long word = 0;
  EXPECT_EQ(input.ReadULngInt(word), KOVAResultCode::kSuccess);
  EXPECT_EQ(word, ~1UL);
  kova::test::RecordedEvents events;
  EXPECT_EQ(input.ReadLine(text), KOVAResultCode::kFailure);
  EXPECT_EQ(events.take(), Lines({"70 Warning : \n Found line with invalid length.\n\n"}));
}

TEST_F(Buffers, ConversionsRefuseWhatDoesNotFit) {
  kova::test::RecordedEvents events;
  std::string text = "40000 1e400 1e-400 1e39 -1 99999999999 ";
  auto buffer = over<KOVADefaultTxtBuffer>(text);
  short number = 3;
  EXPECT_EQ(buffer.ReadShort(number), KOVAResultCode::kFailure);
  EXPECT_EQ(number, 3);
  EXPECT_EQ(events.take(), Lines({"70 Warning : \n Found short with value out of range.\n\n"}));
  double real = 4.0;
  EXPECT_EQ(buffer.ReadDouble(real), KOVAResultCode::kFailure);
  EXPECT_EQ(real, 4.0);
  EXPECT_EQ(buffer.ReadDouble(real), KOVAResultCode::kSuccess);
  EXPECT_EQ(real, 0.0);
  float single = 5.0F;
  EXPECT_EQ(buffer.ReadFloat(single), KOVAResultCode::kFailure);
  EXPECT_EQ(single, 5.0F);
  unsigned long word = 6;
  EXPECT_EQ(buffer.ReadULngInt(word), KOVAResultCode::kSuccess);
  EXPECT_EQ(word, std::numeric_limits<unsigned long>::max());
  EXPECT_EQ(buffer.ReadULngInt(word), KOVAResultCode::kFailure);
  EXPECT_EQ(buffer.ReadULngInt(word), KOVAResultCode::kSuccess);
  EXPECT_EQ(word, std::numeric_limits<unsigned long>::max());
}
