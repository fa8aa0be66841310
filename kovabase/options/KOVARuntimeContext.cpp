#include "kovabase/options/KOVARuntimeContext.h"

#include "kovabase/options/KOVACurrentlyRunningTest.h"

namespace {

KOVAFilePath resolve(const KOVAFilePath& path, const KOVAFilePath& directory) {
  if (!path.IsValid() || path.IsAbsolute()) return path;
  return KOVAFilePath(directory.GetPath(), path.GetPath());
}

}  // namespace

KOVARuntimeContext::KOVARuntimeContext() : _working(KOVAFilePath::GetCurrentWorkingDirectory()) {}

KOVAResult KOVARuntimeContext::SetWorkingDirectory(const KOVAFilePath& directory) {
  if (!directory.IsValid()) return KOVAResultCode::kInvalidArgument;
  _working = resolve(directory, KOVAFilePath::GetCurrentWorkingDirectory());
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVARuntimeContext::SetOutputDirectory(const KOVAFilePath& directory) {
  if (!directory.IsValid()) return KOVAResultCode::kInvalidArgument;
  _output = directory;
  return KOVAResultCode::kSuccess;
}

KOVAFilePath KOVARuntimeContext::GetWorkingDirectory() const { return _working; }

KOVAFilePath KOVARuntimeContext::GetOutputDirectory() const {
  const KOVAFilePath output = _output.IsValid() ? resolve(_output, _working) : _working;
  const KOVAString test = KOVACurrentlyRunningTest::GetName();
  return test.isEmpty() ? output : KOVAFilePath(output.GetPath(), test);
}

KOVAFilePath KOVARuntimeContext::ResolveInput(const KOVAFilePath& path) const {
  return resolve(path, _working);
}

KOVAFilePath KOVARuntimeContext::ResolveOutput(const KOVAFilePath& path) const {
  return resolve(path, GetOutputDirectory());
}
