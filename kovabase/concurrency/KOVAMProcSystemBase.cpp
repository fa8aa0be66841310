#include "kovabase/concurrency/KOVAMProcSystemBase.h"

#include <atomic>

namespace {

constinit std::atomic<bool> g_multiProcessAllowed{false};
constinit std::atomic<bool> g_debugInSingleProcess{false};
constinit std::atomic<bool> g_slaveProcess{false};
constinit std::atomic<bool> g_nonWindowsPlatformAllowed{false};
constinit std::atomic<unsigned> g_processorsRequested{0};

}  // namespace

void KOVAMProcSystemBase::AllowNonWindowsPlatform() noexcept { g_nonWindowsPlatformAllowed = true; }

void KOVAMProcSystemBase::SetMultiProcessMode(bool allowed) noexcept {
  if (g_nonWindowsPlatformAllowed) g_multiProcessAllowed = allowed;
}

bool KOVAMProcSystemBase::IsMultiProcessAllowed() noexcept { return g_multiProcessAllowed; }

void KOVAMProcSystemBase::SetNumberOfProcessorsToUseRequested(unsigned processors) noexcept {
  if (g_nonWindowsPlatformAllowed) g_processorsRequested = processors;
}

unsigned KOVAMProcSystemBase::GetNumberOfProcessorsToUseRequested() noexcept {
  return g_processorsRequested;
}

void KOVAMProcSystemBase::SetAsMasterProcess() noexcept { g_slaveProcess = false; }

void KOVAMProcSystemBase::SetAsSlaveProcess() noexcept { g_slaveProcess = true; }

bool KOVAMProcSystemBase::IsSlaveProcess() noexcept { return g_slaveProcess; }

bool KOVAMProcSystemBase::IsDebugInSingleProcess() noexcept { return g_debugInSingleProcess; }
