#include "kovabase/foundation/KOVANewHandler.h"

#include "kovabase/foundation/KOVAAllocException.h"

#include <cstddef>
#include <cstdlib>

constinit std::atomic<void*> KOVANewHandler::_pReserveBuffer{nullptr};
constinit KOVAAtomicCounter KOVANewHandler::_refCount{0};

namespace {

constexpr std::size_t kReserveBytes = 0x100000;

}  // namespace

KOVANewHandler::KOVANewHandler() noexcept {
  ReserveBuffer();
  _refCount.AtomicIncrement();
  SetNewHandler();
}

void KOVANewHandler::Reset() noexcept {
  if (!_isInstalled) return;
  _isInstalled = false;
  std::set_new_handler(_previousHandler);
  _previousMode = -1;
  Clean();
}

void KOVANewHandler::ReserveBuffer() noexcept {
  if (_pReserveBuffer.load() != nullptr) return;
  void* const buffer = std::malloc(kReserveBytes);
  void* held = nullptr;
  // Another thread may have been quicker.
  if (!_pReserveBuffer.compare_exchange_strong(held, buffer)) std::free(buffer);
}

void KOVANewHandler::ReleaseBuffer() noexcept { std::free(_pReserveBuffer.exchange(nullptr)); }

void KOVANewHandler::SetNewHandler() noexcept {
  _previousHandler = std::set_new_handler(&NewHandlerFunction);
  _isInstalled = true;
}

void KOVANewHandler::Clean() noexcept {
  if (_refCount.AtomicDecrement() == 0) ReleaseBuffer();
}

void KOVANewHandler::NewHandlerFunction() {
  ReleaseBuffer();
  throw KOVAAllocException();
}

int KOVANewHandler::NewHandlerFuctionForWindows(unsigned) { NewHandlerFunction(); }
