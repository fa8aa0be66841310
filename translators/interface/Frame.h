#pragma once

#include "translators/interface/ByteOutput.h"
#include "translators/interface/Translator.h"

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <utility>

/// What format readers and writers have in common besides their base classes.
namespace kova::translators {

/// A record that one function reads or writes; mostly a lambda that calls its format reader, which
/// must live as long.
class FunctionReader : public KOVAEntityReader {
 public:
  using Function = std::function<KOVAResult()>;
  FunctionReader(const KOVABufferHandle& buffer, Function function)
      : KOVAEntityReader(buffer), _function(std::move(function)) {}
  KOVAResult Read() override { return _function(); }

 private:
  Function _function;
};

class FunctionWriter : public KOVAEntityWriter {
 public:
  using Function = std::function<KOVAResult()>;
  FunctionWriter(const KOVABufferHandle& buffer, Function function)
      : KOVAEntityWriter(buffer), _function(std::move(function)) {}
  KOVAResult Write() override { return _function(); }

 private:
  Function _function;
};

/// A section that holds one such record.
class FunctionSectionReader : public KOVASectionReader {
 public:
  FunctionSectionReader(const KOVABufferHandle& buffer, FunctionReader::Function function) {
    AddEntityReader(new FunctionReader(buffer, std::move(function)));
  }
};

class FunctionSectionWriter : public KOVASectionWriter {
 public:
  FunctionSectionWriter(const KOVABufferHandle& buffer, FunctionWriter::Function function) {
    AddEntityWriter(new FunctionWriter(buffer, std::move(function)));
  }
};

/// The buffer over what a request asks to read; without bytes where there are none.
/// @param result  receives FileOpenError, which has been reported, when the file cannot be opened:
///   the result of the first step.
KOVABufferHandle openInput(const ReadRequest& request, KOVAResult& result);

/// The buffer over the file that a request asks to write; null when there is none.
/// @param buffer  receives it as well, or one that takes nothing, so that the first step is run.
/// @param result  receives FileSaveError, which has been reported, when the file cannot be created:
///   the result of the first step.
ByteOutputHandle openOutput(const WriteRequest& request, KOVABufferHandle& buffer,
                            KOVAResult& result);

/// The same for a request that has been refused before: touches no file.
ByteOutputHandle openNothing(KOVABufferHandle& buffer);

/// The last step of a writer: hands everything to the system, and reports what it has refused.
/// @return FileSaveError, silently, for null.
KOVAResult finishOutput(const ByteOutputHandle& output, const Report& report);

/// The place of the option's value, in capitals or not, among the words that it takes. Without the
/// option it is the first one.
/// @return -1 for another value, which has been reported.
int readChoice(const WriteRequest& request, const char* option,
               std::initializer_list<const char*> words);

/// Fires the stage events of a reader or writer, one for each `step` of its work at most.
class Progress {
 public:
  static constexpr std::uint64_t kBytesPerEvent = std::uint64_t{1} << 20;
  static constexpr std::uint64_t kElementsPerEvent = 100000;

  /// @param stage  "read" or "write"; lives as long.
  /// @param total  all of the work, in bytes or elements.
  Progress(const char* stage, std::uint64_t total, std::uint64_t step)
      : _stage(stage), _total(total), _step(step), _next(step) {}

  /// So much of the work is done.
  void Reach(std::uint64_t done) {
    if (done >= _next) [[unlikely]] {
      Fire(done);
    }
  }
  /// Elements one by one.
  void Add() { Reach(++_done); }

 private:
  void Fire(std::uint64_t done);

  const char* _stage;
  std::uint64_t _total;
  std::uint64_t _step;
  std::uint64_t _next;
  std::uint64_t _done = 0;
};

}  // namespace kova::translators
