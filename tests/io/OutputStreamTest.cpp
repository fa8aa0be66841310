#include "kovabase/io/KOVAFileOutputStream.h"
#include "kovabase/io/KOVAMemStream.h"
#include "kovabase/io/KOVAStringOutputStream.h"
#include "kovabase/strings/KOVAString.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

class FileOutputStreamTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = testing::TempDir() + "kova-io-XXXXXX";
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    _folder = pattern;
    _path = _folder + "/out";
  }
  void TearDown() override { std::filesystem::remove_all(_folder); }

  static std::string Read(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  std::string _folder;
  std::string _path;
};

TEST_F(FileOutputStreamTest, PathIsEmptiedHeldBackAndComplete) {
  std::ofstream(_path) << "a longer text that was there before";
  KOVAFileOutputStream stream(_path.c_str());
  stream.Write("first\n");
  EXPECT_EQ(Read(_path), "");
  EXPECT_TRUE(stream.Flush().IsSuccess());
  EXPECT_EQ(Read(_path), "first\n");

  // Across the buffer's end, larger than the buffer, and exactly as large.
  std::string expected = "first\n";
  for (const std::size_t count : {60000U, 10000U, 200000U, 65536U, 1U}) {
    const std::string block(count, static_cast<char>('a' + count % 26));
    stream.Write(block.data(), block.size());
    expected += block;
  }
  EXPECT_TRUE(stream.Close().IsSuccess());
  EXPECT_EQ(Read(_path), expected);
  EXPECT_EQ(stream.Write("late"), KOVAResultCode::kFileSaveError);
  EXPECT_EQ(Read(_path), expected);
}

TEST_F(FileOutputStreamTest, PathMayBeAString) {
  const std::string path = _folder + "/größe-文";
  {
    KOVAFileOutputStream stream(KOVAString(path.c_str(), "UTF-8"));
    stream.Write(KOVAString("£ \U0001F600", "UTF-8"));
  }
  EXPECT_EQ(Read(path), "£ \U0001F600");
}

TEST_F(FileOutputStreamTest, HandedInFilesStayOpen) {
  std::FILE* file = std::fopen(_path.c_str(), "w");
  ASSERT_NE(file, nullptr);
  std::fputs("1", file);
  {
    KOVAFileOutputStream stream(file);
    stream.Write("2");
    std::fputs("3", file);
    stream.Write("4");
  }
  EXPECT_EQ(Read(_path), "1234");
  std::fputs("5", file);
  std::fclose(file);
  EXPECT_EQ(Read(_path), "12345");

  const int descriptor = open(_path.c_str(), O_WRONLY | O_TRUNC);
  ASSERT_GE(descriptor, 0);
  {
    KOVAFileOutputStream stream(descriptor);
    stream.Write("half");
    EXPECT_EQ(Read(_path), "");
    stream.Write(" line\nnext");
    EXPECT_EQ(Read(_path), "half line\nnext");
    stream.Write(" rest");
  }
  EXPECT_EQ(write(descriptor, "!", 1), 1);
  close(descriptor);
  EXPECT_EQ(Read(_path), "half line\nnext rest!");
}

TEST_F(FileOutputStreamTest, WhatCannotBeOpenedFailsWithItsReason) {
  KOVAFileOutputStream missing((_folder + "/none/out").c_str());
  EXPECT_EQ(missing.GetResult(), KOVAResultCode::kFileOpenError);
  EXPECT_STREQ(missing.GetFailureReason(), "No such file or directory");
  EXPECT_EQ(missing.Write("x"), KOVAResultCode::kFileOpenError);

  const unsigned short units[] = {'a', 0, 'b'};
  const std::string before = std::filesystem::current_path().string();
  std::filesystem::current_path(_folder);
  EXPECT_EQ(KOVAFileOutputStream(KOVAString::fromUnits(units, 3)).GetResult(),
            KOVAResultCode::kInvalidArgument);
  std::filesystem::current_path(before);
  EXPECT_TRUE(std::filesystem::is_empty(_folder));

  EXPECT_EQ(KOVAFileOutputStream(static_cast<const char*>(nullptr)).GetResult(),
            KOVAResultCode::kInvalidArgument);
  EXPECT_EQ(KOVAFileOutputStream(static_cast<std::FILE*>(nullptr)).GetResult(),
            KOVAResultCode::kInvalidArgument);
  EXPECT_EQ(KOVAFileOutputStream(-1).GetResult(), KOVAResultCode::kInvalidArgument);
}

