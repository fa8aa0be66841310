#pragma once

/// Our own stand-in for the sessions of the solid-modeling kernel: which threads it runs on, and
/// with which tolerances. All state but the main thread's start count belongs to the calling
/// thread.
namespace kova::kernel {

/// Model length units.
struct Tolerances {
  /// Two points that are closer than this are one point.
  double absoluteResolution = 1e-6;
  /// How far an approximated curve or surface may leave its original.
  double fitTolerance = 1e-3;
};

/// The modules that work with a copy of the tolerances from their own start.
enum class Module { kCurve2D, kCurve3D, kSurface3D };

/// Starts the kernel for the process's main thread. Starts nest; each needs its stop.
void startMainThread() noexcept;
/// Does nothing without a start.
void stopMainThread() noexcept;

/// Starts the kernel on the calling worker thread, with default tolerances.
void startThread() noexcept;
void stopThread() noexcept;

/// The session tolerances of the calling thread. The modules follow at their next start.
Tolerances tolerances() noexcept;
void setAbsoluteResolution(double absoluteResolution) noexcept;
void setFitTolerance(double fitTolerance) noexcept;

/// Starts the module on the calling thread anew, with the session tolerances of now.
void startModule(Module module) noexcept;
/// The tolerances that the module works with on the calling thread.
Tolerances moduleTolerances(Module module) noexcept;

}  // namespace kova::kernel
