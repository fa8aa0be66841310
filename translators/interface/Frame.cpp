#include "translators/interface/Frame.h"

#include "kovabase/events/KOVAProgressEvents.h"
#include "translators/interface/OptionValues.h"
#include "translators/interface/Text.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace kova::translators {

namespace {

// Stands for a file that cannot be opened, so that the first section is handed out and can say so.
class EmptyBuffer : public KOVABuffer {
 public:
  long GetOffset() const override { return 0; }
  KOVAResult SetOffset(long offset) override {
    return offset == 0 ? KOVAResultCode::kSuccess : KOVAResultCode::kFailure;
  }
  long GetSize() const override { return 0; }
  KOVAResult PeekBytes(long offset, int count, unsigned char*) override {
    return offset == 0 && count == 0 ? KOVAResultCode::kSuccess : KOVAResultCode::kInvalidArgument;
  }
};

// The buffers do not know why the system refuses a file.
const char* findRefusal(const KOVAFileHandle& file, const char* mode) {
  errno = 0;
  std::FILE* const stream = file->OpenStream(mode);
  if (stream == nullptr) return errno != 0 ? std::strerror(errno) : "the system refuses it";
  std::fclose(stream);
  return nullptr;
}

// Null for a file that can be read.
const char* findObstacle(const KOVAFileHandle& file) {
  if (file->DoesExist() && !file->IsRegular()) return "it is no regular file";
  if (const char* const refusal = findRefusal(file, "rb")) return refusal;
  std::uint64_t bytes = 0;
  if (file->GetSize(bytes).IsSuccess() && bytes >> 32 != 0) return "it has 4 GiB or more";
  return nullptr;
}

}  // namespace

KOVABufferHandle openInput(const ReadRequest& request, KOVAResult& result) {
  result = KOVAResultCode::kSuccess;
  if (!request.file.IsValid()) {
    if (request.block == nullptr || request.blockBytes == 0) return new EmptyBuffer;
    return new KOVADefaultBuffer(request.block, request.blockBytes);
  }
  if (const char* const obstacle = findObstacle(request.file)) {
    result = request.report.Fail(KOVAResultCode::kFileOpenError, {}, "it cannot be opened: %s",
                                 obstacle);
    return new EmptyBuffer;
  }
  return new KOVADefaultBuffer(request.file, 0);
}

ByteOutputHandle openOutput(const WriteRequest& request, KOVABufferHandle& buffer,
                            KOVAResult& result) {
  if (const char* const refusal = findRefusal(request.file, "wb")) {
    result = request.report.Fail(KOVAResultCode::kFileSaveError, {}, "it cannot be written: %s",
                                 refusal);
    return openNothing(buffer);
  }
  result = KOVAResultCode::kSuccess;
  ByteOutput* const output = new ByteOutput(request.file);
  buffer = KOVABufferHandle(output);
  return output;
}

ByteOutputHandle openNothing(KOVABufferHandle& buffer) {
  buffer = KOVABufferHandle(new EmptyBuffer);
  return nullptr;
}

KOVAResult finishOutput(const ByteOutputHandle& output, const Report& report) {
  if (!output.IsValid()) return KOVAResultCode::kFileSaveError;
  ByteOutput* const bytes = output;
  const KOVAResult result = bytes->Finish();
  if (result.IsSuccess()) return result;
  if (result == KOVAResultCode::kInvalidArgument) {
    return report.Fail(KOVAResultCode::kFileSaveError, {},
                       "it cannot be written: it would have 4 GiB or more");
  }
  return report.Fail(KOVAResultCode::kFileSaveError, {},
                     "it cannot be written: the system did not take all of it");
}

int readChoice(const WriteRequest& request, const char* option,
               std::initializer_list<const char*> words) {
  const KOVAString value = readOption(request.options, option, KOVAString(*words.begin()));
  int index = 0;
  std::string known;
  for (const char* const word : words) {
    if (value.equalsIgnoreCase(KOVAString(word))) return index;
    known += (index++ == 0 ? "'" : ", '") + std::string(word) + "'";
  }
  const std::string text = encodeText(value);
  request.report.Fail(KOVAResultCode::kInvalidArgument, {},
                      "the option %s is %s; it may be one of %s", option,
                      quote(text.data(), text.size()).c_str(), known.c_str());
  return -1;
}

void Progress::Fire(std::uint64_t done) {
  _next = done - done % _step + _step;
  const double fraction = static_cast<double>(done) / static_cast<double>(_total);
  KOVAConversionStageEvent::Fire(_stage, 0, std::min(fraction, 1.0), false);
}

}  // namespace kova::translators
