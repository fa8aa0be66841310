#include "kovabase/foundation/Gk_ErrMgr.h"
#include "kovabase/foundation/Gk_Exception.h"
#include "kovabase/foundation/KOVAAbortException.h"
#include "kovabase/foundation/KOVACallbackShared.h"
#include "kovabase/foundation/KOVAError.h"
#include "kovabase/foundation/KOVAException.h"
#include "kovabase/io/KOVAStringOutputStream.h"
#include "tests/support/AllocationFailure.h"

#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <typeinfo>

namespace {

using namespace KOVAResultCode;

std::string utf8(const KOVAString& text) {
  std::string bytes(static_cast<std::size_t>(text.getConvertToUTF8Size()), '\0');
  text.convertToUTF8(bytes.data(), static_cast<int>(bytes.size()));
  bytes.pop_back();
  return bytes;
}

std::string formatted(const KOVAError& error) {
  KOVAStringOutputStream stream;
  error.GetFormattedDescription(&stream);
  return stream.GetBytes();
}

TEST(KOVAErrorTest, DescribesItself) {
  EXPECT_EQ(formatted(KOVAError()), "Error 16777217\n");
  EXPECT_EQ(formatted(KOVAError(kFailure, KOVAString("no %s face"))),
            "Error Description : no %s face\n");
  EXPECT_EQ(formatted(KOVAError(kSuccess, KOVAString("ignored"))), "");
  EXPECT_EQ(formatted(KOVAError::FAIL_ERROR), "Error 16777217\n");
}

TEST(KOVAExceptionTest, FillsItsTextsFromTheResult) {
  const struct {
    int code;
    const char* request;
    const char* diagnostic;
    const char* advice;
    int id;
  } rows[] = {
      {kAborted, "The operation was aborted..", "User triggered abort.", "None.", 3},
      {kAlreadyInitialized, "Attempt to initialize Vexil more than once per process.",
       "Vexil does not allow multiple initializations per process.",
       "Please change the code to only initialize Vexil once per process.", 24},
      {kFileFormatNotSupported, "Attempt to read the file a.stl",
       "Input file appears to have unsupported file format (v9)",
       "Please check the documentation for supported file formats", 22},
      {kInvalidFile, "Attempt to read the file a.stl",
       "Cannot read input file, it appears to be an invalid file",
       "Please check that the input file has valid supported data in it.", 21},
      {kFileVersionNotSupported, "Attempt to read the file a.stl",
       "This data file version is not supported by this software at this time.",
       "Please check the matrix of supported versions in the release notes.", 20},
      {kInvalidObject, "Operation failed.", "An error occured because the object was not valid.",
       "Use Valid Object", 10},
      {kFileNotFound, "Attempt to open the file:  a.stl", "The file is not found.",
       "Please check the case of file name.", 13},
      {kErrorEncountered, "Operation failed.", "Operation failed with result code: 2",
       "Contact customer support.", 2},
      {kFailure | 0x0012ABCD, "Operation failed.", "Operation failed with result code: ABCD",
       "Contact customer support.", 0xABCD},
  };
  for (const auto& row : rows) {
    const KOVAException exception(KOVAResult(row.code), KOVAString("a.stl"), KOVAString("(v9)"));
    EXPECT_EQ(utf8(exception.GetRequest()), row.request);
    EXPECT_EQ(utf8(exception.GetDiagnostic()), row.diagnostic);
    EXPECT_EQ(utf8(exception.GetAdvice()), row.advice);
    EXPECT_EQ(exception.GetErrorId(), row.id);
  }
  const KOVAException failed(static_cast<KOVAException::ErrorID>(17), KOVAString("no faces"));
  EXPECT_EQ(utf8(failed.GetRequest()), "Translation failed.");
  EXPECT_EQ(utf8(failed.GetDiagnostic()), "no faces");
  EXPECT_EQ(utf8(failed.GetAdvice()), "Please contact customer support for further assistance.");
  KOVAException assigned;
  assigned.AddRef();
  assigned = failed;
  EXPECT_EQ(assigned.GetErrorId(), 17);
  EXPECT_EQ(assigned.GetCount(), 1) << "the holders are those of the object";
}

TEST(KOVAExceptionTest, SurvivesAShortageOfMemory) {
  EXPECT_TRUE(kova::test::survivesFailingAllocations([] {
    KOVAException exception(KOVAResult(kFileFormatNotSupported),
                            KOVAString("a file name that is too long to be stored in place"),
                            KOVAString("version 9"));
    const KOVAException copy(exception);
    return copy.GetErrorId() == 22;
  }));
}

TEST(Gk_ErrMgrTest, RaisesACopyAndTakesNoTextForAFormat) {
  // A text taken for a format would read, and with %n write, where it must not.
  const Gk_IOException failure("%s%n%d of the disk", nullptr);
  EXPECT_EQ(failure.getResult(), kSuccess);
  try {
    Gk_ErrMgr::raise(failure);
  } catch (const Gk_Exception& caught) {
    EXPECT_EQ(typeid(caught), typeid(Gk_Exception));
    EXPECT_STREQ(caught.getMessage(), "%s%n%d of the disk");
  }
  EXPECT_THROW(Gk_ErrMgr::raise(Gk_Exception(nullptr, kFailure)), Gk_Exception);
}

TEST(Gk_ErrMgrTest, AbortsOncePerRequest) {
  EXPECT_NO_THROW(Gk_ErrMgr::checkAbort());
  std::thread([] { Gk_ErrMgr::setAbort(); }).join();
  EXPECT_TRUE(Gk_ErrMgr::shouldAbort());
  EXPECT_THROW(Gk_ErrMgr::checkAbort(), KOVAAbortException);
  EXPECT_NO_THROW(Gk_ErrMgr::checkAbort());
}

int g_callbacks = 0;

TEST(KOVACallbackSharedTest, ThrowsOnlyWithACallback) {
  Gk_ErrMgr::setAbort();
  EXPECT_FALSE(KOVACallbackShared::IsAborted());
  KOVACallbackShared::_abortCallback = [] { return ++g_callbacks == 0; };
  EXPECT_THROW(KOVACallbackShared::IsAborted(), KOVAAbortException);
  EXPECT_EQ(g_callbacks, 1);
  EXPECT_THROW(Gk_ErrMgr::checkAbort(), KOVAUnrecoverableError);
  EXPECT_FALSE(KOVACallbackShared::IsAborted());
  EXPECT_EQ(g_callbacks, 1);
  KOVACallbackShared::_abortCallback = nullptr;
}

}  // namespace
