#include "kovabase/foundation/KOVAResult.h"

#include <array>
#include <gtest/gtest.h>

namespace {

using namespace KOVAResultCode;

constexpr int F = kErrorEncountered;
constexpr int N = kNotImplemented;
constexpr int A = kAborted;
constexpr int U = kUndetermined;

constexpr std::array kOperands{0, 1, 2, 3, F, N, A, U};

using Table = std::array<std::array<int, kOperands.size()>, kOperands.size()>;

// Row: the result on the left before. Column: the one on the right. Both in the order above.
constexpr Table kAllMustSucceed{{
    {0, 1, 2, 3, F, N, A, U},
    {1, 1, 1, 1, F, N, A, U},
    {2, 1, 2, 3, F, N, A, U},
    {3, 1, 3, 3, F, N, A, U},
    {F, F, F, F, F, F, F, F},
    {0, 1, 2, 3, F, N, A, U},
    {A, A, A, A, A, A, A, A},
    {U, U, U, U, F, N, A, U},
}};

constexpr Table kOneIsEnough{{
    {0, 1, 0, 0, 1, 1, 1, 1},
    {1, 1, 1, 1, 1, 1, 1, 1},
    {2, 1, 2, 2, 1, 1, 1, 1},
    {3, 1, 3, 3, 1, 1, 1, 1},
    {1, 1, 1, 1, F, F, F, F},
    {1, 1, 1, 1, N, N, N, N},
    {1, 1, 1, 1, A, A, A, A},
    {1, U, 1, 1, F, N, A, U},
}};

TEST(KOVAResultTest, CombinesByTheTables) {
  for (std::size_t row = 0; row < kOperands.size(); ++row) {
    for (std::size_t column = 0; column < kOperands.size(); ++column) {
      SCOPED_TRACE(::testing::Message() << std::hex << kOperands[row] << ", " << kOperands[column]);
      KOVAResult all(kOperands[row]);
      EXPECT_EQ(&(all &= KOVAResult(kOperands[column])), &all);
      EXPECT_EQ(all, kAllMustSucceed[row][column]);
      KOVAResult any(kOperands[row]);
      EXPECT_EQ(any |= KOVAResult(kOperands[column]), kOneIsEnough[row][column]);
      EXPECT_EQ(any, kOneIsEnough[row][column]);
    }
  }
}

TEST(KOVAResultTest, ReadsTheFieldsOfTheCode) {
  const KOVAResult undecided;
  EXPECT_TRUE(undecided.IsFailure() && undecided.IsUndetermined());
  EXPECT_FALSE(undecided.IsDeterminedFailure() || undecided.IsSuccess());
  EXPECT_EQ(undecided.GetReturnCode(), 6);
  const KOVAResult partial(kPartialSuccess);
  EXPECT_TRUE(partial.IsSuccess() && partial.IsPartialSuccess());
  EXPECT_FALSE(partial.IsCompleteSuccess());
  EXPECT_EQ(partial.GetReturnCode(), 0);
  const KOVAResult ofDomain(kAborted | 0x00AB0000);
  EXPECT_EQ(ofDomain.GetCriticity(), 2U);
  EXPECT_EQ(ofDomain.GetDomain(), 0xABU);
  EXPECT_EQ(ofDomain.GetNumber(), 3U);
  EXPECT_EQ(ofDomain.GetReturnCode(), 1);

  // The upper four bits take no part in the tests of success, only in the comparison.
  const KOVAResult marked(0x40000000L);
  EXPECT_TRUE(marked.IsCompleteSuccess() && marked != kSuccess);

  const KOVAResult negative(0x1FFFFFFFEL);
  EXPECT_EQ(static_cast<long>(negative), -2L);
  EXPECT_TRUE(negative == -2 && negative != 0x1FFFFFFFEL);
}

TEST(KOVAResultTest, HasItsTexts) {
  const std::pair<int, const char*> texts[] = {
      {kSuccess, "Success"},
      {kPartialSuccess, "Partial Success"},
      {kNoEntityToTranslate, "No Entity to Translate"},
      {kNoTranslatableGeometry, "No translatable geometry"},
      {kFailure, "Failure"},
      {kErrorEncountered, "Error Encountered"},
      {kNotSupported, "Not supported"},
      {kNotImplemented, "Method is not implemented"},
      {kUnexpectedError, "Unexpected Error"},
      {kInvalidComponent, "Invalid Component"},
      {kInvalidObject, "Invalid Object"},
      {kInvalidArgument, "Invalid Argument"},
      {kFileNotFound, "File Not Found"},
      {kFileOpenError, "File Open Error"},
      {kFileSaveError, "File Save Error"},
      {kFileEncrypted, "File is encrypted"},
      {kModelExceedsValidBox, "Model size exceeds valid box"},
      {kModelBelowValidBox, "Model size is smaller than the valid box"},
      {kInvalidWriteUnit, "File write unit is invalid"},
      {kFileVersionNotSupported, "File version is not supported"},
      {kInvalidFile, "Invalid file"},
      {kFileFormatNotSupported, "File format not supported"},
      {kAlreadyInitialized, "Unknown Result"},
      {kAborted, "Aborted"},
      {kUndetermined, "Undetermined"},
      {kFailure | 0x10000, "Unknown Result"},
  };
  for (const auto& [code, text] : texts) EXPECT_STREQ(KOVAResult(code).GetMessage(), text);
  EXPECT_STREQ(KOVAResult::GetOKKOString(true), "OK");
  EXPECT_STREQ(KOVAResult::GetOKKOString(false), "KO");
  EXPECT_EQ(KOVAResult::GetReturnCode(true), 1);
  EXPECT_EQ(KOVAResult::GetReturnCode(false), 0);
}

}  // namespace