TEST_F(FileOutputStreamTest, FullDiskIsNoticed) {
  if (access("/dev/full", W_OK) != 0) GTEST_SKIP() << "this system has no /dev/full";
  KOVAFileOutputStream path("/dev/full");
  EXPECT_TRUE(path.Write("held back").IsSuccess());
  EXPECT_EQ(path.Flush(), KOVAResultCode::kFileSaveError);
  EXPECT_STREQ(path.GetFailureReason(), "No space left on device");

  KOVAFileOutputStream closed("/dev/full");
  closed.Write("held back");
  EXPECT_EQ(closed.Close(), KOVAResultCode::kFileSaveError);

  std::FILE* file = std::fopen("/dev/full", "w");
  KOVAFileOutputStream stdio(file);
  stdio.Write("held back");
  EXPECT_EQ(stdio.Flush(), KOVAResultCode::kFileSaveError);
  EXPECT_EQ(stdio.Write("more"), KOVAResultCode::kFileSaveError);
  std::fclose(file);
}

TEST(OutputStream, AFailedWriteLeavesNoHole) {
  class Narrow : public KOVAOutputStream {
   public:
    std::string text;

   protected:
    KOVAResult WriteBytes(const char* bytes, std::size_t count) override {
      if (count > 3) return KOVAResultCode::kFileSaveError;
      text.append(bytes, count);
      return KOVAResultCode::kSuccess;
    }
  };
  Narrow stream;
  EXPECT_TRUE(stream.Write("abc").IsSuccess());
  EXPECT_TRUE(stream.Write(static_cast<const char*>(nullptr)).IsSuccess());
  EXPECT_EQ(stream.Write("defg"), KOVAResultCode::kFileSaveError);
  EXPECT_EQ(stream.Write("h"), KOVAResultCode::kFileSaveError);
  EXPECT_EQ(stream.Flush(), KOVAResultCode::kFileSaveError);
  EXPECT_STREQ(stream.GetFailureReason(), "File Save Error");
  EXPECT_EQ(stream.text, "abc");
}

// Longer than the pieces in which they are converted, with pairs across every end of a piece.
TEST(OutputStream, LongStringsAreWrittenWhole) {
  for (const std::size_t shift : {0U, 1U, 255U}) {
    std::string text(shift, 'x');
    for (int i = 0; i < 700; ++i) text += "\U0001F600";
    KOVAStringOutputStream stream;
    EXPECT_TRUE(stream.Write(KOVAString((text + "文").c_str(), "UTF-8")).IsSuccess());
    EXPECT_EQ(std::string(stream.GetBytes(), stream.GetByteCount()), text + "文");
  }
}

TEST(StringOutputStream, GrowsKeepsZerosAndStartsAgain) {
  KOVAStringOutputStream stream;
  EXPECT_STREQ(stream.GetBytes(), "");
  std::string expected;
  for (int i = 0; i < 3000; ++i) {
    const std::string piece(static_cast<std::size_t>(i % 7), static_cast<char>(i % 128));
    stream.Write(piece.data(), piece.size());
    expected += piece;
    ASSERT_EQ(stream.GetBytes()[stream.GetByteCount()], 0);
  }
  EXPECT_EQ(std::string(stream.GetBytes(), stream.GetByteCount()), expected);

  stream.Clear();
  EXPECT_STREQ(stream.GetBytes(), "");
  stream.Write("\xE9");
  EXPECT_TRUE(stream.GetString("ISO-8859-1") == KOVAString("é", "UTF-8"));
}

TEST(MemStream, ReadsBackWhatIsWrittenMeanwhile) {
  const KOVAMemStreamHandle stream(new KOVAMemStream);
  KOVAMemStream* memory = stream;
  char bytes[8];
  EXPECT_EQ(memory->Read(bytes, sizeof bytes), 0U);
  memory->Write("abcdef");
  EXPECT_EQ(memory->Read(bytes, 4), 4U);
  memory->Write("gh");
  EXPECT_EQ(memory->Read(bytes, sizeof bytes), 4U);
  EXPECT_EQ(std::string(bytes, 4), "efgh");
  EXPECT_EQ(memory->SetPosition(9), KOVAResultCode::kInvalidArgument);
  EXPECT_EQ(memory->GetPosition(), 8U);
  EXPECT_TRUE(memory->SetPosition(8).IsSuccess());

  // Its own bytes, while the block moves.
  for (int i = 0; i < 12; ++i) memory->Write(memory->GetBytes(), memory->GetByteCount());
  ASSERT_EQ(memory->GetByteCount(), 8U << 12);
  EXPECT_EQ(std::string(memory->GetBytes() + (8 << 12) - 8, 8), "abcdefgh");
}

}  // namespace
