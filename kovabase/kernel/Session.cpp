#include "kovabase/kernel/Session.h"

#include <array>
#include <atomic>
#include <cstddef>

namespace kova::kernel {

namespace {

struct Session {
  Tolerances tolerances;
  std::array<Tolerances, 3> modules;
};

constinit std::atomic<int> g_mainThreadStarts{0};
constinit thread_local Session t_session{};

}  // namespace

void startMainThread() noexcept { g_mainThreadStarts.fetch_add(1); }

void stopMainThread() noexcept {
  int starts = g_mainThreadStarts.load();
  while (starts > 0 && !g_mainThreadStarts.compare_exchange_weak(starts, starts - 1)) {
  }
}

void startThread() noexcept { t_session = Session{}; }

void stopThread() noexcept { t_session = Session{}; }

Tolerances tolerances() noexcept { return t_session.tolerances; }

void setAbsoluteResolution(double absoluteResolution) noexcept {
  t_session.tolerances.absoluteResolution = absoluteResolution;
}

void setFitTolerance(double fitTolerance) noexcept {
  t_session.tolerances.fitTolerance = fitTolerance;
}

void startModule(Module module) noexcept {
  t_session.modules[static_cast<std::size_t>(module)] = t_session.tolerances;
}

Tolerances moduleTolerances(Module module) noexcept {
  return t_session.modules[static_cast<std::size_t>(module)];
}

}  // namespace kova::kernel
